#include "orvex/gpu/private/shader_text.h"

#include <string.h> // strnlen

#include <string_view>

namespace orvex {

namespace {

// Indexed by stage.
constexpr std::string_view markers[] = {
    "[Vertex_Shader]",      "[Pixel_Shader]",    "[Geometry_Shader]",
    "[TessControl_Shader]", "[TessEval_Shader]", "[Compute_Shader]",
};
static_assert(std::size(markers) == std::size(ShaderText::load_order));

} // namespace

ShaderText::ShaderText(const char* text, unsigned long size)
    : content(text, strnlen(text, size)) {
    // All markers are found before the first is overwritten, so the cuts don't hide any.
    for (std::size_t stage = 0; stage < bodies.size(); ++stage) {
        const auto marker = content.find(markers[stage]);
        bodies[stage] = marker == content.npos ? marker : marker + markers[stage].size();
    }
    for (std::size_t stage = 0; stage < bodies.size(); ++stage)
        if (bodies[stage] != content.npos)
            content[bodies[stage] - markers[stage].size()] = '\0';
}

bool ShaderText::is_complete() const {
    return get_body(GPU_SHADER_COMPUTE) ||
           (get_body(GPU_SHADER_VERTEX) && get_body(GPU_SHADER_PIXEL));
}

const char* ShaderText::get_body(GPU_SHADER_TYPE type) const {
    const auto body = bodies[std::size_t(type)];
    return body == content.npos ? nullptr : content.c_str() + body;
}

} // namespace orvex
