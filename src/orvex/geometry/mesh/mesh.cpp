/// @file
/// A mesh and its store: taking, sharing and freeing it, room for vertices and faces, and access
/// to faces.
///
/// The store is counted, as several meshes may share it, and the last to let go frees it. Every
/// operation first asks whether there is a store at all. Vertices are allocated before faces:
/// their number decides the width of an index.

#include "orvex/geometry/mesh/mesh.h"

#include <algorithm>
#include <cstring>
#include <exception>

#include "orvex/base/log_mgr.h"
#include "orvex/base/private/misuse.h"
#include "orvex/geometry/mesh/private/mesh_contents.h"
#include "orvex/geometry/mesh/private/mesh_user_geometry_data.h"
#include "orvex/geometry/mesh/private/shared_store.h"
#include "orvex/math/mat4.h"
#include "orvex/platform/private/large_pages.h"
#include "orvex/renderer/records/mesh_data_packed.h"
#include "orvex/renderer/renderer.h"
#include "orvex/scene/node.h"
#include "orvex/scene/private/node_data.h"

namespace orvex {

namespace {

/// From here on a 16-bit index can't reach every vertex.
constexpr unsigned long first_count_of_wide_faces = 0x10000;

MeshData* make_store(VERTEX_FORMAT format) {
    switch (format) {
    case VERTEX_FORMAT_96:
        return new MeshData(format);
    case VERTEX_FORMAT_64:
        return new MeshData_64(format);
    case VERTEX_FORMAT_32:
        return new MeshData_32(format);
    case VERTEX_FORMAT_PHYSX_CLOTH:
        return new MeshData_PhysXCloth(format);
    }
    return nullptr;
}

} // namespace

Mesh::Mesh()
    : Mesh(VERTEX_FORMAT_96) {}

Mesh::Mesh(VERTEX_FORMAT format)
    : mesh_data(nullptr) {
    set_type(NODE_TYPE_MESH);
    note_drawn_by_engine(*this);
    NodeData::of(*this).kind = this;
    init_mesh_data(nullptr, format);
}

Mesh::~Mesh() = default;

Mesh* Mesh::from_node(Node* node) {
    return node_as<Mesh>(node);
}

bool Mesh::_cleanup(Renderer* renderer) {
    cleanup_mesh_data(renderer);
    return Object::_cleanup(renderer);
}

int Mesh::get_renderer_id() {
    return mesh_data ? mesh_data->renderer_id : 0;
}

void Mesh::set_tessellation_state(bool state, Node* node) {
    if (mesh_data)
        mesh_data->tessellation_state = state;
    Object::set_tessellation_state(state, node);
}

unsigned long Mesh::get_num_vertices(Node* node) {
    const unsigned long own = mesh_data ? mesh_data->num_vertices : 0;
    return own + Object::get_num_vertices(node);
}

unsigned long Mesh::get_num_faces(Node* node) {
    const unsigned long own = mesh_data ? mesh_data->num_faces : 0;
    return own + Object::get_num_faces(node);
}

Vertex* Mesh::get_vertex(unsigned long i) {
    return mesh_data ? mesh_data->get_vertex(i) : nullptr;
}

Vertex Mesh::get_vertex_v2(unsigned long i) {
    return mesh_data ? mesh_data->get_vertex_v2(i) : Vertex();
}

bool Mesh::init_mesh_data(Renderer* renderer, VERTEX_FORMAT format) {
    return _set_mesh_data(renderer, make_store(format));
}

MeshData* Mesh::get_mesh_data() const {
    return mesh_data;
}

bool Mesh::share_mesh_data(Renderer* renderer, Mesh* other) {
    if (!other)
        return misuse("Mesh::share_mesh_data", "a null mesh");
    return _set_mesh_data(renderer, other->mesh_data);
}

bool Mesh::cleanup_mesh_data(Renderer* renderer) {
    return _set_mesh_data(renderer, nullptr);
}

namespace {

/// On either path a kill leaves what the other one alone makes: the vertex array, or the edges of
/// quads. A store that ends has to leave neither.
void kill_objects(Renderer& renderer, MeshData& store) {
    renderer.vertex_buffer_kill(&store);
    if (store.vertex_array_id == 0 && store.quad_edge_buffer_id == 0)
        return;
    store.set_use_generic_vertex_attribs_state(!store.get_use_generic_vertex_attribs_state());
    renderer.vertex_buffer_kill(&store);
}

} // namespace

bool Mesh::_set_mesh_data(Renderer* renderer, MeshData* data) {
    take_store(mesh_data, data, [this, renderer] {
        if (renderer)
            kill_objects(*renderer, *mesh_data);
        free_mesh_data();
        delete mesh_data;
    });
    if (mesh_data)
        mesh_data->mesh_id = get_id();
    return true;
}

namespace {

void free_face_lists(MeshData& store) {
    delete[] store.faces_u16;
    delete[] store.faces_u32;
    delete[] store.face_normals;
    delete[] store.face_materials;
    store.faces_u16 = nullptr;
    store.faces_u32 = nullptr;
    store.face_normals = nullptr;
    store.face_materials = nullptr;
}

} // namespace

void Mesh::free_mesh_data() {
    if (!mesh_data)
        return;
    mesh_data->free_vertex_data();
    instancing_cleanup();
    if (mesh_data->num_faces != 0) {
        free_face_lists(*mesh_data);
        mesh_data->num_faces = 0;
    }
    delete[] mesh_data->subsets;
    mesh_data->subsets = nullptr;
    mesh_data->num_subsets = 0;
    mesh_data->current_subset = nullptr;
    mesh_data->free_quad_edge_data();
}

void Mesh::set_vertex_alloc_params(bool separate, int alignment) {
    if (!mesh_data)
        return;
    mesh_data->separate_vertex_arrays = separate;
    mesh_data->alignment = alignment;
}

bool Mesh::alloc_vertex_data(unsigned long count) {
    if (!mesh_data)
        return false;
    if (mesh_data->alloc_vertex_data(count))
        return true;
    LogMgr::get()->tracef_error(
        "Mesh %s - vertices memory allocation failed (bad alloc - %zu vertices required).",
        get_name(), count);
    return false;
}

bool Mesh::alloc_user_vertex_attribs(unsigned long count) {
    if (!mesh_data || mesh_data->num_vertices == 0) {
        LogMgr::get()->tracef_error(
            "Mesh %s::%d - the mesh has no vertex. Call alloc_vertex_data() before.", get_name(),
            get_id());
        return false;
    }
    if (!mesh_data->alloc_user_vertex_attribs(count)) {
        LogMgr::get()->tracef_error("Mesh %s::%d - user vertex attribs memory allocation failed.",
                                    get_name(), get_id());
        return false;
    }
    user_vertex_attribs_allocated = true;
    return true;
}

namespace {

void allocate_face_lists(MeshData& store, unsigned long count, bool wide) {
    free_face_lists(store);
    store.num_faces = count;
    store.index_bits = wide ? 32 : 16;
    if (wide)
        store.faces_u32 = new_large_array<FaceU32>(count);
    else
        store.faces_u16 = new_large_array<FaceU16>(count);
    store.face_normals = new_large_array<vec4>(count);
    store.face_materials = new_large_array<int>(count);
    std::fill_n(store.face_materials, count, 0);
}

} // namespace

bool Mesh::alloc_face_data(unsigned long count, bool force_32_bits) {
    if (!mesh_data)
        return false;
    const bool wide = force_32_bits || mesh_data->num_vertices >= first_count_of_wide_faces;
    try {
        allocate_face_lists(*mesh_data, count, wide);
        return true;
    } catch (const std::exception& error) {
        LogMgr::get()->tracef_error("Mesh %s - faces memory allocation failed: %s", get_name(),
                                    error.what());
        return false;
    }
}

void Mesh::free_vertex_attrib_array(VertexAttribArray& array) {
    if (mesh_data)
        mesh_data->free_vertex_attrib_array(array);
}

void Mesh::set_draw_start_end_vertex(unsigned long start, unsigned long end) {
    if (!mesh_data)
        return;
    mesh_data->draw_start_vertex = start;
    mesh_data->draw_end_vertex = end;
}

namespace {

template<class Face>
void copy_faces(Face* to, const Face* from, unsigned long count) {
    if (to && from)
        std::memcpy(to, from, count * sizeof(Face));
}

} // namespace

bool Mesh::copy_geometry(Mesh* source) {
    if (!source)
        return misuse("Mesh::copy_geometry", "a null source");
    if (!mesh_data)
        return misuse("Mesh::copy_geometry", "a mesh without a store");
    if (!source->mesh_data || source->get_num_vertices(nullptr) == 0 ||
        source->get_num_faces(nullptr) == 0)
        return misuse("Mesh::copy_geometry", "a source without vertices or faces");
    free_mesh_data();
    const MeshData& from = *source->mesh_data;
    if (!mesh_data->copy_vertex_data(source->mesh_data))
        return false;
    if (!alloc_face_data(from.num_faces, false))
        return false;
    if (mesh_data->index_bits == 16)
        copy_faces(mesh_data->faces_u16, from.faces_u16, from.num_faces);
    else
        copy_faces(mesh_data->faces_u32, from.faces_u32, from.num_faces);
    mesh_upload::mark_faces(*mesh_data);
    return true;
}

bool Mesh::set_face_material(int id, unsigned long face) {
    if (!mesh_data || !mesh_data->face_materials || face >= mesh_data->num_faces)
        return false;
    mesh_data->face_materials[face] = id;
    return true;
}

bool Mesh::set_material_to_all_faces(int id) {
    for (unsigned long face = 0; set_face_material(id, face); ++face) {
    }
    return true;
}

namespace {

bool has_face(const MeshData* store, unsigned long face) {
    return mesh_contents::has_faces(store) && face < store->num_faces;
}

void write_if_asked(unsigned int* out, unsigned int value) {
    if (out)
        *out = value;
}

} // namespace

void Mesh::set_face_indexes(unsigned long face, unsigned int a, unsigned int b, unsigned int c) {
    if (!has_face(mesh_data, face))
        return;
    if (mesh_data->index_bits == 16)
        mesh_data->faces_u16[face] = {static_cast<unsigned short>(a),
                                      static_cast<unsigned short>(b),
                                      static_cast<unsigned short>(c)};
    else
        mesh_data->faces_u32[face] = {a, b, c};
    mesh_data->faces_need_update = true;
}

void Mesh::get_face_indexes(unsigned long face, unsigned int* a, unsigned int* b,
                            unsigned int* c) const {
    if (!has_face(mesh_data, face))
        return;
    const FaceU32 indexes = mesh_contents::face_at(*mesh_data, face);
    write_if_asked(a, indexes.a);
    write_if_asked(b, indexes.b);
    write_if_asked(c, indexes.c);
}

void Mesh::set_render_wireframe_quad_state(bool state) {
    if (mesh_data)
        mesh_data->render_wireframe_quad = state;
}

bool Mesh::get_render_wireframe_quad_state() const {
    return mesh_data && mesh_data->render_wireframe_quad;
}

void* Mesh::map_vertex_buffer(Renderer* renderer) {
    if (!renderer || !mesh_data) {
        misuse("Mesh::map_vertex_buffer", "a null renderer, or a mesh without a store");
        return nullptr;
    }
    mesh_data->mapped_vertex_buffer = renderer->vertex_buffer_map(mesh_data->vertex_buffer_id);
    return mesh_data->mapped_vertex_buffer;
}

vec4* Mesh::map_vertex_buffer_vec4(Renderer* renderer) {
    if (!mesh_data || !mesh_data->separate_vertex_arrays)
        return nullptr;
    return static_cast<vec4*>(map_vertex_buffer(renderer));
}

bool Mesh::unmap_vertex_buffer(Renderer* renderer) {
    if (!renderer || !mesh_data)
        return misuse("Mesh::unmap_vertex_buffer", "a null renderer, or a mesh without a store");
    renderer->vertex_buffer_unmap(mesh_data->vertex_buffer_id);
    return true;
}

void* Mesh::get_map_vertex_buffer() const {
    return mesh_data ? mesh_data->mapped_vertex_buffer : nullptr;
}

vec4* Mesh::get_mapped_vertex_buffer_vec4() const {
    return static_cast<vec4*>(get_map_vertex_buffer());
}

} // namespace orvex
