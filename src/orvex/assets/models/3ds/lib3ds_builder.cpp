// From the record of a load to meshes and materials. Nothing here looks at lib3ds; what a face says
// of its material is an index into the record.

#include <vector>

#include "orvex/assets/materials/material.h"
#include "orvex/assets/materials/material_mgr.h"
#include "orvex/assets/models/3ds/loader_3d_lib3ds.h"
#include "orvex/assets/models/3ds/private/lib3ds_records.h"
#include "orvex/assets/models/load_undo.h"
#include "orvex/assets/models/private/known_materials.h"
#include "orvex/geometry/mesh/mesh.h"
#include "orvex/geometry/mesh/model.h"
#include "orvex/renderer/records/mesh_data.h"

namespace orvex {

// --- Materials -------------------------------------------------------------------------------

namespace {

vec4 opaque(const Lib3dsFloat4& color) {
    return vec4(color[0], color[1], color[2], 1.0f);
}

Material* create_material(const orvexLib3dsMaterial& record) {
    Material* const material = MaterialMgr::get()->create_material(record.name);
    material->set_ambient(opaque(record.ambient));
    material->set_diffuse(opaque(record.diffuse));
    material->set_specular(opaque(record.specular));
    // Exactly 0 would light everything.
    material->set_shininess(record.shininess == 0.0f ? 1.0f : record.shininess);
    material->set_opacity(record.opacity);
    if (record.texture_filename[0] != '\0')
        material->async_loading_add_texture_filename(record.texture_filename);
    return material;
}

/// Adds the material that has the name already, if the model has none of it, or else a new one.
void add_to_model(orvexLib3dsMaterial& record, KnownMaterials& known, Model& model) {
    Material* const of_that_name = known.find(record.name);
    const bool is_new = known.is_new_to_model(record.name);
    if (of_that_name) {
        if (is_new)
            model.add_material(of_that_name, nullptr);
        return;
    }
    record.material = create_material(record);
    known.add(record.material);
    model.add_material(record.material, nullptr);
}

} // namespace

bool Loader3D_Lib3ds::build_material(orvexLib3dsMaterial* record, Model* model) {
    if (!record || !model)
        return false;
    KnownMaterials known(*model);
    add_to_model(*record, known, *model);
    return true;
}

bool Loader3D_Lib3ds::build_model(Model* model) {
    if (!model)
        return false;
    KnownMaterials known(*model);
    for (std::uint64_t i = 0; i < lib3ds_data->num_materials; ++i)
        add_to_model(lib3ds_data->materials[i], known, *model);
    for (const auto& record : lib3ds_data->meshes)
        if (build_mesh(record.get(), model)) {
            FreshMesh mesh(record->mesh);
            model->add_child(mesh.get());
            static_cast<void>(mesh.release()); // the model holds it now
        }
    return true;
}

// --- Meshes ----------------------------------------------------------------------------------

namespace {

/// Fills the faces of one mesh, and gives the mesh the materials that they use.
class FaceBuilder {
public:
    FaceBuilder(const sLib3dsMesh& record, Mesh& mesh, orvexLib3dsMaterial* materials,
                std::uint64_t num_materials)
        : record(record)
        , mesh(mesh)
        , store(*mesh.get_mesh_data())
        , materials(materials)
        , material_ids(num_materials, unused)
        , default_material(MaterialMgr::get()->create_material(nullptr)) {}

    void build() {
        if (store.index_bits == 16)
            fill_indices(store.faces_u16);
        else
            fill_indices(store.faces_u32);
        for (std::uint32_t i = 0; i < record.num_faces; ++i) {
            set_normal(i);
            store.face_materials[i] = material_of(i);
        }
    }

private:
    template<class Face>
    void fill_indices(Face* to) {
        for (std::uint32_t i = 0; i < record.num_faces; ++i) {
            to[i].a = record.faces[i][0];
            to[i].b = record.faces[i][1];
            to[i].c = record.faces[i][2];
        }
    }

    /// The normals are those of corners, and these are not turned as those of vertices are.
    void set_normal(std::uint32_t i) {
        const Lib3dsFloat3& from = record.normals[i];
        vec4& to = store.face_normals[i];
        to.x = from[0];
        to.y = from[1];
        to.z = from[2];
    }

    int material_of(std::uint32_t i) {
        const std::uint32_t index = record.face_materials ? record.face_materials[i].material : 0;
        if (index >= material_ids.size() || !materials[index].material)
            return use(default_material, default_material_id);
        return use(materials[index].material, material_ids[index]);
    }

    /// Gives the mesh the material at its first face, and remembers its id for all the others.
    int use(Material* material, int& id) {
        if (id == unused) {
            id = material->getid();
            mesh.add_material(material, nullptr);
        }
        return id;
    }

    static constexpr int unused = -1;

    const sLib3dsMesh& record;
    Mesh& mesh;
    MeshData& store;
    const orvexLib3dsMaterial* materials;
    std::vector<int> material_ids; ///< of those that the mesh has already
    Material* default_material;
    int default_material_id = unused;
};

void build_vertices(const sLib3dsMesh& record, MeshData& store) {
    if (record.num_texcoords >= record.num_vertices)
        store.prepare_to_fill(store.uv0);
    for (std::uint32_t i = 0; i < record.num_vertices; ++i) {
        const Lib3dsFloat3& position = record.vertices[i];
        store.set_position(i, vec3(position[0], position[2], -position[1]));
        if (i < record.num_texcoords)
            store.set_uv0(i, vec4(record.texcoords[i][0], record.texcoords[i][1], 0.0f, 1.0f));
        // By number of vertex though they are per corner, and without the minus of positions.
        if (i < record.num_normals) {
            const Lib3dsFloat3& normal = record.normals[i];
            store.set_normal(i, vec3(normal[0], normal[2], normal[1]));
        }
    }
}

} // namespace

bool Loader3D_Lib3ds::build_mesh(sLib3dsMesh* record, Model* model) {
    constexpr std::uint32_t vertices_of_a_face = 3;
    if (!record || !model || record->num_vertices < vertices_of_a_face || record->num_faces == 0)
        return false;
    FreshMesh mesh(model->create_mesh());
    mesh->set_name(record->name);
    if (!mesh->alloc_vertex_data(record->num_vertices) ||
        !mesh->alloc_face_data(record->num_faces, false))
        return false;
    build_vertices(*record, *mesh->get_mesh_data());
    mesh->set_vertices_color(1.0f, 1.0f, 1.0f, 1.0f, nullptr);
    FaceBuilder(*record, *mesh, lib3ds_data->materials.get(), lib3ds_data->num_materials).build();
    record->mesh = mesh.release();
    return true;
}

} // namespace orvex
