// The graph: axes, and curves that scroll.
//
//   samples (history, grows) --sync--> points of the curve (fixed number) --> line object
//   values  (placed by the host) -----^
//
// Whatever is placed is shifted by half the viewport at that moment, and keeps the shift; the
// numbers as given are kept beside it, so that a new viewport can place them again. The line
// objects belong to the graph, but a host can reach and end them: each is looked up through a
// weak handle first.

#include "orvex/overlays/graph2d.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "orvex/base/private/misuse.h"
#include "orvex/geometry/lines/curve.h"
#include "orvex/geometry/lines/line.h"
#include "orvex/math/vec4.h"
#include "orvex/scene/private/fresh_node.h"
#include "orvex/scene/private/weak_node.h"
#include "orvex/scene/viewport.h"

namespace orvex {

namespace {

/// A curve, with what keeps the graph right when its host ends the line object or gives it another
/// number of points.
struct GraphCurve : _Curve2D {
    WeakNode<Curve> living;
    unsigned long num_values = 0;

    GraphCurve() = default;
    GraphCurve(const GraphCurve&) = delete;
    GraphCurve& operator=(const GraphCurve&) = delete;
    ~GraphCurve() { end(nullptr); }

    /// @return false if memory ran out
    bool make(unsigned long num_points) {
        if (!init(num_points)) {
            cleanup(nullptr);
            return false;
        }
        num_values = num_points;
        living.set(curve);
        return true;
    }

    void end(Renderer* renderer) {
        curve = living.take();
        cleanup(renderer);
    }
};

struct Axis {
    vec4 start;
    vec4 end;
    vec4 start_color = vec4(1.0f, 1.0f, 1.0f, 1.0f);
    vec4 end_color = vec4(1.0f, 1.0f, 1.0f, 1.0f);
    vec4 raw_start = vec4(); ///< as given, without the shift; not what is drawn at first
    vec4 raw_end = vec4();
};

} // namespace

struct Graph2d::Graph2dData {
    std::vector<std::unique_ptr<GraphCurve>> curves;
    /// Draws both axes, so that they cost one vertex buffer.
    Fresh<Line> axis_line = make_fresh<Line>();
    Viewport viewport;
    bool viewport_enabled = true;
    Axis x_axis{vec4(0.0f, 0.0f, 0.0f, 1.0f), vec4(100.0f, 0.0f, 0.0f, 1.0f)};
    Axis y_axis{vec4(0.0f, 0.0f, 0.0f, 1.0f), vec4(0.0f, 100.0f, 0.0f, 1.0f)};

    /// Null past the end.
    GraphCurve* find(unsigned long index) const {
        return index < curves.size() ? curves[index].get() : nullptr;
    }

