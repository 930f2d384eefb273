#pragma once

/// @file
/// Looks into what is written about a tool: its man page, and its completion for bash.

#include <set>
#include <string>
#include <vector>

namespace orvex_test {

/// All long options in a text.
std::set<std::string> names_in(const std::string& text);
/// All options that have a letter, each as "-s, --size", of a help or of a man page.
std::set<std::string> letters_in(const std::string& text);
/// A man page with its dashes as they are typed.
std::string text_of_man_page(const std::string& path);
/// What the typesetter of man pages has against one; empty if it has nothing.
std::string warnings_of_man_page(const std::string& path);
/// What bash offers behind some words, with a blank behind each offer.
/// @param completion  the script
/// @param function    in it, which offers
/// @param folder      where the words are typed
std::string offered_by(const std::string& completion, const std::string& function,
                       const std::string& folder, const std::vector<std::string>& words);

} // namespace orvex_test
