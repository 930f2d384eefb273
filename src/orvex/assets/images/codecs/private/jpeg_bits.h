#pragma once

/// @file
/// The entropy coded part of a JPEG file. A coder keeps its bits in a register and its bytes in a
/// buffer that always has room for a whole block, so that a bit costs no check.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "orvex/assets/images/codecs/private/jpeg_tables.h"

namespace orvex::jpeg {

/// A block's quantised coefficients in row order, and which of them are not 0, lowest bit first.
struct Coefficients {
    std::int16_t values[64];
    std::uint64_t nonzero;
};

/// Bits on their way into bytes: the low `count` bits of `bits`, always fewer than 32, go next.
struct BitStream {
    std::uint64_t bits;
    int count;
    unsigned char* next;

    /// Appends the low `length` bits of `code`, at most 27; the others are 0.
    void jo_writeBits(unsigned int code, int length) {
        bits = (bits << length) | code;
        count += length;
        if (count >= 32)
            store_four_bytes();
    }

    /// Stores whole bytes; after a byte of 0xFF, which else would begin a marker, a 0.
    void store_bytes() {
        while (count >= 8) {
            count -= 8;
            const auto byte = static_cast<unsigned char>(bits >> count);
            *next++ = byte;
            if (byte == 0xFF)
                *next++ = 0;
        }
    }

private:
    void store_four_bytes() {
        const auto four = static_cast<std::uint32_t>(bits >> (count - 32));
        const bool has_ff = ((~four - 0x01010101u) & four & 0x80808080u) != 0;
        if (has_ff)
            return store_bytes();
        const std::uint32_t in_order = __builtin_bswap32(four);
        std::memcpy(next, &in_order, sizeof(in_order));
        next += sizeof(in_order);
        count -= 32;
    }
};

/// A value's number of bits, at least 1, and these bits: a negative value is less by 1.
struct ValueBits {
    unsigned int bits;
    int length;
};

inline ValueBits jo_calcBits(int value) {
    const auto magnitude = static_cast<unsigned int>(value < 0 ? -value : value);
    const auto length = static_cast<int>(std::bit_width(magnitude | 1u));
    const auto bits = static_cast<unsigned int>(value - (value < 0)) & ((1u << length) - 1u);
    return {bits, length};
}

/// Writes the code of a symbol and the bits of its value as one.
inline void write_value(BitStream& stream, const HuffmanTable& table, int zeroes, ValueBits value) {
    const HuffmanCode symbol =
        table[(static_cast<std::size_t>(zeroes) << 4) + static_cast<std::size_t>(value.length)];
    stream.jo_writeBits((static_cast<unsigned int>(symbol.code) << value.length) | value.bits,
                        symbol.length + value.length);
}

inline void write_code(BitStream& stream, HuffmanCode code) {
    stream.jo_writeBits(code.code, code.length);
}

/// Writes one block.
/// @return its DC value, for the next block of the component
inline int write_block(BitStream& target, const Coefficients& block, int previous_dc,
                       const HuffmanTable& dc_table, const HuffmanTable& ac_table) {
    // The copy lives in registers: the stores of bytes can't be about it.
    BitStream stream = target;
    const int dc = block.values[0];
    if (dc == previous_dc)
        write_code(stream, dc_table[0]);
    else
        write_value(stream, dc_table, 0, jo_calcBits(dc - previous_dc));

    std::int16_t ordered[64];
    std::uint64_t left = 0;
    for (std::uint64_t bits = block.nonzero & ~std::uint64_t{1}; bits != 0; bits &= bits - 1) {
        const int index = std::countr_zero(bits);
        const int place = s_jo_ZigZag[index];
        ordered[place] = block.values[index];
        left |= std::uint64_t{1} << place;
    }

    int last = 0;
    for (; left != 0; left &= left - 1) {
        const int place = std::countr_zero(left);
        int zeroes = place - last - 1;
        for (; zeroes >= 16; zeroes -= 16)
            write_code(stream, ac_table[sixteen_zeroes]);
        write_value(stream, ac_table, zeroes, jo_calcBits(ordered[place]));
        last = place;
    }
    if (last != 63)
        write_code(stream, ac_table[end_of_block]);
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

    unsigned char* begin() { return bytes; }

    /// Hands the bytes before `next` to the file if only little room is left behind it.
    /// @return where to go on
    unsigned char* make_room(unsigned char* next) {
        return bytes + sizeof(bytes) - next < room_for_pixels ? flush(next) : next;
    }
    /// Hands the bytes before `next` to the file.
    unsigned char* flush(unsigned char* next) {
        std::fwrite(bytes, 1, static_cast<std::size_t>(next - bytes), file);
        return bytes;
    }

private:
    /// Three blocks of 64 coefficients of at most 27 bits, each byte followed by a 0.
    static constexpr std::ptrdiff_t room_for_pixels = 3 * 64 * 27 / 8 * 2 + 16;

    std::FILE* file;
    unsigned char bytes[1 << 15];
};

} // namespace orvex::jpeg
