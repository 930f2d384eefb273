#pragma once

/// @file
/// What a host or a plugin makes that was built without type information.

#include <orvex/fwd.h>

namespace orvex_test {

/// Reads any file as a triangle, a point, a line, a camera and a texture, each of a class of its
/// own. It is named "plain".
orvex::Loader3D* new_plain_loader();

/// Decodes nothing, since "nothing is plain".
orvex::ImageCodec* new_plain_codec();

} // namespace orvex_test
