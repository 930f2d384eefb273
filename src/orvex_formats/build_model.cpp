#include "orvex_formats/private/build_model.h"

#include <algorithm>
#include <map>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include <orvex/assets/materials/material.h>
#include <orvex/assets/materials/material_mgr.h>
#include <orvex/assets/models/load_undo.h>
#include <orvex/assets/textures/texture.h>
#include <orvex/assets/textures/texture_mgr.h>
#include <orvex/geometry/lines/polyline.h>
#include <orvex/geometry/mesh/mesh.h>
#include <orvex/geometry/mesh/model.h>
#include <orvex/geometry/points/vertex_pool.h>
#include <orvex/renderer/records/image.h>
#include <orvex/renderer/records/mesh_data.h>
#include <orvex/scene/camera.h>
#include <orvex/scene/light.h>

#include "orvex_formats/private/normals.h"
#include "orvex_formats/private/refusal.h"
#include "orvex_formats/private/spare_memory.h"
#include "orvex_formats/private/workers.h"

namespace orvex::formats {

namespace {

// --- Pictures

/// Makes textures of pictures, each once, when it is asked for: many a file carries pictures that
/// no material names.
class Textures {
public:
    explicit Textures(std::vector<Picture>& pictures) {
        for (Picture& picture : pictures)
            told.emplace(picture.name, &picture);
    }

    bool knows(const std::string& name) const { return told.find(name) != told.end(); }

    /// @param name  a known one
    Texture* of(const std::string& name) {
        const auto [entry, is_new] = made.emplace(name, nullptr);
        if (is_new)
            entry->second = make(*told.at(name));
        return entry->second;
    }

    std::vector<std::string> notes;

private:
    Texture* make(Picture& picture) {
        Texture* texture = picture.bytes.empty() ? make_white() : decode(picture);
        std::vector<unsigned char>().swap(picture.bytes);
        if (!texture) {
            notes.push_back("the picture \"" + in_words(picture.name) +
                            "\" can't be decoded, and is white");
            texture = make_white(); // so that those behind it keep their places
        }
        texture->set_name(picture.name.c_str());
        return texture;
    }

    static Texture* decode(const Picture& picture) {
        return TextureMgr::get()->create_texture_2d_from_memory(picture.bytes.data(),
                                                                picture.bytes.size(), false);
    }

    static Texture* make_white() {
        Texture* const texture = TextureMgr::get()->create_texture_2d(1, 1, PF_RGBA_U8);
        const Image* const image = texture->get_image_ptr();
        if (!image || !image->pixmap_u8)
            throw std::bad_alloc();
        std::fill_n(image->pixmap_u8, 4, static_cast<unsigned char>(255));
        return texture;
    }

    std::map<std::string, Picture*> told;
    std::map<std::string, Texture*> made;
};

// --- Materials

Material* make_material(const SurfaceMaterial& told, Textures& textures) {
    Material* const material = MaterialMgr::get()->create_material(told.name.c_str());
    if (!material)
        throw std::bad_alloc();
    material->set_ambient(told.ambient);
    material->set_diffuse(told.diffuse);
    material->set_specular(told.specular);
    material->set_shininess(told.shininess);
    material->set_opacity(told.opacity);
    for (const std::string& name : told.textures)
        if (!textures.knows(name))
            material->async_loading_add_texture_filename(name.c_str());
        else
            material->add_texture(textures.of(name));
    if (told.physical)
        material->set_physical(&*told.physical);
    return material;
}

// --- Surfaces

/// One attribute of all vertices, in an array of its own or in the records of the vertices. Filling
/// it is many times as fast as the store's operations, which look at its layout for each vertex.
class Column {
public:
    Column(MeshData& store, VertexAttribArray& array, vec4 Vertex::*member)
        : first(reinterpret_cast<unsigned char*>(
              store.separate_vertex_arrays ? array.data : &(store.vertices->*member)))
        , stride(store.separate_vertex_arrays ? sizeof(vec4) : sizeof(Vertex)) {}

