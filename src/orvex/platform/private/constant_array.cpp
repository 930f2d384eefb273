#include "orvex/platform/private/constant_array.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <mutex>
#include <utility>

#include <sys/mman.h>
#include <unistd.h>

// The shared pages are a small file without a name, which ends with the last view of it: a tile.
// The array is so many views of the tile, side by side. The larger the array, the larger the tile,
// since the system counts views; and it would refuse memory to the whole process beyond its count,
// so that the engine takes a part of them only.

namespace orvex {

namespace {

// Below this, asking costs about as much as filling.
constexpr std::size_t smallest_spread = std::size_t{512} << 10;

constexpr std::size_t smallest_tile = std::size_t{64} << 10;
constexpr std::size_t largest_tile = std::size_t{2} << 20;
constexpr std::size_t tiles_of_array = 16; ///< until the largest tile is reached

/// Of about 65,000 views that the system grants to a process.
constexpr std::size_t most_views = 8192;

// --- What is spread ----------------------------------------------------------------------------

struct Spread {
    const void* block = nullptr; ///< null: a free place
    std::size_t bytes = 0;
    std::size_t num_views = 0;
    bool is_second = false; ///< another value than that which the array was made with
};

/// All spread arrays. It has no memory of its own to run out of; an array that finds no place here
/// is filled.
class SpreadTable {
public:
    /// Whether an array may be spread a second time; only the first who asks hears yes.
    bool begin_second(const void* block, std::size_t bytes) {
        const std::lock_guard guard(lock);
        Spread* const found = find(block);
        if (!found || found->bytes != bytes)
            return false;
        return !std::exchange(found->is_second, true);
    }

    /// Books an array; false where there are too many of them, or of their views.
    bool add(const Spread& added) {
        const std::lock_guard guard(lock);
        // A host may have ended an array by `delete[]`: what stands here is none any more.
        drop(find(added.block));
        Spread* const place = std::find_if(places.begin(), places.end(),
                                           [](const Spread& entry) { return !entry.block; });
        if (place == places.end() || num_views + added.num_views > most_views)
            return false;
        *place = added;
        num_views += added.num_views;
        num_used = std::max(num_used, static_cast<std::size_t>(place - places.begin()) + 1);
        return true;
    }

    /// Drops a block. @return whether it was there, and of that size
    bool remove(const void* block, std::size_t bytes) {
        const std::lock_guard guard(lock);
        Spread* const found = find(block);
        const bool was_there = found && found->bytes == bytes;
        drop(found);
        return was_there;
    }

private:
    Spread* find(const void* block) {
        for (std::size_t i = 0; i < num_used; ++i)
            if (places[i].block == block)
                return &places[i];
        return nullptr;
    }

    void drop(Spread* entry) {
        if (!entry)
            return;
        num_views -= entry->num_views;
        *entry = Spread();
    }

    std::mutex lock;
    std::array<Spread, 2048> places;
    std::size_t num_used = 0; ///< places before this one may be taken
    std::size_t num_views = 0;
};

SpreadTable& spread_table() {
    static SpreadTable table;
    return table;
}

// --- Pages -------------------------------------------------------------------------------------

std::size_t page_size() {
    static const auto size = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    return size;
}

/// The whole pages inside a block.
struct PageRun {
    std::byte* begin;
    std::byte* end;

    PageRun(void* block, std::size_t bytes) {
        const std::size_t mask = page_size() - 1;
        const auto address = reinterpret_cast<std::uintptr_t>(block);
        std::byte* const first = static_cast<std::byte*>(block);
        begin = first + (((address + mask) & ~mask) - address);
        end = begin + ((static_cast<std::size_t>(first + bytes - begin)) & ~mask);
    }

