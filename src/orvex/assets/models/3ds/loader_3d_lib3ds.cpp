#include "orvex/assets/models/3ds/loader_3d_lib3ds.h"

#include <memory>
#include <string>

#include <lib3ds.h>

#include "orvex/assets/models/3ds/private/lib3ds_chunk_reader.h"
#include "orvex/assets/models/3ds/private/lib3ds_open.h"
#include "orvex/assets/models/3ds/private/lib3ds_records.h"
#include "orvex/assets/models/load_undo.h"
#include "orvex/base/private/memory_out.h"
#include "orvex/base/private/misuse.h"

namespace orvex {

Loader3D_Lib3ds::Loader3D_Lib3ds()
    : lib3ds_data(std::make_unique<Loader3D_Lib3dsData>()) {
    set_name("orvex_plugin_core_lib3ds");
    set_description("Lib3ds loader (core plugin).");
    set_author("orvex");
    set_build_info("BUILD_DATE: [" __DATE__ "] - BUILD_TIME: [" __TIME__ "]");
    set_version(0, 1, 0);
    set_type(PLUGIN_TYPE_LOADER_3D);
}

Loader3D_Lib3ds::~Loader3D_Lib3ds() = default;

bool Loader3D_Lib3ds::load_from_file(Model* model, const char* filename) {
    clear_failure_reason();
    if (!model || !filename)
        return misuse("Loader3D_Lib3ds::load_from_file", "a null model or file name");
    const auto load = [&] {
        if (!read_file(filename))
            return false;
        LoadUndo undo(*model);
        build_model(model);
        undo.keep();
        return true;
    };
    const bool loaded = or_undo(load, [&] { set_failure_reason("memory ran out"); });
    free_memory();
    return loaded;
}

/// Fills the record of the load from a file.
bool Loader3D_Lib3ds::read_file(const char* filename) {
    Lib3dsFault fault;
    const Lib3dsFilePtr file =
        open_3ds_file((std::string(get_model_dir()) + filename).c_str(), &fault);
    if (!file && !fault.is_3ds)
        set_format_unknown("no 3DS file: %s", fault.what);
    else if (!file)
        set_failure_reason("byte %llu: %s", static_cast<unsigned long long>(fault.offset),
                           fault.what);
    if (!file)
        return false;

    read_materials(file.get());
    lib3ds_file_eval(file.get(), 0.0f);
    read_meshes(file.get());
    return true;
}

void Loader3D_Lib3ds::free_memory() {
    lib3ds_data->materials.reset();
    lib3ds_data->num_materials = 0;
    lib3ds_data->meshes.clear();
}

} // namespace orvex
