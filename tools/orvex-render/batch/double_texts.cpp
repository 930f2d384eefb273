// Sorts by sums: rows that memory has place for are sorted there and put aside, and in the end all
// rows are read side by side.

#include "batch/double_texts.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <queue>
#include <utility>

#include <unistd.h>

#include "batch/unnamed_file.h"

namespace batch {

namespace {

constexpr std::size_t bytes_of_sum = 10;
constexpr std::size_t most_places = std::size_t{1} << 17; // 2 MB

} // namespace

std::uint64_t DoubleTexts::Place::number() const {
    std::uint64_t result = 0;
    for (std::size_t i = bytes_of_sum; i < bytes.size(); ++i)
        result = result << 8 | bytes[i];
    return result;
}

DoubleTexts::DoubleTexts() {
    places.reserve(most_places);
}

DoubleTexts::~DoubleTexts() {
    if (file >= 0)
        ::close(file);
}

void DoubleTexts::fail() {
    if (reason.empty())
        reason = "can't write to a new file in " + folder_for_files() + ": " +
                 std::strerror(errno ? errno : EIO);
}

void DoubleTexts::add(std::string_view text, std::uint64_t number) {
    if (places.size() == most_places)
        put_aside();
    Place place;
    sums.add(text);
    const auto sum = sums.finish();
    std::copy_n(sum.begin(), bytes_of_sum, place.bytes.begin());
    for (std::size_t i = place.bytes.size(); i-- > bytes_of_sum; number >>= 8)
        place.bytes[i] = static_cast<std::uint8_t>(number);
    places.push_back(place);
}

void DoubleTexts::put_aside() {
    if (file < 0)
        file = open_unnamed_file();
    // The number stands behind the sum: the first of equal texts comes first.
    std::sort(places.begin(), places.end(),
              [](const Place& a, const Place& b) { return a.bytes < b.bytes; });
    const auto* bytes = reinterpret_cast<const char*>(places.data());
    std::size_t left = places.size() * sizeof(Place);
    while (left > 0 && reason.empty()) {
        errno = 0;
        const ssize_t length = ::write(file, bytes, left);
        if (length <= 0) {
            fail();
            break;
        }
        bytes += length;
        left -= static_cast<std::size_t>(length);
    }
    ends.push_back((ends.empty() ? 0 : ends.back()) + places.size());
    places.clear();
}

/// One sorted row of the file, of which some places are in memory.
class DoubleTexts::Row {
public:
    Row(std::uint64_t begin, std::uint64_t end, std::size_t most)
        : at(begin)
        , end(end)
        , most(most) {}

    /// The next place; null at the end, and where the file can't be read.
    const Place* next(int file) {
        if (given == block.size() && !read(file))
            return nullptr;
        return &block[given++];
    }
    bool is_at_end() const { return at == end; }

private:
    std::uint64_t at;
    std::uint64_t end;
    std::size_t most;
    std::size_t given = 0;
    std::vector<Place> block;

    bool read(int file) {
        given = 0;
        block.resize(std::min<std::uint64_t>(end - at, most));
        const std::size_t bytes = block.size() * sizeof(Place);
        errno = 0;
        if (block.empty() ||
            ::pread(file, block.data(), bytes, static_cast<off_t>(at * sizeof(Place))) !=
                static_cast<ssize_t>(bytes))
            return false;
        at += block.size();
        return true;
    }
};

void DoubleTexts::find(const std::function<void(std::uint64_t, std::uint64_t)>& tell) {
    put_aside();
    std::vector<Row> rows;
    for (std::size_t i = 0; i < ends.size(); ++i)
        rows.emplace_back(i == 0 ? 0 : ends[i - 1], ends[i],
                          std::max(most_places / ends.size(), std::size_t{16}));
    using Head = std::pair<Place, std::size_t>;
    const auto is_later = [](const Head& a, const Head& b) {
        return a.first.bytes > b.first.bytes;
    };
    std::priority_queue<Head, std::vector<Head>, decltype(is_later)> heads(is_later);
    const auto take_head = [&](std::size_t row) {
        if (const Place* const place = rows[row].next(file))
            heads.emplace(*place, row);
        else if (!rows[row].is_at_end())
            fail();
    };
    for (std::size_t i = 0; i < rows.size(); ++i)
        take_head(i);
    Place first{};
    for (bool is_first = true; !heads.empty() && reason.empty(); is_first = false) {
        const auto [place, row] = heads.top();
        heads.pop();
        const bool is_same =
            !is_first && std::equal(first.bytes.begin(), first.bytes.begin() + bytes_of_sum,
                                    place.bytes.begin());
        if (!is_same)
            first = place;
        else if (place.number() != first.number())
            tell(place.number(), first.number());
        take_head(row);
    }
}

} // namespace batch
