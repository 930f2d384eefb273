#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "orvex_kit/outcome.h"
#include "orvex_kit/whole_file.h"

namespace orvex::kit {

/// Where pictures go: a file that is written whole or not at all, or standard output, which is
/// called
/// "-" and takes what it gets as it comes.
class Output {
public:
    explicit Output(const std::string& path);

    Outcome begin(); ///< as `WholeFile::begin`
    Outcome put(std::string_view bytes);
    Outcome put(const unsigned char* bytes, std::size_t size);
    Outcome finish(); ///< standard output stays open

private:
    bool is_standard;
    WholeFile file;
};

/// Puts out a file of which all bytes are there. @return why it can't be written
Outcome write_whole(const std::string& path, std::string_view bytes);

/// Whether a path means standard output.
bool is_standard_output(const std::string& path);
/// "can't write a.png: " and the reason.
Outcome cant_write(const std::string& path, const std::string& why);
/// The same of memory that ran out.
Outcome no_memory_to_write(const std::string& path);

} // namespace orvex::kit
