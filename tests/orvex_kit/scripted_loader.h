#pragma once

/// @file
/// A loader that does what a test says.

#include <functional>
#include <string>
#include <utility>

#include <orvex/base/loader_3d.h>
#include <orvex/base/plugin_mgr.h>

namespace orvex_test {

/// Reads files by a function of the test's. The engine owns it from `add` on, until it stops.
class ScriptedLoader : public orvex::Loader3D {
public:
    using Script = std::function<bool(orvex::Model& model, const std::string& path)>;

    /// Registers one, behind those that are there.
    static void add(const char* name, Script script) {
        orvex::PluginMgr::get()->insert_plugin(new ScriptedLoader(name, std::move(script)));
    }

    bool load_from_file(orvex::Model* model, const char* filename) override {
        if (script(*model, std::string(get_model_dir()) + filename))
            return true;
        set_format_unknown("%s refused it", get_name());
        return false;
    }

private:
    Script script;

    ScriptedLoader(const char* name, Script script)
        : script(std::move(script)) {
        set_name(name);
        set_type(orvex::PLUGIN_TYPE_LOADER_3D);
    }
};

} // namespace orvex_test
