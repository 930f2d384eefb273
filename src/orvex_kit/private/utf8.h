#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orvex::kit {

/// What stands for what can't be shown.
inline constexpr char32_t replacement = 0xfffd;

/// The code points of a text in UTF-8.
/// @param[out] invalid  how many bytes are none of it; each of them becomes a `replacement`
std::u32string code_points_of(std::string_view text, std::size_t& invalid);

} // namespace orvex::kit
