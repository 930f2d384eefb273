#include "orvex/assets/models/3ds/loader_3d_lib3ds.h"

#include <new>
#include <string>

#include <lib3ds.h>

#include "orvex/assets/models/3ds/private/lib3ds_open.h"
#include "orvex/assets/models/3ds/private/lib3ds_records.h"

namespace orvex {

Loader3D_Lib3ds::Loader3D_Lib3ds()
    : lib3ds_data(new Loader3D_Lib3dsData) {
    set_name("orvex_plugin_core_lib3ds");
    set_description("Lib3ds loader (core plugin).");
    set_author("orvex");
    set_build_info("BUILD_DATE: [" __DATE__ "] - BUILD_TIME: [" __TIME__ "]");
    set_version(0, 1, 0);
    set_type(PLUGIN_TYPE_LOADER_3D);
}

Loader3D_Lib3ds::~Loader3D_Lib3ds() {
    delete lib3ds_data;
}

bool Loader3D_Lib3ds::load_from_file(Model* model, const char* filename) {
    if (model == nullptr || filename == nullptr)
        return false;
    try {
        Lib3dsFilePtr file = open_3ds_file((std::string(get_model_dir()) + filename).c_str());
        if (file == nullptr)
            return false;
        read_materials(file.get());
        if (file->nodes == nullptr)
            lib3ds_file_create_nodes_for_meshes(file.get());
        lib3ds_file_eval(file.get(), 0.0f);
        read_meshes(file.get());
    } catch (const std::bad_alloc&) {
        free_memory();
        return false;
    }
    build_model(model);
    free_memory();
    return true;
}

void Loader3D_Lib3ds::free_memory() {
    lib3ds_data->materials.reset();
    lib3ds_data->num_materials = 0;
    lib3ds_data->meshes.clear();
}

} // namespace orvex
