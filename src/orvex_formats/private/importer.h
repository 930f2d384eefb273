#pragma once

/// @file
/// Reading by code that isn't trusted, in a process of its own.

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "orvex_formats/private/input_file.h"

namespace orvex::formats {

/// The program that reads, and what it may take.
struct Importer {
    std::string program; ///< its path; empty: there is none
    std::uint64_t most_memory = 512u << 20;
    std::uint64_t most_answer = 64u << 20;
    std::chrono::milliseconds longest = std::chrono::seconds(20);
};

/// The program that was installed with this module. It may take more for larger files.
Importer installed_importer(std::uint64_t input_size);

/// What the program is asked.
struct Request {
    std::vector<std::string> words;   ///< the kind of work, and what it depends on
    bool may_read_its_folder = false; ///< other files below that of the input
};

/// Has the program work on a file. It is started anew, with nothing of this process but what it
/// needs, and has ended when this returns, one way or the other.
/// @return its answer, which may be anything; its reader refuses what is wrong
/// @throw Refusal  with the program's own reason, or how it came to its end
InputFile ask_importer(const Importer& importer, const Request& request, const InputFile& input);

} // namespace orvex::formats
