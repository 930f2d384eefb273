// A view from one model to the next: what takes long to make is kept, and what a file may have
// changed meanwhile is made again.

#include "easel.h"

#include <cstdint>

#include <orvex/renderer/renderer.h>

#include "messages.h"
#include "start.h"

using namespace orvex::kit;

std::string Easel::prepare(const Options& options) {
    const ViewOptions wanted = view_options(options);
    if (!keep(wanted, options.size))
        make(wanted, options.size);
    if (!own_view)
        return mistake_in(own_view);
    const Color& behind = options.background;
    own_view.set_background({behind.r, behind.g, behind.b, behind.a});
    if (options.samples > 1 && own_view.samples() < options.samples)
        tell_warning(std::to_string(options.samples) + " samples per pixel aren't offered here; " +
                     std::to_string(own_view.samples()) + " are");
    return take_look(options.look);
}

namespace {

/// Whether a view is worth its memory while smaller ones are drawn.
bool is_small(std::int64_t width, std::int64_t height) {
    constexpr std::int64_t most_pixels = 4 << 20;
    return width * height <= most_pixels;
}

} // namespace

/// Whether the view that is there serves, in its new size.
bool Easel::keep(const ViewOptions& wanted, Size size) {
    if (!own_view || path != wanted.path || samples != wanted.samples || !own_view.make_current() ||
        !is_small(size.width, size.height) || !is_small(own_view.width(), own_view.height()))
        return false;
    if (own_view.width() == size.width && own_view.height() == size.height)
        return true;
    // Earlier errors are none of the new size.
    own_view.renderer()->get_opengl_error();
    return own_view.resize(size.width, size.height) && own_view.renderer()->get_opengl_error() == 0;
}

void Easel::make(const ViewOptions& wanted, Size size) {
    overlay.reset();
    look.clear();
    own_view = View(); // first, as there may be no memory for two
    own_view = View(size.width, size.height, wanted);
    path = wanted.path;
    samples = wanted.samples;
}

std::string Easel::take_look(const std::string& wanted) {
    if (wanted == look)
        return "";
    const Look taken = look_of(wanted);
    look.clear();
    const Outcome outcome = own_view.set_look(taken);
    if (outcome && taken.path().empty())
        look = wanted;
    return outcome.reason();
}

TextOverlay* Easel::text(const std::string& font, std::string& reason) {
    if (overlay && font.empty() && !has_own_font)
        return overlay.get();
    overlay = std::make_unique<TextOverlay>(own_view);
    has_own_font = !font.empty();
    reason = overlay->load(font);
    if (!reason.empty())
        overlay.reset();
    return overlay.get();
}
