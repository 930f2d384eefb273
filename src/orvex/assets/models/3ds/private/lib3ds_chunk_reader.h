#pragma once

#include <cstdint>
#include <string>

#include "orvex/assets/models/3ds/private/lib3ds_format.h"
#include "orvex/platform/private/byte_window.h"

namespace orvex {

/// What is wrong with a 3DS file, and where.
struct Lib3dsFault {
    const char* what = nullptr; ///< a literal; null while nothing is wrong
    std::uint64_t offset = 0;   ///< bytes from the beginning of the file
    bool is_3ds = false;        ///< the file begins as a 3DS file does
};

} // namespace orvex

namespace orvex::lib3ds {

/// Reads the parts that chunks are made of, and keeps the first fault. Every check shares one.
class ChunkReader {
public:
    explicit ChunkReader(ByteWindow& window)
        : window(window) {}

    std::uint64_t file_size() const { return window.size(); }

    /// The bytes at the beginning of a part; null, and a fault, if the part has fewer.
    const unsigned char* take(Span content, std::uint32_t count) {
        if (content.holds(count))
            return bytes_at(content.begin, count);
        refuse(content.begin, "a chunk is too short for what it begins with");
        return nullptr;
    }
    /// `count` bytes at an offset; null, and a fault, if they can't be read.
    const unsigned char* bytes_at(std::uint32_t offset, std::uint32_t count) {
        const unsigned char* const bytes = window.at(offset, count);
        if (!bytes)
            refuse(offset, "the bytes can't be read");
        return bytes;
    }

    /// Steps over a text, which `text` gives then. @return false unless it ends in time
    bool skip_text(Span& content, std::uint32_t room);
    /// Steps over a count of 16 bits. @return false unless the list behind it fits
    bool skip_count(Span& content, std::uint32_t element_size, std::uint32_t& count);

    /// The text that was stepped over last.
    const std::string& text() const { return last_text; }

    /// Notes what is wrong, unless something was before. @return false
    bool refuse(std::uint64_t offset, const char* what);
    /// `refuse` unless `is_fine`. @return `is_fine`
    bool expect(bool is_fine, std::uint64_t offset, const char* what) {
        return is_fine || refuse(offset, what);
    }

    /// Says that the file begins as a 3DS file does.
    void know_format() { first_fault.is_3ds = true; }
    const Lib3dsFault& fault() const { return first_fault; }

private:
    ByteWindow& window;
    std::string last_text;
    Lib3dsFault first_fault;
};

} // namespace orvex::lib3ds
