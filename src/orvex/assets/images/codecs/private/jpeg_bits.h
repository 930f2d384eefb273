#pragma once

/// @file
/// The entropy coded part of a JPEG file. A coder keeps its bits in a register and its bytes in a
/// buffer that always has room for a whole block, so that a bit costs no check. The zeroes that
/// stand after bytes of 0xFF come in later, where those bytes are looked for eight at a time.

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <utility>

#include "orvex/assets/images/codecs/private/jpeg_tables.h"
#include "orvex/math/private/lanes.h"

namespace orvex::jpeg {

/// A block's quantised coefficients in row order, and which of them are not 0, lowest bit first.
struct Coefficients {
    std::int16_t values[64];
    std::uint64_t nonzero;
};

/// Bits on their way into bytes: the low `count` bits of `bits` go next.
struct BitStream {
    std::uint64_t bits;
    int count;
    unsigned char* next;

    /// Appends the low `length` bits of `code`, at most 27; the others are 0. No more than 63 bits
    /// may wait for `store_bytes`, after which fewer than 8 do: it is due after two calls.
    void jo_writeBits(unsigned int code, int length) {
        bits = (bits << length) | code;
        count += length;
    }

    /// Stores whole bytes, and rubbish behind them. Expects a bit at least.
    void store_bytes() {
        const std::uint64_t in_order = __builtin_bswap64(bits << (64 - count));
        std::memcpy(next, &in_order, sizeof(in_order));
        next += count >> 3;
        count &= 7;
    }
};

/// A value's number of bits, at least 1, and these bits: a negative value is less by 1.
struct ValueBits {
    unsigned int bits;
    int length;
};

constexpr ValueBits jo_calcBits(int value) {
    const auto magnitude = static_cast<unsigned int>(value < 0 ? -value : value);
    const auto length = static_cast<int>(std::bit_width(magnitude | 1u));
    const auto bits = static_cast<unsigned int>(value - (value < 0)) & ((1u << length) - 1u);
    return {bits, length};
}

/// The bits of all values that coefficients of 8 bit samples have, and more.
class ValueTable {
public:
    constexpr ValueTable() {
        for (int value = -offset; value < offset; ++value) {
            const ValueBits known = jo_calcBits(value);
            entries[place_of(value)] = {static_cast<std::uint16_t>(known.bits),
                                        static_cast<std::uint16_t>(known.length)};
        }
    }

    ValueBits operator[](int value) const {
        const Entry entry = entries[place_of(value)];
        return {entry.bits, entry.length};
    }

private:
    static constexpr int offset = 2048;

    struct Entry {
        std::uint16_t bits = 0;
        std::uint16_t length = 0;
    };

    static constexpr std::size_t place_of(int value) {
        return static_cast<std::size_t>(value + offset) % (2 * offset);
    }

