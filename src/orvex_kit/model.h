#pragma once

/// @file
/// A model file with its textures, to be told of, drawn and picked from.

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "orvex_kit/api.h"
#include "orvex_kit/framing.h"
#include "orvex_kit/model_parts.h"
#include "orvex_kit/normals.h"
#include "orvex_kit/outcome.h"
#include "orvex_kit/path.h"
#include "orvex_kit/pick.h"

namespace orvex {
class Camera;
class GpuProgram;
class Model;
class Renderer;
class mat4;
struct Ray;
} // namespace orvex

namespace orvex::kit {

struct MeshNumbers;
struct ModelNumbers;

/// What a `Model` is loaded with.
struct ModelOptions {
    Normals normals = Normals::by_file; ///< where they come from
    /// Whether textures may lie outside the model's folder, wherever its file says. A file that
    /// somebody else made could then name any picture of the system.
    bool allow_outside = false;
    /// The name of the loader's plugin; empty for whichever reads the file.
    std::string loader{};
    /// A moment of a file that moves, in seconds on the clock of its first animation, whose ends
    /// stand still; nothing: all at rest, as in files of formats that don't move.
    std::optional<float> time{};
};

/// A model file, loaded with the textures that its materials name. Needs a running engine, an
/// `Engine` or one that the host has started itself; when an `Engine` ends first, the model is
/// empty from then on. All of it on the thread that draws.
///
/// Any number at once: each has materials and textures of its own, whatever their names, and keeps
/// them out of the engine's managers. A host's materials are never taken for a file's. An empty
/// model, as one that couldn't be loaded or was moved from, says why and draws nothing.
///
/// Textures are looked for as people's files name them. Options before a name are passed over,
/// backslashes taken for slashes, and letters in either case. What isn't where its path says, as on
/// another machine, is looked for in the model's folder by the end of its path. Nothing outside
/// that folder is read, by whatever links, unless the options allow it.
///
/// @code
/// kit::Engine engine;
/// kit::Model model("lighthouse.obj");
/// if (!model)
///     std::fprintf(stderr, "%s\n", model.reason().c_str());
/// for (const kit::ModelTexture& texture : model.textures())
///     if (!texture.reason.empty())
///         std::printf("%s: %s\n", texture.name.c_str(), texture.reason.c_str());
/// @endcode
class ORVEX_KIT_API Model {
public:
    /// Empty.
    Model() noexcept;
    /// Loads a file. Needs no renderer.
    /// @param path  of the model; its material libraries are looked for beside it
    explicit Model(const std::string& path, const ModelOptions& options = {});
    /// Makes one of a mesh of the host's numbers, which stands with y up. Needs no renderer. Empty
    /// where they make none: the reason names the number, as "positions[3] holds nan".
    static Model from_numbers(const MeshNumbers& numbers);
    /// Gives back what it holds, on the GPU by the renderer that drew it last, if that is still
    /// there.
    ~Model();
    /// Takes the other's model over, which is empty then.
    Model(Model&& other) noexcept;
    /// As the constructor; what it held before ends.
    Model& operator=(Model&& other) noexcept;

    /// Whether it holds a model.
    explicit operator bool() const noexcept;
    /// Why it doesn't: that the file can't be read, or why no loader reads it and what can be read.
    /// Empty if it does. Valid until the model ends or is assigned to.
    const std::string& reason() const noexcept;

    /// @name Drawing
    /// @{

    /// Draws it through the camera that is bound, in the order of `runs`, and unbinds the program.
    /// Textures go to the GPU at the first draw. Blending is off afterwards, and the depth buffer
    /// is written.
    ///
    /// The program is told, as far as it has such uniforms, of each run's material (vec4
    /// `diffuse_color` with the opacity in w, `specular_color` with the shininess in w), its
    /// textures on units from 0 on (float `textured`, 1 or 0; sampler2D `diffuse_map`), whether
    /// vertices have colours of their own (float `colored`, 1 or 0), of lights in the world (vec4
    /// `to_sun`, `to_fill`, `to_sky`) and whether faces are flat (float `faceted`, 1 or 0), beside
    /// the engine's own.
    ///
    /// On path gl3 a software driver gets 100,000 faces at a time, as it keeps them all in memory
    /// until they are drawn: `gl_PrimitiveID` begins anew then.
    /// @param renderer  with its context current; another one at each draw, if need be
    /// @param path      of the program and the context
    /// @param lit_from  the lights turn with its azimuth and its up axis: that of the camera has
    ///                  every side lit alike
    void draw(orvex::Renderer& renderer, orvex::GpuProgram& program, Path path,
              const Angle& lit_from = {});
    /// Draws the points of its clouds, which `draw` leaves out: with a program of its own, as
    /// points have no faces to be lit. VERTEX_COLOR has their colours, `gl_PointSize` their size. A
    /// view does it by itself; pictures of layers are without them.
    void draw_points(orvex::Renderer& renderer, orvex::GpuProgram& program);
    /// Draws its lines, as `draw_points` does points: as wide as the renderer draws lines.
    void draw_lines(orvex::Renderer& renderer, orvex::GpuProgram& program);
    /// What `draw` draws, in its order: opaque runs first, then the blended ones, both in the order
    /// of the meshes and of their faces. Runs of a mesh follow each other, and none is empty.
    const std::vector<FaceRun>& runs() const noexcept;

