// Every loader is asked as the engine would ask it. Materials are found by their names when loaders
// make them: so the managers are emptied before, and get back their own after.

#include "orvex_kit/private/model_loaders.h"

#include <algorithm>
#include <exception>
#include <limits>
#include <new>
#include <utility>

#include <orvex/assets/materials/material_mgr.h>
#include <orvex/assets/textures/texture_mgr.h>
#include <orvex/base/loader_3d.h>
#include <orvex/base/plugin_mgr.h>

#include "orvex_kit/files.h"
#include "orvex_kit/model.h"

namespace orvex::kit {

const char* const loader_of_obj = "orvex_plugin_core_obj";
const char* const loader_of_3ds = "orvex_plugin_core_lib3ds";

void EndNode::operator()(orvex::Node* node) const {
    node->release(nullptr, nullptr);
}

namespace {

using Resources = std::vector<NodeHold<Resource>>;

Resource* last_of(const ResourceMgr& manager) {
    return manager.get_resource_by_index(manager.get_num_resources() - 1);
}

/// Takes what came last out of a manager, down to a number that stays.
Resources take_out(ResourceMgr& manager, unsigned long stay = 0) {
    Resources taken(manager.get_num_resources() - stay);
    for (std::size_t i = taken.size(); i-- > 0;) {
        taken[i].reset(last_of(manager));
        taken[i]->add_ref();
        manager.remove_resource(nullptr, taken[i].get());
    }
    return taken;
}

/// Gives back what came last, down to a number that stays.
void drop(ResourceMgr& manager, unsigned long stay) {
    while (manager.get_num_resources() > stay)
        manager.remove_resource(nullptr, last_of(manager));
}

/// Keeps the materials of others away while it lives. What nobody took of what came meanwhile ends
/// with it.
class OthersAside {
public:
    OthersAside()
        : materials(take_out(*MaterialMgr::get()))
        , num_textures(TextureMgr::get()->get_num_resources()) {}
    ~OthersAside() {
        drop(*MaterialMgr::get(), 0);
        drop(*TextureMgr::get(), num_textures);
        // Finds no end of memory: the manager had room for them.
        for (const NodeHold<Resource>& material : materials)
            MaterialMgr::get()->add_resource(material.get());
    }
    OthersAside(const OthersAside&) = delete;
    OthersAside& operator=(const OthersAside&) = delete;

