#pragma once

/// @file
/// Compressed files, put together in memory.

#include <cstdint>
#include <string>
#include <vector>

#include <zlib.h>

#include "tests/orvex_formats/bytes.h"

namespace orvex_test {

/// @param window_bits  as zlib has them: 31 makes gzip, -15 bytes without a head
inline std::string deflated(const std::string& text, int window_bits) {
    z_stream stream{};
    deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, window_bits, 8, Z_DEFAULT_STRATEGY);
    std::string packed(deflateBound(&stream, text.size()), '\0');
    std::vector<unsigned char> in(text.begin(), text.end()), out(packed.size());
    stream.next_in = in.data();
    stream.avail_in = static_cast<uInt>(in.size());
    stream.next_out = out.data();
    stream.avail_out = static_cast<uInt>(out.size());
    deflate(&stream, Z_FINISH);
    packed.assign(out.begin(), out.begin() + static_cast<std::ptrdiff_t>(stream.total_out));
    deflateEnd(&stream);
    return packed;
}

inline std::string gzip(const std::string& text) {
    return deflated(text, 31);
}

/// A zip archive, and what of it may be a lie.
class Zip {
public:
    struct File {
        std::string name, text;
        bool is_deflated = true;
        std::int64_t size_lie = 0;   ///< added to the size
        std::int64_t offset_lie = 0; ///< added to the place
        std::uint16_t flags = 0;
        std::uint16_t method_lie = 0; ///< 0: none
        std::uint32_t sum_lie = 0;
        bool is_wide = false; ///< with numbers of 64 bits
    };

    Zip& add(const std::string& name, const std::string& text) {
        File file;
        file.name = name;
        file.text = text;
        return add(file);
    }
    Zip& add(const File& added) {
        files.push_back(added);
        return *this;
    }

    /// Its directory is told of by numbers of 64 bits, too.
    Zip& widen() {
        has_wide_end = true;
        return *this;
    }

    std::string text() const {
        Bytes body, directory;
        for (const File& one : files)
            write(one, body, directory);
        const std::uint64_t begin = body.bytes.size(), size = directory.bytes.size();
        body.bytes.insert(body.bytes.end(), directory.bytes.begin(), directory.bytes.end());
        if (has_wide_end)
            write_wide_end(begin, size, body);
        const auto count = static_cast<std::uint16_t>(has_wide_end ? UINT16_MAX : files.size());
        body.add_number<std::uint32_t>(0x06054b50).add_number<std::uint32_t>(0);
        body.add_number(count).add_number(count);
        body.add_number(has_wide_end ? UINT32_MAX : static_cast<std::uint32_t>(size));
        body.add_number(has_wide_end ? UINT32_MAX : static_cast<std::uint32_t>(begin));
        body.add_number<std::uint16_t>(0);
        return {body.bytes.begin(), body.bytes.end()};
    }

    /// How far before its end an archive says where its wide end is.
    static constexpr std::size_t wide_place = 22 + 20 - 8;

private:
    void write_wide_end(std::uint64_t begin, std::uint64_t size, Bytes& body) const {
        const std::uint64_t place = body.bytes.size(), count = files.size();
        body.add_number<std::uint32_t>(0x06064b50).add_number<std::uint64_t>(44);
        body.add_number<std::uint32_t>(45 | 45 << 16).add_number<std::uint64_t>(0);
        body.add_number(count).add_number(count).add_number(size).add_number(begin);
        body.add_number<std::uint32_t>(0x07064b50).add_number<std::uint32_t>(0);
        body.add_number(place).add_number<std::uint32_t>(1);
    }

    static void write(const File& one, Bytes& body, Bytes& directory) {
        const std::string packed = one.is_deflated ? deflated(one.text, -15) : one.text;
        const std::vector<unsigned char> plain(one.text.begin(), one.text.end());
        const auto sum =
            static_cast<std::uint32_t>(crc32_z(0, plain.data(), plain.size())) + one.sum_lie;
        const std::uint16_t method =
            one.method_lie != 0 ? one.method_lie : std::uint16_t(one.is_deflated ? 8 : 0);
        const auto size =
            static_cast<std::uint64_t>(static_cast<std::int64_t>(one.text.size()) + one.size_lie);
        const auto offset = static_cast<std::uint64_t>(
            static_cast<std::int64_t>(body.bytes.size()) + one.offset_lie);
        const auto head = [&](Bytes& to, std::uint32_t magic, bool is_wide) {
            to.add_number(magic);
            if (magic == 0x02014b50)
                to.add_number<std::uint16_t>(45);
            to.add_number<std::uint16_t>(45).add_number(one.flags).add_number(method);
            to.add_number<std::uint32_t>(0).add_number(sum);
            to.add_number(is_wide ? UINT32_MAX : static_cast<std::uint32_t>(packed.size()));
            to.add_number(is_wide ? UINT32_MAX : static_cast<std::uint32_t>(size));
            to.add_number(static_cast<std::uint16_t>(one.name.size()));
        };
        head(body, 0x04034b50, false);
        body.add_number<std::uint16_t>(0).add(one.name).add(packed);
        head(directory, 0x02014b50, one.is_wide);
        directory.add_number<std::uint16_t>(one.is_wide ? 28 : 0).add_number<std::uint16_t>(0);
        directory.add_number<std::uint16_t>(0).add_number<std::uint16_t>(0);
        directory.add_number<std::uint32_t>(0);
        directory.add_number(one.is_wide ? UINT32_MAX : static_cast<std::uint32_t>(offset));
        directory.add(one.name);
        if (one.is_wide) {
            directory.add_number<std::uint16_t>(1).add_number<std::uint16_t>(24);
            directory.add_number(size).add_number<std::uint64_t>(packed.size()).add_number(offset);
        }
    }

    std::vector<File> files;
    bool has_wide_end = false;
};

} // namespace orvex_test
