#pragma once

/// @file
/// The bytes of a file.

#include <cstddef>
#include <memory>

namespace orvex {

/// The whole of a file in memory, with a zero byte behind the last one, so that it can also be read
/// as text.
class FileBytes {
public:
    /// Reads a regular file. Directories, devices and pipes are refused: their size says nothing of
    /// what they would deliver.
    /// @param path   null is refused
    /// @param limit  a file of more bytes is refused unread
    /// @return false if the file can't be read to its end; the bytes held before are gone
    bool read(const char* path, std::size_t limit = static_cast<std::size_t>(-1));

    /// What was read, with a zero behind it; null before the first file.
    const char* text() const { return contents.get(); }
    /// The same as bytes.
    const unsigned char* data() const {
        return reinterpret_cast<const unsigned char*>(contents.get());
    }
    /// Bytes of the file, without the zero.
    std::size_t size() const { return num_bytes; }

private:
    std::unique_ptr<char[]> contents;
    std::size_t num_bytes = 0;
};

} // namespace orvex
