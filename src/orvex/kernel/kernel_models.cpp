/// @file
/// Kernel: loading models. Every entrance makes one request, and one new model that the loaders
/// fill in turn: a loader that refuses has left the model as it was. The model is the host's once
/// one has accepted, and ends with the request if none has.

#include "orvex/kernel/kernel.h"

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>

#include "orvex/assets/models/load_undo.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/assets/textures/texture_mgr.h"
#include "orvex/base/loader_3d.h"
#include "orvex/base/plugin_mgr.h"
#include "orvex/base/private/memory_out.h"
#include "orvex/base/private/misuse.h"
#include "orvex/base/private/plugin_data.h"
#include "orvex/geometry/mesh/model.h"

namespace orvex {

namespace {

/// What the host asks for, the same for every loader that is tried.
struct ModelRequest {
    const char* filename;
    const char* model_dir;
    const char* resource_dir;
    bool separate_vertex_arrays;
    int vertex_alignment;
};

/// Why the last load of a model was false: the reason of the loader whose format the file has, or
/// else those of all that were asked. Of bounded length, so that it needs no memory and no end.
class LoadFailure {
public:
    void clear() noexcept {
        reason[0] = '\0';
        is_final = false;
    }

    /// Takes the reason of a loader that refused the file.
    void add(const Loader3D& loader) noexcept {
        const char* const why = loader.get_failure_reason();
        if (is_final || why[0] == '\0')
            return;
        is_final = loader.get_format_known_state();
        const std::size_t length = is_final ? 0 : std::strlen(reason);
        std::snprintf(reason + length, sizeof reason - length, "%s%s", length > 0 ? "; " : "", why);
    }

    /// Takes a reason that counts, whatever the loaders after this one say.
    void set(const char* why) noexcept {
        std::snprintf(reason, sizeof reason, "%s", why);
        is_final = true;
    }

