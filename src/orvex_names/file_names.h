#pragma once

/// @file
/// What the names mean that model files have for other files: written by other systems, for other
/// machines.

#include <string>
#include <string_view>
#include <vector>

namespace orvex::names {

/// A letter of ASCII in lower case.
constexpr char small_letter(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

/// Whether a path begins with a drive, a letter and a colon.
bool has_drive(std::string_view path);

/// The names between the slashes of a path, of either kind, without those that lead nowhere or up,
/// and without a drive.
std::vector<std::string> steps_of(std::string path);

/// Where a path leads, behind all links; empty if nowhere.
std::string resolved(const std::string& path);

/// Whether something lies in a folder or below it; the folder itself doesn't.
/// @param path    resolved
/// @param folder  likewise; nothing lies in an empty one
bool is_within(const std::string& path, const std::string& folder);

/// Walks from a folder on, by names in letters of either case: the very letters count first, then
/// of several names the first by its bytes. Links are followed wherever they lead.
/// @param folder  with its slash; empty for the current one
/// @param steps   the names, of which the first `skipped` aren't walked
/// @return the path, beginning with the folder; empty where one of them isn't there
std::string walk_in_any_case(const std::string& folder, const std::vector<std::string>& steps,
                             std::size_t skipped);

/// A name without the quotes around it, where it has both and something between them.
std::string without_quotes(std::string_view name);

} // namespace orvex::names
