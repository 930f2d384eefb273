#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include <orvex/math/vec4.h>

namespace orvex {
class Camera;
class GpuProgram;
class Material;
class Mesh;
class Model;
class Renderer;
} // namespace orvex

/// A loaded model, ready to be drawn and framed by a camera.
///
/// It draws the meshes itself, face run by face run: a model in the engine draws its children
/// twice, a scene renderer passes over meshes right under its start node, and a mesh drawn as a
/// whole binds its first material only.
class ModelView {
public:
    /// Takes over the model.
    ModelView(orvex::Renderer* renderer, orvex::Model* model);
    /// Releases the model with everything on the GPU, and what it left with the managers.
    ~ModelView();
    ModelView(ModelView const&) = delete;
    ModelView& operator=(ModelView const&) = delete;

    /// Loads the textures whose names the loader noted.
    /// @param folder  what stands before the names, with its slash
    /// @param lines   where each is told; null tells nothing
    void load_textures(std::string const& folder, std::FILE* lines);
    /// Makes each vertex's normal the mean of its faces', for files that hold none.
    void smooth_normals();
    /// Puts the meshes and materials on a drawing path, and gives them their program.
    void use_program(orvex::GpuProgram* program, bool gl3);
    /// Places the camera so that the whole model is seen.
    void frame(orvex::Camera& camera, int width, int height) const;
    /// Draws: what is opaque first, the rest blended.
    void draw();

    /// The middle of the whole model, in the world.
    orvex::vec4 center() const;
    unsigned long num_meshes() const { return meshes.size(); }
    unsigned long num_materials() const;
    unsigned long num_faces() const { return faces; }
    unsigned long num_missing_textures() const { return missing_textures; }

private:
    /// Faces in a row that share a material.
    struct Run {
        orvex::Mesh* mesh;
        orvex::Material* material; ///< null: none
        unsigned first_face;
        unsigned last_face;
    };

    struct Sphere {
        orvex::vec4 center;
        float radius;
    };

    orvex::Renderer* renderer;
    orvex::Model* model;
    orvex::GpuProgram* program = nullptr;
    std::vector<orvex::Mesh*> meshes;
    std::vector<Run> opaque;
    std::vector<Run> blended;
    std::vector<Sphere> spheres; ///< one per mesh, in the world
    unsigned long faces = 0;
    unsigned long missing_textures = 0;

    void add_runs(orvex::Mesh* mesh);
    void measure(orvex::Mesh* mesh);
    void draw(Run const& run);
    void set_colors(orvex::Material* material);
};