    template<class ValueOf>
    void fill(std::size_t size, ValueOf value_of) const {
        for (std::size_t i = 0; i < size; ++i)
            *reinterpret_cast<vec4*>(first + i * stride) = value_of(i);
    }

private:
    unsigned char* first;
    std::size_t stride;
};

void fill_uvs(MeshData& store, VertexAttribArray& array, vec4 Vertex::*member,
              const std::vector<vec2>& uvs) {
    if (uvs.size() == store.num_vertices)
        store.prepare_to_fill(array);
    Column(store, array, member).fill(uvs.size(), [&](std::size_t i) {
        return vec4(uvs[i].x, uvs[i].y, 0.0f, 1.0f);
    });
}

void fill_vertices(const Surface& surface, MeshData& store) {
    const std::size_t size = surface.positions.size();
    Column(store, store.position, &Vertex::position).fill(size, [&](std::size_t i) {
        const vec3& place = surface.positions[i];
        return vec4(place.x, place.y, place.z, 1.0f);
    });
    Column(store, store.normal, &Vertex::normal).fill(size, [&](std::size_t i) {
        const vec3& normal = surface.normals[i];
        return vec4(normal.x, normal.y, normal.z, 0.0f);
    });
    if (!surface.colors.empty()) {
        store.prepare_to_fill(store.color);
        Column(store, store.color, &Vertex::color).fill(size, [&](std::size_t i) {
            return surface.colors[i];
        });
    }
    fill_uvs(store, store.uv0, &Vertex::uv0, surface.uvs[0]);
    fill_uvs(store, store.uv1, &Vertex::uv1, surface.uvs[1]);
}

/// Faces of few vertices are narrow.
template<class Face>
void fill_corners(const std::vector<Triangle>& triangles, Face* faces) {
    using Index = decltype(Face::a);
    for (std::size_t i = 0; i < triangles.size(); ++i)
        faces[i] = {static_cast<Index>(triangles[i][0]), static_cast<Index>(triangles[i][1]),
                    static_cast<Index>(triangles[i][2])};
}

/// As `Mesh::compute_faces_normal` has it, to the bit, by all processors and from plain numbers.
void fill_face_normals(const Surface& surface, vec4* normals) {
    constexpr std::size_t piece = 1u << 16;
    const std::size_t count = surface.triangles.size();
    share_out((count + piece - 1) / piece, [&](std::size_t number) {
        const std::size_t end = std::min(count, (number + 1) * piece);
        for (std::size_t i = number * piece; i < end; ++i) {
            const Triangle& triangle = surface.triangles[i];
            const vec3 middle = surface.positions[triangle[1]];
            const vec3 ahead = surface.positions[triangle[2]] - middle;
            vec3 normal = ahead.cross(surface.positions[triangle[0]] - middle);
            normal.normalize();
            normals[i] = vec4(normal.x, normal.y, normal.z, 0.0f);
        }
    });
}

/// Ends a list whose numbers have been taken over.
template<class Value>
void drop(std::vector<Value>& list) {
    std::vector<Value>().swap(list);
}

/// Gives a mesh the materials of its faces, each once.
class FaceMaterials {
public:
    FaceMaterials(Mesh& mesh, const std::vector<Material*>& materials)
        : mesh(mesh)
        , materials(materials)
        , is_known(materials.size()) {}

