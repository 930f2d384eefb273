// How a context begins and ends, and why there is none: a driver that is too old is told from a
// missing one, from one that finds no memory, and from a size that it doesn't have, by trying
// smaller wishes.

#include "orvex_kit/private/view_context.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include <orvex/kernel/kernel.h>
#include <orvex/renderer/render_window.h>
#include <orvex/renderer/renderer.h>

namespace orvex::kit {

namespace {

/// The open contexts, the one made current last behind the others. Never destroyed: views of static
/// life may end after it would be.
std::vector<ViewContext*>& open_contexts() {
    static auto* const all = new std::vector<ViewContext*>;
    return *all;
}

RenderWindow_ExtraData request_for(Path path, int depth_bits) {
    RenderWindow_ExtraData request;
    request.gl_major = path == Path::gl3 ? 3 : 2;
    request.gl_minor = path == Path::gl3 ? 2 : 1;
    request.depth_bits = depth_bits;
    return request;
}

bool begin_window(RenderWindow& window, const ContextWish& wish) {
    RenderWindow_ExtraData request = request_for(wish.path, wish.depth_bits);
    request.device = wish.device.c_str();
    return window.initialize(wish.native.display, wish.native.drawable, wish.width, wish.height,
                             "Off", nullptr, &request);
}

std::string size_text(const ContextWish& wish) {
    return std::to_string(wish.width) + "x" + std::to_string(wish.height) + " pixels";
}

} // namespace

void ViewContext::fail(ViewFailure new_failure, std::string new_reason) {
    failure = new_failure;
    reason = std::move(new_reason);
}

void ViewContext::open(const ContextWish& wish) {
    path = wish.path;
    if (!engine_runs())
        return fail(ViewFailure::no_engine, no_engine);
    if (wish.width < 1 || wish.height < 1)
        return fail(ViewFailure::size, "a view of " + size_text(wish) + ": sides go from 1");
    open_contexts().reserve(open_contexts().size() + 1);
    renderer = Kernel::get()->load_core_opengl_renderer_plugin(true);
    renderer->initialize();
    renderer->set_elided_binds_state(true);
    window = renderer->create_render_window();
    if (!begin_context(wish) || failure != ViewFailure::none)
        return close();
    open_contexts().push_back(this);
    set_current_renderer(renderer);
}

/// @return false, with the reason, where there is none
bool ViewContext::begin_context(const ContextWish& wish) {
    is_adopted = wish.kind == ContextWish::Kind::adopted;
    if (is_adopted) {
        // Any handle that isn't null does: it would only be given back.
        if (!window->osx_init_with_cocoa_nsgl_ctx(this))
            fail(ViewFailure::window,
                 "no OpenGL context is current: make the host's current first");
        else
            window->update_size(wish.width, wish.height);
    } else if (!begin_window(*window, wish)) {
        explain(wish);
    }
    if (failure != ViewFailure::none)
        return false;
    if (!renderer->start())
        fail(ViewFailure::no_driver, "the renderer doesn't start");
    else if (is_adopted)
        explain_adoption(wish.path);
    return failure == ViewFailure::none;
}

/// A host's context that doesn't suit the path.
void ViewContext::explain_adoption(Path wanted) {
    if (wanted == Path::gl3 && !window->is_opengl_version_supported(3, 2)) {
        int major = 0, minor = 0;
        window->get_opengl_version(&major, &minor);
        return fail(ViewFailure::old_driver, "the host's context offers OpenGL " +
                                                 std::to_string(major) + "." +
                                                 std::to_string(minor) + ": ask for path gl2");
    }
    // A core context has no such text, and notes that it was asked.
    if (wanted == Path::gl2 && !renderer->get_renderer_gl_extensions_raw_string()) {
        renderer->get_opengl_error();
        fail(
            ViewFailure::old_driver,
            "the host's context is a core one, without what path gl2 draws with: ask for path gl3");
    }
}

namespace {

/// Whether a software driver, with the compiler in it, finds room.
bool is_room_for_a_driver() {
    constexpr std::size_t needed = std::size_t{256} << 20;
    return std::unique_ptr<char[]>(new (std::nothrow) char[needed]) != nullptr;
}

} // namespace

/// Tries what would have done.
void ViewContext::explain(const ContextWish& wish) {
    ContextWish smaller{
        ContextWish::Kind::off_screen, {}, 16, 16, wish.path, wish.depth_bits, wish.device};
    RenderWindow& other = *renderer->create_render_window();
    if (begin_window(other, smaller))
        return wish.kind == ContextWish::Kind::window
                   ? fail(ViewFailure::window,
                          "the host's window can't be drawn in: its display, or "
                          "its number, is another")
                   : fail(ViewFailure::size,
                          "the driver has no surface of " + size_text(wish) + ": ask for fewer");
    smaller.path = Path::gl2;
    if (wish.path == Path::gl3 && begin_window(other, smaller)) {
        int major = 0, minor = 0;
        other.get_opengl_version(&major, &minor);
        return fail(ViewFailure::old_driver, "this driver offers OpenGL " + std::to_string(major) +
                                                 "." + std::to_string(minor) +
                                                 ": ask for path gl2");
    }
    if (!wish.device.empty())
        return fail(ViewFailure::no_driver, "the device \"" + wish.device +
                                                "\" isn't there, or can't draw: the log says why");
    if (!is_room_for_a_driver())
        return fail(ViewFailure::memory, "there isn't enough memory for an OpenGL driver");
    fail(ViewFailure::no_driver, "no EGL driver is found: install libgl1-mesa-dri");
}

bool ViewContext::make_current() {
    if (!is_open() || (!is_adopted && !window->osx_apply_context(true)))
        return false;
    std::vector<ViewContext*>& all = open_contexts();
    if (all.back() != this)
        std::rotate(std::find(all.begin(), all.end(), this),
                    std::find(all.begin(), all.end(), this) + 1, all.end());
    set_current_renderer(renderer);
    return true;
}

ViewContext* ViewContext::last() {
    return open_contexts().empty() ? nullptr : open_contexts().back();
}

void ViewContext::make_last(const void* context) {
    for (ViewContext* const open : open_contexts())
        if (open == context && open != last()) {
            open->make_current();
            return;
        }
}

ViewContext::Visit::Visit(ViewContext& context)
    : before(last())
    , there(context.make_current()) {}

ViewContext::Visit::~Visit() {
    if (there && before != open_contexts().back())
        before->make_current();
}

void ViewContext::remove(const EnginePart& part) {
    parts.erase(std::remove(parts.begin(), parts.end(), &part), parts.end());
}

void ViewContext::close() {
    if (!is_open())
        return;
    std::vector<ViewContext*>& all = open_contexts();
    const bool was_current = current_renderer() == renderer;
    const auto found = std::find(all.begin(), all.end(), this);
    if (found != all.end()) {
        make_current();
        for (EnginePart* const part : parts)
            part->close();
        renderer->kill_all_render_targets();
        renderer->stop();
        all.erase(std::find(all.begin(), all.end(), this));
    }
    renderer->kill_all_render_windows();
    Kernel::get()->unload_plugin(std::exchange(renderer, nullptr));
    window = nullptr;
    if (failure == ViewFailure::none)
        fail(ViewFailure::no_engine, "the engine has ended");
    // What ends next has to find a context: that of the view before.
    if (was_current || all.empty())
        set_current_renderer(nullptr);
    if (!all.empty())
        all.back()->make_current();
}

} // namespace orvex::kit
