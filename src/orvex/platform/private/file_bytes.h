#pragma once

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

    const char* text() const { return bytes_.get(); }
    const unsigned char* data() const {
        return reinterpret_cast<const unsigned char*>(bytes_.get());
    }
    std::size_t size() const { return size_; }

private:
    std::unique_ptr<char[]> bytes_;
    std::size_t size_ = 0;
};

} // namespace orvex
