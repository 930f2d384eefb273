#pragma once

/// @file
/// What a model is made of, to be told of.

#include <cstddef>
#include <string>
#include <vector>

#include <orvex/math/vec3.h>
#include <orvex/math/vec4.h>

#include "orvex_kit/camera.h"

namespace orvex::kit {

/// A box along the axes, around points that are finite numbers.
struct Bounds {
    orvex::vec3 min;      ///< all 0 around nothing
    orvex::vec3 max;      ///< likewise
    bool is_empty = true; ///< whether it is around nothing
};

/// A mesh of a model, at one of the places where it stands.
struct ModelMesh {
    std::string name;         ///< in the bytes of the file
    std::size_t num_vertices; ///< all that it has
    std::size_t num_faces;    ///< triangles; without one its vertices are points
    Bounds bounds;            ///< in the model's own space
};

/// A material of a model. Colours are red, green, blue and alpha, mostly 0 to 1, as the file has
/// them.
struct ModelMaterial {
    std::string name;                  ///< in the bytes of the file
    orvex::vec4 ambient;               ///< red, green, blue, alpha
    orvex::vec4 diffuse;               ///< likewise
    orvex::vec4 specular;              ///< likewise
    float shininess;                   ///< exponent of the highlight
    float opacity;                     ///< below 1 it is blended
    std::vector<std::size_t> textures; ///< those named by it, in `Model::textures`
};

/// A texture that materials name.
struct ModelTexture {
    std::string name;   ///< as it is named, in the bytes of the file
    std::string path;   ///< of the file that was found; else where it was looked for first
    std::string reason; ///< why the picture lacks it; empty if it was found and read
    int width = 0;      ///< pixels; 0 without a picture
    int height = 0;     ///< as `width`
};

/// A camera of a model.
struct ModelCamera {
    std::string name; ///< in the bytes of the file
    /// In the model's own space. Where the file says no end of sight, it lies behind the model.
    Camera camera;
};

/// Faces of a mesh in a row that share a material: what is drawn at once.
struct FaceRun {
    std::size_t mesh;       ///< in `Model::meshes`
    int material;           ///< in `Model::materials`; -1 for none
    std::size_t first_face; ///< of the mesh
    std::size_t num_faces;  ///< from 1
    bool is_blended;        ///< mixed with what was drawn before, as its opacity is below 1
};

} // namespace orvex::kit
