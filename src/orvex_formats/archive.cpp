#include "orvex_formats/private/archive.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

#include <zlib.h>

#include "orvex_formats/private/byte_stream.h"
#include "orvex_formats/private/refusal.h"

namespace orvex::formats {

namespace {

constexpr std::size_t piece_size = 64u << 10;

unsigned long long shown(std::uint64_t number) {
    return number;
}

// --- Inflating

/// What zlib keeps, ended with its owner.
class Inflater {
public:
    /// @param window_bits  15, plus 16 for gzip, or less than 0 for bytes without a head
    explicit Inflater(int window_bits) {
        if (inflateInit2(&stream, window_bits) != Z_OK)
            throw std::bad_alloc();
    }
    ~Inflater() { inflateEnd(&stream); }
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;

    z_stream stream{};
};

/// Inflates what stands between two places of a file into memory that grows with it.
class Inflation {
public:
    Inflation(const InputFile& file, std::uint64_t begin, std::uint64_t end, std::uint64_t most,
              int window_bits)
        : file(file)
        , next(begin)
        , end(end)
        , most(most)
        , inflater(window_bits) {}

    /// Goes on to the end of a stream. @throw Refusal
    void run() {
        for (int state = Z_OK; state != Z_STREAM_END;) {
            if (stream().avail_in == 0)
                take_piece();
            make_room();
            const std::size_t room = stream().avail_out;
            state = inflate(&stream(), Z_NO_FLUSH);
            size += room - stream().avail_out;
            if (state == Z_MEM_ERROR)
                throw std::bad_alloc();
            if (state != Z_OK && state != Z_STREAM_END && state != Z_BUF_ERROR)
                refuse("byte %llu: the compressed data is broken", shown(place()));
            if (size > most)
                refuse("byte %llu: the compressed data grows beyond %llu bytes, more than any "
                       "model",
                       shown(place()), shown(most));
        }
    }

    void begin_next() { inflateReset(&stream()); }

    /// Of the first byte that wasn't inflated.
    std::uint64_t place() const { return next - inflater.stream.avail_in; }

    std::vector<unsigned char> take_bytes() {
        bytes.resize(size);
        return std::move(bytes);
    }

private:
    z_stream& stream() { return inflater.stream; }

    void take_piece() {
        piece.resize(static_cast<std::size_t>(std::min<std::uint64_t>(piece_size, end - next)));
        if (piece.empty())
            refuse("byte %llu: the compressed data is cut off", shown(end));
        file.read(next, piece.data(), piece.size());
        next += piece.size();
        stream().next_in = piece.data();
        stream().avail_in = static_cast<uInt>(piece.size());
    }

    /// One byte beyond the most shows that there are more.
    void make_room() {
        if (size == bytes.size())
            bytes.resize(static_cast<std::size_t>(std::min<std::uint64_t>(
                std::max<std::uint64_t>(piece_size, size + size / 2), most + 1)));
        stream().next_out = bytes.data() + size;
        stream().avail_out =
            static_cast<uInt>(std::min<std::uint64_t>(bytes.size() - size, std::uint64_t{1} << 30));
    }

