#pragma once

/// @file
/// SimpleVideo: the base of video plugins.

#include "orvex/api.h"
#include "orvex/base/plugin.h"

namespace orvex {

/// Plays videos.
///
/// The engine has no concrete class of this kind; a plugin from outside derives from it, sets a
/// type of its own and adds its operations. Owned as every `Plugin`.
class ORVEX_API SimpleVideo : public Plugin {
public:
    /// As `Plugin`.
    SimpleVideo();
    ~SimpleVideo() override;
};

} // namespace orvex
