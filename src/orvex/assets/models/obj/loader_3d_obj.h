#pragma once

/// @file
/// Loader3D_OBJ: the built-in reader of Wavefront OBJ files.

#include "orvex/api.h"
#include "orvex/base/loader_3d.h"

namespace orvex {

/// Reads a Wavefront OBJ file with its MTL material library into a `Model`: one `Mesh` per group
/// that has faces, one `Material` per material that a face uses.
///
/// `Kernel` makes and owns the one instance; hosts load through `aux::load_model_from_file` or
/// `aux::load_model_from_file_obj`. No graphics call is made, so a worker thread may load while it
/// is the only user of `MaterialMgr`.
///
/// What is read: `v`, `vt` (two numbers), `vn`, `f` in its four forms with indices from 1, `g`,
/// `usemtl`, `mtllib`; of libraries `newmtl`, `Ka`, `Kd`, `Ks` (behind an `illum 2`), `Ns`, `d`,
/// `Tr`, `illum`, and up to four `map_Kd` a material. Polygons become fans. Indices count from 1; a
/// negative index, or one beyond its array, reads zeros. Vertices are not shared: a mesh of n
/// triangles has 3n.
///
/// Textures are not loaded: their names are queued on the materials, for
/// `Material::async_loading_process_all_texture_filenames`. A material whose name `MaterialMgr`
/// already knows is used as it is.
///
/// The steps of a load can't be called one by one, unlike those of `Loader3D_Lib3ds`.
class ORVEX_API Loader3D_OBJ : public Loader3D {
public:
    /// Named and described, not yet registered anywhere.
    Loader3D_OBJ();
    ~Loader3D_OBJ() override;

    /// @param model     null is refused
    /// @param filename  appended to the model directory as it stands; null is refused
    /// @return false, with nothing added to the model and to `MaterialMgr`, if the file can't be
    ///         read, holds no vertex or no face, or needs more memory than there is;
    ///         `get_failure_reason` then tells which. Nothing is logged but a mesh's want of
    ///         memory, by the mesh. A missing material library only costs the colours.
    bool load_from_file(Model* model, const char* filename) override;

private:
    bool read_and_build(Model& model, const char* filename);
};

} // namespace orvex
