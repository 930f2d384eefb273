#pragma once

/// @file
/// Lets holders of plain plugin pointers hear of a plugin's end, so that none of them dangles.

#include "orvex/base/plugin.h"

namespace orvex {

/// Called with a plugin that is about to end or is ending: only its address may be used. It may be
/// called more than once for the same plugin.
using PluginEndListener = void (*)(Plugin* plugin);

/// Adds a listener for the rest of the process; one that is known already is not added again.
void listen_to_plugin_ends(PluginEndListener listener);

/// Tells every listener, first added first.
void tell_plugin_end(Plugin* plugin);

} // namespace orvex
