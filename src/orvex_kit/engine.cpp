// Start and stop, and the look for plugins between them.

#include "orvex_kit/engine.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>
#include <sstream>
#include <utility>

#include <dirent.h>
#include <dlfcn.h>

#include <orvex/base/log.h>
#include <orvex/base/plugin.h>
#include <orvex/kernel/core.h>
#include <orvex/kernel/kernel.h>

#include "orvex_kit/files.h"
#include "orvex_kit/private/engine_parts.h"

namespace orvex::kit {

namespace {

/// The log's listener, which outlives the engine's last line.
std::function<void(const std::string&)> listener;

void hand_on(const char* line, void*) {
    if (!listener)
        return;
    try {
        listener(line);
    } catch (...) { // NOLINT(bugprone-empty-catch): the engine can't do anything about it.
    }
}

/// Whether a host has started the engine itself.
bool is_started() {
    return core::log_get_default() != nullptr;
}

/// The folder of the kit's own library, with its slash; empty where the system doesn't tell.
std::string own_folder() {
    Dl_info found{};
    return dladdr(&listener, &found) != 0 && found.dli_fname ? folder_of(found.dli_fname) : "";
}

std::vector<std::string> plugin_folders() {
    std::vector<std::string> folders;
    if (const char* const path = std::getenv("ORVEX_PLUGIN_PATH")) {
        std::istringstream words(path);
        for (std::string word; std::getline(words, word, ':');)
            if (!word.empty())
                folders.push_back(word);
    }
    // Never from wherever the program happens to be.
    if (const std::string own = own_folder(); !own.empty())
        folders.push_back(own + "orvex/plugins");
    return folders;
}

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

/// The plugins of a folder by their names; none where there is no such folder. The standard
/// library's walk ends the process where memory runs out.
std::vector<std::string> plugins_in(const std::string& folder) {
    std::vector<std::string> paths;
    const std::unique_ptr<DIR, CloseFolder> open(opendir(folder.c_str()));
    while (const dirent* const entry = open ? readdir(open.get()) : nullptr) {
        std::string path = folder + "/" + entry->d_name;
        if (has_suffix(path, ".so"))
            paths.push_back(std::move(path));
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

FoundPlugin load_plugin(const std::string& path) {
    Plugin* const plugin = Kernel::get()->load_plugin(path.c_str(), false, false);
    if (!plugin)
        return {path, "", path + ": it can't be loaded as a plugin; the log tells why"};
    plugin->initialize();
    plugin->start();
    return {path, plugin->get_name(), ""};
}

bool begin_engine(const EngineOptions& options) {
    listener = options.log;
    if (!core::start(options.log_file.c_str(), listener || !options.log_file.empty(), hand_on,
                     nullptr))
        return false;
    if (Log* const log = core::log_get_default(); log && options.debug_lines)
        log->set_trace_level_threshold(LOG_LEVEL_DEBUG);
    return true;
}

/// A stop that finds no memory goes on from there at the next call.
void stop_engine() noexcept {
    for (int tries = 0; tries < 3; ++tries) {
        try {
            core::stop(nullptr);
            break;
        } catch (const std::bad_alloc&) {
            continue;
        }
    }
    listener = nullptr;
}

/// Whether the engine that runs was started here.
bool started_here = false;

void end_engine() noexcept {
    close_engine_parts();
    set_engine_runs(false);
    set_current_renderer(nullptr);
    if (started_here)
        stop_engine();
}

std::vector<FoundPlugin> load_plugins(const EngineOptions& options) {
    std::vector<FoundPlugin> found;
    for (const std::string& path : options.plugins)
        found.push_back(load_plugin(path));
    if (!options.find_plugins)
        return found;
    for (const std::string& folder : plugin_folders())
        for (const std::string& path : plugins_in(folder))
            found.push_back(load_plugin(path));
    return found;
}

} // namespace

Engine::Engine(const EngineOptions& options) {
    if (engine_runs()) {
        outcome =
            Outcome::failure("the engine runs already: a process has one kit::Engine at a time");
        return;
    }
    started_here = !is_started();
    try {
        if (started_here && !begin_engine(options)) {
            outcome = Outcome::failure("the engine doesn't start");
            return;
        }
        set_engine_runs(true);
        found = load_plugins(options);
    } catch (...) {
        end_engine();
        throw;
    }
}

Engine::~Engine() {
    if (outcome)
        end_engine();
}

} // namespace orvex::kit
