#pragma once

/// @file
/// Files that are written whole or not at all.

#include <string>
#include <string_view>

#include "orvex_kit/api.h"

namespace orvex::kit {

/// A file that is written whole or not at all. What is put in goes to a new file beside it, which
/// takes its name at the end, once the system has all of it; until then what stood there stays as
/// it is. INT, TERM and HUP remove the new file before they end the program.
///
/// A link is followed. What is no regular file, as a pipe or a device, can't be replaced, and is
/// written to as it stands. One such file at a time, on one thread.
class ORVEX_KIT_API WholeFile {
public:
    explicit WholeFile(std::string name);
    /// Removes the new file, unless it has its name.
    ~WholeFile();
    WholeFile(const WholeFile&) = delete;
    WholeFile& operator=(const WholeFile&) = delete;

    /// Makes the new file. @return what went wrong, in the system's words; empty if nothing did
    std::string begin();
    /// Appends to it, after a good `begin`. @return as `begin`
    std::string put(std::string_view bytes);
    /// Gives it its name, after the last `put`. @return as `begin`
    std::string finish();

private:
    std::string name;   ///< as the caller knows it
    std::string place;  ///< the same behind all links
    std::string beside; ///< the new file; empty while there is none
    int file = -1;

    std::string make_beside();
    std::string mistake(int error) const;
};

/// Why a file can't be written; empty if it can. What stands there stays as it is.
ORVEX_KIT_API std::string mistake_in_writing(const std::string& name);

/// Whether two names mean one file, links resolved. Files that aren't there are compared by where
/// they would be.
ORVEX_KIT_API bool are_same_file(const std::string& a, const std::string& b);

} // namespace orvex::kit
