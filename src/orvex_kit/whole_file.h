#pragma once

/// @file
/// Files that are written whole or not at all.

#include <memory>
#include <string>
#include <string_view>

#include "orvex_kit/api.h"
#include "orvex_kit/outcome.h"

namespace orvex::kit {

/// A file that is written whole or not at all. What is put in goes to a new file beside it, which
/// takes its name at the end, once the system has all of it; until then what stood there stays as
/// it is.
///
/// Where the file system takes files without a name, as the usual ones on Linux do, the new file
/// has none until it is whole, and nothing of it is left however the program ends, but for the
/// moment between the two steps that replace an old file. Elsewhere its name begins with
/// ".orvex-new-", and a program that is killed leaves it; `remove_new_files_on_signals` helps
/// against the signals that can be handled.
///
/// A link is followed. An old file keeps its rights. What is no regular file, as a pipe or a
/// device, can't be replaced, and is written to as it stands. Any number at a time; each on one
/// thread. What fails says so in a sentence that has the file's name and the system's words. No
/// signal is sent for a pipe without a reader or a file that may not grow.
///
/// @code
/// kit::WholeFile file("notes.txt");
/// kit::Outcome outcome = file.begin();
/// if (outcome)
///     outcome = file.put("all or nothing\n");
/// if (outcome)
///     outcome = file.finish();
/// @endcode
class ORVEX_KIT_API WholeFile {
public:
    /// Does nothing yet.
    /// @param name  a path, taken as given; an empty one can't be written
    explicit WholeFile(std::string name);
    /// Removes the new file, unless it has its name.
    ~WholeFile();
    WholeFile(const WholeFile&) = delete;
    WholeFile& operator=(const WholeFile&) = delete;

    /// Makes the new file. A second call fails, and changes nothing.
    Outcome begin();
    /// Appends to it; fails unless `begin` was good, and after `finish`.
    Outcome put(std::string_view bytes);
    /// Gives it its name, after the last `put`; fails as `put` does.
    Outcome finish();

private:
    struct WholeFileData;
    std::unique_ptr<WholeFileData> data;
};

/// Has the signals INT, TERM and HUP remove the new files that have names, before they end the
/// program. A signal that the program ignores, as under nohup, or handles itself is left so. For
/// programs, not for libraries: signals belong to the whole process. May be called again; any
/// thread.
ORVEX_KIT_API void remove_new_files_on_signals();

/// Why a file can't be written; empty if it can. What stands there stays as it is. Any thread.
ORVEX_KIT_API std::string mistake_in_writing(const std::string& name);

/// Whether two names mean one file, links resolved. Files that aren't there are compared by where
/// they would be. Any thread.
ORVEX_KIT_API bool are_same_file(const std::string& a, const std::string& b);

} // namespace orvex::kit