    /// @return its id; 0 for none
    int id_of(std::uint32_t place) {
        if (place >= materials.size())
            return 0;
        if (!is_known[place])
            mesh.add_material(materials[place], nullptr);
        is_known[place] = true;
        return materials[place]->getid();
    }

private:
    Mesh& mesh;
    const std::vector<Material*>& materials;
    std::vector<bool> is_known;
};

void fill_faces(const Surface& surface, const std::vector<Material*>& materials, Mesh& mesh) {
    MeshData& store = *mesh.get_mesh_data();
    FaceMaterials known(mesh, materials);
    if (store.index_bits == 16)
        fill_corners(surface.triangles, store.faces_u16);
    else
        fill_corners(surface.triangles, store.faces_u32);
    for (std::size_t i = 0; i < surface.triangle_materials.size(); ++i)
        store.face_materials[i] = known.id_of(surface.triangle_materials[i]);
    store.faces_need_update = true;
    fill_face_normals(surface, store.face_normals);
}

void add_surface(Surface surface, const std::vector<Material*>& materials, Model& model) {
    if (surface.triangles.empty())
        return;
    add_normals(surface);
    give_back_spare_memory(surface.positions.size() * sizeof(vec3));
    FreshMesh mesh(model.create_mesh());
    mesh->set_name(surface.name.c_str());
    if (!mesh->alloc_vertex_data(surface.positions.size()) ||
        !mesh->alloc_face_data(surface.triangles.size(), false))
        throw std::bad_alloc();
    if (surface.colors.empty())
        mesh->set_vertices_color(1.0f, 1.0f, 1.0f, 1.0f, nullptr);
    fill_vertices(surface, *mesh->get_mesh_data());
    drop(surface.normals);
    fill_faces(surface, materials, *mesh);
    mesh->update_bounding_sphere(nullptr);
    model.add_child(mesh.get());
    static_cast<void>(mesh.release()); // the model holds it now
}

// --- Clouds

struct EndPool {
    void operator()(VertexPool* pool) const { pool->kill(nullptr, nullptr); }
};

void add_cloud(const Cloud& cloud, Model& model) {
    std::unique_ptr<VertexPool, EndPool> pool(new VertexPool);
    pool->set_name(cloud.name.c_str());
    if (cloud.positions.empty())
        return;
    if (!pool->init_pool(cloud.positions.size(), false))
        throw std::bad_alloc();
    for (std::size_t i = 0; i < cloud.positions.size(); ++i) {
        pool->set_vertex_position(i, cloud.positions[i]);
        pool->set_vertex_color(i, cloud.colors.empty() ? vec4(1.0f, 1.0f, 1.0f, 1.0f)
                                                       : cloud.colors[i]);
    }
    model.add_child(pool.get());
    static_cast<void>(pool.release()); // the model holds it now
}

// --- Lines

struct EndLines {
    void operator()(Polyline* lines) const { lines->kill(nullptr, nullptr); }
};

void add_lines(const Lines& told, Model& model) {
    if (told.positions.empty())
        return;
    std::unique_ptr<Polyline, EndLines> lines(new Polyline);
    lines->set_name(told.name.c_str());
    if (!lines->initialize(told.positions.size(), LINE_RENDER_MODE_LINES))
        throw std::bad_alloc();
    for (std::size_t i = 0; i < told.positions.size(); ++i) {
        lines->set_vertex_position(i, told.positions[i]);
        lines->set_vertex_color(i, told.colors.empty() ? vec4(1.0f, 1.0f, 1.0f, 1.0f)
                                                       : told.colors[i]);
    }
    model.add_child(lines.get());
    static_cast<void>(lines.release()); // the model holds it now
}

// --- Cameras and lights

struct EndNode {
    void operator()(Node* node) const { node->kill(nullptr, nullptr); }
};

void add_camera(const Viewpoint& told, Model& model) {
    std::unique_ptr<Camera, EndNode> camera(new Camera);
    camera->set_name(told.name.c_str());
    camera->set_position(vec4(told.eye.x, told.eye.y, told.eye.z, 1.0f));
    // It stays level about what is upward.
    camera->set_up(vec4(told.up.x, told.up.y, told.up.z, 0.0f));
    camera->set_lookat(vec4(told.forward.x, told.forward.y, told.forward.z, 0.0f));
    const float aspect = told.aspect > 0.0f ? told.aspect : camera->get_aspect();
    if (told.height > 0.0f) {
        const float up = told.height / 2.0f, right = up * aspect;
        camera->build_projection_ortho(-right, right, -up, up, told.near, told.far, true);
    } else {
        const float far = told.far > 0.0f ? told.far : -1.0f; // which is nowhere
        camera->build_projection_persp(told.opening, aspect, told.near, far, true);
    }
    model.add_child(camera.get());
    static_cast<void>(camera.release()); // the model holds it now
}

void add_light(const Lamp& told, unsigned int index, Model& model) {
    std::unique_ptr<Light, EndNode> light(new Light);
    light->set_name(told.name.c_str());
    light->set_index(index);
    light->set_position(told.place.x, told.place.y, told.place.z);
    if (told.reach > 0.0f)
        light->set_radius(told.reach);
    const vec4 color(told.color.x, told.color.y, told.color.z, 1.0f);
    light->set_ambient(0.0f, 0.0f, 0.0f, 1.0f); // it brightens what it reaches alone
    light->set_diffuse(color);
    light->set_specular(color);
    model.add_child(light.get());
    static_cast<void>(light.release()); // the model holds it now
}

} // namespace

std::vector<std::string> build_model(Draft&& draft, Model& model) {
    Textures textures(draft.pictures);
    std::vector<Material*> materials;
    for (const SurfaceMaterial& told : draft.materials) {
        materials.push_back(make_material(told, textures));
        model.add_material(materials.back(), nullptr);
    }
    for (Surface& surface : draft.surfaces)
        add_surface(std::move(surface), materials, model);
    for (const Cloud& cloud : draft.clouds)
        add_cloud(cloud, model);
    for (const Lines& lines : draft.lines)
        add_lines(lines, model);
    for (const Viewpoint& camera : draft.cameras)
        add_camera(camera, model);
    unsigned int index = 0;
    for (const Lamp& lamp : draft.lamps)
        add_light(lamp, index++, model);
    return std::move(textures.notes);
}

} // namespace orvex::formats
