#pragma once

/// @file
/// A context with its renderer: what a view draws in, and what its programs belong to.

#include <string>
#include <vector>

#include "orvex_kit/host_state.h"
#include "orvex_kit/path.h"
#include "orvex_kit/private/engine_parts.h"
#include "orvex_kit/view.h"

namespace orvex {
class RenderWindow;
} // namespace orvex

namespace orvex::kit {

/// Which surface is asked for, and which context.
struct ContextWish {
    enum class Kind {
        off_screen,
        window, ///< of the host
        adopted ///< the context that the host holds current
    };
    Kind kind = Kind::off_screen;
    NativeWindow native;
    int width = 0;
    int height = 0;
    Path path = Path::gl3;
    int depth_bits = 24;
    std::string device{}; ///< empty: as the environment says
};

/// Open from a good `open` to `close`. A view and its programs share it, so that programs know when
/// it has closed.
class ViewContext : public EnginePart {
public:
    ViewContext() = default;
    ~ViewContext() override { close(); }

    /// Makes the context, which is current then, and starts a renderer in it.
    void open(const ContextWish& wish);
    /// Ends the targets, the renderer and the context. What remains of a reason stays.
    void close() override;

    /// What is compiled in the context is closed with it: a host's own context lives on, and would
    /// keep it.
    void add(EnginePart& part) { parts.push_back(&part); }
    void remove(const EnginePart& part);

    bool is_open() const { return renderer != nullptr; }
    /// Makes the context current and its renderer the kit's; a host's context has to be current.
    bool make_current();

    orvex::Renderer* renderer = nullptr; ///< null: not open
    orvex::RenderWindow* window = nullptr;
    Path path = Path::gl3;
    bool is_adopted = false;
    ViewFailure failure = ViewFailure::none;
    std::string reason;

    void fail(ViewFailure failure, std::string reason);

    /// The one that was made current last; null where none is open.
    static ViewContext* last();
    /// Makes one current again that `last` gave, unless it has closed since.
    static void make_last(const void* context);

    /// Makes a context current for a while, and after that the one that was, so that programs come
    /// and go between the steps of another view's frame, or of a host's own.
    class Visit {
    public:
        explicit Visit(ViewContext& context);
        ~Visit();
        Visit(const Visit&) = delete;
        Visit& operator=(const Visit&) = delete;

        bool is_there() const { return there; }

    private:
        HostContext kept;
        ViewContext* before;
        bool there;
    };

private:
    std::vector<EnginePart*> parts; ///< not owned

    bool begin_context(const ContextWish& wish);
    void explain(const ContextWish& wish);
    void explain_adoption(Path path);
};

} // namespace orvex::kit
