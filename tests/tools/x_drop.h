#pragma once

#include <string>

namespace orvex_test {

/// Drops files on a window of the test's X server, by version 5 of the protocol that desktops do so
/// by, as a file manager would.
/// @param window  of another program, that takes part in the protocol
/// @param list    their names as text/uri-list
/// @return whether the window took the list, and said that it was done
bool drop_on_window(unsigned long window, const std::string& list);

} // namespace orvex_test
