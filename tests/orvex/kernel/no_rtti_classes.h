#pragma once

/// @file
/// Classes of a host that was built without type information.

#include <orvex/fwd.h>

namespace orvex_test {

orvex::Object* new_plain_object();
orvex::Loader3D* new_plain_loader();
orvex::ImageCodec* new_plain_codec();
orvex::Mesh* new_plain_mesh();
orvex::Renderer* new_plain_renderer();
orvex::Texture* new_plain_texture();

/// A window that stands on no context.
orvex::RenderWindow* new_plain_window();

} // namespace orvex_test
