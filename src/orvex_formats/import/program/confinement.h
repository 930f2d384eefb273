#pragma once

/// @file
/// What a program that reads files of strangers takes from itself.

#include <cstdint>
#include <string>

namespace orvex::formats {

/// How much is left to a program.
struct Limits {
    std::uint64_t most_memory = 0; ///< in bytes
    std::uint64_t most_answer = 0; ///< in bytes: of any file that it writes
    unsigned seconds = 0;          ///< of a processor
};

/// Sets limits of memory, time and files that can't be raised again. From then on no file of a core
/// is written, nothing is run with more rights, and the program ends with its parent.
void set_limits(const Limits& limits);

/// From then on files are opened below a folder alone, to be read.
/// @param folder  a descriptor; -1: no file is opened
/// @return false where the kernel has no such bar
bool confine_files(int folder);

/// From then on the kernel does little more for the program than to read, write and give memory: no
/// other program, no network, no process.
/// @param may_open  whether files may be opened by folders
/// @return false where the library that does it wasn't there when this was built, or the kernel
///         has no such bar
bool confine_calls(bool may_open);

/// Tries what mustn't work.
/// @return a line for each, as "network: barred"
std::string tell_confinement();

} // namespace orvex::formats
