#include "orvex/scene/viewport.h"

namespace orvex {

Viewport::Viewport() = default;

Viewport::~Viewport() = default;

void Viewport::set(int new_x, int new_y, int new_width, int new_height) {
    x = new_x;
    y = new_y;
    width = new_width;
    height = new_height;
}

} // namespace orvex
