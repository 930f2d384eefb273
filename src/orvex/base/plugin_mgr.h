#pragma once

/// @file
/// PluginMgr: the registry of all plugins.

#include <memory>

#include "orvex/api.h"
#include "orvex/base/plugin.h"

namespace orvex {

/// Holds one reference on each plugin, in order of insertion, and loads plugins from shared
/// libraries.
///
/// One per process, made on first use and never destroyed. Not locked: the host's main thread calls
/// it. A plugin that ends while it is registered loses its entry. Where memory runs out an
/// operation throws `std::bad_alloc`, and the registry is as before; a plugin's own entries throw
/// nothing.
class ORVEX_API PluginMgr {
public:
    /// The only instance.
    static PluginMgr* get();

    PluginMgr(const PluginMgr&) = delete;
    PluginMgr& operator=(const PluginMgr&) = delete;

    /// Appends a plugin and adds one reference to it.
    /// @return false for null
    bool insert_plugin(Plugin* plugin);

    /// Erases the entry of a plugin and takes one reference off, without destroying the plugin.
    /// @return 1; 0 if there is no such entry; -1 for null
    int remove_plugin(Plugin* plugin);

    /// Notes the directory that plugins are being loaded from; null stores an empty text.
    void set_current_plugin_dir(const char* directory);
    /// Valid until the next `set_current_plugin_dir`.
    const char* get_current_plugin_dir() const;

    /// Loads a plugin from a shared library. It is neither initialized nor started.
    /// @param filename  a path as `dlopen` takes it
    /// @param force     loads another instance even if a plugin of this file name is registered;
    ///                  without it such a plugin is found again, with no new reference
    /// @return the id of the plugin; -1, with a log line, if it can't be loaded; -1 for null and
    ///         when the library builds no plugin
    int load_plugin(const char* filename, bool force);

    /// Removes a plugin from the registry, stops and terminates it, and takes off two references:
    /// the registry's and one more, so a plugin that its host holds once ends all the same.
    /// @return the references left; -1 for null
    int unload_plugin(Plugin* plugin);

    /// The same for the plugin of this id; -1 if there is none.
    int unload_plugin(int id);

    /// `unload_plugin` for each plugin of this type, in registry order.
    /// @return how many
    int unload_plugins_by_type(PLUGIN_TYPE type);

    /// Stops and terminates every plugin, first inserted first, takes off the registry's reference
    /// and empties the registry. A plugin with further references lives on. One whose own `stop`
    /// leaves the registry is terminated and released all the same; one that ends there isn't
    /// touched again.
    /// @return how many ended
    int unload_all_plugins();

    /// Entries of the registry; a plugin inserted twice counts twice.
    unsigned long get_num_plugins() const;

    /// The plugin at an index in order of insertion; null past the end.
    Plugin* get_plugin_by_index(unsigned long index) const;

    /// The plugin of this id; null if there is none.
    Plugin* get_plugin(int id) const;

    /// Entries of that type.
    unsigned long get_num_plugins_by_type(PLUGIN_TYPE type) const;

    /// The plugin at `index` among those of a type, in order of insertion; null past the end.
    Plugin* get_plugin_by_type(PLUGIN_TYPE type, unsigned long index) const;

private:
    PluginMgr();
    ~PluginMgr();

    struct PluginsMgrData;
    std::unique_ptr<PluginsMgrData> data;
};

} // namespace orvex
