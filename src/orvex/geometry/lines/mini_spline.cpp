/// @file
/// A spline through keyframes, its evaluation and its drawing.
///
/// Keys are kept one by one, and side by side for the evaluation; the second list is refreshed
/// when a value is next asked for. The drawn points are written straight into the GPU buffer of a
/// polyline, when something is next drawn.

#include "orvex/geometry/lines/mini_spline.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "orvex/base/private/misuse.h"
#include "orvex/geometry/lines/polyline.h"
#include "orvex/renderer/records/vertex.h"
#include "orvex/renderer/renderer.h"

namespace orvex {

struct MiniSpline::MiniSplineData {
    std::vector<std::unique_ptr<vec4>> keyframes; ///< (time, x, y, z)
    std::unique_ptr<vec4[]> flat_keys;            ///< the keys side by side, for evaluation
    bool keys_need_update = true;                 ///< `flat_keys` is to be refreshed
    bool keys_need_resize = true;                 ///< `flat_keys` is to be made anew
    bool polyline_need_update = true;             ///< the drawn points are to be refreshed
    Polyline* polyline = nullptr;
    unsigned long num_render_points = 1000;

    void end_polyline(Renderer* renderer) {
        if (polyline)
            polyline->release(renderer, nullptr);
        polyline = nullptr;
    }

    void refresh_keys();
    void make_polyline(Renderer* renderer);
    void fill_polyline(Renderer* renderer, MiniSpline& spline);
};

MiniSpline::MiniSpline()
    : data(std::make_unique<MiniSplineData>()) {
    set_type(NODE_TYPE_MINI_SPLINE);
}

MiniSpline::~MiniSpline() {
    data->end_polyline(nullptr);
}

bool MiniSpline::_cleanup(Renderer* renderer) {
    data->end_polyline(renderer);
    data->keyframes.clear();
    data->flat_keys.reset();
    data->keys_need_update = true;
    data->keys_need_resize = true;
    data->polyline_need_update = true;
    return Object::_cleanup(renderer);
}

unsigned long MiniSpline::add_keyframe(float time, float x, float y, float z) {
    data->keyframes.push_back(std::make_unique<vec4>(time, x, y, z));
    data->keys_need_update = true;
    data->keys_need_resize = true;
    data->polyline_need_update = true;
    return data->keyframes.size() - 1;
}

bool MiniSpline::set_keyframe(unsigned long i, float time, float x, float y, float z) {
    if (i >= data->keyframes.size())
        return misuse("MiniSpline::set_keyframe", "an index out of range");
    *data->keyframes[i] = vec4(time, x, y, z);
    data->keys_need_update = true;
    data->polyline_need_update = true;
    return true;
}

void MiniSpline::MiniSplineData::refresh_keys() {
    if (keys_need_resize)
        flat_keys = std::make_unique<vec4[]>(keyframes.size());
    keys_need_resize = false;
    if (!keys_need_update)
        return;
    for (unsigned long i = 0; i < keyframes.size(); ++i)
        flat_keys[i] = *keyframes[i];
    keys_need_update = false;
}

void MiniSpline::get_value(float t, float* xyz) {
    if (!xyz)
        return;
    const unsigned long count = data->keyframes.size();
    data->refresh_keys();
    eval_spline(count > 0 ? &data->flat_keys[0].x : nullptr, static_cast<int>(count), 3, t, xyz);
}

namespace {

/// The Catmull-Rom basis, twice over: a row for each of four keys, powers of u from the third down.
constexpr float basis[4][4] = {{-1.0f, 2.0f, -1.0f, 0.0f},
                               {3.0f, -5.0f, 0.0f, 2.0f},
                               {-3.0f, 4.0f, 1.0f, 0.0f},
                               {1.0f, -1.0f, 0.0f, 0.0f}};

/// A place on the spline: the key that ends its span, and how far through the span, 0 to 1.
struct Place {
    int key;
    float u;
};

Place find_place(const float* keys, int num_keys, int dims, float t) {
    const auto time_of = [keys, dims](int key) {
        return keys[static_cast<long>(key) * (static_cast<long>(dims) + 1)];
    };
    int key = 0;
    while (key < num_keys && !(time_of(key) >= t))
        ++key;
    if (key == 0 || key == num_keys)
        return {std::min(key, num_keys - 1), 1.0f};
    const float begin = time_of(key - 1);
    return {key, (t - begin) / (time_of(key) - begin)};
}

} // namespace

void MiniSpline::eval_spline(const float* keys, int num_keys, int dims, float t, float* out) {
    if (!out)
        return;
    for (int d = 0; d < dims; ++d)
        out[d] = 0.0f;
    if (!keys || num_keys < 1 || dims < 1)
        return;
    const auto [key, u] = find_place(keys, num_keys, dims, t);
    for (int row = 0; row < 4; ++row) {
        const float(&c)[4] = basis[row];
        const float weight = (((c[0] * u + c[1]) * u + c[2]) * u + c[3]) * 0.5f;
        const int neighbour = std::clamp(key + row - 2, 0, num_keys - 1);
        const float* const value =
            keys + static_cast<long>(neighbour) * (static_cast<long>(dims) + 1) + 1;
        for (int d = 0; d < dims; ++d)
            out[d] += weight * value[d];
    }
}

namespace {

struct EndPolyline {
    void operator()(Polyline* line) const { line->release(nullptr, nullptr); }
};

} // namespace

/// The GPU buffer is there from the first preparation on, so that it can be mapped.
void MiniSpline::MiniSplineData::make_polyline(Renderer* renderer) {
    std::unique_ptr<Polyline, EndPolyline> line(new Polyline);
    line->free_polyline_data();
    line->alloc_vertex_data(num_render_points);
    line->render_geometry_prepare(renderer);
    line->render_geometry_finish(renderer);
    polyline = line.release();
}

void MiniSpline::MiniSplineData::fill_polyline(Renderer* renderer, MiniSpline& spline) {
    // Before the buffer is mapped, which it would stay if memory ran out then.
    refresh_keys();
    auto* const vertices = static_cast<Vertex*>(polyline->map_vertex_buffer(renderer));
    if (!vertices)
        return;
    polyline_need_update = false;
    for (unsigned long i = 0; i < num_render_points; ++i) {
        vec3 point;
        spline.get_value(static_cast<float>(i) / static_cast<float>(num_render_points), &point.x);
        vertices[i].position = point;
    }
    polyline->unmap_vertex_buffer(renderer);
}

void MiniSpline::render(Renderer* renderer, Node* node) {
    if (renderer) {
        if (!data->polyline)
            data->make_polyline(renderer);
        if (data->polyline_need_update)
            data->fill_polyline(renderer, *this);
        data->polyline->render(renderer, nullptr);
    }
    Node::render(renderer, node);
}

} // namespace orvex
