#pragma once

/// @file
/// The engine from its start to its stop.

#include <functional>
#include <string>
#include <vector>

#include "orvex_kit/api.h"
#include "orvex_kit/outcome.h"

namespace orvex::kit {

/// What an `Engine` is started with.
struct EngineOptions {
    /// Receives each line of the engine's log, with its stamp and without a line end; empty for
    /// nobody. Lines come from whatever thread they arise on, one at a time. It must not log; what
    /// it throws is dropped.
    std::function<void(const std::string& line)> log;
    /// A file that the log is written to, emptied first; empty for none.
    std::string log_file;
    /// Whether debug lines are let through, too.
    bool debug_lines = false;
    /// Whether plugins are looked for: in the folders that the environment names in
    /// `ORVEX_PLUGIN_PATH`, with colons between, and then in `orvex/plugins` beside the kit's
    /// library.
    bool find_plugins = true;
    /// Files of plugins, which are loaded before those that are found.
    std::vector<std::string> plugins{};
};

/// A plugin that was found.
struct FoundPlugin {
    std::string path;   ///< of its file
    std::string name;   ///< as it calls itself; empty if it couldn't be loaded
    std::string reason; ///< why it couldn't be; empty if it could
};

/// The engine, running from the beginning of this object to its end, on whatever road the end
/// comes. Needed by all else in the kit: views and models that live longer become empty with it,
/// and say so.
///
/// One at a time in a process, on the thread that draws. Where the host has started the engine
/// itself, by `core::start`, this uses it, leaves its log alone, and leaves it running.
///
/// @code
/// kit::Engine engine({[](const std::string& line) { std::puts(line.c_str()); }});
/// if (!engine)
///     std::fprintf(stderr, "%s\n", engine.reason().c_str());
/// @endcode
class ORVEX_KIT_API Engine {
public:
    /// Starts the engine, and loads the plugins that it finds. What one of them lacks is no
    /// mistake.
    explicit Engine(const EngineOptions& options = {});
    /// Ends what the kit made, the last first, and stops the engine if this started it.
    ~Engine();
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    /// Whether it runs by this object. A second one beside the first doesn't.
    explicit operator bool() const noexcept { return static_cast<bool>(outcome); }
    /// Why it doesn't; empty if it does.
    const std::string& reason() const noexcept { return outcome.reason(); }

    /// Every plugin that was named, and then that was found at the start, in the order of the
    /// folders and then of the names, loaded or not.
    const std::vector<FoundPlugin>& plugins() const noexcept { return found; }

private:
    Outcome outcome;
    std::vector<FoundPlugin> found;
};

} // namespace orvex::kit
