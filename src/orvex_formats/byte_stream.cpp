#include "orvex_formats/private/byte_stream.h"

#include <algorithm>

#include "orvex_formats/private/refusal.h"

namespace orvex::formats {

namespace {

constexpr std::size_t piece = 256u << 10;
/// Far longer than the lines of any format that is read.
constexpr std::size_t longest_line = 64u << 20;

} // namespace

ByteStream::ByteStream(const InputFile& file, std::uint64_t begin)
    : file(file)
    , window_begin(std::min(begin, file.size())) {}

void ByteStream::refill(std::size_t size) {
    if (left() < size)
        refuse("byte %llu: the file is cut off", static_cast<unsigned long long>(file.size()));
    window.erase(window.begin(), window.begin() + static_cast<std::ptrdiff_t>(next));
    window_begin += next;
    next = 0;
    while (window.size() < size)
        grow();
}

bool ByteStream::grow() {
    const std::uint64_t end = window_begin + window.size();
    const std::size_t size = static_cast<std::size_t>(
        std::min<std::uint64_t>(std::max(piece, window.size()), file.size() - end));
    if (size == 0)
        return false;
    const std::size_t before = window.size();
    window.resize(before + size);
    file.read(end, window.data() + before, size);
    return true;
}

bool ByteStream::take_line(std::string_view& line) {
    if (is_at_end())
        return false;
    ++num_lines;
    if (next == window.size())
        refill(1);
    for (std::size_t length = 0;;) {
        const auto begin = window.begin() + static_cast<std::ptrdiff_t>(next);
        const auto end =
            std::find_if(begin + static_cast<std::ptrdiff_t>(length), window.end(),
                         [](unsigned char byte) { return byte == '\n' || byte == '\r'; });
        length = static_cast<std::size_t>(end - begin);
        // A CR at the window's end may be one half of an end.
        const bool is_whole = end != window.end() && (*end == '\n' || end + 1 != window.end());
        if (!is_whole && length > longest_line)
            refuse("line %llu: longer than any that is read",
                   static_cast<unsigned long long>(num_lines));
        if (is_whole || !grow()) {
            const auto behind = window.begin() + static_cast<std::ptrdiff_t>(next + length);
            std::size_t end_size = behind == window.end() ? 0 : 1;
            if (end_size == 1 && *behind == '\r' && behind + 1 != window.end() && behind[1] == '\n')
                end_size = 2;
            line = {reinterpret_cast<const char*>(window.data()) + next, length};
            next += length + end_size;
            return true;
        }
    }
}

} // namespace orvex::formats