    Entry entries[2 * offset];
};

inline constexpr ValueTable value_table;

/// Appends the code of a symbol and the bits of its value as one.
inline void write_value(BitStream& stream, const HuffmanTable& table, int zeroes, ValueBits value) {
    const HuffmanCode symbol =
        table[(static_cast<std::size_t>(zeroes) << 4) + static_cast<std::size_t>(value.length)];
    stream.jo_writeBits((static_cast<unsigned int>(symbol.code) << value.length) | value.bits,
                        symbol.length + value.length);
}

inline void write_code(BitStream& stream, HuffmanCode code) {
    stream.jo_writeBits(code.code, code.length);
}

/// A block's coefficients in zig-zag order, and which of them are not 0, but for the DC value.
struct OrderedBlock {
    alignas(16) std::int16_t values[64];
    std::uint64_t nonzero;
};

/// Takes over the few that are not 0; the others keep what their memory held.
inline void order_few(const Coefficients& block, OrderedBlock& ordered) {
    ordered.nonzero = 0;
    for (std::uint64_t bits = block.nonzero & ~std::uint64_t{1}; bits != 0; bits &= bits - 1) {
        const int index = std::countr_zero(bits);
        const int place = s_jo_ZigZag[index];
        ordered.values[place] = block.values[index];
        ordered.nonzero |= std::uint64_t{1} << place;
    }
}

/// The place in row order of each coefficient in zig-zag order.
inline constexpr std::array<unsigned char, 64> row_order = [] {
    std::array<unsigned char, 64> places{};
    for (unsigned char i = 0; i < 64; ++i)
        places[s_jo_ZigZag[i]] = i;
    return places;
}();

/// Eight coefficients of the zig-zag order, from the place `first` on.
template<std::size_t first, std::size_t... lane>
shorts8 eight_in_order(const std::int16_t* values, std::index_sequence<lane...>) {
    return shorts8{values[row_order[first + lane]]...};
}

template<std::size_t first>
std::uint64_t order_sixteen(const std::int16_t* values, std::int16_t* ordered) {
    constexpr std::make_index_sequence<8> lanes_of_eight;
    const shorts8 low = eight_in_order<first>(values, lanes_of_eight);
    const shorts8 high = eight_in_order<first + 8>(values, lanes_of_eight);
    lanes::store(ordered + first, low);
    lanes::store(ordered + first + 8, high);
    return std::uint64_t{lanes::zero_bits(low, high)} << first;
}

/// Takes all over.
inline void order_all(const Coefficients& block, OrderedBlock& ordered) {
    const std::uint64_t zero = order_sixteen<0>(block.values, ordered.values) |
                               order_sixteen<16>(block.values, ordered.values) |
                               order_sixteen<32>(block.values, ordered.values) |
                               order_sixteen<48>(block.values, ordered.values);
    ordered.nonzero = ~(zero | 1);
}

inline void order(const Coefficients& block, OrderedBlock& ordered) {
    constexpr int few = 20;
    if (std::popcount(block.nonzero) <= few)
        order_few(block, ordered);
    else
        order_all(block, ordered);
}

/// Writes the DC value as its difference.
inline void write_dc(BitStream& stream, int difference, const HuffmanTable& table) {
    if (difference == 0)
        write_code(stream, table[0]);
    else
        write_value(stream, table, 0, jo_calcBits(difference));
    stream.store_bytes();
}

/// Appends the lowest coefficient of those left, and takes it off.
inline void write_next(BitStream& stream, const OrderedBlock& block, const HuffmanTable& table,
                       std::uint64_t& left, int& last) {
    const int place = std::countr_zero(left);
    left &= left - 1;
    int zeroes = place - last - 1;
    for (; zeroes >= 16; zeroes -= 16) {
        write_code(stream, table[sixteen_zeroes]);
        stream.store_bytes();
    }
    write_value(stream, table, zeroes, value_table[block.values[place]]);
    last = place;
}

/// Writes one block.
/// @return its DC value, for the next block of the component
inline int write_block(BitStream& target, const Coefficients& block, int previous_dc,
                       const HuffmanTable& dc_table, const HuffmanTable& ac_table) {
    OrderedBlock ordered;
    order(block, ordered);

    // The copy lives in registers: the stores of bytes can't be about it.
    BitStream stream = target;
    const int dc = block.values[0];
    write_dc(stream, dc - previous_dc, dc_table);

    // Two at a time, which is what the register has room for.
    std::uint64_t left = ordered.nonzero;
    int last = 0;
    while (left != 0) {
        write_next(stream, ordered, ac_table, left, last);
        if (left != 0)
            write_next(stream, ordered, ac_table, left, last);
        stream.store_bytes();
    }
    if (last != 63) {
        write_code(stream, ac_table[end_of_block]);
        stream.store_bytes();
    }
    target = stream;
    return dc;
}

/// The bytes of a file on their way out.
class ByteBuffer {
public:
    explicit ByteBuffer(std::FILE* file)
        : file(file) {}
    ByteBuffer(const ByteBuffer&) = delete;
    ByteBuffer& operator=(const ByteBuffer&) = delete;

    /// Where entropy coded bytes are put.
    unsigned char* begin() { return bytes; }

    /// Takes the bytes before `next` if only little room is left behind it.
    /// @return where to go on
    unsigned char* make_room(unsigned char* next) {
        return bytes + sizeof(bytes) - next < room_for_pixels ? take_coded(next) : next;
    }

    /// Takes the bytes before `next`, and puts a 0 after each of 0xFF, which else would begin a
    /// marker.
    /// @return where to go on
    unsigned char* take_coded(const unsigned char* next) {
        unsigned char* to = room_for(2 * sizeof(bytes));
        const unsigned char* from = bytes;
        while (from < next) {
            const auto left = static_cast<std::size_t>(next - from);
            if (left >= sizeof(std::uint64_t) && !has_ff(from)) {
                std::memcpy(to, from, sizeof(std::uint64_t));
                from += sizeof(std::uint64_t);
                to += sizeof(std::uint64_t);
                continue;
            }
            for (std::size_t i = 0; i < std::min(left, sizeof(std::uint64_t)); ++i) {
                *to++ = *from;
                if (*from++ == 0xFF)
                    *to++ = 0;
            }
        }
        end = to;
        return bytes;
    }

    /// Room for so many bytes of any other kind, which are taken by `take_plain`.
    unsigned char* room_for(std::size_t size) {
        if (sizeof(finished) - static_cast<std::size_t>(end - finished) < size)
            flush();
        return end;
    }
    void take_plain(unsigned char* next) { end = next; }

    /// Hands what was taken to the file.
    void flush() {
        std::fwrite(finished, 1, static_cast<std::size_t>(end - finished), file);
        end = finished;
    }

private:
    /// Three blocks of 64 coefficients of at most 27 bits, and what is stored behind the last.
    static constexpr std::ptrdiff_t room_for_pixels = 3 * 64 * 27 / 8 + 16;

    static bool has_ff(const unsigned char* from) {
        std::uint64_t eight;
        std::memcpy(&eight, from, sizeof(eight));
        return ((~eight - 0x0101010101010101u) & eight & 0x8080808080808080u) != 0;
    }

    std::FILE* file;
    unsigned char bytes[1 << 13];
    unsigned char finished[1 << 15];
    unsigned char* end = finished;
};

} // namespace orvex::jpeg
