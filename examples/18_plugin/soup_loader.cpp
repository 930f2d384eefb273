/// @file
/// A plugin that loads models from a text format of its own: one triangle a line, each corner as
/// x y z u v. A line "texture <name>" gives the model its picture, "#" starts a comment.

#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <orvex/assets/materials/material.h>
#include <orvex/assets/materials/material_mgr.h>
#include <orvex/assets/textures/texture_mgr.h>
#include <orvex/base/loader_3d.h>
#include <orvex/geometry/mesh/mesh.h>
#include <orvex/geometry/mesh/model.h>
#include <orvex/math/vec4.h>

namespace {

struct Corner {
    float x, y, z, u, v;
};

struct Soup {
    std::string texture;
    std::vector<Corner> corners; ///< three for each triangle
};

bool read_triangle(std::istream& line, Soup& soup) {
    for (int i = 0; i < 3; ++i) {
        Corner corner{};
        if (!(line >> corner.x >> corner.y >> corner.z >> corner.u >> corner.v))
            return false;
        soup.corners.push_back(corner);
    }
    return true;
}

bool read_line(const std::string& text, Soup& soup) {
    std::istringstream line(text);
    std::string word;
    if (!(line >> word) || word[0] == '#')
        return true;
    if (word == "texture")
        return static_cast<bool>(line >> soup.texture);
    line.seekg(0);
    return read_triangle(line, soup);
}

bool read_soup(const std::string& path, Soup& soup) {
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);)
        if (!read_line(line, soup))
            return false;
    return !soup.corners.empty();
}

/// The managers own material and texture; the host releases them there.
orvex::Material* make_material(const std::string& name, const std::string& texture_path) {
    orvex::Material* const material = orvex::MaterialMgr::get()->create_material(name.c_str());
    orvex::Texture* const texture =
        orvex::TextureMgr::get()->create_texture_2d_from_file(texture_path.c_str(), false);
    if (texture)
        material->add_texture(texture);
    return material;
}

bool fill(orvex::Mesh& mesh, const std::vector<Corner>& corners) {
    const unsigned long faces = corners.size() / 3;
    if (!mesh.alloc_vertex_data(corners.size()) || !mesh.alloc_face_data(faces, false))
        return false;
    for (unsigned long i = 0; i < corners.size(); ++i) {
        const Corner& corner = corners[i];
        mesh.set_vertex_position(i, orvex::vec4(corner.x, corner.y, corner.z, 1.0f));
        mesh.set_vertex_uv(i, orvex::vec4(corner.u, corner.v, 0.0f, 1.0f), 0);
    }
    for (unsigned int face = 0; face < faces; ++face)
        mesh.set_face_indexes(face, 3 * face, 3 * face + 1, 3 * face + 2);
    mesh.set_vertices_color(1.0f, 1.0f, 1.0f, 1.0f, nullptr);
    mesh.compute_faces_normal(nullptr);
    mesh.compute_vertices_normal(nullptr);
    mesh.update_bounding_sphere(nullptr);
    return true;
}

/// Ends a mesh that the model didn't get.
struct MeshRelease {
    void operator()(orvex::Mesh* mesh) const { mesh->release(nullptr, nullptr); }
};
using OwnMesh = std::unique_ptr<orvex::Mesh, MeshRelease>;

class SoupLoader : public orvex::Loader3D {
public:
    SoupLoader() {
        set_name("example_soup_loader");
        set_description("Triangle soup loader");
        set_author("orvex");
        set_type(orvex::PLUGIN_TYPE_LOADER_3D);
    }

    // Everything that can fail comes before the model is touched: a loader that returns false, or
    // whose memory runs out, leaves nothing behind.
    bool load_from_file(orvex::Model* model, const char* filename) override {
        Soup soup;
        if (!model || !filename || !read_soup(std::string(get_model_dir()) + filename, soup))
            return false;
        OwnMesh mesh(model->create_mesh());
        mesh->set_name(filename);
        if (!fill(*mesh, soup.corners))
            return false;
        if (!soup.texture.empty())
            mesh->add_material(make_material(filename, get_resource_dir() + soup.texture), nullptr);
        model->add_child(mesh.get());
        static_cast<void>(mesh.release()); // the model's from here on
        return true;
    }
};

} // namespace

orvex::Plugin* orvex_create_plugin() {
    return new SoupLoader;
}

void orvex_destroy_plugin(orvex::Plugin* plugin) {
    delete plugin;
}
