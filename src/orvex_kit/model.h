#pragma once

/// @file
/// A model file with its textures, to be told of and to be drawn.

#include <map>
#include <memory>
#include <string>
#include <vector>

#include <orvex/math/vec4.h>

#include "orvex_kit/api.h"
#include "orvex_kit/framing.h"
#include "orvex_kit/normals.h"

namespace orvex {
class GpuProgram;
class Material;
class Mesh;
class Model;
class Node;
class Renderer;
class Texture;
} // namespace orvex

namespace orvex::kit {

/// A texture file that a material names.
struct TextureFile {
    std::string path;        ///< as it was looked for
    orvex::Texture* texture; ///< null: missing, or no picture
};

/// A loaded model with its textures, ready to be told of and to be drawn. All of it on the render
/// thread.
///
/// It draws the meshes itself, face run by face run: a model in the engine draws its children
/// twice, a scene renderer passes over meshes right under its start node, and a mesh drawn as a
/// whole binds its first material only.
class ORVEX_KIT_API Model {
public:
    /// Loads a model, with the textures that its materials name, each file once.
    /// @param path      the file; its materials and textures are looked for beside it
    /// @param renderer  outlives the scene; null serves for telling of it
    /// @return null if no loader reads it
    static std::unique_ptr<Model> load(const std::string& path, orvex::Renderer* renderer);
    /// Releases the model with everything on the GPU, and what it left with the managers: there is
    /// one scene at a time.
    ~Model();
    Model(const Model&) = delete;
    Model& operator=(const Model&) = delete;

    /// Puts the meshes and materials on a drawing path, and gives them the program that
    /// `model_shader` tells for it.
    void use_program(orvex::GpuProgram* program, bool gl3, Normals normals = Normals::by_file);
    /// Draws through the camera that is bound: what is opaque first, the rest blended. The lights
    /// turn with the azimuth and the up axis of an angle: that of the camera has every side lit
    /// alike.
    void draw(const Angle& lit_from = {});

    /// The way up of the model as its file leaves it.
    UpAxis up_axis() const { return up; }
    /// Turns the model so that y is its way up.
    void stand_up();
    /// All vertices that are finite, in the world.
    const Extent& extent() const { return bounds; }
    /// Every texture file that was looked for, in the order of the materials, each once.
    const std::vector<TextureFile>& texture_files() const { return textures; }
    /// Every file that the scene was read from, and those that it looked for: the model, its
    /// material libraries, its textures.
    std::vector<std::string> files() const;
    /// Its meshes, in the order of the file. They belong to the model.
    const std::vector<orvex::Mesh*>& all_meshes() const { return meshes; }
    /// Its materials, in the order of the file. They belong to the model.
    std::vector<orvex::Material*> all_materials() const;
    unsigned long num_vertices() const; ///< of all meshes
    unsigned long num_faces() const;    ///< of all meshes

private:
    /// Faces in a row that share a material.
    struct Run {
        orvex::Mesh* mesh;
        orvex::Material* material; ///< null: none
        unsigned first_face;
        unsigned last_face;
    };

    orvex::Renderer* renderer;
    orvex::Model* model;
    std::string path;
    bool is_3ds;
    UpAxis up = UpAxis::y;
    orvex::GpuProgram* program = nullptr;
    std::vector<orvex::Mesh*> meshes;
    std::vector<Run> opaque;
    std::vector<Run> blended;
    std::vector<TextureFile> textures;
    std::map<std::string, std::size_t> texture_by_path;
    Extent bounds;

    Model(orvex::Renderer* renderer, orvex::Model* model, const std::string& path);
    void gather(orvex::Node* node);
    void add_runs(orvex::Mesh* mesh);
    void measure();
    void load_textures(const std::string& folder);
    orvex::Texture* texture_from(const std::string& path);
    void smooth_normals();
    bool is_angular() const;
    bool is_faceted(Normals normals) const;
    void draw_run(const Run& run);
    void set_lights(const Axes& axes);
    void set_colors(orvex::Material* material);
};

} // namespace orvex::kit
