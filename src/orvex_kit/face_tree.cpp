// The tree only finds candidates, by boxes that are asked in single precision with room for all
// that rounding may do. All numbers of a hit are of double precision, and the same as without a
// tree.

#include "orvex_kit/private/face_tree.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "orvex_kit/private/face_tree_builder.h"

namespace orvex::kit {

namespace {

/// The axis of the largest part.
std::size_t widest(const Point& v) {
    const Point size{std::abs(v[0]), std::abs(v[1]), std::abs(v[2])};
    return static_cast<std::size_t>(std::max_element(size.begin(), size.end()) - size.begin());
}

/// How far away a ray comes into the box around a face, with room for rounding.
double soonest(const PointRay& ray, const TreeFace& face) {
    double from = 0.0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        if (ray.direction[axis] == 0)
            continue;
        const auto [low, high] =
            std::minmax({face.corners[0][axis], face.corners[1][axis], face.corners[2][axis]});
        const double plane = static_cast<double>(ray.direction[axis] > 0 ? low : high);
        from = std::max(from, (plane - ray.origin[axis]) / ray.direction[axis]);
    }
    constexpr double slack = 1e-9;
    return from * (1 - slack);
}

/// Whether numbers lie to both sides of 0.
bool straddle(const double (&numbers)[3]) {
    const auto [low, high] = std::minmax({numbers[0], numbers[1], numbers[2]});
    return low <= 0 && high >= 0;
}

} // namespace

// The ray becomes the depth axis: corners are moved by its origin and sheared by its direction, so
// that it is met where the origin lies within the flat triangle that is left. Each edge gives one
// number, and the same but for the sign for both faces that share it.
//
// Of a face whose edge the ray looks at these numbers are noise. It keeps within the face's box:
// so no tree misses what comes of it.
std::optional<TreeHit> meet(const PointRay& ray, const TreeFace& face) {
    const std::size_t depth = widest(ray.direction);
    const std::size_t across = (depth + 1) % 3, up = (depth + 2) % 3;
    const Point& d = ray.direction;
    const double shear_x = d[across] / d[depth], shear_y = d[up] / d[depth];
    double x[3], y[3], z[3];
    for (std::size_t i = 0; i < 3; ++i) {
        z[i] = static_cast<double>(face.corners[i][depth]) - ray.origin[depth];
        x[i] = static_cast<double>(face.corners[i][across]) - ray.origin[across] - shear_x * z[i];
        y[i] = static_cast<double>(face.corners[i][up]) - ray.origin[up] - shear_y * z[i];
    }
    // Twice the areas that the origin makes with the edges
    const double a = x[2] * y[1] - y[2] * x[1];
    const double b = x[0] * y[2] - y[0] * x[2];
    const double c = x[1] * y[0] - y[1] * x[0];
    const bool is_within = (a >= 0 && b >= 0 && c >= 0) || (a <= 0 && b <= 0 && c <= 0);
    const double area = a + b + c;
    if (!is_within || area == 0 || !straddle(x) || !straddle(y))
        return std::nullopt;
    const Point shares{a / area, b / area, c / area};
    double distance = (shares[0] * z[0] + shares[1] * z[1] + shares[2] * z[2]) / d[depth];
    if (!(distance >= 0))
        return std::nullopt;
    distance = std::max(distance, soonest(ray, face));
    if (!(distance <= ray.reach))
        return std::nullopt;
    return TreeHit{face, distance, shares};
}

bool is_before(const TreeHit& a, const TreeHit& b) {
    if (a.distance != b.distance)
        return a.distance < b.distance;
    return std::pair(a.face.mesh, a.face.face) < std::pair(b.face.mesh, b.face.face);
}

FaceTree::FaceTree(const std::vector<TreeFace>& faces) {
    for (const TreeFace& face : faces)
        for (const std::array<float, 3>& corner : face.corners)
            for (const float number : corner)
                largest = std::max(largest, std::abs(static_cast<double>(number)));
    FaceTreeParts parts = build_face_tree(faces);
    nodes = std::move(parts.nodes);
    blocks = std::move(parts.blocks);
}

std::size_t FaceTree::num_bytes() const {
    return nodes.capacity() * sizeof(TreeNode) + blocks.capacity() * sizeof(TreeBlock);
}

// ------------------------------------------------------------------------------- asking

namespace {

/// The float at or beyond a number, to either side.
float rounded_down(double number) {
    const auto nearest = static_cast<float>(number);
    return std::nextafter(nearest, -std::numeric_limits<float>::infinity());
}

float rounded_up(double number) {
    return -rounded_down(-number);
}

/// A search that keeps what comes first.
struct Search : TreeSearch {
    const PointRay& ray;
    double longest; ///< part of the direction
    std::optional<TreeHit> best;

    Search(const PointRay& ray, double largest);
    void look_at(const TreeBlock& block, unsigned lane);
};

/// @param largest  number of a corner
Search::Search(const PointRay& ray, double largest)
    : TreeSearch{}
    , ray(ray) {
    const std::size_t widest_axis = widest(ray.direction);
    depth = static_cast<unsigned>(widest_axis);
    across = (depth + 1) % 3;
    up = (depth + 2) % 3;
    longest = std::abs(ray.direction[depth]);
    shear_x = ray.direction[across] / ray.direction[depth];
    shear_y = ray.direction[up] / ray.direction[depth];
    // Far more than double precision loses between the origin and the farthest corner
    constexpr double slack = 1e-12;
    const double farthest = std::max(
        {std::abs(ray.origin[0]), std::abs(ray.origin[1]), std::abs(ray.origin[2]), largest});
    for (std::size_t axis = 0; axis < 3; ++axis) {
        origin[axis] = ray.origin[axis];
        from_low[axis] = rounded_up(ray.origin[axis] + slack * farthest);
        from_high[axis] = rounded_down(ray.origin[axis] - slack * farthest);
        inverse[axis] = static_cast<float>(longest / ray.direction[axis]);
    }
    limit = rounded_up(ray.reach * longest);
    ask = [](TreeSearch& search, const TreeBlock& block, unsigned lane) {
        static_cast<Search&>(search).look_at(block, lane);
    };
}

void Search::look_at(const TreeBlock& block, unsigned lane) {
    TreeFace face{{}, block.mesh[lane], block.face[lane]};
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t axis = 0; axis < 3; ++axis)
            face.corners[i][axis] = block.corners[i][axis][lane];
    const std::optional<TreeHit> hit = meet(ray, face);
    if (!hit || (best && !is_before(*hit, *best)))
        return;
    best = hit;
    limit = rounded_up(hit->distance * longest);
}

} // namespace

std::optional<TreeHit> FaceTree::first_hit(const PointRay& ray) const {
    return first_hit(ray, fastest_walk());
}

std::optional<TreeHit> FaceTree::first_hit(const PointRay& ray, WalkTree walk) const {
    if (nodes.empty())
        return std::nullopt;
    Search search(ray, largest);
    // Near the ends of single precision boxes can't be trusted.
    constexpr double end_of_trust = 1e37;
    const auto is_small = [](double number) { return std::abs(number) < end_of_trust; };
    if (is_small(largest) && std::all_of(ray.origin.begin(), ray.origin.end(), is_small)) {
        walk(nodes.data(), blocks.data(), search);
        return search.best;
    }
    for (const TreeBlock& block : blocks)
        for (unsigned lane = 0; lane < TreeBlock::width; ++lane)
            search.look_at(block, lane);
    return search.best;
}

} // namespace orvex::kit
