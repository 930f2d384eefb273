#include "orvex/base/private/plugin_end.h"

#include <algorithm>
#include <vector>

namespace orvex {

namespace {

/// Never destroyed: plugins may still end while the process does.
std::vector<PluginEndListener>& listeners() {
    static auto* const instance = new std::vector<PluginEndListener>;
    return *instance;
}

} // namespace

void listen_to_plugin_ends(PluginEndListener listener) {
    auto& known = listeners();
    if (std::find(known.begin(), known.end(), listener) == known.end())
        known.push_back(listener);
}

void tell_plugin_end(Plugin* plugin) {
    for (const PluginEndListener listener : listeners())
        listener(plugin);
}

} // namespace orvex