    const char* text() const noexcept { return reason; }

private:
    char reason[2048] = {};
    bool is_final = false;
};

/// Each thread that loads has its own.
thread_local LoadFailure load_failure;

/// A model ends with its children, which a bare `delete` would leave.
struct ModelEnd {
    void operator()(Model* model) const { model->kill(nullptr, nullptr); }
};
using FreshModel = std::unique_ptr<Model, ModelEnd>;

FreshModel new_model(const ModelRequest& request) {
    load_failure.clear();
    FreshModel model(new Model);
    model->set_mesh_vertex_alloc_params(request.separate_vertex_arrays, request.vertex_alignment);
    return model;
}

/// Nothing that a loader throws gets past here: a plugin may be anybody's.
bool load_with(Loader3D& loader, Model& model, const ModelRequest& request) {
    try {
        LoadUndo undo(model);
        loader.set_model_dir(request.model_dir);
        loader.set_resource_dir(request.resource_dir);
        loader.clear_failure_reason();
        if (loader.load_from_file(&model, request.filename)) {
            undo.keep();
            load_failure.clear();
            return true;
        }
        load_failure.add(loader);
    } catch (const std::bad_alloc&) {
        load_failure.set("memory ran out");
    } catch (...) {
        load_failure.set("the loader threw an exception");
    }
    return false;
}

/// What `load` gives; null where memory ran out around it.
template<class Load>
Model* null_without_memory(Load load) {
    Model* model = nullptr;
    or_undo([&] { return (model = load()) != nullptr; },
            [] { load_failure.set("memory ran out"); });
    return model;
}

/// The 3D loader at an index of its type. A host can give the type to a plugin that is none.
Loader3D* loader_at(unsigned long index) {
    const Plugin* const plugin = PluginMgr::get()->get_plugin_by_type(PLUGIN_TYPE_LOADER_3D, index);
    return plugin ? plugin_as_loader_3d(*plugin) : nullptr;
}

unsigned long number_of_loaders() {
    return PluginMgr::get()->get_num_plugins_by_type(PLUGIN_TYPE_LOADER_3D);
}

bool has_file(const ModelRequest& request) {
    return request.filename || misuse("Kernel::load_model_from_file", "a null file name");
}

Model* load_with_any_loader(const ModelRequest& request) {
    if (!has_file(request))
        return nullptr;
    return null_without_memory([&]() -> Model* {
        FreshModel model = new_model(request);
        for (unsigned long i = 0; i < number_of_loaders(); ++i) {
            Loader3D* const loader = loader_at(i);
            if (loader && load_with(*loader, *model, request))
                return model.release();
        }
        return nullptr;
    });
}

Model* load_with_one_loader(Loader3D* loader, const ModelRequest& request) {
    if (!has_file(request) || !loader)
        return nullptr;
    return null_without_memory([&] {
        FreshModel model = new_model(request);
        return load_with(*loader, *model, request) ? model.release() : nullptr;
    });
}

Model* load_with_named_loader(const char* name, const ModelRequest& request) {
    if (!has_file(request))
        return nullptr;
    constexpr std::size_t compared_length = 127;
    return null_without_memory([&]() -> Model* {
        FreshModel model = new_model(request);
        for (unsigned long i = 0; i < number_of_loaders(); ++i) {
            Loader3D* const loader = loader_at(i);
            if (loader && std::strncmp(loader->get_name(), name, compared_length) == 0)
                return load_with(*loader, *model, request) ? model.release() : nullptr;
        }
        return nullptr;
    });
}

} // namespace

Model* Kernel::load_model_from_file(const char* filename, const char* model_dir,
                                    const char* resource_dir) {
    return load_model_from_file_v2(filename, model_dir, resource_dir, true, 0);
}

Model* Kernel::load_model_from_file_v2(const char* filename, const char* model_dir,
                                       const char* resource_dir, bool separate_vertex_arrays,
                                       int vertex_alignment) {
    return load_with_any_loader(
        {filename, model_dir, resource_dir, separate_vertex_arrays, vertex_alignment});
}

Model* Kernel::load_model_from_file_lib3ds(const char* filename, const char* model_dir,
                                           const char* resource_dir) {
    return load_model_from_file_lib3ds_v2(filename, model_dir, resource_dir, true, 0);
}

Model* Kernel::load_model_from_file_lib3ds_v2(const char* filename, const char* model_dir,
                                              const char* resource_dir, bool separate_vertex_arrays,
                                              int vertex_alignment) {
    return load_with_one_loader(loader_lib3ds, {filename, model_dir, resource_dir,
                                                separate_vertex_arrays, vertex_alignment});
}

Model* Kernel::load_model_from_file_obj(const char* filename, const char* model_dir,
                                        const char* resource_dir) {
    return load_model_from_file_obj_v2(filename, model_dir, resource_dir, true, 0);
}

Model* Kernel::load_model_from_file_obj_v2(const char* filename, const char* model_dir,
                                           const char* resource_dir, bool separate_vertex_arrays,
                                           int vertex_alignment) {
    return load_with_one_loader(
        loader_obj, {filename, model_dir, resource_dir, separate_vertex_arrays, vertex_alignment});
}

Model* Kernel::load_model_from_file_fbx(const char* filename, const char* model_dir,
                                        const char* resource_dir) {
    return load_model_from_file_fbx_v2(filename, model_dir, resource_dir, true, 0);
}

Model* Kernel::load_model_from_file_fbx_v2(const char* filename, const char* model_dir,
                                           const char* resource_dir, bool separate_vertex_arrays,
                                           int vertex_alignment) {
    return load_with_named_loader("orvex_plugin_fbx", {filename, model_dir, resource_dir,
                                                       separate_vertex_arrays, vertex_alignment});
}

const char* Kernel::get_load_failure_reason() const noexcept {
    return load_failure.text();
}

Texture* Kernel::create_color_texture_from_render_target(RenderTarget* target,
                                                         unsigned long color_index) {
    if (!target) {
        misuse("Kernel::create_color_texture_from_render_target", "a null target");
        return nullptr;
    }
    Texture* const texture = TextureMgr::get()->create_texture();
    texture->init_color_texture_from_render_target(target, color_index);
    return texture;
}

Texture* Kernel::create_depth_texture_from_render_target(RenderTarget* target) {
    if (!target) {
        misuse("Kernel::create_depth_texture_from_render_target", "a null target");
        return nullptr;
    }
    Texture* const texture = TextureMgr::get()->create_texture();
    texture->init_depth_texture_from_render_target(target);
    return texture;
}

} // namespace orvex
