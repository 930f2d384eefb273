#pragma once

/// @file
/// Asks the memory early for what a walk of `render` reads next.

#include <cstddef>
#include <vector>

#include "orvex/scene/private/node_handle.h"

namespace orvex {

/// A frame walks over more objects than any cache holds, and each of them is a chain of records:
/// handle, node, object, transform, material. While child `current` is drawn this asks for the
/// records of those behind it, one link further for each child that is nearer, so that no link is
/// waited for. It reads and changes nothing that the frame could notice.
void draw_ahead(const std::vector<NodeHandle>& children, std::size_t current);

} // namespace orvex
