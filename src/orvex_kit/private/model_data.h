#pragma once

/// @file
/// What a `Model` is behind its public face.

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <orvex/fwd.h>
#include <orvex/geometry/mesh/mesh.h>
#include <orvex/math/mat4.h>

#include "orvex_kit/mesh_numbers.h"
#include "orvex_kit/model.h"
#include "orvex_kit/private/default_arrays.h"
#include "orvex_kit/private/engine_parts.h"
#include "orvex_kit/private/face_lists.h"
#include "orvex_kit/private/face_tree.h"
#include "orvex_kit/private/model_loaders.h"
#include "orvex_kit/private/model_numbers.h"
#include "orvex_kit/ref.h"

namespace orvex::kit {

/// All that is told of a model, as its file has it.
struct ModelFacts {
    std::vector<ModelMesh> meshes;
    std::vector<ModelMaterial> materials;
    std::vector<ModelTexture> textures;
    std::vector<ModelCamera> cameras;
    std::vector<FaceRun> runs; ///< opaque ones first
    Bounds bounds;
    std::size_t num_vertices = 0;
    std::size_t num_faces = 0;
    std::size_t num_points = 0;
    std::size_t num_lines = 0;
    std::vector<std::string> notes;
    UpAxis file_up = UpAxis::y;
    UpAxis up = UpAxis::y;
    Extent extent;
};

struct MeshParts;

/// What a model from numbers is made with beside them.
struct MeshStyle {
    Normals shading = Normals::by_file;
    std::optional<orvex::vec4> color; ///< none: there is no material, but for a texture
    std::string name;
    NodeHold<orvex::Resource> texture; ///< null: none
    bool has_normals = false;          ///< of its own
    bool has_colors = false;           ///< of its own
};

/// A run of faces as a mesh of its own, for client arrays: those draw all faces of a mesh.
struct Piece {
    Ref<orvex::Mesh> mesh; ///< null where the run is the whole mesh
    DefaultArrays default_arrays;
};

/// The model, from its load to its end or that of the engine.
///
/// It draws the meshes itself, face run by face run: a model in the engine draws its children
/// twice, a scene renderer passes over meshes right under its start node, and a mesh drawn as a
/// whole binds its first material only.
class Model::Data : public EnginePart {
public:
    Data() = default;
    Data(const std::string& path, const ModelOptions& options);
    ~Data() override;
    void close() override;

    void draw(orvex::Renderer& renderer, orvex::GpuProgram& program, Path path,
              const Angle& lit_from);
    FirstNumbers draw_numbered(orvex::Renderer& renderer, orvex::GpuProgram& program,
                               const FirstNumbers& first);
    void draw_points(orvex::Renderer& renderer, orvex::GpuProgram& program);
    void draw_lines(orvex::Renderer& renderer, orvex::GpuProgram& program);
    void stand_up();
    void place(const orvex::mat4& transform);
    void bring_back_face_lists() noexcept;
    std::optional<Pick> pick(const PointRay& ray);

    bool make_mesh(const MeshNumbers& numbers);
    std::string update(const MeshNumbers& numbers, std::unique_ptr<Data>& fresh);

    std::string path;
    std::string reason;
    LoadedModel loaded;
    ModelFacts facts;
    std::unique_ptr<MeshStyle> style; ///< of a model from numbers; null: from a file

private:
    std::vector<orvex::Mesh*> meshes;          ///< one a place, as `facts.meshes`
    std::vector<bool> has_colors;              ///< of their vertices, as `meshes`
    std::vector<DefaultArrays> default_arrays; ///< as `meshes`
    std::vector<FaceLists> face_lists;         ///< as `meshes`, while they are put away
    bool keeps_face_lists = false;             ///< as somebody looks at them
    std::vector<orvex::VertexPool*> clouds;
    std::vector<orvex::Polyline*> lines;
    std::vector<const orvex::Camera*> cameras; ///< as `facts.cameras`
    std::vector<orvex::Material*> materials;   ///< as `facts.materials`
    std::vector<orvex::Texture*> decoded;      ///< as `facts.textures`; null for what is missing
    std::vector<orvex::Texture*> uploads;      ///< what goes to the GPU, each once
    std::map<std::string, std::size_t> texture_places; ///< in `facts.textures`, by path
    bool is_faceted = false;
    bool is_uploaded = false;
    orvex::Plugin* last_renderer = nullptr; ///< that drew it; it may have ended since
    int last_renderer_id = 0;
    std::vector<Piece> pieces;            ///< as `facts.runs`; empty until they are wanted
    std::unique_ptr<const FaceTree> tree; ///< null until it is asked, and after a turn
    orvex::mat4 placed;                   ///< in the world, by the host
    orvex::mat4 own_place;                ///< without the host, once it was placed
    bool is_placed = false;

    void gather(orvex::Node& node);
    void gather_materials();
    void add_runs();
    void measure();
    void take_style(const MeshNumbers& numbers);
    void build_mesh(const MeshParts& parts);
    void add_material(orvex::Mesh& mesh);
    void tell_of_mesh();
    void refill(const MeshParts& parts);
    std::unique_ptr<Data> rebuilt(const MeshNumbers& numbers, const MeshParts& parts);
    std::size_t count_places() const;
    void tell_of_meshes();
    void tell_of_clouds();
    void tell_of_lines();
    void tell_of_cameras();
    void load_textures(bool allow_outside);
    void load_textures_of(std::size_t material, bool allow_outside);
    orvex::Texture* texture_from(const std::string& name, bool allow_outside, std::size_t& place);
    orvex::Texture* decode(ModelTexture& texture);
    void take_normals(Normals normals);
    void smooth_normals();
    bool is_angular() const;

    const FaceTree& face_tree();
    std::optional<TreeHit> first_hit(const PointRay& ray);
    int material_of(std::size_t mesh, std::size_t face) const;

    orvex::Renderer* living_renderer() const;
    void upload(orvex::Renderer& renderer);
    void put_away_face_lists();
    void begin_draw(orvex::Renderer& renderer, orvex::GpuProgram& program, Path path);
    void make_pieces();
    void look_at_arrays();
    bool has_default_arrays() const;
    void draw_run(orvex::Renderer& renderer, orvex::GpuProgram& program, const FaceRun& run,
                  const Piece* piece, std::size_t portion);
    void draw_geometry(orvex::Renderer& renderer, const FaceRun& run, const Piece* piece,
                       std::size_t portion);
    void set_material(orvex::GpuProgram& program, const orvex::Material* material,
                      bool is_colored) const;
};

/// The place of a vertex under a transform, as it is drawn.
/// @return whether it is made of finite numbers
bool place_of_vertex(const orvex::Mesh& mesh, unsigned long vertex, const orvex::mat4& transform,
                     orvex::vec4& place);

/// What is odd about meshes that stand in the model's own space.
std::vector<std::string> notes_about(const std::vector<orvex::Mesh*>& meshes,
                                     const ModelFacts& facts);

} // namespace orvex::kit