    const InputFile& file;
    std::uint64_t next, end, most;
    Inflater inflater;
    std::vector<unsigned char> piece, bytes;
    std::uint64_t size = 0; ///< of what was inflated
};

bool begins_with(const InputFile& file, std::uint64_t place, const char* magic, std::size_t size) {
    unsigned char bytes[8] = {};
    if (place > file.size() || file.size() - place < size)
        return false;
    file.read(place, bytes, size);
    return std::memcmp(bytes, magic, size) == 0;
}

bool is_gzip_at(const InputFile& file, std::uint64_t place) {
    return begins_with(file, place, "\x1f\x8b\x08", 3);
}

} // namespace

bool is_gzip(const InputFile& file) {
    return is_gzip_at(file, 0);
}

std::vector<unsigned char> gunzip(const InputFile& file, std::uint64_t& num_behind) {
    Inflation inflation(file, 0, file.size(), most_inflated(file.size()), 15 + 16);
    inflation.run();
    while (is_gzip_at(file, inflation.place())) {
        inflation.begin_next();
        inflation.run();
    }
    num_behind = file.size() - inflation.place();
    return inflation.take_bytes();
}

// ------------------------------------------------------------------------------- zip

namespace {

constexpr std::uint64_t local_size = 30, central_size = 46, end_size = 22;
constexpr std::uint64_t wide_end_size = 56, locator_size = 20;
constexpr std::uint32_t all_bits = UINT32_MAX;
constexpr std::size_t most_entries = 65536;

std::uint32_t word(const unsigned char* bytes) {
    return number_at<std::uint32_t>(bytes);
}

std::uint32_t half(const unsigned char* bytes) {
    return number_at<std::uint16_t>(bytes);
}

std::uint64_t wide(const unsigned char* bytes) {
    return number_at<std::uint64_t>(bytes);
}

std::vector<unsigned char> bytes_at(const InputFile& file, std::uint64_t place,
                                    std::uint64_t size) {
    if (place > file.size() || size > file.size() - place)
        refuse("byte %llu: the archive's directory leads beyond its end", shown(place));
    std::vector<unsigned char> bytes(static_cast<std::size_t>(size));
    file.read(place, bytes.data(), bytes.size());
    return bytes;
}

/// Numbers that don't fit stand in an extra field, those alone and in this order.
void take_wide_numbers(ZipArchive::Entry& entry, const unsigned char* extra, std::size_t size) {
    while (size >= 4) {
        const std::size_t length = half(extra + 2);
        if (length > size - 4)
            return;
        if (half(extra) == 1) {
            const unsigned char* next = extra + 4;
            const unsigned char* const end = next + length;
            for (std::uint64_t* number : {&entry.size, &entry.packed_size, &entry.offset})
                if (*number == all_bits && end - next >= 8) {
                    *number = wide(next);
                    next += 8;
                }
        }
        extra += 4 + length;
        size -= 4 + length;
    }
}

bool are_alike(const std::string& a, const std::string& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char one, char other) {
        const auto lower = [](char letter) {
            return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
        };
        return lower(one) == lower(other);
    });
}

} // namespace

bool is_zip(const InputFile& file) {
    return begins_with(file, 0, "PK\x03\x04", 4);
}

ZipArchive::ZipArchive(const InputFile& file)
    : file(file) {
    const Directory directory = find_directory();
    read_directory(directory);
    check_overlaps(directory.begin);
}

/// The end of an archive says where its directory is; a comment may stand behind it.
ZipArchive::Directory ZipArchive::find_directory() const {
    const std::uint64_t size = std::min<std::uint64_t>(file.size(), end_size + UINT16_MAX);
    const std::vector<unsigned char> tail = bytes_at(file, file.size() - size, size);
    for (std::size_t place = tail.size(); place-- > 0;) {
        const unsigned char* const end = tail.data() + place;
        if (tail.size() - place < end_size || word(end) != 0x06054b50)
            continue;
        const std::uint64_t at = file.size() - size + place;
        if (half(end + 10) == UINT16_MAX || word(end + 12) == all_bits ||
            word(end + 16) == all_bits)
            return wide_directory(at);
        return {word(end + 16), word(end + 12), half(end + 10)};
    }
    refuse("byte %llu: the archive has no directory", shown(file.size()));
}

ZipArchive::Directory ZipArchive::wide_directory(std::uint64_t end) const {
    if (end < locator_size || word(bytes_at(file, end - locator_size, 4).data()) != 0x07064b50)
        refuse("byte %llu: the archive has no directory", shown(end));
    const std::uint64_t place = wide(bytes_at(file, end - locator_size + 8, 8).data());
    const std::vector<unsigned char> bytes = bytes_at(file, place, wide_end_size);
    if (word(bytes.data()) != 0x06064b50)
        refuse("byte %llu: the archive has no directory", shown(place));
    return {wide(bytes.data() + 48), wide(bytes.data() + 40), wide(bytes.data() + 32)};
}