    /// Gives a model from numbers other ones. What isn't there in them stays as it is; where there
    /// are more vertices or fewer, what isn't there is gone, the faces as well. What it is told of
    /// is looked at anew.
    /// @param numbers  a number of vertices or faces that is 0 stays, too
    /// @return why not, as `from_numbers`, or that it is no model from numbers; it stays as it was
    Outcome update(const MeshNumbers& numbers);

    /// Turns the model so that y is its way up.
    void stand_up();
    /// Places the model in the world, whatever it was before. Looks at every vertex, and normals
    /// are bent by scales that are uneven.
    /// @param transform  the last row is 0 0 0 1
    /// @return why not, as a number isn't finite, or that the model is empty
    Outcome set_transform(const orvex::mat4& transform);
    /// The way up of the model as it stands.
    UpAxis up_axis() const noexcept;
    /// All vertices, points and ends of lines with a place, in the world: what a camera is to see.
    const Extent& extent() const noexcept;
    /// @}

    /// @name Picking
    /// The nearest face as it is drawn, from either side, edges included; of several at one
    /// distance the first in the order of meshes and faces. Exact: the same as asking face by face.
    /// The first call looks at every face and makes a tree of boxes, by several processors where
    /// there are many faces; later ones look at few. The tree takes about 80 bytes a face, twice
    /// that while it is made, and lasts until the model is updated or placed. Where memory is
    /// lacking, each call asks face by face.
    /// @{

    /// What a ray meets from its origin on; `Camera::ray` gives that of a place on a picture.
    /// @param ray  in the world; a direction of any length but 0
    /// @return nothing where it meets none, for rays that aren't finite, and for an empty model
    std::optional<Pick> pick(const orvex::Ray& ray) const;
    /// What a camera of the engine sees at a place of the picture, between the near and the far
    /// plane. Distances are in the world's units, from the near plane.
    /// @param x  pixels from the left edge of the window; 0.5 is the middle of the first one
    /// @param y  pixels downwards; the viewport's `y` is taken as its upper edge
    /// @return nothing where nothing is
    std::optional<Pick> pick(const orvex::Camera& camera, float x, float y) const;
    /// @}

    /// @name What it holds
    /// As the file has it, whether or not it was stood up. Empty for an empty model.
    /// @{

    /// The name of the loader's plugin.
    const std::string& loader() const noexcept;
    /// The way up of the file.
    UpAxis file_up_axis() const noexcept;
    /// Its meshes, in the order of the file, those without faces too. One that is used at two
    /// places stands here twice.
    const std::vector<ModelMesh>& meshes() const noexcept;
    /// Its materials, in the order of the file; after them those that only a mesh knows.
    const std::vector<ModelMaterial>& materials() const noexcept;
    /// Every texture file that a material names, found or not, in the order of the materials, each
    /// once.
    const std::vector<ModelTexture>& textures() const noexcept;
    /// From where the file would have it seen, in the order of the file.
    const std::vector<ModelCamera>& cameras() const noexcept;
    /// Around all vertices, points and ends of lines with a place, in the model's own space.
    const Bounds& bounds() const noexcept;
    std::size_t num_vertices() const noexcept; ///< of all meshes
    std::size_t num_faces() const noexcept;    ///< of all meshes
    std::size_t num_points() const noexcept;   ///< of clouds, and vertices of meshes without faces;
                                               ///< the latter aren't drawn
    std::size_t num_lines() const noexcept;    ///< of two ends each, beside meshes
    /// Sentences without a full stop about what is odd: no faces, all vertices at one point,
    /// vertices without a place, faces that name vertices which aren't there, no face with an area.
    /// Before them what the loader left out of the model, in its own words.
    const std::vector<std::string>& notes() const noexcept;
    /// Every file that it was read from, and those that were looked for: the model, its material
    /// libraries and what else its loader read, its textures.
    std::vector<std::string> files() const;
    /// @}

    /// The engine's own object, for what the kit doesn't offer; null for an empty model. The model
    /// keeps it, and doesn't see what is changed in it.
    orvex::Model* node() const noexcept;

private:
    friend struct ModelNumbers;
    class Data;
    std::unique_ptr<Data> data;

    explicit Model(std::unique_ptr<Data> data) noexcept;
};

/// What models can be read from, as "OBJ, 3DS, STL": the formats of the engine's own loaders, and
/// of the plugins that are loaders beside them, by their names where they tell no format. Empty
/// without a running engine.
ORVEX_KIT_API std::string readable_formats();

} // namespace orvex::kit
