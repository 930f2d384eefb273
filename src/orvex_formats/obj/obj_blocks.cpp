// A piece ends behind a line that surely is the last of its statement: one that has no backslash in
// front of its end. So nobody needs to know what stands in front of a piece to read it.

#include "orvex_formats/obj/private/obj_blocks.h"

#include <algorithm>
#include <mutex>
#include <optional>

#include "orvex_formats/private/refusal.h"
#include "orvex_formats/private/workers.h"

namespace orvex::formats {

namespace {

/// Far longer than the statements of any program.
constexpr std::uint64_t longest_statement = 256u << 20;
constexpr std::uint64_t tail = 4096; ///< of a piece, where its end is looked for first

struct Piece {
    std::uint64_t begin = 0;
    std::size_t size = 0;
    ObjBlock* block = nullptr;
};

/// Cuts one piece after the other.
class Cutter {
public:
    Cutter(const InputFile& file, std::uint64_t begin, std::size_t piece)
        : file(file)
        , place(begin)
        , piece(piece) {}

    /// @return none when there are no more
    std::optional<Piece> take() {
        const std::lock_guard lock(mutex);
        if (place >= file.size())
            return std::nullopt;
        Piece next{place, 0, &blocks.emplace_back()};
        try {
            next.size = size_of_next();
        } catch (...) {
            place = file.size();
            throw;
        }
        place += next.size;
        return next;
    }

    /// Takes no further pieces.
    void stop() {
        const std::lock_guard lock(mutex);
        place = file.size();
    }

    std::deque<ObjBlock> take_blocks() { return std::move(blocks); }

private:
    std::size_t size_of_next() {
        const std::uint64_t left = file.size() - place;
        for (std::uint64_t size = piece; size < left; size *= 2) {
            // The end is near, as a rule.
            for (std::uint64_t window = std::min(size, tail);; window = size) {
                if (const std::uint64_t found = last_end(place + size - window, window); found > 0)
                    return static_cast<std::size_t>(size - window + found);
                if (window == size)
                    break;
            }
            if (size > longest_statement)
                refuse("byte %llu: a line that is longer than any that is read",
                       static_cast<unsigned long long>(place));
        }
        if (left > 2 * longest_statement)
            refuse("byte %llu: a line that is longer than any that is read",
                   static_cast<unsigned long long>(place));
        return static_cast<std::size_t>(left);
    }

    /// The number of bytes up to the last end of a statement; 0 for none.
    std::uint64_t last_end(std::uint64_t begin, std::uint64_t size) {
        text.resize(static_cast<std::size_t>(size));
        file.read(begin, text.data(), text.size());
        for (std::size_t i = text.size(); i > 2; --i) {
            const char letter = text[i - 1];
            // The CR of a CR LF is no end by itself; whether the last byte is one isn't known.
            const bool is_end =
                letter == '\n' || (letter == '\r' && i < text.size() && text[i] != '\n');
            if (!is_end)
                continue;
            const char before = text[i - 2];
            const char first = letter == '\n' && before == '\r' ? text[i - 3] : before;
            if (first != '\\')
                return i;
        }
        return 0;
    }

    std::mutex mutex;
    const InputFile& file;
    std::uint64_t place;
    const std::size_t piece;
    std::deque<ObjBlock> blocks;
    std::vector<char> text;
};

/// Empties a block, and leaves it its room.
void clear(ObjBlock& block) {
    block.positions.clear();
    block.colors.clear();
    block.texcoords.clear();
    block.normals.clear();
    block.corners.clear();
    block.faces.clear();
    block.line_corners.clear();
    block.lines.clear();
    block.point_corners.clear();
    block.points.clear();
    block.events.clear();
    block.num_lines = 0;
}

/// Reads pieces as long as there are any.
void read_pieces(const InputFile& file, Cutter& cutter) {
    std::vector<char> text;
    ObjBlock block;
    while (const std::optional<Piece> piece = cutter.take()) {
        text.resize(piece->size);
        file.read(piece->begin, text.data(), text.size());
        clear(block);
        read_obj_block({text.data(), text.size()}, block);
        // A copy has room for what there is, and no more.
        *piece->block = block;
        if (!block.mistake.empty())
            return cutter.stop();
    }
}

} // namespace

std::deque<ObjBlock> read_obj_blocks(const InputFile& file, std::uint64_t begin,
                                     const ObjCutting& cutting) {
    Cutter cutter(file, begin, cutting.piece);
    const std::uint64_t num_pieces = (file.size() - begin) / cutting.piece + 1;
    const unsigned int num_workers = cutting.num_workers > 0
                                         ? cutting.num_workers
                                         : num_workers_for(static_cast<std::size_t>(num_pieces));
    work_together(num_workers, [&](unsigned int) {
        try {
            read_pieces(file, cutter);
        } catch (...) {
            cutter.stop();
            throw;
        }
    });
    return cutter.take_blocks();
}

} // namespace orvex::formats
