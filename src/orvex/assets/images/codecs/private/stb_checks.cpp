// What a file is asked before the decoder sees it: where the decoder would go wrong, or take what
// isn't there as read, the file is refused.

#include "orvex/assets/images/codecs/private/stb_checks.h"

#include <algorithm>
#include <cstring>

namespace orvex {

bool EncodedPicture::has(const char* text, std::size_t length, std::size_t at) const {
    return at <= size && size - at >= length && std::memcmp(bytes + at, text, length) == 0;
}

bool is_pic(const EncodedPicture& file) {
    return file.has("\x53\x80\xF6\x34", 4) && file.has("PICT", 4, 88);
}

// ----------------------------------------------------------------------------------- JPEG

namespace {

/// Goes through the segments of a JPEG file as the decoder does.
class JpegWalk {
public:
    explicit JpegWalk(const EncodedPicture& file)
        : file(file) {}

    /// Moves behind the next marker.
    /// @return its code; 0 at the end of the file
    int next_marker() {
        while (place < file.size) {
            while (place < file.size && file.bytes[place] != 0xFF)
                ++place;
            while (place < file.size && file.bytes[place] == 0xFF)
                ++place;
            if (place == file.size)
                break;
            const int code = file.bytes[place++];
            const bool is_data = code == 0 || (code >= 0xD0 && code <= 0xD7);
            if (!is_data)
                return code;
        }
        return 0;
    }

    /// Moves behind the segment that begins here, if it is all there.
    void skip_segment() { place = segment_end(); }

    /// Moves behind a segment of Huffman tables.
    /// @return whether none of them has more codes than symbols
    bool check_tables() {
        const std::size_t end = segment_end();
        std::size_t table = place + 2;
        while (table < end) {
            const std::size_t counts_end = std::min(table + 17, file.size);
            std::size_t codes = 0;
            for (std::size_t count = table + 1; count < counts_end; ++count)
                codes += file.bytes[count];
            if (codes > 256)
                return false;
            table += 17 + codes;
        }
        place = std::min(table, file.size);
        return true;
    }

private:
    std::size_t segment_end() const {
        if (file.size - place < 2)
            return file.size;
        const auto length =
            static_cast<std::size_t>(file.bytes[place] << 8 | file.bytes[place + 1]);
        return std::min(file.size, place + std::max<std::size_t>(length, 2));
    }

    const EncodedPicture& file;
    std::size_t place = 0;
};

} // namespace

bool is_sound_jpeg(const EncodedPicture& file) {
    constexpr int start_of_image = 0xD8, huffman_tables = 0xC4, start_of_scan = 0xDA;
    constexpr int most_scans = 1000;
    if (file.size < 2 || file.bytes[0] != 0xFF)
        return true;
    JpegWalk walk(file);
    if (walk.next_marker() != start_of_image)
        return true;
    int scans = 0;
    while (const int marker = walk.next_marker()) {
        if (marker == huffman_tables) {
            if (!walk.check_tables())
                return false;
        } else if (marker == start_of_scan) {
            if (++scans > most_scans)
                return false;
            walk.skip_segment();
        } else if (marker >= 0xC0 && marker != 0xD8 && marker != 0xD9) {
            walk.skip_segment();
        }
    }
    return true;
}

// ------------------------------------------------------------------------------------ HDR

namespace {

/// The start of the line behind the one at `from`.
std::size_t next_line(const EncodedPicture& file, std::size_t from) {
    while (from < file.size && file.bytes[from] != '\n')
        ++from;
    return std::min(from + 1, file.size);
}

/// Where the pixels begin: behind the line that follows the first empty one.
std::size_t hdr_pixels(const EncodedPicture& file) {
    std::size_t line = next_line(file, 0);
    while (line < file.size && file.bytes[line] != '\n' && file.bytes[line] != '\0')
        line = next_line(file, line);
    return next_line(file, next_line(file, line));
}

/// Passes over one scan line of run lengths: four channels of `width` bytes each.
/// @return whether it is there in full
bool skip_hdr_line(const EncodedPicture& file, std::size_t& at, int width) {
    at += 4;
    for (int channel = 0; channel < 4; ++channel) {
        for (int left = width; left > 0;) {
            if (at >= file.size)
                return false;
            const int count = file.bytes[at];
            const bool run = count > 128;
            at += run ? 2 : 1 + static_cast<std::size_t>(count);
            left -= run ? count - 128 : count;
            if (left < 0)
                return false;
        }
    }
    return at <= file.size;
}

} // namespace

bool is_hdr(const EncodedPicture& file) {
    return file.has("#?RADIANCE\n", 11) || file.has("#?RGBE\n", 7);
}

bool is_whole_hdr(const EncodedPicture& file, int width, int height) {
    std::size_t at = hdr_pixels(file);
    const auto pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    if (width < 8 || width >= 32768)
        return (file.size - at) / 4 >= pixels;
    for (int row = 0; row < height; ++row) {
        if (file.size - at < 4)
            return false;
        const unsigned char* start = file.bytes + at;
        const bool runs = start[0] == 2 && start[1] == 2 && start[2] < 128;
        // From the first line without runs on, what follows is a whole picture without any.
        if (!runs)
            return (file.size - at) / 4 >= pixels;
        if (!skip_hdr_line(file, at, width))
            return false;
    }
    return true;
}

} // namespace orvex
