#pragma once

/// @file
/// What a process that reads strangers' files can't do.

#include <string>

namespace batch {

/// What holds of the calling process, by what its system and its build offer.
struct Confinement {
    bool writes = false; ///< it writes nowhere but in its folder, executes nothing, and sends no
                         ///< signal to others where Landlock knows how to forbid it (since 6.12)
    bool calls = false;  ///< it executes nothing, opens no sockets, starts no processes
};

/// Has no core file written, gives up new privileges for ever, and forbids by Landlock to write
/// outside a folder. Before the first thread: only threads that begin later are held.
///
/// Devices of graphics cards can be written to, and what is open already.
/// @param folder  in which files are made; empty is the current one
/// @return whether Landlock holds
bool confine_writes(const std::string& folder);

/// Forbids to execute, to open sockets and to start processes, on all threads. After the driver has
/// started, which may need some of it.
/// @return whether the filter holds; false also of a build without libseccomp
bool confine_calls();

} // namespace batch
