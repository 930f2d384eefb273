#include "orvex/gpu/private/shader_text.h"

#include <string.h> // strnlen

#include <string_view>

namespace orvex {

namespace {

// Indexed by stage.
constexpr std::string_view MARKERS[] = {
    "[Vertex_Shader]",      "[Pixel_Shader]",    "[Geometry_Shader]",
    "[TessControl_Shader]", "[TessEval_Shader]", "[Compute_Shader]",
};
static_assert(std::size(MARKERS) == std::size(ShaderText::LOAD_ORDER));

} // namespace

ShaderText::ShaderText(const char* text, unsigned long size)
    : text_(text, strnlen(text, size)) {
    // All markers are found before the first is overwritten, so the cuts don't hide any.
    for (std::size_t stage = 0; stage < bodies_.size(); ++stage) {
        const auto marker = text_.find(MARKERS[stage]);
        bodies_[stage] = marker == text_.npos ? marker : marker + MARKERS[stage].size();
    }
    for (std::size_t stage = 0; stage < bodies_.size(); ++stage)
        if (bodies_[stage] != text_.npos)
            text_[bodies_[stage] - MARKERS[stage].size()] = '\0';
}

bool ShaderText::is_complete() const {
    return get_body(GPU_SHADER_COMPUTE) ||
           (get_body(GPU_SHADER_VERTEX) && get_body(GPU_SHADER_PIXEL));
}

const char* ShaderText::get_body(GPU_SHADER_TYPE type) const {
    const auto body = bodies_[std::size_t(type)];
    return body == text_.npos ? nullptr : text_.c_str() + body;
}

} // namespace orvex
