#pragma once

/// @file
/// Audio: the base of audio plugins.

#include "orvex/api.h"
#include "orvex/base/plugin.h"

namespace orvex {

/// Plays sound.
///
/// The engine has no concrete class of this kind; a plugin from outside derives from it, sets a
/// type of its own and adds its operations. Owned as every `Plugin`.
class ORVEX_API Audio : public Plugin {
public:
    /// As `Plugin`.
    Audio();
    ~Audio() override;
};

} // namespace orvex
