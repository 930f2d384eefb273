#include "batch/line_reader.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include <poll.h>
#include <unistd.h>

namespace batch {

LineReader::LineReader(int descriptor, std::size_t longest, char end, bool waits)
    : descriptor(descriptor)
    , longest(longest)
    , ending(end)
    , waits(waits) {}

LineReader::State LineReader::next() {
    for (;;) {
        const std::size_t end = buffer.find(ending, seen);
        if (end != buffer.npos)
            return give(end);
        seen = buffer.size();
        if (buffer.size() - used > longest) {
            // What is too long isn't held.
            is_skipping = true;
            used = seen;
        }
        if (is_at_end)
            return give_last();
        if (const State state = fill(); state != State::line)
            return state;
    }
}

/// Reads more. @return `line` if there may be one
LineReader::State LineReader::fill() {
    constexpr std::size_t block = 65536;
    buffer.erase(0, used);
    seen -= std::exchange(used, 0);
    pollfd readable{descriptor, POLLIN, 0};
    if (!waits && ::poll(&readable, 1, 0) == 0)
        return State::nothing_yet;
    const std::size_t size = buffer.size();
    buffer.resize(size + block);
    ssize_t length;
    do
        length = ::read(descriptor, buffer.data() + size, block);
    while (length < 0 && errno == EINTR);
    const int error = errno;
    buffer.resize(size + static_cast<std::size_t>(std::max(length, ssize_t{0})));
    if (length < 0 && !waits && error == EAGAIN)
        return State::nothing_yet;
    if (length < 0) {
        words = std::strerror(error);
        return State::failed;
    }
    is_at_end = length == 0;
    read_bytes += static_cast<std::size_t>(length);
    return State::line;
}

LineReader::State LineReader::give(std::size_t end) {
    ++count;
    has_end = end < buffer.size();
    text = std::string_view(buffer).substr(used, end - used);
    offset = read_bytes - (buffer.size() - used);
    used = seen = std::min(end + 1, buffer.size());
    const bool is_too_long = std::exchange(is_skipping, false) || text.size() > longest;
    return is_too_long ? State::too_long : State::line;
}

LineReader::State LineReader::give_last() {
    return used < buffer.size() || is_skipping ? give(buffer.size()) : State::end;
}

} // namespace batch
