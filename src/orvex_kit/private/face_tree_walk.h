#pragma once

/// @file
/// The way through a `FaceTree`, for a source that is compiled for one kind of processor. It must
/// not define anything that other sources define too: the linker could take this one for all.

#include "orvex_kit/private/face_tree_parts.h"

namespace orvex::kit {

namespace {

typedef float Floats __attribute__((vector_size(32)));
typedef std::int32_t Ints __attribute__((vector_size(32)));
typedef float Floats4 __attribute__((vector_size(16)));
typedef double Doubles __attribute__((vector_size(32)));
typedef std::int64_t Longs __attribute__((vector_size(32)));

/// What rounding of single precision may take from a distance, in parts of it, twice over.
constexpr float distance_slack = 1.0f / (1 << 20);

/// A bit for each lane of a mask.
[[gnu::always_inline]] inline unsigned bits_of(const Ints& mask) {
#if defined(__AVX__)
    Floats bits;
    __builtin_memcpy(&bits, &mask, sizeof bits);
    return static_cast<unsigned>(__builtin_ia32_movmskps256(bits));
#elif defined(__SSE2__)
    Floats4 halves[2];
    __builtin_memcpy(halves, &mask, sizeof halves);
    return static_cast<unsigned>(__builtin_ia32_movmskps(halves[0])) |
           static_cast<unsigned>(__builtin_ia32_movmskps(halves[1])) << 4;
#else
    unsigned bits = 0;
    for (unsigned i = 0; i < 8; ++i)
        bits |= mask[i] ? 1u << i : 0u;
    return bits;
#endif
}

[[gnu::always_inline]] inline unsigned bits_of(const Longs& mask) {
#if defined(__AVX__)
    Doubles bits;
    __builtin_memcpy(&bits, &mask, sizeof bits);
    return static_cast<unsigned>(__builtin_ia32_movmskpd256(bits));
#else
    unsigned bits = 0;
    for (unsigned i = 0; i < TreeBlock::width; ++i)
        bits |= mask[i] ? 1u << i : 0u;
    return bits;
#endif
}

/// The same number in each lane.
[[gnu::always_inline]] inline void spread(float number, Floats& lanes) {
    lanes = Floats{number, number, number, number, number, number, number, number};
}

/// What a search asks all boxes with.
struct BoxProbe {
    struct Axis {
        unsigned first, last; ///< ends of boxes, as the ray comes to them
        Floats from_first, from_last, inverse;
    };
    Axis axes[3];

    [[gnu::always_inline]] explicit BoxProbe(const TreeSearch& search) {
        for (unsigned i = 0; i < 3; ++i) {
            const bool is_upward = search.inverse[i] > 0;
            axes[i].first = is_upward ? i : 3 + i;
            axes[i].last = is_upward ? 3 + i : i;
            spread(is_upward ? search.from_low[i] : search.from_high[i], axes[i].from_first);
            spread(is_upward ? search.from_high[i] : search.from_low[i], axes[i].from_last);
            spread(search.inverse[i], axes[i].inverse);
        }
    }
};

/// How far away the ray comes into the boxes of a node.
/// @return a bit for each one that it comes into
[[gnu::always_inline]] inline unsigned enter(const TreeNode& node, const BoxProbe& probe,
                                             float limit, Floats& entry) {
    entry = Floats{};
    Floats exit;
    spread(limit, exit);
    for (const BoxProbe::Axis& axis : probe.axes) {
        Floats first, last;
        __builtin_memcpy(&first, node.ends[axis.first], sizeof first);
        __builtin_memcpy(&last, node.ends[axis.last], sizeof last);
        first = (first - axis.from_first) * axis.inverse;
        last = (last - axis.from_last) * axis.inverse;
        // What is no number, as of an end that the ray lies in, is no bound.
        entry = first > entry ? first : entry;
        exit = last < exit ? last : exit;
    }
    entry *= 1 - distance_slack;
    return bits_of(entry <= exit * (1 + distance_slack));
}

/// The numbers of four faces' corners along an axis, as `meet` sees them.
[[gnu::always_inline]] inline void load(const float* numbers, double origin, Doubles& lanes) {
    Floats4 narrow;
    __builtin_memcpy(&narrow, numbers, sizeof narrow);
    lanes = __builtin_convertvector(narrow, Doubles) - origin;
}

/// The faces of a block that `meet` would find the ray within, by the same numbers.
[[gnu::always_inline]] inline unsigned within(const TreeBlock& block, const TreeSearch& search) {
    Doubles x[3], y[3], z;
    for (unsigned i = 0; i < 3; ++i) {
        load(block.corners[i][search.depth], search.origin[search.depth], z);
        load(block.corners[i][search.across], search.origin[search.across], x[i]);
        load(block.corners[i][search.up], search.origin[search.up], y[i]);
        x[i] -= search.shear_x * z;
        y[i] -= search.shear_y * z;
    }
    const Doubles a = x[2] * y[1] - y[2] * x[1];
    const Doubles b = x[0] * y[2] - y[0] * x[2];
    const Doubles c = x[1] * y[0] - y[1] * x[0];
    const Longs is_within = ((a >= 0) & (b >= 0) & (c >= 0)) | ((a <= 0) & (b <= 0) & (c <= 0));
    return bits_of(is_within);
}

struct TreeVisit {
    float entry;
    std::uint32_t child;
};

/// Has the memory of what will be visited come.
[[gnu::always_inline]] inline void prefetch(const TreeNode* nodes, const TreeBlock* blocks,
                                            std::uint32_t child) {
    const bool is_block = (child & TreeNode::is_block) != 0;
    const char* const place =
        is_block ? reinterpret_cast<const char*>(blocks + (child & ~TreeNode::is_block))
                 : reinterpret_cast<const char*>(nodes + child);
    for (unsigned line = 0; line < 4; ++line)
        if (line < 3 || !is_block)
            __builtin_prefetch(place + line * 64);
}

[[gnu::always_inline]] inline void walk(const TreeNode* nodes, const TreeBlock* blocks,
                                        TreeSearch& search) {
    const BoxProbe probe(search);
    // No node lies deeper than its maker lets it.
    TreeVisit way[512];
    unsigned length = 0;
    // The boxes of a node come onto the way, the nearest one last.
    const auto put = [&](const TreeNode& node) {
        Floats entries;
        const unsigned begin = length;
        for (unsigned left = enter(node, probe, search.limit, entries); left != 0;
             left &= left - 1) {
            const auto lane = static_cast<unsigned>(__builtin_ctz(left));
            const TreeVisit visit{entries[lane], node.child[lane]};
            prefetch(nodes, blocks, visit.child);
            unsigned place = length++;
            for (; place > begin && way[place - 1].entry < visit.entry; --place)
                way[place] = way[place - 1];
            way[place] = visit;
        }
    };
    put(nodes[0]);
    while (length > 0) {
        const TreeVisit visit = way[--length];
        if (visit.entry > search.limit)
            continue;
        if ((visit.child & TreeNode::is_block) == 0) {
            put(nodes[visit.child]);
            continue;
        }
        const TreeBlock& block = blocks[visit.child & ~TreeNode::is_block];
        for (unsigned left = within(block, search); left != 0; left &= left - 1)
            search.ask(search, block, static_cast<unsigned>(__builtin_ctz(left)));
    }
}

} // namespace

} // namespace orvex::kit
