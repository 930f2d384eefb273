// The bar of lights: a pool of points, a strip, or both, each a child of the bar. The bar draws
// them by itself and its walk passes them over. As children they can be ended behind its back:
// they are held weakly, and every operation asks for them first.

#include "orvex/overlays/mad_led_bar.h"

#include <algorithm>
#include <climits>
#include <memory>

#include "orvex/base/private/misuse.h"
#include "orvex/geometry/points/vertex_pool.h"
#include "orvex/geometry/shapes/mesh_plane.h"
#include "orvex/math/vec3.h"
#include "orvex/math/vec4.h"
#include "orvex/renderer/records/vertex.h"
#include "orvex/scene/private/draw_ahead.h"
#include "orvex/scene/private/fresh_node.h"
#include "orvex/scene/private/node_data.h"
#include "orvex/scene/private/weak_node.h"

namespace orvex {

/// Pool and plane are children, which a release of the bar ends before its clean-up.
struct MadLedBar::MadLedBarData {
    WeakNode<VertexPool> vertex_pool;
    WeakNode<MeshPlane> plane;
    unsigned long num_leds = 0;
    vec3 start_position = vec3(-4.0f, 0.0f, 0.0f);
    vec3 end_position = vec3(4.0f, 0.0f, 0.0f);
    bool positions_dirty = true;