    static Resources new_materials() { return take_out(*MaterialMgr::get()); }
    Resources new_textures() const { return take_out(*TextureMgr::get(), num_textures); }

private:
    Resources materials;
    unsigned long num_textures;
};

/// Whether it is a plugin that was loaded, and none of the engine's own.
bool is_from_file(const Loader3D& loader) {
    return loader.get_full_filename()[0] != '\0';
}

/// Reads what nobody else does.
const char* const loader_of_others = "orvex_import";

/// In the order in which they are asked.
std::vector<Loader3D*> all_loaders() {
    std::vector<Loader3D*> loaders;
    const PluginMgr& plugins = *PluginMgr::get();
    for (unsigned long i = 0; i < plugins.get_num_plugins_by_type(PLUGIN_TYPE_LOADER_3D); ++i)
        if (auto* const loader =
                Loader3D::from_plugin(plugins.get_plugin_by_type(PLUGIN_TYPE_LOADER_3D, i)))
            loaders.push_back(loader);
    const auto rank = [](const Loader3D* loader) {
        return !is_from_file(*loader) ? 2 : loader->get_name() == std::string(loader_of_others);
    };
    std::stable_sort(loaders.begin(), loaders.end(),
                     [&rank](const Loader3D* a, const Loader3D* b) { return rank(a) < rank(b); });
    return loaders;
}

/// Has a loader read a moment, as long as it lives.
class AtTime {
public:
    AtTime(Loader3D& loader, float time)
        : loader(loader)
        , before(loader.get_time()) {
        loader.set_time(time);
    }
    ~AtTime() { loader.set_time(before); }
    AtTime(const AtTime&) = delete;
    AtTime& operator=(const AtTime&) = delete;

private:
    Loader3D& loader;
    float before;
};

/// Offers the file to a loader. Nothing that it throws gets past here but the end of memory.
/// @return whether it was read; else `reason` has why
bool read_by(Loader3D& loader, orvex::Model& model, const std::string& path,
             std::optional<float> time, std::string& reason) {
    // The loaders put the folder right before each name, with nothing between them.
    const std::string folder = folder_of(path);
    loader.set_model_dir(folder.c_str());
    loader.set_resource_dir(folder.c_str());
    loader.clear_failure_reason();
    const AtTime moment(loader, time.value_or(std::numeric_limits<float>::quiet_NaN()));
    try {
        if (loader.load_from_file(&model, path.c_str() + folder.size()))
            return true;
        reason = loader.get_failure_reason();
    } catch (const std::bad_alloc&) {
        throw;
    } catch (...) {
        reason = "the loader threw an exception";
    }
    return false;
}

/// Asks one loader, and keeps what it read. Nothing of a refusal is left.
/// @return whether it read the file; else `reason` has why not
bool ask(Loader3D& loader, const std::string& path, std::optional<float> time, LoadedModel& loaded,
         std::string& reason) {
    const OthersAside aside;
    NodeHold<orvex::Model> model(new orvex::Model);
    if (!read_by(loader, *model, path, time, reason))
        return false;
    loaded.materials = OthersAside::new_materials();
    loaded.textures = aside.new_textures();
    loaded.model = std::move(model);
    loaded.loader = loader.get_name();
    for (unsigned long i = 0; i < loader.get_num_notes(); ++i)
        loaded.notes.emplace_back(loader.get_note(i));
    for (unsigned long i = 0; i < loader.get_num_files(); ++i)
        loaded.files.emplace_back(loader.get_file(i));
    return true;
}

/// The reason of the loader whose format the file has, or else those of all that it may concern:
/// plugins of other formats have nothing to say.
void add_reason(LoadedModel& loaded, const Loader3D& loader, const std::string& reason,
                bool& is_final) {
    if (is_final || reason.empty())
        return;
    is_final = loader.get_format_known_state();
    if (is_final)
        loaded.reason = reason;
    else if (!is_from_file(loader))
        loaded.reason += (loaded.reason.empty() ? "" : "; ") + reason;
}

} // namespace

LoadedModel load_model(const std::string& path, const std::string& name,
                       std::optional<float> time) {
    LoadedModel loaded;
    std::string reason;
    bool is_asked = false, is_final = false;
    for (Loader3D* const loader : all_loaders()) {
        if (!name.empty() && name != loader->get_name())
            continue;
        is_asked = true;
        if (ask(*loader, path, time, loaded, reason)) {
            loaded.reason.clear();
            return loaded;
        }
        add_reason(loaded, *loader, reason, is_final);
    }
    if (!is_asked && !name.empty())
        loaded.reason = "no loader is called " + name;
    return loaded;
}

bool has_no_sure_way_up(const std::string& loader) {
    return loader == loader_of_3ds || loader == "orvex_stl" || loader == "orvex_ply" ||
           loader == "orvex_off";
}

bool has_z_up(const std::string& loader) {
    return loader == "orvex_3mf";
}

namespace {

/// The formats of the engine's own loaders, which tell none. Others do, or go by their names.
std::string format_of(const Loader3D& loader) {
    const std::string name = loader.get_name();
    if (name == loader_of_obj)
        return "OBJ";
    if (name == loader_of_3ds)
        return "3DS";
    return loader.get_loader_name()[0] != '\0' ? loader.get_loader_name() : name;
}

/// The formats of all loaders, one text each, without those that were there before.
std::vector<std::string> formats_by_loader() {
    std::vector<Loader3D*> loaders = all_loaders();
    // What everybody knows comes first.
    const auto rank = [](const Loader3D* loader) {
        return format_of(*loader) == "OBJ"                        ? 0
               : loader->get_name() == std::string(loader_of_3ds) ? 1
                                                                  : 2;
    };
    std::stable_sort(loaders.begin(), loaders.end(),
                     [&rank](const Loader3D* a, const Loader3D* b) { return rank(a) < rank(b); });
    std::vector<std::string> formats;
    for (const Loader3D* const loader : loaders)
        if (std::string format = format_of(*loader);
            std::find(formats.begin(), formats.end(), format) == formats.end())
            formats.push_back(std::move(format));
    return formats;
}

std::string joined(const std::vector<std::string>& parts) {
    std::string text;
    for (const std::string& part : parts)
        text += (text.empty() ? "" : ", ") + part;
    return text;
}

/// The first formats of a loader that reads very many.
std::string in_short(const std::string& formats) {
    constexpr std::ptrdiff_t most_told = 3, most = 8;
    const std::ptrdiff_t count = 1 + std::count(formats.begin(), formats.end(), ',');
    if (count <= most)
        return formats;
    std::size_t end = 0;
    for (std::ptrdiff_t told = 0; told < most_told; ++told)
        end = formats.find(',', end + 1);
    return formats.substr(0, end) + " and " + std::to_string(count - most_told) + " more";
}

} // namespace

std::string readable_formats() {
    return joined(formats_by_loader());
}

std::string readable_formats_in_short() {
    std::vector<std::string> formats = formats_by_loader();
    for (std::string& format : formats)
        format = in_short(format);
    return joined(formats);
}

} // namespace orvex::kit
