// Faces are parted where rays will have the least to do: between bins along an axis, so that the
// halves' surfaces, each weighed by the blocks that its faces fill, are smallest in sum. A node
// opens its largest children until it has eight. What lies high in the tree is parted by one
// thread; the branches below are grown by as many as there are processors.

#include "orvex_kit/private/face_tree_builder.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <exception>
#include <limits>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>

namespace orvex::kit {

namespace {

/// Three numbers and a spare one, which is never looked at.
typedef float Lanes __attribute__((vector_size(16)));
typedef std::int32_t LaneBits __attribute__((vector_size(16)));

constexpr float infinite = std::numeric_limits<float>::infinity();
constexpr float not_a_number = std::numeric_limits<float>::quiet_NaN();
constexpr std::size_t num_bins = 16;
/// Below so many nodes faces are halved by their number, so that no tree is deeper than a way.
constexpr unsigned deepest_by_surface = 24;

struct Box {
    Lanes low{infinite, infinite, infinite, 0};
    Lanes high{-infinite, -infinite, -infinite, 0};

    void add(const Lanes& other_low, const Lanes& other_high) {
        low = other_low < low ? other_low : low;
        high = other_high > high ? other_high : high;
    }
    void add(const Box& other) { add(other.low, other.high); }
    /// Half of its surface.
    float surface() const {
        const Lanes size = high - low;
        return size[0] * (size[1] + size[2]) + size[1] * size[2];
    }
};

/// The box of a face. The spare lanes hold its number.
struct Item {
    float low[3];
    std::uint32_t face;
    float high[3];
    std::uint32_t spare;

    static Lanes lanes(const float* numbers) {
        constexpr LaneBits without_spare{-1, -1, -1, 0};
        LaneBits bits;
        std::memcpy(&bits, numbers, sizeof bits);
        bits &= without_spare;
        Lanes result;
        std::memcpy(&result, &bits, sizeof result);
        return result;
    }
    Box box() const { return {lanes(low), lanes(high)}; }
};

/// Half of the middle of a box: nothing gets too large by it, nor by a difference of two.
Lanes center_of(const Box& box) {
    return box.low * 0.25f + box.high * 0.25f;
}

/// Items in a row.
struct Piece {
    std::size_t begin = 0;
    std::size_t count = 0;
    Box box;
    Box centers;

    void add(const Box& item) {
        ++count;
        box.add(item);
        const Lanes center = center_of(item);
        centers.add(center, center);
    }
};

/// Where a piece is parted.
struct Cut {
    float cost = infinite; ///< infinite: it can't be parted so
    unsigned axis = 0;
    std::size_t bin = 0; ///< the first one of the second half
};

/// From centers to bins, on all axes at once.
struct Scale {
    Lanes begin, factor;