    std::size_t size() const { return static_cast<std::size_t>(end - begin); }
};

/// Lets fresh private memory take the place of whole pages.
bool map_fresh(const PageRun& run) {
    return ::mmap(run.begin, run.size(), PROT_READ | PROT_WRITE,
                  MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0) != MAP_FAILED;
}

void fill_plainly(std::byte* begin, std::byte* end, const ArrayPattern& pattern) {
    for (; end - begin >= static_cast<std::ptrdiff_t>(pattern.size()); begin += pattern.size())
        std::memcpy(begin, pattern.data(), pattern.size());
    std::memcpy(begin, pattern.data(), static_cast<std::size_t>(end - begin));
}

/// A file without a name that holds the pattern all over, while it lives.
class Tile {
public:
    Tile(std::size_t size, const ArrayPattern& pattern)
        : file(::memfd_create("orvex array", MFD_CLOEXEC)) {
        if (file >= 0 && !write_all(size, pattern))
            close();
    }
    ~Tile() { close(); }
    Tile(const Tile&) = delete;
    Tile& operator=(const Tile&) = delete;

    bool is_there() const { return file >= 0; }

    bool map_to(std::byte* place, std::size_t size) const {
        return ::mmap(place, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_FIXED, file, 0) !=
               MAP_FAILED;
    }

private:
    bool write_all(std::size_t size, const ArrayPattern& pattern) const {
        alignas(64) std::array<std::byte, 16384> piece;
        static_assert(smallest_tile % piece.size() == 0);
        fill_plainly(piece.data(), piece.data() + piece.size(), pattern);
        for (std::size_t place = 0; place < size; place += piece.size())
            if (::pwrite(file, piece.data(), piece.size(), static_cast<off_t>(place)) !=
                static_cast<ssize_t>(piece.size()))
                return false;
        return true;
    }

    void close() {
        if (file >= 0)
            ::close(file);
        file = -1;
    }

    int file;
};

/// Replaces whole pages by views of a tile. @return the first byte that has none
std::byte* map_tiles(const PageRun& run, std::size_t tile_size, const ArrayPattern& pattern) {
    const Tile tile(tile_size, pattern);
    std::byte* place = run.begin;
    while (tile.is_there() && place < run.end) {
        const std::size_t size = std::min(tile_size, static_cast<std::size_t>(run.end - place));
        if (!tile.map_to(place, size))
            break;
        place += size;
    }
    return place;
}

std::size_t tile_size_of(std::size_t bytes) {
    return std::clamp(std::bit_floor(bytes / tiles_of_array), smallest_tile, largest_tile);
}

/// Small blocks aren't, nor those whose first value would not begin with the pattern, nor memory
/// that the program has had before: filling that is faster. The middle tells of it, as the heap
/// keeps its own notes beside the ends.
bool is_worth_it(const void* block, std::size_t bytes) {
    const auto address = reinterpret_cast<std::uintptr_t>(block);
    return bytes >= smallest_spread && address % sizeof(ArrayPattern) == 0 &&
           !is_page_present(static_cast<const std::byte*>(block) + bytes / 2);
}

/// Fills a block with views of a tile, and plainly where there are none.
void lay_tiles(void* block, std::size_t bytes, const ArrayPattern& pattern) {
    const PageRun run(block, bytes);
    std::byte* const rest = map_tiles(run, tile_size_of(bytes), pattern);
    auto* const begin = static_cast<std::byte*>(block);
    fill_plainly(begin, run.begin, pattern);
    fill_plainly(rest, begin + bytes, pattern);
}

} // namespace

void spread_pattern(void* block, std::size_t bytes, const ArrayPattern& pattern) {
    auto* const begin = static_cast<std::byte*>(block);
    if (!is_worth_it(block, bytes) ||
        !spread_table().add({block, bytes, bytes / tile_size_of(bytes) + 1})) {
        advise_filling(block, bytes);
        return fill_plainly(begin, begin + bytes, pattern);
    }
    lay_tiles(block, bytes, pattern);
}

bool spread_again(void* block, std::size_t bytes, const ArrayPattern& pattern) {
    if (bytes < smallest_spread)
        return false;
    if (spread_table().begin_second(block, bytes)) {
        lay_tiles(block, bytes, pattern);
        return true;
    }
    take_for_filling(block, bytes);
    return false;
}

void take_for_filling(void* block, std::size_t bytes) {
    if (bytes < smallest_spread || !spread_table().remove(block, bytes))
        return;
    map_fresh(PageRun(block, bytes));
    advise_filling(block, bytes);
}

void end_spread(void* block, std::size_t bytes) {
    if (bytes >= smallest_spread && spread_table().remove(block, bytes))
        map_fresh(PageRun(block, bytes));
}

} // namespace orvex
