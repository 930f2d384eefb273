/// @file
/// A disc of spokes and rings around a centre.
///
/// Its rings are stepped by addition, and what rounding makes of that is kept: how many rings a
/// spoke has and where its vertices land follow from it, while the faces follow the counts that
/// were set.

#include "orvex/geometry/shapes/mesh_ellipse.h"

#include <algorithm>
#include <cmath>

#include "orvex/geometry/mesh/private/mesh_contents.h"
#include "orvex/geometry/shapes/private/mesh_shape.h"
#include "orvex/math/private/angle.h"
#include "orvex/scene/private/node_data.h"

namespace orvex {

using namespace mesh_shape;

MeshEllipse::MeshEllipse()
    : MeshEllipse(VERTEX_FORMAT_96) {}

MeshEllipse::MeshEllipse(VERTEX_FORMAT format)
    : Mesh(format) {
    set_type(NODE_TYPE_MESH_ELLIPSE);
    note_drawn_by_engine(*this);
    update_build_state(true);
}

bool MeshEllipse::set_build_params(float new_radius_x, float new_radius_z, int new_slices,
                                   int new_rings, float new_degrees) {
    radius_x = new_radius_x;
    radius_z = new_radius_z;
    slices = new_slices;
    rings = new_rings;
    degrees = new_degrees;
    update_build_state(true);
    return true;
}

bool MeshEllipse::build(Node*) {
    return build_if_asked(*this, [this] { return _build_ellipse(); }) && Mesh::_build();
}

namespace {

constexpr vec3 up(0.0f, 1.0f, 0.0f);

/// Writes vertices one after the other, as many as the store has room for.
class VertexWriter {
public:
    explicit VertexWriter(MeshData& store)
        : store(store)
        , next(0) {}

    bool is_full() const { return next >= store.num_vertices; }

    void add(const vec3& position, const vec4& uv0) {
        set_vertex(store, next++, position, up, uv0);
    }

private:
    MeshData& store;
    unsigned long next;
};

/// The steps from ring to ring.
struct RingStep {
    float x;
    float z;
};

/// Stepping by addition decides how many rings a spoke gets: rounding may leave the last one out,
/// and a step of 0 would never end.
void write_spoke(VertexWriter& vertices, float degrees, float radius_x, const RingStep& step) {
    const float c = std::cos(degrees * degrees_to_radians);
    const float s = std::sin(degrees * degrees_to_radians);
    const vec4 uv0 = texture_point(c + 0.5f, s + 0.5f);
    float a = step.x;
    float b = step.z;
    while (a <= radius_x && !vertices.is_full()) {
        vertices.add(vec3(a * c, 0.0f, b * s), uv0);
        a += step.x;
        b += step.z;
    }
}

} // namespace

void MeshEllipse::write_vertices(int shape_slices, int shape_rings) {
    const RingStep step{radius_x / static_cast<float>(shape_rings),
                        radius_z / static_cast<float>(shape_rings)};
    const float slice_degrees = degrees / static_cast<float>(shape_slices);
    VertexWriter vertices(*get_mesh_data());
    vertices.add(vec3(), texture_point(0.5f, 0.5f));
    float spoke_degrees = 0.0f;
    for (long spoke = 0; spoke <= slices && !vertices.is_full(); ++spoke) {
        write_spoke(vertices, spoke_degrees, radius_x, step);
        spoke_degrees += slice_degrees;
    }
}

/// Follows the stored counts, not those that the store was made for. A negative ring count would
/// lead out of the vertices: such faces stay at vertex 0.
void MeshEllipse::write_faces() {
    if (rings < 0)
        return;
    const auto num_rings = static_cast<unsigned int>(rings);
    FaceWriter faces(*get_mesh_data());
    unsigned int spoke = 0;
    for (int s = 0; s < slices; ++s, spoke += num_rings) {
        const unsigned int next_spoke = spoke + num_rings;
        faces.add({0, next_spoke + 1, spoke + 1});
        for (unsigned int t = 1; t < num_rings; ++t) {
            faces.add({t + spoke, t + next_spoke, t + next_spoke + 1});
            faces.add({t + spoke, t + next_spoke + 1, t + spoke + 1});
        }
    }
}

bool MeshEllipse::_build_ellipse() {
    free_mesh_data();
    const int shape_slices = std::max(slices, 3);
    const int shape_rings = std::max(rings, 1);
    const auto num_slices = static_cast<unsigned long>(shape_slices);
    const auto num_rings = static_cast<unsigned long>(shape_rings);
    if (!allocate(*this, num_rings * num_slices + 1 + num_rings, (2 * num_rings - 1) * num_slices))
        return false;
    write_vertices(shape_slices, shape_rings);
    write_faces();
    mesh_contents::mark_for_upload(*get_mesh_data());
    return true;
}

} // namespace orvex