    explicit Scale(const Box& centers)
        : begin(centers.low) {
        const Lanes size = centers.high - centers.low;
        constexpr float least = 1e-30f;
        for (unsigned axis = 0; axis < 3; ++axis)
            factor[axis] =
                size[axis] > least ? static_cast<float>(num_bins) * 0.99999f / size[axis] : 0.0f;
        factor[3] = 0.0f;
    }
    LaneBits bins_of(const Lanes& center) const {
        return __builtin_convertvector((center - begin) * factor, LaneBits);
    }
};

struct Bin {
    Box box;
    std::size_t count = 0;
};

float cost_of(const Box& box, std::size_t count) {
    const std::size_t num_blocks = (count + TreeBlock::width - 1) / TreeBlock::width;
    return box.surface() * static_cast<float>(num_blocks);
}

/// The best cut between the bins of one axis.
void look_for_cut(const std::array<Bin, num_bins>& bins, unsigned axis, Cut& best) {
    std::array<float, num_bins> behind{};
    Box box;
    std::size_t count = 0;
    for (std::size_t i = num_bins; i-- > 1;) {
        box.add(bins[i].box);
        count += bins[i].count;
        behind[i] = count > 0 ? cost_of(box, count) : infinite;
    }
    box = {};
    count = 0;
    for (std::size_t i = 1; i < num_bins; ++i) {
        box.add(bins[i - 1].box);
        count += bins[i - 1].count;
        const float cost = count > 0 ? cost_of(box, count) + behind[i] : infinite;
        if (cost < best.cost)
            best = {cost, axis, i};
    }
}

Cut best_cut(const Item* items, const Piece& piece, const Scale& scale) {
    std::array<std::array<Bin, num_bins>, 3> bins;
    for (std::size_t i = piece.begin; i < piece.begin + piece.count; ++i) {
        const Box box = items[i].box();
        const LaneBits places = scale.bins_of(center_of(box));
        for (unsigned axis = 0; axis < 3; ++axis) {
            Bin& bin = bins[axis][static_cast<std::size_t>(places[axis])];
            bin.box.add(box);
            ++bin.count;
        }
    }
    Cut best;
    for (unsigned axis = 0; axis < 3; ++axis)
        if (scale.factor[axis] > 0)
            look_for_cut(bins[axis], axis, best);
    return best;
}

Piece piece_of(const Item* items, std::size_t begin, std::size_t end) {
    Piece piece{begin, 0, {}, {}};
    for (std::size_t i = begin; i < end; ++i)
        piece.add(items[i].box());
    return piece;
}

void halve(Item* items, Piece& first, Piece& second) {
    const Lanes size = first.centers.high - first.centers.low;
    unsigned axis = size[1] > size[0] ? 1 : 0;
    axis = size[2] > size[axis] ? 2 : axis;
    const std::size_t begin = first.begin, end = begin + first.count;
    const std::size_t middle = begin + first.count / 2;
    std::nth_element(items + begin, items + middle, items + end,
                     [axis](const Item& a, const Item& b) {
                         return center_of(a.box())[axis] < center_of(b.box())[axis];
                     });
    first = piece_of(items, begin, middle);
    second = piece_of(items, middle, end);
}

/// Parts a piece of two items and more. The first half takes the piece's place.
void part(Item* items, Piece& first, Piece& second, bool by_surface) {
    const Scale scale(first.centers);
    const Cut cut = by_surface ? best_cut(items, first, scale) : Cut{};
    if (!(cut.cost < infinite))
        return halve(items, first, second);
    Piece before{first.begin, 0, {}, {}}, behind;
    std::size_t begin = first.begin, end = first.begin + first.count;
    while (begin < end) {
        const Box box = items[begin].box();
        const auto bin = static_cast<std::size_t>(scale.bins_of(center_of(box))[cut.axis]);
        if (bin < cut.bin) {
            before.add(box);
            ++begin;
        } else {
            behind.add(box);
            std::swap(items[begin], items[--end]);
        }
    }
    behind.begin = end;
    first = before;
    second = behind;
}

// ------------------------------------------------------------------------------- branches

/// A child that another thread grows.
struct Bud {
    std::uint32_t node = 0; ///< of the trunk
    unsigned lane = 0;
    unsigned depth = 0;
    Piece piece;
};

/// A part of the tree, whose nodes and blocks are counted from its own first ones.
class Branch {
public:
    Branch(const std::vector<TreeFace>& faces, Item* items, std::size_t largest_bud)
        : faces(faces)
        , items(items)
        , largest_bud(largest_bud) {}

    /// Adds the node of a piece. @return its place
    std::uint32_t grow(const Piece& piece, unsigned depth);

    FaceTreeParts parts;
    std::vector<Bud> buds; ///< pieces that were left out, no larger than was wanted

private:
    const std::vector<TreeFace>& faces;
    Item* items;
    std::size_t largest_bud; ///< 0: there are none

