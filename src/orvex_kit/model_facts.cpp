// What is told of a model: looked at once, right after its load.

#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include <orvex/assets/materials/material.h>
#include <orvex/geometry/lines/polyline.h>
#include <orvex/geometry/mesh/mesh.h>
#include <orvex/geometry/mesh/model.h>
#include <orvex/geometry/points/vertex_pool.h>
#include <orvex/math/mat4.h>
#include <orvex/renderer/records/mesh_data.h>
#include <orvex/renderer/records/polyline_data.h>
#include <orvex/scene/camera.h>

#include "orvex_kit/private/model_data.h"

namespace orvex::kit {

namespace {

bool is_finite(const vec4& place) {
    return std::isfinite(place.x) && std::isfinite(place.y) && std::isfinite(place.z);
}

} // namespace

bool place_of_vertex(const Mesh& mesh, unsigned long vertex, const mat4& transform, vec4& place) {
    place = transform * mesh.get_vertex_position(vertex);
    return is_finite(place);
}

void Model::Data::gather(Node& node) {
    for (unsigned long i = 0; i < node.get_num_children(); ++i) {
        Node* const child = node.get_child(i);
        if (!child)
            continue;
        // A mesh that has lost its geometry is none.
        if (auto* const mesh = Mesh::from_node(child); mesh && mesh->get_mesh_data())
            meshes.push_back(mesh);
        else if (auto* const cloud = VertexPool::from_node(child))
            clouds.push_back(cloud);
        else if (auto* const line = Polyline::from_node(child); line && line->get_polyline_data())
            lines.push_back(line);
        else if (const auto* const camera = orvex::Camera::from_node(child))
            cameras.push_back(camera);
        gather(*child);
    }
}

namespace {

std::string text_or_nothing(const char* text) {
    return text ? text : "";
}

ModelMaterial told(const Material& material) {
    return {text_or_nothing(material.get_name()),
            material.get_ambient(),
            material.get_diffuse(),
            material.get_specular(),
            material.get_shininess(),
            material.get_opacity(),
            {}};
}

} // namespace

/// Those of the model first. A mesh may know more, as it does where a face of a 3DS file has none.
void Model::Data::gather_materials() {
    std::unordered_set<const Material*> known;
    const auto add_those_of = [&](const Object& object) {
        for (unsigned long i = 0; i < object.get_num_materials(); ++i)
            if (Material* const material = object.get_material_by_index(i);
                known.insert(material).second)
                materials.push_back(material);
    };
    add_those_of(*loaded.model);
    for (const Mesh* mesh : meshes)
        add_those_of(*mesh);
    for (const Material* material : materials)
        facts.materials.push_back(told(*material));
}

void Model::Data::add_runs() {
    std::unordered_map<const Material*, int> places;
    for (const Material* material : materials)
        places.emplace(material, static_cast<int>(places.size()));
    for (std::size_t mesh = 0; mesh < meshes.size(); ++mesh) {
        const MeshData& store = *meshes[mesh]->get_mesh_data();
        for (std::size_t first = 0, next = 0; first < store.num_faces; first = next) {
            const int id = store.face_materials[first];
            for (next = first + 1; next < store.num_faces && store.face_materials[next] == id;)
                ++next;
            const auto place = places.find(meshes[mesh]->get_material(id));
            const int material = place == places.end() ? -1 : place->second;
            const bool is_opaque =
                material < 0 || materials[static_cast<std::size_t>(material)]->get_opacity() >= 1;
            facts.runs.push_back({mesh, material, first, next - first, !is_opaque});
        }
    }
    std::stable_partition(facts.runs.begin(), facts.runs.end(),
                          [](const FaceRun& run) { return !run.is_blended; });
}

// ------------------------------------------------------------------------------- places

namespace {

void add(Bounds& bounds, const vec4& place) {
    if (bounds.is_empty)
        bounds = {vec3(place.x, place.y, place.z), vec3(place.x, place.y, place.z), false};
    bounds.min.set(std::min(bounds.min.x, place.x), std::min(bounds.min.y, place.y),
                   std::min(bounds.min.z, place.z));
    bounds.max.set(std::max(bounds.max.x, place.x), std::max(bounds.max.y, place.y),
                   std::max(bounds.max.z, place.z));
}

/// Halves before the sum, which might be too large otherwise.
vec4 middle_of(const Bounds& box) {
    return vec4(box.min.x / 2 + box.max.x / 2, box.min.y / 2 + box.max.y / 2,
                box.min.z / 2 + box.max.z / 2, 1.0f);
}

/// Calls `use` for each vertex of a mesh that has a place.
template<class Use>
void for_each_place(Mesh& mesh, Use use) {
    const mat4 transform = mesh.get_absolute_transform();
    vec4 place;
    for (unsigned long i = 0; i < mesh.get_mesh_data()->num_vertices; ++i)
        if (place_of_vertex(mesh, i, transform, place))
            use(place);
}

/// The same for the points of a cloud.
template<class Use>
void for_each_place(VertexPool& cloud, Use use) {
    const mat4 transform = cloud.get_absolute_transform();
    for (unsigned long i = 0; i < cloud.get_pool_size(); ++i)
        if (const vec4 place = transform * cloud.get_vertex_position(i); is_finite(place))
            use(place);
}

/// The same for the vertices of lines.
template<class Use>
void for_each_place(Polyline& line, Use use) {
    const mat4 transform = line.get_absolute_transform();
    const PolylineData& store = *line.get_polyline_data();
    for (unsigned long i = 0; i < store.num_vertices; ++i)
        if (const vec4 place = transform * store.vertices[i].position; is_finite(place))
            use(place);
}

} // namespace

namespace {

bool is_same(const vec4& a, const vec4& b) {
    return a.x == b.x && a.y == b.y && a.z == b.z;
}

/// Whether vertices differ from white, and from what they are where a loader gives them no colour.
bool has_own_colors(const Mesh& mesh) {
    const vec4 white(1.0f, 1.0f, 1.0f, 1.0f);
    const vec4 fresh = Vertex().color;
    bool is_white = true, is_fresh = true;
    if (const std::optional<vec4> color = constant_of(mesh.get_mesh_data()->color))
        return !is_same(*color, white) && !is_same(*color, fresh);
    for (unsigned long i = 0; (is_white || is_fresh) && i < mesh.get_mesh_data()->num_vertices;
         ++i) {
        const vec4 color = mesh.get_vertex_color(i);
        is_white = is_white && is_same(color, white);
        is_fresh = is_fresh && is_same(color, fresh);
    }
    return !is_white && !is_fresh;
}

} // namespace

/// Of all vertices, points and ends of lines, with a place or not.
std::size_t Model::Data::count_places() const {
    std::size_t count = 0;
    for (const Mesh* mesh : meshes)
        count += mesh->get_mesh_data()->num_vertices;
    for (const VertexPool* cloud : clouds)
        count += cloud->get_pool_size();
    for (const Polyline* line : lines)
        count += line->get_polyline_data()->num_vertices;
    return count;
}

void Model::Data::tell_of_meshes() {
    for (const Mesh* mesh : meshes)
        has_colors.push_back(has_own_colors(*mesh));
    facts.extent.points.reserve(count_places());
    for (Mesh* mesh : meshes) {
        const MeshData& store = *mesh->get_mesh_data();
        ModelMesh one{text_or_nothing(mesh->get_name()), store.num_vertices, store.num_faces, {}};
        for_each_place(*mesh, [&](const vec4& place) {
            facts.extent.points.push_back(place);
            add(one.bounds, place);
        });
        if (!one.bounds.is_empty)
            for (const vec3& corner : {one.bounds.min, one.bounds.max})
                add(facts.bounds, vec4(corner.x, corner.y, corner.z, 1.0f));
        facts.num_vertices += one.num_vertices;
        facts.num_faces += one.num_faces;
        facts.num_points += one.num_faces == 0 ? one.num_vertices : 0;
        facts.meshes.push_back(std::move(one));
    }
    facts.notes = loaded.notes;
    // A model of points or lines alone lacks nothing.
    if (!meshes.empty() || (clouds.empty() && lines.empty()))
        for (std::string& note : notes_about(meshes, facts))
            facts.notes.push_back(std::move(note));
    tell_of_clouds();
    tell_of_lines();
    facts.extent.middle = middle_of(facts.bounds);
    tell_of_cameras();
}

void Model::Data::tell_of_clouds() {
    for (VertexPool* cloud : clouds) {
        for_each_place(*cloud, [&](const vec4& place) {
            facts.extent.points.push_back(place);
            add(facts.bounds, place);
        });
        facts.num_points += cloud->get_pool_size();
    }
}

namespace {

std::size_t count_lines(const PolylineData& store) {
    switch (store.render_mode) {
    case LINE_RENDER_MODE_LINES:
        return store.num_vertices / 2;
    case LINE_RENDER_MODE_LINE_STRIP:
        return store.num_vertices > 0 ? store.num_vertices - 1 : 0;
    case LINE_RENDER_MODE_LINE_LOOP:
        return store.num_vertices;
    }
    return 0;
}

} // namespace

void Model::Data::tell_of_lines() {
    for (Polyline* line : lines) {
        for_each_place(*line, [&](const vec4& place) {
            facts.extent.points.push_back(place);
            add(facts.bounds, place);
        });
        facts.num_lines += count_lines(*line->get_polyline_data());
    }
}

/// Again, where the model was turned.
void Model::Data::measure() {
    Extent extent;
    Bounds box;
    extent.points.reserve(count_places());
    const auto take = [&](const vec4& place) {
        extent.points.push_back(place);
        add(box, place);
    };
    for (Mesh* mesh : meshes)
        for_each_place(*mesh, take);
    for (VertexPool* cloud : clouds)
        for_each_place(*cloud, take);
    for (Polyline* line : lines)
        for_each_place(*line, take);
    extent.middle = middle_of(box);
    facts.extent = std::move(extent);
}

void Model::Data::stand_up() {
    if (facts.up != UpAxis::minus_z)
        return;
    loaded.model->set_orientation_euler_xyz(90.0f, 0.0f, 0.0f);
    facts.up = UpAxis::y;
    if (std::exchange(is_placed, false))
        return place(placed);
    tree.reset();
    measure();
}

void Model::Data::place(const mat4& transform) {
    if (!std::exchange(is_placed, true))
        own_place = loaded.model->get_transform();
    placed = transform;
    loaded.model->set_transform(placed * own_place);
    tree.reset();
    measure();
}

} // namespace orvex::kit