    void set_row(const vec3& start, const vec3& end, unsigned long count) {
        start_position = start;
        end_position = end;
        positions_dirty = true;
        num_leds = count;
    }
};

MadLedBar::MadLedBar()
    : data(std::make_unique<MadLedBarData>()) {
    set_type(NODE_TYPE_MAD_LED_BAR);
}

namespace {

/// A mesh gives its store back in its clean-up alone.
void destroy(std::unique_ptr<Object> object) {
    if (object)
        object->_cleanup(nullptr);
}

} // namespace

MadLedBar::~MadLedBar() {
    destroy(std::unique_ptr<Object>(data->vertex_pool.take()));
    destroy(std::unique_ptr<Object>(data->plane.take()));
}

namespace {

/// Ends a child of the bar, whoever else holds it. Removing it comes without a renderer, so that
/// its GPU objects have to go before that.
void end_child(Node& bar, Object* child, Renderer* renderer) {
    if (!child)
        return;
    child->_cleanup(renderer);
    if (bar.remove_child(child) <= 0)
        return;
    const std::unique_ptr<Object> ended(child);
    ended->_cleanup(renderer);
}

} // namespace

bool MadLedBar::_cleanup(Renderer* renderer) {
    end_child(*this, data->vertex_pool.take(), renderer);
    end_child(*this, data->plane.take(), renderer);
    return Object::_cleanup(renderer);
}

void MadLedBar::render(Renderer* renderer, Node* node) {
    if (!get_render_state())
        return;
    const NodeHandle walked(node ? node : this);
    const Node* const pool = data->vertex_pool.get();
    const Node* const plane = data->plane.get();
    _render(renderer);
    const auto draw = [renderer, pool, plane](Node& child) {
        if (&child != pool && &child != plane)
            child.render(renderer, nullptr);
    };
    for_each_child(walked, draw, draw_ahead);
}

void MadLedBar::_render(Renderer* renderer) {
    if (!renderer || data->num_leds == 0)
        return;
    if (VertexPool* const pool = data->vertex_pool.get())
        pool->_render(renderer);
    if (MeshPlane* const plane = data->plane.get())
        plane->render(renderer, nullptr);
}

// The walk is left to the bar: with a node handed on, bars within bars would triple it each time.
void MadLedBar::set_opengl_2_3_rendering_states(bool gl2, Node* node) {
    if (VertexPool* const pool = data->vertex_pool.get())
        pool->set_opengl_2_3_rendering_states(gl2, nullptr);
    if (MeshPlane* const plane = data->plane.get())
        plane->set_opengl_2_3_rendering_states(gl2, nullptr);
    Object::set_opengl_2_3_rendering_states(gl2, node);
}

unsigned long MadLedBar::get_num_vertices(Node*) {
    return data->num_leds;
}

Vertex* MadLedBar::get_vertex(unsigned long index) {
    if (index >= data->num_leds)
        return nullptr;
    if (VertexPool* const pool = data->vertex_pool.get())
        return pool->get_vertex(index);
    MeshPlane* const plane = data->plane.get();
    return plane ? plane->get_vertex(index) : nullptr;
}

Vertex MadLedBar::get_vertex_v2(unsigned long index) {
    if (index >= data->num_leds)
        return Vertex();
    if (MeshPlane* const plane = data->plane.get())
        return plane->get_vertex_v2(index);
    VertexPool* const pool = data->vertex_pool.get();
    return pool ? pool->get_vertex_v2(index) : Vertex();
}

bool MadLedBar::initialize(const vec3& start, const vec3& end, unsigned long num_leds) {
    data->set_row(start, end, num_leds);
    if (!data->vertex_pool.get()) {
        Fresh<VertexPool> pool = make_fresh<VertexPool>();
        add_child(pool.get());
        data->vertex_pool.set(pool.release());
    }

    // Points anew, in a row, white, and lit from above.
    VertexPool& pool = *data->vertex_pool.get();
    pool.init_pool(num_leds, false);
    _vp_update_leds_positions();
    for (unsigned long i = 0; i < num_leds; ++i) {
        pool.set_vertex_color(i, 1.0f, 1.0f, 1.0f, 1.0f);
        if (Vertex* const vertex = pool.get_vertex(i))
            vertex->normal = vec4(0.0f, 1.0f, 0.0f, 0.0f);
    }
    return true;
}

bool MadLedBar::_vp_update_leds_positions() {
    if (data->num_leds == 0)
        return false;
    VertexPool* const pool = data->vertex_pool.get();
    if (!pool)
        return true;
    const vec3 start = data->start_position;
    const vec3 way = data->end_position - start;
    // The count of lights is also the strip's, and a pool may have found no memory.
    const unsigned long points = pool->get_vertex(0) ? pool->get_pool_size() : 0;
    for (unsigned long i = 0; i < std::min(data->num_leds, points); ++i) {
        const float t = static_cast<float>(i) / static_cast<float>(data->num_leds);
        pool->set_vertex_position(i, start.x + way.x * t, start.y + way.y * t, start.z + way.z * t,
                                  1.0f);
    }
    data->positions_dirty = false;
    return true;
}

bool MadLedBar::initialize(const vec3& start, const vec3& end, unsigned long num_leds,
                           float height) {
    data->set_row(start, end, num_leds);
    if (!data->plane.get()) {
        Fresh<MeshPlane> plane = make_fresh<MeshPlane>();
        plane->set_vertex_alloc_params(false, 0);
        add_child(plane.get());
        data->plane.set(plane.release());
    }

    // A segment for each light, in one strip.
    MeshPlane& plane = *data->plane.get();
    const float length = (data->start_position - data->end_position).length();
    const unsigned long segments = std::min<unsigned long>(num_leds, INT_MAX);
    plane.set_build_params(length, height, static_cast<int>(segments), 1);
    plane.build(nullptr);

    // White, and lit from above. A strip that no memory was found for has a number of vertices, and
    // none of them.
    const bool built = plane.get_vertex(0);
    for (unsigned long i = 0; built && i < num_leds; ++i) {
        _plane_set_led_color(i, 1.0f, 1.0f, 1.0f, 1.0f);
        _plane_set_led_normal(i, 0.0f, 1.0f, 0.0f);
    }
    return true;
}

unsigned long MadLedBar::get_num_leds() const {
    return data->num_leds;
}

void MadLedBar::set_led_color(unsigned long index, float r, float g, float b, float a) {
    if (index >= data->num_leds) {
        misuse("MadLedBar::set_led_color", "an index past the last light");
        return;
    }
    if (VertexPool* const pool = data->vertex_pool.get())
        pool->set_vertex_color(index, r, g, b, a);
    _plane_set_led_color(index, r, g, b, a);
}

void MadLedBar::set_led_color(unsigned long index, const vec4& color) {
    set_led_color(index, color.x, color.y, color.z, color.w);
}

namespace {

/// Calls `set(vertex)` for the two vertices at the right end of a light's segment: one in each of
/// the strip's two rows, which have a vertex more than there are lights.
template<class Set>
void for_each_vertex_of_led(unsigned long index, unsigned long num_leds, Set set) {
    set(index + 1);
    set(index + 1 + num_leds + 1);
}

} // namespace

bool MadLedBar::_plane_set_led_color(unsigned long index, float r, float g, float b, float a) {
    if (MeshPlane* const plane = data->plane.get())
        for_each_vertex_of_led(index, data->num_leds, [&](unsigned long vertex) {
            plane->set_vertex_color(vertex, vec4(r, g, b, a));
        });
    return true;
}

bool MadLedBar::_plane_set_led_normal(unsigned long index, float x, float y, float z) {
    if (MeshPlane* const plane = data->plane.get())
        for_each_vertex_of_led(index, data->num_leds, [&](unsigned long vertex) {
            plane->set_vertex_normal(vertex, vec4(x, y, z, 0.0f));
        });
    return true;
}

} // namespace orvex
