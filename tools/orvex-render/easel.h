#pragma once

#include <memory>
#include <string>

#include <orvex_kit/path.h>
#include <orvex_kit/view.h>

#include "options.h"
#include "text_overlay.h"

/// What pictures are drawn on: a view with its look and its font, which the pictures of the next
/// model take over as far as they can. Nothing of one model shows in the pictures of another.
/// Needs a running engine.
class Easel {
public:
    Easel() = default;
    Easel(const Easel&) = delete;
    Easel& operator=(const Easel&) = delete;

    /// Makes ready for the pictures of a model: keeps the view and gives it another size, or makes
    /// a new one, as for another path or number of samples.
    /// @return what went wrong; empty if nothing did
    std::string prepare(const Options& options);
    /// What draws texts in the view; after a good `prepare`.
    /// @param font    a charset's file, which is read again each time; empty for the built-in one
    /// @param reason  receives why there is none
    /// @return null without one; valid until the next call of this or of `prepare`
    TextOverlay* text(const std::string& font, std::string& reason);
    orvex::kit::View& view() { return own_view; }

private:
    orvex::kit::View own_view;
    orvex::kit::Path path = orvex::kit::Path::gl3;
    int samples = 0;  ///< as they were asked for
    std::string look; ///< of the kit's that the view has; empty: another
    std::unique_ptr<TextOverlay> overlay;
    bool has_own_font = false; ///< the overlay's font is from a file

    bool keep(const orvex::kit::ViewOptions& wanted, Size size);
    void make(const orvex::kit::ViewOptions& wanted, Size size);
    std::string take_look(const std::string& wanted);
};
