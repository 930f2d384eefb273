#include "orvex/renderer/renderer_types.h"

#include <array>
#include <cstddef>

namespace orvex {

PIXEL_FORMAT ConvertInt2Pf(int i) {
    return i >= PF_RGB_U8 && i <= PF_RGBA_F32 ? static_cast<PIXEL_FORMAT>(i) : PF_NONE;
}

const char* GetGpuShaderTypeLabel(GPU_SHADER_TYPE type) {
    static constexpr std::array<const char*, GPU_SHADER_TYPE_COUNT> labels = {
        "Vertex",  "Pixel", "Geometry",       "Tessellation control", "Tessellation evaluation",
        "Compute", "",      "Direct3D effect"};
    if (type < 0 || type >= GPU_SHADER_TYPE_COUNT)
        return "";
    return labels[static_cast<std::size_t>(type)];
}

} // namespace orvex
