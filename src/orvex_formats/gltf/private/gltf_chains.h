#pragma once

/// @file
/// How deep nodes lie.

#include <cstdint>
#include <string_view>
#include <vector>

namespace orvex::formats {

inline constexpr std::uint32_t no_parent = UINT32_MAX;

/// Refuses nodes that are their own ancestors, and such that lie deeper than in any scene that
/// somebody made.
/// @param parents  by node; `no_parent` for roots
/// @throw Refusal
void check_chains(const std::vector<std::uint32_t>& parents);

/// The same of a text that isn't parsed yet: what a tree of values takes is many times as much as a
/// long text. What breaks the rules of JSON, or of glTF, is passed over here.
/// @throw Refusal
void check_chains(std::string_view json);

} // namespace orvex::formats
