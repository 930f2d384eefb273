#pragma once

/// @file
/// The options that every tool has which draws models, under the same names.

#include <optional>
#include <string>

#include <orvex_kit/framing.h>
#include <orvex_kit/normals.h>

#include "arguments.h"
#include "values.h"

/// What a command line asks of any tool that draws a model.
struct SharedOptions {
    std::string model;
    Size size{1280, 960};
    float azimuth = orvex::kit::Angle().azimuth;
    float elevation = orvex::kit::Angle().elevation;
    orvex::kit::UpAxis up = orvex::kit::UpAxis::automatic;
    std::string look = "lit"; ///< one of the kit's, or a file
    bool wireframe = false;
    orvex::kit::Normals normals = orvex::kit::Normals::by_file;
    Color background{0.17f, 0.19f, 0.22f, 1.0f};
    int samples = 4;           ///< per pixel; 0 and 1: no multisampling
    bool gl3 = true;           ///< core context and generic attributes, or the compatibility way
    std::string plugin;        ///< a file; empty: only those that are found
    std::string loader;        ///< the only one that is asked; empty: all of them
    std::optional<float> time; ///< of a model that moves, in seconds; nothing: at rest
    bool quiet = false;
    bool verbose = false;
    bool help = false;
    bool version = false;
};

/// @name Rules
/// Each adds some to the group that has begun.
/// @{
void add_size_rule(Arguments& rules, SharedOptions& options, const std::string& help);
/// Look, wire frame, normals, samples and path.
void add_look_rules(Arguments& rules, SharedOptions& options);
/// Azimuth and elevation.
void add_angle_rules(Arguments& rules, SharedOptions& options);
void add_up_rule(Arguments& rules, SharedOptions& options);
/// Plugin, which is of the whole program.
void add_plugin_rule(Arguments& rules, SharedOptions& options);
/// Loader, which is of one model.
void add_loader_rule(Arguments& rules, SharedOptions& options);
/// The moment of a model that moves.
void add_time_rule(Arguments& rules, SharedOptions& options);
/// Help and version; then begins a group of its own, how many messages.
void add_message_rules(Arguments& rules, SharedOptions& options);
/// The operand: one model.
void set_model_operand(Arguments& rules, SharedOptions& options);
/// @}

/// What doesn't go together of these; empty if all does.
std::string mistake_of_shared(const SharedOptions& options);
