// Boxes are halved by the number of faces, along the axis on which their middles lie widest. All
// numbers of a hit are of double precision, and the same as without a tree.

#include "orvex_kit/private/face_tree.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace orvex::kit {

namespace {

constexpr std::uint32_t faces_in_a_leaf = 4;
/// What rounding may add to a distance, in parts of it.
constexpr double slack = 1e-9;

/// The axis of the largest part.
std::size_t widest(const Point& v) {
    const Point size{std::abs(v[0]), std::abs(v[1]), std::abs(v[2])};
    return static_cast<std::size_t>(std::max_element(size.begin(), size.end()) - size.begin());
}

/// Sums, which is as good as the middle for an order.
float middle_of(const TreeFace& face, std::size_t axis) {
    return face.corners[0][axis] / 3 + face.corners[1][axis] / 3 + face.corners[2][axis] / 3;
}

} // namespace

// The ray becomes the depth axis: corners are moved by its origin and sheared by its direction, so
// that it is met where the origin lies within the flat triangle that is left. Each edge gives one
// number, and the same but for the sign for both faces that share it.
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
    if (!is_within || area == 0)
        return std::nullopt;
    const Point shares{a / area, b / area, c / area};
    const double distance = (shares[0] * z[0] + shares[1] * z[1] + shares[2] * z[2]) / d[depth];
    if (!(distance >= 0 && distance <= ray.reach))
        return std::nullopt;
    return TreeHit{&face, distance, shares};
}

bool is_before(const TreeHit& a, const TreeHit& b) {
    if (a.distance != b.distance)
        return a.distance < b.distance;
    return std::pair(a.face->mesh, a.face->face) < std::pair(b.face->mesh, b.face->face);
}

// ------------------------------------------------------------------------------- building

FaceTree::FaceTree(std::vector<TreeFace> all)
    : faces(std::move(all)) {
    if (faces.empty())
        return;
    boxes.reserve(faces.size());
    boxes.push_back(around(0, static_cast<std::uint32_t>(faces.size())));
    for (std::uint32_t box = 0; box < boxes.size(); ++box)
        if (boxes[box].count > faces_in_a_leaf)
            split(box);
}

FaceTree::Box FaceTree::around(std::uint32_t first, std::uint32_t count) const {
    constexpr float largest = std::numeric_limits<float>::max();
    Box box{{largest, largest, largest}, {-largest, -largest, -largest}, first, count};
    for (std::uint32_t i = first; i < first + count; ++i)
        for (const std::array<float, 3>& corner : faces[i].corners)
            for (std::size_t axis = 0; axis < 3; ++axis) {
                box.low[axis] = std::min(box.low[axis], corner[axis]);
                box.high[axis] = std::max(box.high[axis], corner[axis]);
            }
    return box;
}

/// Orders the faces of a box. @return how many go to its first half
std::uint32_t FaceTree::divide(const Box& box) {
    Point low{1e300, 1e300, 1e300}, high{-1e300, -1e300, -1e300};
    const auto begin = faces.begin() + box.first, end = begin + box.count;
    for (auto face = begin; face != end; ++face)
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const auto middle = static_cast<double>(middle_of(*face, axis));
            low[axis] = std::min(low[axis], middle);
            high[axis] = std::max(high[axis], middle);
        }
    const std::size_t axis = widest({high[0] - low[0], high[1] - low[1], high[2] - low[2]});
    const std::uint32_t half = box.count / 2;
    std::nth_element(begin, begin + half, end, [axis](const TreeFace& a, const TreeFace& b) {
        return middle_of(a, axis) < middle_of(b, axis);
    });
    return half;
}

void FaceTree::split(std::uint32_t box) {
    const std::uint32_t first = boxes[box].first, count = boxes[box].count;
    const std::uint32_t half = divide(boxes[box]);
    boxes[box].first = static_cast<std::uint32_t>(boxes.size());
    boxes[box].count = 0;
    boxes.push_back(around(first, half));
    boxes.push_back(around(first + half, count - half));
}

// ------------------------------------------------------------------------------- asking

/// How far away a ray comes into a box, if it does within its reach.
std::optional<double> FaceTree::entry(const PointRay& ray, const Box& box) const {
    double from = 0.0, to = ray.reach;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const double low = static_cast<double>(box.low[axis]) - ray.origin[axis];
        const double high = static_cast<double>(box.high[axis]) - ray.origin[axis];
        if (ray.direction[axis] == 0) {
            if (low > 0 || high < 0)
                return std::nullopt;
            continue;
        }
        const double one = low / ray.direction[axis], other = high / ray.direction[axis];
        from =
            std::max(from, std::min(one, other) * (1 - std::copysign(slack, std::min(one, other))));
        to = std::min(to, std::max(one, other) * (1 + slack));
    }
    return from <= to ? std::optional(from) : std::nullopt;
}

void FaceTree::look_into(const Box& box, const PointRay& ray, std::optional<TreeHit>& best) const {
    for (std::uint32_t i = box.first; i < box.first + box.count; ++i) {
        const std::optional<TreeHit> hit = meet(ray, faces[i]);
        if (hit && (!best || is_before(*hit, *best)))
            best = hit;
    }
}

std::optional<TreeHit> FaceTree::first_hit(const PointRay& ray) const {
    struct Visit {
        double entry;
        std::uint32_t box;
    };
    // Halved again and again, a tree is no deeper than its numbers have bits.
    std::array<Visit, 64> way;
    std::size_t length = 0;
    const auto put = [&](std::uint32_t box) {
        if (const std::optional<double> from = entry(ray, boxes[box]))
            way[length++] = {*from, box};
    };
    std::optional<TreeHit> best;
    if (!boxes.empty())
        put(0);
    while (length > 0) {
        const Visit visit = way[--length];
        const Box& box = boxes[visit.box];
        if (best && visit.entry > best->distance)
            continue;
        if (box.count > 0) {
            look_into(box, ray, best);
            continue;
        }
        // The nearer one is looked into first.
        const std::size_t before = length;
        put(box.first);
        put(box.first + 1);
        if (length == before + 2 && way[before].entry < way[before + 1].entry)
            std::swap(way[before], way[before + 1]);
    }
    return best;
}

} // namespace orvex::kit
