#pragma once

#include <memory>

#include "orvex/overlays/private/bm_charset.h"

namespace orvex {

/// Reads a charset from BMFont XML; see `Font::bm_load_charset_from_memory`.
/// @param text  ends with a zero byte; null is refused
/// @return null if the text can't be parsed, has no root element, or has an element of more than
/// 256
///         attributes
std::unique_ptr<BMCharset> read_bm_charset(const char* text);

} // namespace orvex
