// PNG: a signature and chunks. The pixels are one zlib stream, cut into chunks of a handy size.
//
// Every row is filtered by what stands above it, which in rendered pictures compresses within a few
// percent of the best filter for each row and costs next to nothing; level 2 of the compressor was
// the fastest in bench/orvex_kit/png_bench.cpp.

#include "orvex_kit/private/png_writer.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <new>

#include <libdeflate.h>

namespace orvex::kit {

namespace {

static_assert(std::endian::native == std::endian::little, "16-bit samples are turned around");

constexpr int compression_level = 2;
constexpr unsigned char filter_up = 2;
constexpr std::size_t largest_chunk = std::size_t{1} << 20;

struct FreeCompressor {
    void operator()(libdeflate_compressor* compressor) const {
        libdeflate_free_compressor(compressor);
    }
};

/// Bytes that are written before they are read; null where there is no memory for them.
using Bytes = std::unique_ptr<unsigned char[]>;

Bytes bytes_of(std::size_t size) {
    return Bytes(new (std::nothrow) unsigned char[size]);
}

/// A 16-bit row with the high bytes first.
void turn_around(const unsigned char* row, std::size_t size, unsigned char* to) {
    for (std::size_t i = 0; i + 1 < size; i += 2) {
        to[i] = row[i + 1];
        to[i + 1] = row[i];
    }
}

/// The difference to the row above. Plain enough to become wide instructions.
void subtract(const unsigned char* row, const unsigned char* above, std::size_t size,
              unsigned char* to) {
    for (std::size_t i = 0; i < size; ++i)
        to[i] = static_cast<unsigned char>(row[i] - above[i]);
}

/// The filtered rows, each behind the number of its filter.
/// @return null where there is no memory
Bytes filtered(const Picture& picture) {
    const std::size_t size = picture.row_bytes();
    const bool is_wide = picture.sample() == Sample::u16;
    Bytes result = bytes_of((size + 1) * static_cast<std::size_t>(picture.height()));
    Bytes rows = bytes_of(2 * size);
    if (!result || !rows)
        return nullptr;
    // Above the first row there is nothing, which counts as zeros.
    unsigned char *turned = rows.get(), *turned_above = turned + size;
    std::memset(rows.get(), 0, 2 * size);
    const unsigned char* above = turned_above;
    unsigned char* to = result.get();
    for (int y = 0; y < picture.height(); ++y, to += size + 1) {
        const unsigned char* row = picture.row_data(y);
        if (is_wide) {
            turn_around(row, size, turned);
            row = turned;
            std::swap(turned, turned_above);
        }
        to[0] = filter_up;
        subtract(row, above, size, to + 1);
        above = row;
    }
    return result;
}

/// The zlib stream of a picture's pixels.
struct Stream {
    Bytes bytes;
    std::size_t size = 0;
};

Stream compressed(const Picture& picture) {
    const std::unique_ptr<libdeflate_compressor, FreeCompressor> compressor(
        libdeflate_alloc_compressor(compression_level));
    const Bytes rows = filtered(picture);
    if (!compressor || !rows)
        return {};
    const std::size_t size = (picture.row_bytes() + 1) * static_cast<std::size_t>(picture.height());
    const std::size_t bound = libdeflate_zlib_compress_bound(compressor.get(), size);
    Stream stream{bytes_of(bound)};
    if (stream.bytes)
        stream.size =
            libdeflate_zlib_compress(compressor.get(), rows.get(), size, stream.bytes.get(), bound);
    return stream;
}

std::array<unsigned char, 4> big_endian(std::size_t value) {
    return {static_cast<unsigned char>(value >> 24), static_cast<unsigned char>(value >> 16),
            static_cast<unsigned char>(value >> 8), static_cast<unsigned char>(value)};
}

Outcome put_chunk(Output& output, const char* type, const unsigned char* bytes, std::size_t size) {
    std::array<unsigned char, 8> head{};
    std::ranges::copy(big_endian(size), head.begin());
    std::copy_n(type, 4, head.begin() + 4);
    const std::uint32_t sum = libdeflate_crc32(libdeflate_crc32(0, type, 4), bytes, size);
    Outcome outcome = output.put(head.data(), head.size());
    if (outcome && size > 0)
        outcome = output.put(bytes, size);
    return outcome ? output.put(big_endian(sum).data(), 4) : outcome;
}

Outcome put_header(Output& output, const Picture& picture) {
    constexpr std::array<unsigned char, 8> signature = {0x89, 'P',  'N',  'G',
                                                        '\r', '\n', 0x1a, '\n'};
    constexpr std::array<unsigned char, 5> color_types = {0, 0, 4, 2, 6};
    std::array<unsigned char, 13> header{};
    std::ranges::copy(big_endian(static_cast<std::size_t>(picture.width())), header.begin());
    std::ranges::copy(big_endian(static_cast<std::size_t>(picture.height())), header.begin() + 4);
    header[8] = picture.sample() == Sample::u16 ? 16 : 8;
    header[9] = color_types[static_cast<std::size_t>(picture.channels())];
    Outcome outcome = output.put(signature.data(), signature.size());
    return outcome ? put_chunk(output, "IHDR", header.data(), header.size()) : outcome;
}

Outcome put_stream(Output& output, const Stream& stream) {
    for (std::size_t at = 0; at < stream.size; at += largest_chunk) {
        const std::size_t size = std::min(largest_chunk, stream.size - at);
        if (Outcome outcome = put_chunk(output, "IDAT", stream.bytes.get() + at, size); !outcome)
            return outcome;
    }
    return put_chunk(output, "IEND", stream.bytes.get(), 0);
}

} // namespace

Outcome write_png(const Picture& picture, const std::string& path) {
    if (picture.sample() != Sample::u8 && picture.sample() != Sample::u16)
        return cant_write(path, std::string("PNG takes 8-bit and 16-bit pictures, not ") +
                                    name_of(picture.sample()));
    const Stream stream = compressed(picture);
    if (stream.size == 0)
        return no_memory_to_write(path);
    Output output(path);
    Outcome outcome = output.begin();
    if (outcome)
        outcome = put_header(output, picture);
    if (outcome)
        outcome = put_stream(output, stream);
    return outcome ? output.finish() : outcome;
}

} // namespace orvex::kit
