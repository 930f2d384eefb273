// From what an OBJ file holds to meshes and materials. Materials come first, since faces name them
// by their ids; then one mesh a group, in the order of the file.

#include "orvex/assets/models/obj/private/obj_builder.h"

#include <cstddef>
#include <new>
#include <string>

#include "orvex/assets/materials/material.h"
#include "orvex/assets/materials/material_mgr.h"
#include "orvex/assets/models/load_undo.h"
#include "orvex/assets/models/private/known_materials.h"
#include "orvex/geometry/mesh/mesh.h"
#include "orvex/geometry/mesh/model.h"
#include "orvex/renderer/records/mesh_data.h"

namespace orvex {

namespace {

// --- Materials -------------------------------------------------------------------------------

vec4 to_vec4(const std::array<float, 4>& color) {
    return vec4(color[0], color[1], color[2], color[3]);
}

/// From the file's 0 to 1000 to the fixed pipeline's 0 to 128. Exactly 0 would light everything.
float shininess_of(const OBJ_Material& source) {
    const float shininess = source.specular_exp / 1000.0f * 128.0f;
    return shininess == 0.0f ? 1.0f : shininess;
}

Material* build_material(const OBJ_Material& source, KnownMaterials& known) {
    if (Material* const of_that_name = known.find(source.name.view()))
        return of_that_name;
    Material* material = MaterialMgr::get()->create_material(source.name.c_str());
    known.add(material);
    material->set_ambient(to_vec4(source.ambient));
    material->set_diffuse(to_vec4(source.diffuse));
    material->set_specular(to_vec4(source.specular));
    material->set_shininess(shininess_of(source));
    material->set_opacity(source.opacity);
    for (const auto& filename : source.texture_filenames)
        if (filename[0] != '\0')
            material->async_loading_add_texture_filename(filename.data());
    return material;
}

void build_materials(OBJ_Model& source, Model& target) {
    KnownMaterials known(target);
    for (const auto& material : source.materials) {
        if (material->face_count <= 0)
            continue;
        material->material = build_material(*material, known);
        if (known.is_new_to_model(material->name.view()))
            target.add_material(material->material, nullptr);
    }
}

// --- Meshes ----------------------------------------------------------------------------------

/// An attribute of a store's vertices in either layout: separate array or field of a record.
class AttributeWriter {
public:
    AttributeWriter(const MeshData& store, vec4* separate, vec4 Vertex::*field)
        : place(store.vertices ? &(store.vertices->*field) : separate)
        , stride(store.vertices ? sizeof(Vertex) / sizeof(vec4) : 1) {}

    void write(float x, float y, float z, float w) {
        place->set(x, y, z, w);
        place += stride;
    }

private:
    vec4* place;
    std::size_t stride;
};

/// The entry that an index of the file names; the zero entry for an index that names none.
template<class Entry>
const Entry& entry_at(const std::vector<Entry>& entries, std::int32_t index) {
    return entries[index >= 0 && static_cast<std::size_t>(index) < entries.size()
                       ? static_cast<std::size_t>(index)
                       : 0];
}

vec3 to_vec3(const OBJ_Float3& entry) {
    return vec3(entry[0], entry[1], entry[2]);
}

class MeshBuilder {
public:
    MeshBuilder(const OBJ_Model& source, Mesh& mesh)
        : source(source)
        , mesh(mesh)
        , store(*mesh.get_mesh_data())
        , positions(store, store.position.data, &Vertex::position)
        , normals(store, store.normal.data, &Vertex::normal)
        , uvs(store, store.uv0.data, &Vertex::uv0) {
        if (!source.texcoords.empty())
            store.prepare_to_fill(store.uv0);
    }

