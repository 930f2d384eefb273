#pragma once

#include <string>
#include <vector>

#include <orvex_kit/camera.h>
#include <orvex_kit/layers.h>
#include <orvex_kit/model.h>
#include <orvex_kit/picture.h>

/// The file of one layer of a picture: "a.depth.npy" of "a.npy". Colours have the plain name, and
/// in OpenEXR all layers have.
std::string file_of_layer(orvex::kit::Layer layer, const std::string& output);
/// The file that tells of the layers, "a.json" of "a.npy".
std::string file_about_layers(const std::string& output);
/// Every file that is written for layers of a picture.
std::vector<std::string> files_of_layers(const std::vector<orvex::kit::Layer>& layers,
                                         const std::string& output);

/// Layers of one picture, and what they show.
struct LayerPictures {
    std::vector<orvex::kit::Layer> layers;
    std::vector<orvex::kit::Picture> pictures; ///< one for each
    const orvex::kit::Camera& camera;          ///< that saw them
    const orvex::kit::Model& model;            ///< whose ids they hold
};

/// Writes layers as PNG, NPY or OpenEXR, by the suffix, and what tells of them beside.
///
/// NPY and OpenEXR hold the numbers themselves. PNG holds depths in 16 bits as steps, of which the
/// file beside tells the size, normals as 16-bit colours, and ids in 16 bits, from 1 on; 0 is
/// nothing. It can't hold positions, nor ids beyond 65,534.
/// @return what went wrong; empty if nothing did
std::string write_layer_files(const LayerPictures& drawn, const std::string& output);
