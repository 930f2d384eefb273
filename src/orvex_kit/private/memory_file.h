#pragma once

#include <string>

namespace orvex::kit {

/// A file in memory, that has a name while it is open: for writers that take a name and say nothing
/// of a full disk.
class MemoryFile {
public:
    MemoryFile();
    ~MemoryFile();
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    bool is_open() const { return file >= 0; }
    std::string name() const;
    /// All that was written to it. @return false when it can't be read again
    bool read(std::string& bytes) const;

private:
    int file;
};

} // namespace orvex::kit
