// Views: their life, their looks, and frames that are drawn, read and written.

#include <cmath>
#include <memory>
#include <optional>
#include <utility>

#include <orvex/renderer/renderer.h>
#include <orvex_kit/host_state.h>
#include <orvex_kit/look.h>

#include "orvex_c/private/cameras.h"
#include "orvex_c/private/drawing.h"
#include "orvex_c/private/handles.h"
#include "orvex_c/private/pictures.h"
#include "orvex_c/private/records.h"

using namespace orvex::c;

namespace {

kit::ViewOptions kit_options(const orvex_view_options& told) {
    require_choice(told.surface, ORVEX_SURFACE_CURRENT, "options->surface");
    require_choice(told.path, ORVEX_PATH_GL2, "options->path");
    require_range(told.samples, 0, 64, "options->samples");
    require_range(told.supersampling, 0, 8, "options->supersampling");
    require_range(told.depth_bits, 0, 32, "options->depth_bits");
    kit::ViewOptions options;
    options.path = told.path == ORVEX_PATH_GL2 ? kit::Path::gl2 : kit::Path::gl3;
    if (told.samples != 0)
        options.samples = told.samples;
    if (told.supersampling != 0)
        options.supersampling = told.supersampling;
    if (told.depth_bits != 0)
        options.depth_bits = told.depth_bits;
    options.device = text_or_nothing(told.device);
    return options;
}

orvex_result result_of(kit::ViewFailure failure) {
    switch (failure) {
    case kit::ViewFailure::memory:
        return ORVEX_ERROR_MEMORY;
    case kit::ViewFailure::no_engine:
        return ORVEX_ERROR_ENGINE;
    default:
        return ORVEX_ERROR_DRIVER;
    }
}

} // namespace

namespace orvex::c {

Drawing::Drawing(ViewThing& thing)
    : view(thing.view) {
    if (thing.keeps_states)
        kept.emplace();
    if (!view)
        refuse(result_of(view.failure()), view.reason());
    if (!view.make_current())
        refuse(ORVEX_ERROR_DRIVER, "the context of the view can't be made current");
}

} // namespace orvex::c

orvex_result orvex_view_create(orvex_engine engine, int32_t width, int32_t height,
                               const orvex_view_options* options, orvex_view* view) {
    return guarded([&] {
        Out<orvex_view> out(view, "view");
        engine_of(engine);
        require_sides(width, height);
        const orvex_view_options told = record_in(options, "options");
        const kit::ViewOptions wanted = kit_options(told);
        auto thing = std::make_unique<ViewThing>();
        const bool is_host = told.surface == ORVEX_SURFACE_CURRENT;
        thing->keeps_states = flag_of(told.keep_states, "options->keep_states") && is_host;
        std::optional<kit::HostState> kept;
        if (thing->keeps_states)
            kept.emplace();
        note_driver();
        thing->view = is_host ? kit::View(kit::CurrentContext{}, width, height, wanted)
                              : kit::View(width, height, wanted);
        if (!thing->view)
            refuse(result_of(thing->view.failure()), thing->view.reason());
        thing->driver = text_or_nothing(thing->view.renderer()->get_renderer_model());
        out = std::move(thing);
    });
}

orvex_result orvex_view_destroy(orvex_view view) {
    return guarded([&] {
        const ViewThing& thing = view_of(view);
        std::optional<kit::HostState> kept;
        if (thing.keeps_states)
            kept.emplace();
        end_texts_of(thing);
        end_handle(view);
    });
}

orvex_result orvex_view_get_info(orvex_view view, orvex_view_info* info) {
    return guarded([&] {
        const ViewThing& thing = view_of(view);
        const kit::View& seen = thing.view;
        record_out({0, seen.width(), seen.height(), seen.samples() > 1 ? seen.samples() : 1,
                    seen.supersampling(),
                    seen.path() == kit::Path::gl2 ? ORVEX_PATH_GL2 : ORVEX_PATH_GL3,
                    thing.driver.c_str()},
                   info, "info");
    });
}

orvex_result orvex_view_resize(orvex_view view, int32_t width, int32_t height) {
    return guarded([&] {
        const Drawing drawing(view);
        require_sides(width, height);
        require(drawing.view.resize(width, height), ORVEX_ERROR_DRIVER);
    });
}

orvex_result orvex_view_set_background(orvex_view view, const float* color) {
    return guarded([&] {
        ViewThing& thing = view_of(view);
        require_pointer(color, "color");
        static constexpr const char* names[] = {"color[0]", "color[1]", "color[2]", "color[3]"};
        for (int i = 0; i < 4; ++i)
            require_range(static_cast<double>(color[i]), 0.0, 1.0, names[i]);
        thing.view.set_background({color[0], color[1], color[2], color[3]});
    });
}

namespace {

const std::vector<std::string>& look_names() {
    static const auto* const names = new std::vector<std::string>(kit::Look::names());
    return *names;
}

void set_look(const Drawing& drawing, const kit::Look& look, orvex_result if_empty) {
    if (!look)
        refuse(if_empty, look.reason());
    require(drawing.view.set_look(look), ORVEX_ERROR_LOOK);
}

} // namespace

orvex_result orvex_look_count(size_t* count) {
    return guarded([&] {
        require_pointer(count, "count");
        *count = look_names().size();
    });
}

orvex_result orvex_look_name(size_t index, const char** name) {
    return guarded([&] {
        require_pointer(name, "name");
        require_index(index, look_names().size());
        *name = look_names()[index].c_str();
    });
}

orvex_result orvex_view_set_look(orvex_view view, const char* name) {
    return guarded([&] {
        const Drawing drawing(view);
        require_pointer(name, "name");
        set_look(drawing, kit::Look::named(name), ORVEX_ERROR_LOOK);
    });
}

orvex_result orvex_view_set_look_source(orvex_view view, const char* path, const char* text) {
    return guarded([&] {
        const Drawing drawing(view);
        if (!path == !text)
            refuse(ORVEX_ERROR_ARGUMENT, path ? "path and text are both given: one of them is null"
                                              : "path and text are both null");
        set_look(drawing, path ? kit::Look::from_file(path) : kit::Look::from_text(text),
                 path ? ORVEX_ERROR_FILE : ORVEX_ERROR_LOOK);
    });
}

orvex_result orvex_view_draw(orvex_view view, const orvex_camera* camera, const orvex_model* models,
                             size_t count) {
    return guarded([&] {
        const Drawing drawing(view);
        const Seen seen = seen_by(camera, models_of(models, count));
        drawing.view.begin(seen.camera);
        for (kit::Model* const model : seen.models)
            drawing.view.add(*model, seen.lit_from);
        drawing.view.end();
    });
}

orvex_result orvex_view_read(orvex_view view, void* rows, ptrdiff_t row_bytes) {
    return guarded([&] {
        const Drawing drawing(view);
        require_pointer(rows, "rows");
        const std::ptrdiff_t step =
            row_bytes_or_dense(row_bytes, std::ptrdiff_t{drawing.view.width()} * 4, "row_bytes");
        require(drawing.view.read(rows, step), ORVEX_ERROR_DRIVER);
    });
}

orvex_result orvex_view_write(orvex_view view, const char* path,
                              const orvex_write_options* options) {
    return guarded([&] {
        const Drawing drawing(view);
        require_pointer(path, "path");
        require(drawing.view.write(path, file_options(options)), ORVEX_ERROR_FILE);
    });
}
