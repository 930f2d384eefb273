#pragma once

/// @file
/// What is done with a view's context.

#include <optional>

#include <orvex_kit/host_state.h>
#include <orvex_kit/view.h>

#include "orvex_c/orvex.h"
#include "orvex_c/private/handles.h"

namespace orvex::c {

/// A view whose context is current, from here to the end of a call. The states of a host's context
/// are kept for as long, if that was asked for.
class Drawing {
public:
    explicit Drawing(orvex_view handle)
        : Drawing(view_of(handle)) {}
    explicit Drawing(ViewThing& thing);

private:
    std::optional<kit::HostState> kept;

public:
    kit::View& view;
};

} // namespace orvex::c
