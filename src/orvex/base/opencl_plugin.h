#pragma once

/// @file
/// OpenCLPlugin: the base of OpenCL plugins.

#include "orvex/api.h"
#include "orvex/base/plugin.h"

namespace orvex {

/// Runs OpenCL programs.
///
/// The engine has no concrete class of this kind; a plugin from outside derives from it, sets a
/// type of its own and adds its operations. Owned as every `Plugin`.
class ORVEX_API OpenCLPlugin : public Plugin {
public:
    /// As `Plugin`.
    OpenCLPlugin();
    ~OpenCLPlugin() override;
};

} // namespace orvex
