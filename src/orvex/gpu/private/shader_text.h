#pragma once

#include <array>
#include <string>

#include "orvex/renderer/renderer_types.h"

namespace orvex {

/// The stages of a program text, cut at its section markers.
///
/// A value; it works on a copy of the text.
class ShaderText {
public:
    /// The order in which stages are compiled.
    static constexpr GPU_SHADER_TYPE load_order[] = {
        GPU_SHADER_VERTEX,       GPU_SHADER_PIXEL,     GPU_SHADER_GEOMETRY,
        GPU_SHADER_TESS_CONTROL, GPU_SHADER_TESS_EVAL, GPU_SHADER_COMPUTE,
    };

    /// Cuts at most `size` characters of `text`, up to its terminator. A marker is found wherever
    /// it stands first, also in a comment; a second one of its kind is ordinary text.
    ShaderText(const char* text, unsigned long size);

    /// Returns whether the text makes a program: it has a compute stage, or both a vertex and a
    /// pixel stage.
    bool is_complete() const;

    /// Returns what stands between the stage's marker and the next marker or the end, terminated;
    /// null when the marker is missing. Valid as long as this object.
    const char* get_body(GPU_SHADER_TYPE type) const;

private:
    std::string content;
    std::array<std::string::size_type, std::size(load_order)> bodies; // by stage; npos for none
};

} // namespace orvex