    vec4 shifted(vec4 position) const;
    void set_positions(Axis& axis, const vec4& start, const vec4& end) const;
    void draw(const Axis& axis, Renderer* renderer) const;
    void place_values(GraphCurve& curve) const;
};

namespace {

/// Minus half a size, rounded towards zero.
float shift_of(int size) {
    const long half = -static_cast<long>(size) / 2;
    return static_cast<float>(half);
}

} // namespace

vec4 Graph2d::Graph2dData::shifted(vec4 position) const {
    if (viewport_enabled) {
        position.x += shift_of(viewport.width);
        position.y += shift_of(viewport.height);
    }
    return position;
}

Graph2d::Graph2d()
    : data(std::make_unique<Graph2dData>()) {
    set_type(NODE_TYPE_GRAPH2D);
}

Graph2d::~Graph2d() = default;

bool Graph2d::_cleanup(Renderer* renderer) {
    kill_all_curves(renderer);
    data->axis_line->_cleanup(renderer);
    return Object::_cleanup(renderer);
}

void Graph2d::_render(Renderer* renderer) {
    draw_axis(renderer);
    draw_all_curves(renderer);
}

Curve* Graph2d::create_curve(unsigned long num_points) {
    auto curve = std::make_unique<GraphCurve>();
    if (!curve->make(num_points))
        return nullptr;
    data->curves.push_back(std::move(curve));
    return data->curves.back()->curve;
}

bool Graph2d::kill_curve(Renderer* renderer, Curve* curve) {
    auto& curves = data->curves;
    const auto found = std::find_if(curves.begin(), curves.end(), [curve](const auto& held) {
        return held->living.get() == curve;
    });
    if (!curve || found == curves.end())
        return misuse("Graph2d::kill_curve", "a curve that is not the graph's");
    (*found)->end(renderer);
    curves.erase(found);
    return true;
}

bool Graph2d::kill_all_curves(Renderer* renderer) {
    for (const auto& curve : data->curves)
        curve->end(renderer);
    data->curves.clear();
    return true;
}

unsigned long Graph2d::get_num_curves() const {
    return data->curves.size();
}

Curve* Graph2d::get_curve(unsigned long index) const {
    const GraphCurve* const held = data->find(index);
    return held ? held->living.get() : nullptr;
}

bool Graph2d::set_curve_color(unsigned long index, float r, float g, float b, float a) {
    Curve* const curve = get_curve(index);
    return curve && curve->set_vertices_color(r, g, b, a);
}

bool Graph2d::add_curve_position(unsigned long index, const vec4& position) {
    GraphCurve* const held = data->find(index);
    if (!held)
        return false;
    held->samples.push_back(position);
    return true;
}

bool Graph2d::add_curve_scalar(unsigned long index, float value) {
    return add_curve_position(index, vec4(0.0f, value, 0.0f, 1.0f));
}

bool Graph2d::sync_curve_scalars(unsigned long index) {
    GraphCurve* const held = data->find(index);
    Curve* const curve = get_curve(index);
    if (!curve || held->samples.empty())
        return false;

    // The newest samples, as many as there are points for.
    const unsigned long num_points = curve->get_num_points();
    const unsigned long num_samples = held->samples.size();
    const unsigned long count = std::min(num_points, num_samples);
    const unsigned long first = num_samples - count;
    held->diff_points = first;

    // Along the x axis in equal steps, raised by its height. The steps are added up, so that a
    // place carries the rounding of all before it.
    const vec4& start = data->x_axis.raw_start;
    const float length = data->x_axis.raw_end.x - start.x;
    const float step = num_points > 0 ? length / static_cast<float>(num_points) : 0.0f;
    float x = start.x;
    for (unsigned long i = 0; i < count; ++i) {
        vec4 position = held->samples[first + i];
        position.x = x;
        position.y += start.y;
        x += step;
        curve->set_value(i, data->shifted(position));
    }
    held->num_visible_points = count;
    return true;
}

unsigned long Graph2d::curve_get_diff_points(unsigned long index) const {
    const GraphCurve* const held = data->find(index);
    return held ? held->diff_points : 0;
}

bool Graph2d::set_curve_value(unsigned long index, unsigned long point, const vec4& value) {
    Curve* const curve = get_curve(index);
    if (!curve)
        return false;
    GraphCurve& held = *data->find(index);
    if (point < std::min(held.num_values, curve->get_num_points()))
        held.values[point] = value;
    curve->set_value(point, data->shifted(value));
    return true;
}

bool Graph2d::set_curve_value(unsigned long index, unsigned long point, float x, float y, float z,
                              float w) {
    return set_curve_value(index, point, vec4(x, y, z, w));
}

bool Graph2d::draw_curve(Renderer* renderer, unsigned long index) {
    Curve* const curve = get_curve(index);
    if (!curve)
        return false;
    const int limit = curve->get_vertex_end_offset();
    curve->set_vertex_end_offset(-1);
    curve->render(renderer, nullptr);
    curve->set_vertex_end_offset(limit);
    return true;
}

bool Graph2d::draw_all_curves(Renderer* renderer) {
    for (const auto& held : data->curves) {
        if (Curve* const curve = held->living.get()) {
            curve->set_vertex_end_offset(static_cast<int>(held->num_visible_points));
            curve->render(renderer, nullptr);
        }
    }
    return true;
}

void Graph2d::Graph2dData::draw(const Axis& axis, Renderer* renderer) const {
    axis_line->set_start_position(axis.start.get_vec3());
    axis_line->set_end_position(axis.end.get_vec3());
    axis_line->set_start_color(axis.start_color);
    axis_line->set_end_color(axis.end_color);
    axis_line->render(renderer, nullptr);
}

void Graph2d::draw_axis(Renderer* renderer) {
    data->draw(data->x_axis, renderer);
    data->draw(data->y_axis, renderer);
}

void Graph2d::Graph2dData::set_positions(Axis& axis, const vec4& start, const vec4& end) const {
    axis.raw_start = start;
    axis.start = shifted(start);
    axis.raw_end = end;
    axis.end = shifted(end);
}

void Graph2d::set_x_axis_positions(const vec4& start, const vec4& end) {
    data->set_positions(data->x_axis, start, end);
}

void Graph2d::set_y_axis_positions(const vec4& start, const vec4& end) {
    data->set_positions(data->y_axis, start, end);
}

void Graph2d::set_x_axis_color(const vec4& start, const vec4& end) {
    data->x_axis.start_color = start;
    data->x_axis.end_color = end;
}

void Graph2d::set_y_axis_color(const vec4& start, const vec4& end) {
    data->y_axis.start_color = start;
    data->y_axis.end_color = end;
}

void Graph2d::enable_viewport(bool state) {
    data->viewport_enabled = state;
}

bool Graph2d::is_viewport_enabled() const {
    return data->viewport_enabled;
}

void Graph2d::Graph2dData::place_values(GraphCurve& held) const {
    Curve* const curve = held.living.get();
    const unsigned long count = curve ? std::min(held.num_values, curve->get_num_points()) : 0;
    for (unsigned long i = 0; i < count; ++i)
        curve->set_value(i, shifted(held.values[i]));
}

void Graph2d::set_viewport(int x, int y, int width, int height) {
    data->viewport.set(x, y, width, height);
    if (!data->viewport_enabled)
        return;
    for (const auto& held : data->curves)
        data->place_values(*held);
    Axis& x_axis = data->x_axis;
    Axis& y_axis = data->y_axis;
    data->set_positions(x_axis, x_axis.raw_start, x_axis.raw_end);
    data->set_positions(y_axis, y_axis.raw_start, y_axis.raw_end);
}

} // namespace orvex
