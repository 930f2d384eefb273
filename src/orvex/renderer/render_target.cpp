#include "orvex/renderer/render_target.h"

#include <algorithm>

#include "orvex/base/global_id.h"

namespace orvex {

RenderTarget::RenderTarget()
    : id(GenId()) {}

RenderTarget::~RenderTarget() = default;

unsigned long RenderTarget::get_read_back_size(unsigned long channels) {
    const auto columns = static_cast<unsigned long>(std::max(width, 0));
    const auto rows = static_cast<unsigned long>(std::max(height, 0));
    return (columns * channels + 7) / 8 * 8 * rows;
}

bool RenderTarget::read_color_texture_f32(unsigned int, unsigned int, float*, unsigned long) {
    return false;
}

} // namespace orvex