void ZipArchive::read_directory(const Directory& directory) {
    if (directory.count > most_entries || directory.count > directory.size / central_size)
        refuse("byte %llu: the archive says that it has %llu files, and is too short for them",
               shown(directory.begin), shown(directory.count));
    const std::vector<unsigned char> bytes = bytes_at(file, directory.begin, directory.size);
    std::size_t place = 0;
    for (std::uint64_t i = 0; i < directory.count; ++i) {
        const unsigned char* const head = bytes.data() + place;
        const std::size_t left = bytes.size() - place;
        const std::size_t name_size = left < central_size ? 0 : half(head + 28);
        const std::size_t extra_size = left < central_size ? 0 : half(head + 30);
        const std::size_t comment_size = left < central_size ? 0 : half(head + 32);
        if (left < central_size || word(head) != 0x02014b50 ||
            left - central_size < name_size + extra_size + comment_size)
            refuse("byte %llu: the archive's directory is broken", shown(directory.begin + place));
        Entry entry;
        entry.is_encrypted = (half(head + 8) & 1u) != 0;
        entry.method = half(head + 10);
        entry.sum = word(head + 16);
        entry.packed_size = word(head + 20);
        entry.size = word(head + 24);
        entry.offset = word(head + 42);
        entry.name.assign(reinterpret_cast<const char*>(head + central_size), name_size);
        take_wide_numbers(entry, head + central_size + name_size, extra_size);
        files.push_back(std::move(entry));
        place += central_size + name_size + extra_size + comment_size;
    }
}

/// Bombs of zip let many files share the same bytes.
void ZipArchive::check_overlaps(std::uint64_t end) const {
    std::vector<const Entry*> sorted;
    for (const Entry& entry : files)
        sorted.push_back(&entry);
    std::sort(sorted.begin(), sorted.end(),
              [](const Entry* a, const Entry* b) { return a->offset < b->offset; });
    for (std::size_t i = 0; i < sorted.size(); ++i) {
        const Entry& entry = *sorted[i];
        const std::uint64_t next = i + 1 < sorted.size() ? sorted[i + 1]->offset : end;
        const std::uint64_t least = local_size + entry.name.size();
        if (entry.offset > end || next - entry.offset < least || next < entry.offset ||
            entry.packed_size > next - entry.offset - least)
            refuse("byte %llu: files of the archive overlap", shown(entry.offset));
    }
}

const ZipArchive::Entry* ZipArchive::find(const std::string& name) const {
    for (const Entry& entry : files)
        if (are_alike(entry.name, name))
            return &entry;
    return nullptr;
}

std::uint64_t ZipArchive::data_begin(const Entry& entry) const {
    const std::vector<unsigned char> head = bytes_at(file, entry.offset, local_size);
    if (word(head.data()) != 0x04034b50)
        refuse("byte %llu: no file of the archive begins where its directory says",
               shown(entry.offset));
    const std::uint64_t begin =
        entry.offset + local_size + half(head.data() + 26) + half(head.data() + 28);
    if (begin > file.size() || entry.packed_size > file.size() - begin)
        refuse("byte %llu: a file of the archive is cut off", shown(begin));
    return begin;
}

std::vector<unsigned char> ZipArchive::read(const Entry& entry) const {
    const std::string name = in_words(entry.name);
    if (entry.is_encrypted)
        refuse("byte %llu: %s is encrypted", shown(entry.offset), name.c_str());
    if (entry.method != 0 && entry.method != 8)
        refuse("byte %llu: %s is compressed by a method that isn't read: %u", shown(entry.offset),
               name.c_str(), entry.method);
    const std::uint64_t most = most_inflated(entry.packed_size);
    if (entry.size > most)
        refuse("byte %llu: %s grows beyond %llu bytes, more than any model", shown(entry.offset),
               name.c_str(), shown(most));
    const std::uint64_t begin = data_begin(entry);
    std::vector<unsigned char> bytes;
    if (entry.method == 0)
        bytes = bytes_at(file, begin, entry.packed_size);
    else {
        Inflation inflation(file, begin, begin + entry.packed_size, entry.size, -15);
        inflation.run();
        bytes = inflation.take_bytes();
    }
    if (bytes.size() != entry.size ||
        crc32_z(crc32_z(0, nullptr, 0), bytes.data(), bytes.size()) != entry.sum)
        refuse("byte %llu: %s isn't what the archive says", shown(entry.offset), name.c_str());
    return bytes;
}

} // namespace orvex::formats
