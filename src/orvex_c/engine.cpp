// The engine, and the devices that draw.

#include <memory>
#include <utility>

#include <orvex/renderer/render_window.h>
#include <orvex_kit/model.h>

#include "orvex_c/private/handles.h"
#include "orvex_c/private/records.h"
#include "orvex_c/private/thread.h"

using namespace orvex::c;

namespace {

kit::EngineOptions kit_options(const orvex_engine_options& told) {
    kit::EngineOptions options;
    if (told.log)
        options.log = [log = told.log, user = told.log_user](const std::string& line) {
            const InCallback here;
            log(user, line.c_str());
        };
    options.log_file = text_or_nothing(told.log_file);
    options.debug_lines = flag_of(told.debug_lines, "options->debug_lines");
    options.find_plugins = !flag_of(told.skip_plugins, "options->skip_plugins");
    if (told.plugin_count > 0)
        require_pointer(told.plugins, "options->plugins");
    for (std::size_t i = 0; i < told.plugin_count; ++i) {
        require_pointer(told.plugins[i], "one of options->plugins");
        options.plugins.emplace_back(told.plugins[i]);
    }
    return options;
}

/// The engine is this thread's until the end of a start that fails.
class Claim {
public:
    Claim() { claim_engine(); }
    ~Claim() {
        if (!is_kept)
            give_up_engine();
    }
    Claim(const Claim&) = delete;
    Claim& operator=(const Claim&) = delete;

    void keep() { is_kept = true; }

private:
    bool is_kept = false;
};

} // namespace

orvex_result orvex_engine_start(const orvex_engine_options* options, orvex_engine* engine) {
    return guarded([&] {
        Out<orvex_engine> out(engine, "engine");
        const kit::EngineOptions wanted = kit_options(record_in(options, "options"));
        Claim claim;
        auto thing = std::make_unique<EngineThing>(wanted);
        if (!thing->engine)
            refuse(ORVEX_ERROR_ENGINE, thing->engine.reason());
        out = std::move(thing);
        claim.keep();
    });
}

orvex_result orvex_engine_stop(orvex_engine engine) {
    return guarded([&] {
        engine_of(engine);
        end_all_handles();
        give_up_engine();
    });
}

orvex_result orvex_engine_plugin_count(orvex_engine engine, size_t* count) {
    return guarded([&] {
        const EngineThing& thing = engine_of(engine);
        require_pointer(count, "count");
        *count = thing.engine.plugins().size();
    });
}

orvex_result orvex_engine_plugin(orvex_engine engine, size_t index, orvex_plugin_info* info) {
    return guarded([&] {
        const auto& plugins = engine_of(engine).engine.plugins();
        require_index(index, plugins.size());
        const kit::FoundPlugin& plugin = plugins[index];
        record_out({0, plugin.path.c_str(), plugin.name.c_str(), plugin.reason.c_str()}, info,
                   "info");
    });
}

orvex_result orvex_engine_formats(orvex_engine engine, const char** formats) {
    return guarded([&] {
        EngineThing& thing = engine_of(engine);
        require_pointer(formats, "formats");
        thing.formats = kit::readable_formats();
        *formats = thing.formats.c_str();
    });
}

orvex_result orvex_device_count(size_t* count) {
    return guarded([&] {
        require_pointer(count, "count");
        require_own_process();
        note_driver();
        store_of_thread().devices = orvex::RenderWindow::list_devices();
        *count = store_of_thread().devices.size();
    });
}

orvex_result orvex_device(size_t index, orvex_device_info* info) {
    return guarded([&] {
        const auto& devices = store_of_thread().devices;
        require_index(index, devices.size());
        const orvex::RenderWindow_Device& device = devices[index];
        record_out({0, device.driver.c_str(), device.node.c_str(), device.pci.c_str(),
                    device.refusal.c_str(), device.software ? 1 : 0, 0},
                   info, "info");
    });
}
