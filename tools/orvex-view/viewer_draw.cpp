// A frame of the viewer: the model or a layer of it, then what is written over it.

#include "viewer.h"

#include <utility>
#include <vector>

#include <orvex/renderer/renderer.h>
#include <orvex_kit/picture_file.h>

#include "false_colors.h"
#include "messages.h"
#include "picture_name.h"

using namespace orvex::kit;

namespace {

/// Whether faces are drawn as their edges, or filled.
void set_edges(View& view, bool are_drawn) {
    orvex::Renderer& renderer = *view.renderer();
    renderer.rasterizer_set_polygon_mode(orvex::POLYGON_FACE_FRONT_AND_BACK,
                                         are_drawn ? orvex::POLYGON_MODE_LINE
                                                   : orvex::POLYGON_MODE_FILL);
    renderer.rasterizer_apply_state();
}

} // namespace

void Viewer::draw(View& view) {
    const Color& behind = options.background;
    view.set_background({behind.r, behind.g, behind.b, 1.0f});
    if (const std::string mistake = looks.apply(view); !mistake.empty())
        warn(mistake);
    Picture layer;
    if (current_layer == Layer::color || !shown.model()) {
        draw_model(view);
    } else if (const std::string mistake = draw_layer(view, layer); !mistake.empty()) {
        warn("no layer " + std::string(name_of(current_layer)) + ": " + mistake);
        current_layer = Layer::color;
        draw_model(view);
    }
    if (std::exchange(is_picture_wanted, false))
        write_picture(view, layer);
    if (const std::string mistake = overlay.draw(view, words(), text_scale); !mistake.empty())
        tell_warning(mistake);
    is_stale = false;
}

void Viewer::draw_model(View& view) {
    caption.clear();
    view.begin(camera());
    set_edges(view, has_edges);
    view.add(shown.model(), eye.orbit.place().angle);
    set_edges(view, false);
    view.end();
}

/// A layer in false colours, whose picture is on the screen then.
std::string Viewer::draw_layer(View& view, Picture& picture) {
    const orvex::kit::Camera seen = camera();
    std::vector<Picture> data;
    if (const Outcome drawn = draw_layers(view, seen, {&shown.model()}, {current_layer}, data);
        !drawn)
        return drawn.reason();
    const Color& behind = options.background;
    const FalseColors colors{{behind.r, behind.g, behind.b, 1.0f}, shown.model().bounds()};
    if (const Outcome shaded =
            show_in_false_colors(current_layer, data.front(), colors, picture, caption);
        !shaded)
        return shaded.reason();
    view.begin(seen);
    view.end();
    return pane.show(view, picture);
}

/// What is on the screen, without words.
void Viewer::write_picture(View& view, const Picture& layer) {
    Picture picture;
    Outcome done = layer.is_empty() ? view.read(picture) : picture.copy_from(layer);
    if (done)
        done = picture.take_channels(picture, 3);
    const std::string name = free_picture_name(shown.path());
    if (done)
        done = orvex::kit::write_picture(picture, name);
    if (done)
        note("wrote " + name);
    else
        warn(done.reason());
}
