#pragma once

#include <map>
#include <string>
#include <vector>

#include <orvex/math/vec4.h>

#include "framing.h"

namespace orvex {
class GpuProgram;
class Material;
class Mesh;
class Model;
class Node;
class Renderer;
class Texture;
} // namespace orvex

/// A texture file that a material names.
struct TextureFile {
    std::string path;
    orvex::Texture* texture; ///< null: missing, or no picture
};

/// A loaded model with its textures, ready to be told of and to be drawn.
///
/// It draws the meshes itself, face run by face run: a model in the engine draws its children
/// twice, a scene renderer passes over meshes right under its start node, and a mesh drawn as a
/// whole binds its first material only.
class ModelScene {
public:
    /// Loads a model.
    /// @param path  the file; its materials and textures are looked for beside it
    /// @return null if no loader reads it
    static orvex::Model* load(std::string const& path);

    /// Takes over a loaded model. A null renderer serves for telling of it.
    ModelScene(orvex::Renderer* renderer, orvex::Model* model);
    /// Releases the model with everything on the GPU, and what it left with the managers.
    ~ModelScene();
    ModelScene(ModelScene const&) = delete;
    ModelScene& operator=(ModelScene const&) = delete;

    /// Loads the textures that the loader noted, each file once.
    /// @param folder  what stands before the names, with its slash
    void load_textures(std::string const& folder);
    /// Every texture file that was looked for, in the order of the materials, each once.
    std::vector<TextureFile> const& texture_files() const { return textures; }

    /// Makes each vertex's normal the mean of its faces'.
    void smooth_normals();
    /// Whether smooth normals don't fit: they look away from their faces by 25 degrees and more in
    /// the mean, as those of a box do.
    bool is_angular() const;
    /// Puts the meshes and materials on a drawing path, and gives them their program.
    void use_program(orvex::GpuProgram* program, bool gl3);
    /// Draws, seen along the axes of the camera: what is opaque first, the rest blended. The lights
    /// turn with the camera's azimuth, so that every side is lit alike.
    void draw(Axes const& axes, Axes const& light_axes);

    Extent const& extent() const { return bounds; }
    std::vector<orvex::Mesh*> const& all_meshes() const { return meshes; }
    std::vector<orvex::Material*> all_materials() const;
    unsigned long num_vertices() const;
    unsigned long num_faces() const;

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
    orvex::GpuProgram* program = nullptr;
    std::vector<orvex::Mesh*> meshes;
    std::vector<Run> opaque;
    std::vector<Run> blended;
    std::vector<TextureFile> textures;
    std::map<std::string, std::size_t> texture_by_path;
    Extent bounds;

    void gather(orvex::Node* node);
    void add_runs(orvex::Mesh* mesh);
    void measure();
    orvex::Texture* texture_from(std::string const& path);
    void draw_run(Run const& run);
    void set_lights(Axes const& axes, Axes const& light_axes);
    void set_colors(orvex::Material* material);
};
