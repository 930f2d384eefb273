// A hash table in a file: a text's slot is where its sum points, or one of the next.

#include "batch/sum_table.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>
#include <vector>

#include <unistd.h>

#include "batch/unnamed_file.h"

namespace batch {

namespace {

std::uint64_t capacity_for(std::uint64_t expected) {
    std::uint64_t capacity = 4096;
    while (capacity < expected * 2)
        capacity *= 2;
    return capacity;
}

} // namespace

SumTable::SumTable(std::uint64_t expected)
    : file(open_unnamed_file())
    , capacity(capacity_for(expected)) {
    static_assert(sizeof(Slot) == 16);
    // What was never written reads as zeros.
    if (file < 0 || ::ftruncate(file, static_cast<off_t>(capacity * sizeof(Slot))) != 0)
        fail();
}

SumTable::~SumTable() {
    if (file >= 0)
        ::close(file);
}

void SumTable::fail() {
    if (reason.empty())
        reason = "can't write to a new file in " + folder_for_files() + ": " +
                 std::strerror(errno ? errno : EIO);
}

bool SumTable::read(std::uint64_t at, Slot* slots, std::size_t length) {
    errno = 0;
    const auto bytes = static_cast<ssize_t>(length * sizeof(Slot));
    const bool is_read =
        ::pread(file, slots, length * sizeof(Slot), static_cast<off_t>(at * sizeof(Slot))) == bytes;
    if (!is_read)
        fail();
    return is_read;
}

void SumTable::write(std::uint64_t at, const Slot& slot) {
    errno = 0;
    if (::pwrite(file, &slot, sizeof slot, static_cast<off_t>(at * sizeof slot)) !=
        ssize_t{sizeof slot})
        fail();
}

namespace {

template<std::size_t size>
std::uint64_t whole_of(const std::array<std::uint8_t, size>& bytes) {
    std::uint64_t result = 0;
    for (std::size_t i = 0; i < std::min(size, std::size_t{8}); ++i)
        result = result << 8 | bytes[i];
    return result;
}

template<std::size_t size>
void set_whole(std::array<std::uint8_t, size>& bytes, std::uint64_t value) {
    for (std::size_t i = size; i-- > 0; value >>= 8)
        bytes[i] = static_cast<std::uint8_t>(value);
}

} // namespace

SumTable::Slot SumTable::slot_of(std::string_view text) {
    Slot slot;
    sums.add(text);
    const auto sum = sums.finish();
    std::copy_n(sum.begin(), slot.sum.size(), slot.sum.begin());
    return slot;
}

/// Looks for the slot with a sum. @return false if there is none; `at` is then a free one
bool SumTable::seek(const Slot& wanted, Slot& found, std::uint64_t& at) {
    constexpr std::size_t row = 4; // slots that are read at once
    std::array<Slot, row> slots;
    std::uint64_t begin = (whole_of(wanted.sum) & (capacity - 1)) / row * row;
    for (; reason.empty() && read(begin, slots.data(), row); begin = (begin + row) & (capacity - 1))
        for (std::size_t i = 0; i < row; ++i) {
            at = begin + i;
            found = slots[i];
            if (whole_of(found.number) == 0)
                return false;
            if (found.sum == wanted.sum)
                return true;
        }
    return false;
}

std::optional<std::uint64_t> SumTable::find(std::string_view text) {
    Slot found;
    std::uint64_t at = 0;
    if (!reason.empty() || !seek(slot_of(text), found, at) || !reason.empty())
        return std::nullopt;
    return whole_of(found.number) - 1;
}

std::optional<std::uint64_t> SumTable::put(std::string_view text, std::uint64_t number,
                                           bool is_replaced) {
    if (!reason.empty())
        return std::nullopt;
    Slot slot = slot_of(text);
    set_whole(slot.number, number + 1);
    Slot found;
    std::uint64_t at = 0;
    const bool was_there = seek(slot, found, at);
    if (!reason.empty())
        return std::nullopt;
    if (!was_there || is_replaced)
        write(at, slot);
    if (was_there)
        return whole_of(found.number) - 1;
    if (++count * 2 > capacity)
        grow();
    return std::nullopt;
}

std::optional<std::uint64_t> SumTable::note(std::string_view text, std::uint64_t number) {
    return put(text, number, false);
}

std::optional<std::uint64_t> SumTable::replace(std::string_view text, std::uint64_t number) {
    return put(text, number, true);
}

void SumTable::grow() {
    SumTable larger(capacity * 2);
    std::vector<Slot> slots(4096);
    for (std::uint64_t at = 0; at < capacity; at += slots.size()) {
        if (!read(at, slots.data(), slots.size()))
            return;
        for (const Slot& slot : slots) {
            Slot found;
            std::uint64_t place = 0;
            if (whole_of(slot.number) != 0 && !larger.seek(slot, found, place))
                larger.write(place, slot);
        }
    }
    std::swap(file, larger.file);
    std::swap(capacity, larger.capacity);
    reason = larger.reason;
}

} // namespace batch
