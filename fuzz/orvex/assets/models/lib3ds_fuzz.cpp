// Reads bytes as a 3DS file and builds the model. lib3ds itself is watched too: it is compiled into
// this program with the sanitizers.

#include <cstdint>

#include <lib3ds.h>

#include "fuzz/support/target.h"
#include "orvex/assets/materials/material_mgr.h"
#include "orvex/assets/models/3ds/loader_3d_lib3ds.h"
#include "orvex/assets/models/3ds/private/lib3ds_open.h"
#include "orvex/geometry/mesh/model.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    orvex::Lib3dsFilePtr file = orvex::read_3ds_bytes(data, size);
    if (!file)
        return 0;
    orvex::Loader3D_Lib3ds loader;
    loader.read_materials(file.get());
    if (!file->nodes)
        lib3ds_file_create_nodes_for_meshes(file.get());
    lib3ds_file_eval(file.get(), 0.0f);
    loader.read_meshes(file.get());
    file.reset();
    auto* const model = new orvex::Model;
    loader.build_model(model);
    model->kill(nullptr, nullptr);
    orvex::MaterialMgr::get()->release_all_resources(nullptr, nullptr);
    return 0;
}
