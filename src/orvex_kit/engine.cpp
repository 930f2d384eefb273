// Start and stop, and the look for plugins between them.

#include "orvex_kit/engine.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <utility>

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
    folders.push_back(own_folder() + "orvex/plugins");
    return folders;
}

/// The plugins of a folder by their names; none where there is no such folder.
std::vector<std::string> plugins_in(const std::string& folder) {
    std::vector<std::string> paths;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error))
        if (has_suffix(entry->path().string(), ".so"))
            paths.push_back(entry->path().string());
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

/// Whether the engine that runs was started here.
bool started_here = false;

} // namespace

Engine::Engine(const EngineOptions& options) {
    if (engine_runs()) {
        outcome =
            Outcome::failure("the engine runs already: a process has one kit::Engine at a time");
        return;
    }
    started_here = !is_started();
    if (started_here && !begin_engine(options)) {
        outcome = Outcome::failure("the engine doesn't start");
        return;
    }
    set_engine_runs(true);
    if (!options.find_plugins)
        return;
    for (const std::string& folder : plugin_folders())
        for (const std::string& path : plugins_in(folder))
            found.push_back(load_plugin(path));
}

Engine::~Engine() {
    if (!outcome)
        return;
    close_engine_parts();
    set_engine_runs(false);
    set_current_renderer(nullptr);
    if (!started_here)
        return;
    core::stop(nullptr);
    listener = nullptr;
}

} // namespace orvex::kit
