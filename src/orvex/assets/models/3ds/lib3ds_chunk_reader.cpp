#include "orvex/assets/models/3ds/private/lib3ds_chunk_reader.h"

#include <algorithm>
#include <cstring>

namespace orvex::lib3ds {

bool ChunkReader::skip_text(Span& content, std::uint32_t room) {
    const std::uint32_t count = std::min(room, content.size());
    const unsigned char* const bytes = bytes_at(content.begin, count);
    if (!bytes)
        return false;
    if (!std::memchr(bytes, 0, count))
        return refuse(content.begin, "a text doesn't end in time");
    last_text = reinterpret_cast<const char*>(bytes);
    content = content.behind(static_cast<std::uint32_t>(last_text.size()) + 1);
    return true;
}

bool ChunkReader::skip_count(Span& content, std::uint32_t element_size, std::uint32_t& count) {
    const unsigned char* const bytes = take(content, 2);
    if (!bytes)
        return false;
    count = word_at(bytes);
    content = content.behind(2);
    return expect(content.holds(std::uint64_t{count} * element_size), content.begin - 2,
                  "a list is longer than its chunk");
}

bool ChunkReader::refuse(std::uint64_t offset, const char* what) {
    if (!first_fault.what) {
        first_fault.what = what;
        first_fault.offset = offset;
    }
    return false;
}

} // namespace orvex::lib3ds
