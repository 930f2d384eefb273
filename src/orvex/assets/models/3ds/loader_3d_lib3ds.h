#pragma once

/// @file
/// Loader3D_Lib3ds: the built-in reader of 3DS files.

#include <memory>

#include "orvex/api.h"
#include "orvex/base/loader_3d.h"

struct Lib3dsFile;
struct Lib3dsMeshInstanceNode;
struct Lib3dsNode;

namespace orvex {

struct orvexLib3dsMaterial;
struct sLib3dsMesh;

/// Reads a 3DS file by way of the lib3ds library into a `Model`: one `Mesh` for each node of the
/// file that shows a mesh, one `Material` for each material.
///
/// `Kernel` makes and owns the one instance; hosts load through `aux::load_model_from_file` or
/// `aux::load_model_from_file_lib3ds`. A build without lib3ds has no such class, though its header
/// is there. The loader holds the work of one load, so one load at a time; no graphics call is
/// made, and a worker thread may load while it is the only user of `MaterialMgr`.
///
/// Vertices are placed as at frame 0 of the file's animation, then turned from the file's axes,
/// with z up, to y up: (x, y, z) becomes (x, z, -y). Vertices stay shared between faces, as in the
/// file. Some of what comes out is odd and stays so, since hosts have come to rely on it:
///
/// - A mesh that two nodes show is placed for the first, and from there again for the second.
/// - Normals are made per corner of a face but given to vertices by number, and their third
///   component isn't turned around as that of positions is.
/// - A material whose name `MaterialMgr` already knows is attached to the model, but the faces of
///   this load get a default material instead.
/// - A face without material gets the first of the file.
/// - In a file without keyframer nodes a mesh with a matrix other than identity is taken to its own
///   axes: it lies on its back, and is moved by its origin.
///
/// If two materials of a file share a name, all of them are called "orvex_mat_%d" by their index.
///
/// Textures are not loaded: their names are queued on the materials, for
/// `Material::async_loading_process_all_texture_filenames`.
///
/// @code
/// Model* model = aux::load_model_from_file_lib3ds("horse.3ds", "models/", "");
/// @endcode
class ORVEX_API Loader3D_Lib3ds : public Loader3D {
public:
    /// Named and described, not yet registered anywhere.
    Loader3D_Lib3ds();
    ~Loader3D_Lib3ds() override;

    /// A file is looked through before lib3ds sees it: one that is cut off, whose sizes, counts,
    /// face indices or nodes don't fit together, or that would cost far more than its size
    /// suggests, is refused.
    /// @param model     null is refused
    /// @param filename  appended to the model directory as it stands; null is refused
    /// @return false, with nothing added to the model and to `MaterialMgr` and nothing logged, if
    ///         the file can't be read, or needs more memory than there is; `get_failure_reason`
    ///         then tells which. A mesh that can't be built, as one without a face, with fewer than
    ///         three vertices or without memory, is left out, and the load still succeeds.
    bool load_from_file(Model* model, const char* filename) override;

    /// @name The steps of a load
    /// `load_from_file` takes them in this order. They look at lib3ds's records, which the caller
    /// owns, and keep what they find in the loader until `free_memory`.
    /// @{

    /// Takes the materials. Gives all of them new names, in the file's records too, if two share
    /// one. @return false on null, and if there are none
    bool read_materials(Lib3dsFile* file);
    /// Takes the meshes that the nodes show. @return false on null
    bool read_meshes(Lib3dsFile* file);
    /// Takes the meshes of a list of nodes and of all below. Nodes that are no mesh instances are
    /// passed over with all below them. @param node  the first of the list, or null
    void write_nodes(Lib3dsFile* file, Lib3dsNode* node);
    /// Takes the mesh of one node, and moves the vertices in the file's record to their place.
    /// Nothing happens if the node shows no mesh, or one without vertices.
    void write_mesh(Lib3dsFile* file, Lib3dsMeshInstanceNode* node);

    /// Makes all materials and meshes, and adds them to the model. @return false on null
    bool build_model(Model* model);
    /// Makes one material and adds it to the model, or adds the one that has the name already.
    /// @return false if either is null
    bool build_material(orvexLib3dsMaterial* record, Model* model);
    /// Makes one mesh, which the caller adds to the model.
    /// @return false on null, with fewer than three vertices, without faces, and if memory runs out
    bool build_mesh(sLib3dsMesh* record, Model* model);

    /// Forgets what was read. Meshes and materials that were made live on.
    void free_memory();
    /// @}

private:
    struct Loader3D_Lib3dsData;

    bool read_file(const char* filename);

    std::unique_ptr<Loader3D_Lib3dsData> lib3ds_data;
};

} // namespace orvex
