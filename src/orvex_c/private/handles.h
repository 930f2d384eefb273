#pragma once

/// @file
/// What the handles stand for.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <orvex_kit/engine.h>
#include <orvex_kit/model.h>
#include <orvex_kit/text.h>
#include <orvex_kit/view.h>

#include "orvex_c/orvex.h"
#include "orvex_c/private/refusal.h"

namespace orvex::c {

/// What a handle is one of.
enum class Kind : unsigned char { engine, view, model, text };

/// Behind a handle.
struct Thing {
    explicit Thing(Kind kind)
        : kind(kind) {}
    virtual ~Thing() = default;
    Thing(const Thing&) = delete;
    Thing& operator=(const Thing&) = delete;

    const Kind kind;
};

struct EngineThing : Thing {
    static constexpr Kind is = Kind::engine;
    static constexpr const char* name = "engine";
    explicit EngineThing(const kit::EngineOptions& options)
        : Thing(is)
        , engine(options) {}

    kit::Engine engine;
    std::string formats; ///< as they were listed last
};

struct ViewThing : Thing {
    static constexpr Kind is = Kind::view;
    static constexpr const char* name = "view";
    ViewThing()
        : Thing(is) {}

    kit::View view;
    bool keeps_states = false; ///< of the host's context
    std::string driver;
};

struct ModelThing : Thing {
    static constexpr Kind is = Kind::model;
    static constexpr const char* name = "model";
    ModelThing()
        : Thing(is) {}

    kit::Model model;
    std::vector<std::string> files;
};

struct TextThing : Thing {
    static constexpr Kind is = Kind::text;
    static constexpr const char* name = "text";
    TextThing(ViewThing& view, const kit::Font& font)
        : Thing(is)
        , view(view)
        , font(font)
        , text(view.view, font) {}

    ViewThing& view; ///< which ends no earlier
    kit::Font font;
    kit::Text text;
};

/// Refuses another thread than the engine's, a process that was forked off, and a callback of the
/// log's.
void require_caller();
/// The same where no engine has to run.
void require_no_fork();
/// Refuses a process that was forked off, but no callback.
void require_own_process();
/// Takes the engine for the calling thread, or refuses. `give_up_engine` undoes it.
void claim_engine();
void give_up_engine() noexcept;
/// A driver is about to start, which hangs in processes that are forked off from then on.
void note_driver();

/// Keeps a thing, and makes its handle: a number that no other thing ever has.
void* keep(std::unique_ptr<Thing> thing);
/// The thing of a handle, or a refusal.
Thing& thing_of(const void* handle, const char* name);
/// Ends the thing of a handle, and the handle.
void end_handle(const void* handle);
/// Ends the texts of a view.
void end_texts_of(const ViewThing& view);
/// Ends all of them, the engine's at the end.
void end_all_handles() noexcept;

[[noreturn]] void refuse_kind(const char* name);

template<class Wanted>
Wanted& get(const void* handle) {
    Thing& thing = thing_of(handle, Wanted::name);
    if (thing.kind != Wanted::is)
        refuse_kind(Wanted::name);
    return static_cast<Wanted&>(thing);
}
inline EngineThing& engine_of(orvex_engine handle) {
    return get<EngineThing>(handle);
}
inline ViewThing& view_of(orvex_view handle) {
    return get<ViewThing>(handle);
}
inline ModelThing& model_of(orvex_model handle) {
    return get<ModelThing>(handle);
}
inline TextThing& text_of(orvex_text handle) {
    return get<TextThing>(handle);
}

/// The models of a list of handles.
std::vector<kit::Model*> models_of(const orvex_model* handles, std::size_t count);

/// Where a handle is handed out: null until it is.
template<class Handle>
class Out {
public:
    Out(Handle* place, const char* name)
        : place(place) {
        require_pointer(place, name);
        *place = nullptr;
    }
    void operator=(std::unique_ptr<Thing> thing) {
        *place = static_cast<Handle>(keep(std::move(thing)));
    }

private:
    Handle* place;
};

} // namespace orvex::c
