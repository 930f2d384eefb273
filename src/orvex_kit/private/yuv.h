#pragma once

#include <string>

#include "orvex_kit/frame_stream.h"
#include "orvex_kit/picture.h"

namespace orvex::kit {

/// An 8-bit picture as the planes Y, Cb and Cr by BT.601; they take the place of what `planes`
/// held.
void take_yuv(const Picture& picture, Chroma chroma, bool full_range, std::string& planes);

} // namespace orvex::kit
