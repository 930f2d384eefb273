#pragma once

/// @file
/// GpuMonitor: the base of GPU monitoring plugins.

#include "orvex/api.h"
#include "orvex/base/plugin.h"

namespace orvex {

/// Reads the sensors and counters of graphics processors.
///
/// The engine has no concrete class of this kind; a plugin from outside derives from it, sets a
/// type of its own and adds its operations. Owned as every `Plugin`.
class ORVEX_API GpuMonitor : public Plugin {
public:
    /// As `Plugin`.
    GpuMonitor();
    ~GpuMonitor() override;
};

} // namespace orvex