    unsigned open(std::array<Piece, TreeNode::width>& children, unsigned depth) const;
    std::uint32_t add_block(const Piece& piece);
};

/// Parts the first child, and then the largest ones. @return how many there are
unsigned Branch::open(std::array<Piece, TreeNode::width>& children, unsigned depth) const {
    unsigned count = 1;
    while (count < TreeNode::width) {
        Piece* largest = nullptr;
        for (unsigned i = 0; i < count; ++i)
            if (children[i].count > TreeBlock::width &&
                (!largest || children[i].box.surface() > largest->box.surface()))
                largest = &children[i];
        if (!largest)
            break;
        part(items, *largest, children[count++], depth < deepest_by_surface);
    }
    return count;
}

std::uint32_t Branch::add_block(const Piece& piece) {
    TreeBlock& block = parts.blocks.emplace_back();
    for (unsigned lane = 0; lane < TreeBlock::width; ++lane) {
        const bool is_there = lane < piece.count;
        const TreeFace face = is_there ? faces[items[piece.begin + lane].face] : TreeFace{{}, 0, 0};
        for (std::size_t i = 0; i < 3; ++i)
            for (std::size_t axis = 0; axis < 3; ++axis)
                block.corners[i][axis][lane] = is_there ? face.corners[i][axis] : not_a_number;
        block.mesh[lane] = face.mesh;
        block.face[lane] = face.face;
    }
    return TreeNode::is_block | static_cast<std::uint32_t>(parts.blocks.size() - 1);
}

std::uint32_t Branch::grow(const Piece& piece, unsigned depth) {
    std::array<Piece, TreeNode::width> children;
    children[0] = piece;
    const unsigned count = open(children, depth);
    const auto place = static_cast<std::uint32_t>(parts.nodes.size());
    TreeNode& node = parts.nodes.emplace_back();
    for (unsigned lane = 0; lane < TreeNode::width; ++lane)
        for (unsigned axis = 0; axis < 3; ++axis) {
            node.ends[axis][lane] = children[lane].box.low[axis];
            node.ends[3 + axis][lane] = children[lane].box.high[axis];
        }
    for (unsigned lane = 0; lane < count; ++lane) {
        const Piece& child = children[lane];
        std::uint32_t where = 0;
        if (child.count <= TreeBlock::width)
            where = add_block(child);
        else if (child.count <= largest_bud)
            buds.push_back({place, lane, depth + 1, child});
        else
            where = grow(child, depth + 1);
        parts.nodes[place].child[lane] = where; // growing may have moved them
    }
    return place;
}

// ------------------------------------------------------------------------------- threads

/// Runs the same function on several threads, this one among them, and waits for all. One that
/// can't be started leaves its share to the others.
/// @throw what the first one threw
template<class Work>
void work_together(std::size_t num_threads, const Work& work) {
    std::mutex mutex;
    std::exception_ptr first;
    const auto run = [&] {
        try {
            work();
        } catch (...) {
            const std::lock_guard lock(mutex);
            first = first ? first : std::current_exception();
        }
    };
    std::array<std::thread, 16> threads;
    try {
        for (std::size_t i = 1; i < std::min(num_threads, threads.size()); ++i)
            threads[i] = std::thread(run);
    } catch (const std::system_error&) {
    } catch (const std::bad_alloc&) {
    }
    run();
    for (std::thread& thread : threads)
        if (thread.joinable())
            thread.join();
    if (first)
        std::rethrow_exception(first);
}

std::vector<FaceTreeParts> grow_buds(const std::vector<TreeFace>& faces, Item* items,
                                     const std::vector<Bud>& buds) {
    std::vector<FaceTreeParts> branches(buds.size());
    std::atomic<std::size_t> next{0};
    const std::size_t processors = std::max(std::thread::hardware_concurrency(), 1u);
    work_together(std::min(processors, buds.size()), [&] {
        for (std::size_t i = next++; i < buds.size(); i = next++) {
            Branch branch(faces, items, 0);
            branch.grow(buds[i].piece, buds[i].depth);
            branches[i] = std::move(branch.parts);
        }
    });
    return branches;
}

/// Puts a branch behind what there is, and its place where it grew.
void append(FaceTreeParts& trunk, const Bud& bud, const FaceTreeParts& branch) {
    const auto first_node = static_cast<std::uint32_t>(trunk.nodes.size());
    const auto first_block = static_cast<std::uint32_t>(trunk.blocks.size());
    trunk.nodes[bud.node].child[bud.lane] = first_node;
    trunk.nodes.insert(trunk.nodes.end(), branch.nodes.begin(), branch.nodes.end());
    trunk.blocks.insert(trunk.blocks.end(), branch.blocks.begin(), branch.blocks.end());
    for (std::size_t i = first_node; i < trunk.nodes.size(); ++i)
        for (std::uint32_t& child : trunk.nodes[i].child)
            child += (child & TreeNode::is_block) != 0 ? first_block : first_node;
}

std::vector<Item> items_of(const std::vector<TreeFace>& faces) {
    std::vector<Item> items(faces.size());
    for (std::size_t i = 0; i < faces.size(); ++i) {
        const auto& [a, b, c] = faces[i].corners;
        Item& item = items[i];
        item.face = static_cast<std::uint32_t>(i);
        for (std::size_t axis = 0; axis < 3; ++axis) {
            item.low[axis] = std::min({a[axis], b[axis], c[axis]});
            item.high[axis] = std::max({a[axis], b[axis], c[axis]});
        }
    }
    return items;
}

} // namespace

FaceTreeParts build_face_tree(const std::vector<TreeFace>& faces) {
    if (faces.empty())
        return {};
    std::vector<Item> items = items_of(faces);
    // Threads cost more than small trees.
    constexpr std::size_t least_for_threads = 20'000;
    const bool has_buds = items.size() >= least_for_threads;
    Branch trunk(faces, items.data(), has_buds ? items.size() / 16 : 0);
    trunk.grow(piece_of(items.data(), 0, items.size()), 0);
    FaceTreeParts parts = std::move(trunk.parts);
    if (trunk.buds.empty())
        return parts;
    std::vector<FaceTreeParts> branches = grow_buds(faces, items.data(), trunk.buds);
    std::vector<Item>().swap(items);
    std::size_t num_nodes = parts.nodes.size(), num_blocks = parts.blocks.size();
    for (const FaceTreeParts& branch : branches) {
        num_nodes += branch.nodes.size();
        num_blocks += branch.blocks.size();
    }
    parts.nodes.reserve(num_nodes);
    parts.blocks.reserve(num_blocks);
    for (std::size_t i = 0; i < branches.size(); ++i) {
        append(parts, trunk.buds[i], branches[i]);
        branches[i] = {};
    }
    return parts;
}

} // namespace orvex::kit
