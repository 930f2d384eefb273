#pragma once

/// @file
/// What a process that reads strangers' files can't do.

#include <string>

namespace batch {

/// Has no core file written, gives up new privileges for ever, and forbids by Landlock to write
/// outside a folder. Before the first thread: only threads that begin later are held.
///
/// Devices of graphics cards can be written to, and what is open already.
/// @param folder   in which files are made; empty is the current one
/// @param program  that may be executed nevertheless; empty for none
/// @return whether Landlock holds
bool confine_writes(const std::string& folder, const std::string& program);

/// Forbids to open sockets, to execute and to start processes, on all threads. After the driver has
/// started, which may need some of it.
/// @param may_execute  lets processes start that execute something: what, Landlock decides
/// @return whether the filter holds; false also of a build without libseccomp
bool confine_calls(bool may_execute);

/// The program by which others' formats are read, beside the kit's library; empty where there is
/// none.
std::string importer_program();

} // namespace batch