    void add_run(const OBJ_TriangleRun& run) {
        Material* material = source.materials[run.material].material;
        if (material)
            mesh.add_material(material, nullptr);
        const int material_id = material ? material->getid() : 0;

        const OBJ_Triangle* triangle = &source.triangles[run.first];
        for (std::size_t i = 0; i < run.count; ++i, ++triangle, ++num_faces) {
            store.face_materials[num_faces] = material_id;
            add_triangle(*triangle);
        }
    }

private:
    void add_triangle(const OBJ_Triangle& triangle) {
        vec3 p[3];
        for (std::size_t i = 0; i < 3; ++i) {
            p[i] = to_vec3(entry_at(source.vertices, triangle[i].vertex));
            positions.write(p[i].x, p[i].y, p[i].z, 1.0f);
        }
        if (!source.texcoords.empty())
            add_texcoords(triangle);
        if (!source.normals.empty())
            add_normals(triangle);
        else
            add_flat_normals(p);
        add_face();
    }

    void add_texcoords(const OBJ_Triangle& triangle) {
        for (const OBJ_Corner& corner : triangle) {
            const OBJ_Float2& uv = entry_at(source.texcoords, corner.texcoord);
            uvs.write(uv[0], uv[1], 0.0f, 1.0f);
        }
    }

    void add_normals(const OBJ_Triangle& triangle) {
        vec3 n[3];
        for (std::size_t i = 0; i < 3; ++i) {
            n[i] = to_vec3(entry_at(source.normals, triangle[i].normal));
            normals.write(n[i].x, n[i].y, n[i].z, 0.0f);
        }
        // The mean, not made a unit vector again.
        vec4& face_normal = store.face_normals[num_faces];
        face_normal.x = (n[0].x + n[1].x + n[2].x) / 3.0f;
        face_normal.y = (n[0].y + n[1].y + n[2].y) / 3.0f;
        face_normal.z = (n[0].z + n[1].z + n[2].z) / 3.0f;
    }

    void add_flat_normals(const vec3 (&p)[3]) {
        const vec4 a(p[0] - p[1]);
        const vec4 b(p[2] - p[1]);
        const vec4 n = b.cross(a).normalize();
        store.face_normals[num_faces] = n;
        for (int i = 0; i < 3; ++i)
            normals.write(n.x, n.y, n.z, 0.0f);
    }

    void add_face() {
        const auto first = static_cast<unsigned int>(3 * num_faces);
        if (store.index_bits == 16) {
            FaceU16& face = store.faces_u16[num_faces];
            face.a = static_cast<unsigned short>(first);
            face.b = static_cast<unsigned short>(first + 1);
            face.c = static_cast<unsigned short>(first + 2);
            return;
        }
        FaceU32& face = store.faces_u32[num_faces];
        face.a = first;
        face.b = first + 1;
        face.c = first + 2;
    }

    const OBJ_Model& source;
    Mesh& mesh;
    MeshData& store;
    AttributeWriter positions;
    AttributeWriter normals;
    AttributeWriter uvs;
    std::size_t num_faces = 0;
};

/// One mesh of a group. Corners are not shared between triangles: each has three vertices of its
/// own. Throws `std::bad_alloc`; the mesh has ended then.
void build_mesh(const OBJ_Model& source, const OBJ_Group& group, Model& target) {
    FreshMesh fresh(target.create_mesh());
    Mesh& mesh = *fresh;
    mesh.set_name(group.name.c_str());
    if (!mesh.alloc_vertex_data(3 * group.num_filled) ||
        !mesh.alloc_face_data(group.num_filled, false))
        throw std::bad_alloc();
    MeshBuilder builder(source, mesh);
    for (const OBJ_TriangleRun& run : group.triangles)
        builder.add_run(run);
    mesh.set_vertices_color(1.0f, 1.0f, 1.0f, 1.0f, nullptr);
    target.add_child(&mesh);
    static_cast<void>(fresh.release()); // the model holds it now
}

} // namespace

void build_model(OBJ_Model& source, Model& target) {
    build_materials(source, target);
    for (const auto& group : source.groups)
        if (group->num_filled > 0)
            build_mesh(source, *group, target);
}

} // namespace orvex
