#pragma once

/// @file
/// A walk of `render` that lets the renderer keep binds.

#include "orvex/renderer/private/eliding_renderers.h"
#include "orvex/renderer/renderer.h"
#include "orvex/scene/node.h"

namespace orvex {

/// @return whether a node is of exactly a class that draws by the engine's own code alone, see
///         `note_drawn_by_engine`
bool is_drawn_by_engine(const Node& node);

/// Keeps binds as far as the nodes of a walk allow it, and gives back the former state at its end,
/// also when something is thrown. Does nothing with a renderer whose host didn't ask for it.
class KeptBinds {
public:
    explicit KeptBinds(Renderer* renderer)
        : renderer(renderer && any_renderer_elides() && renderer->get_elided_binds_state()
                       ? renderer
                       : nullptr)
        , was_keeping(this->renderer && this->renderer->get_kept_binds_state()) {}
    ~KeptBinds() {
        if (renderer)
            keep(was_keeping);
    }
    KeptBinds(const KeptBinds&) = delete;
    KeptBinds& operator=(const KeptBinds&) = delete;

    /// Before the code of a node runs.
    void enter(const Node& node) const {
        if (renderer)
            keep(is_drawn_by_engine(node));
    }

private:
    void keep(bool state) const {
        if (renderer->get_kept_binds_state() != state)
            renderer->keep_binds(state);
    }

    Renderer* renderer; ///< null where nothing is kept
    bool was_keeping;
};

} // namespace orvex
