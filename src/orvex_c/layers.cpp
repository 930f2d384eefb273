// Layers: pictures as data, into the caller's memory.

#include <optional>
#include <string>
#include <vector>

#include <orvex_kit/layers.h>

#include "orvex_c/private/cameras.h"
#include "orvex_c/private/drawing.h"
#include "orvex_c/private/handles.h"
#include "orvex_c/private/pictures.h"
#include "orvex_c/private/records.h"

using namespace orvex::c;

namespace {

static_assert(static_cast<int>(kit::Layer::color) == ORVEX_LAYER_COLOR);
static_assert(static_cast<int>(kit::Layer::depth) == ORVEX_LAYER_DEPTH);
static_assert(static_cast<int>(kit::Layer::normal) == ORVEX_LAYER_NORMAL);
static_assert(static_cast<int>(kit::Layer::position) == ORVEX_LAYER_POSITION);
static_assert(static_cast<int>(kit::Layer::object) == ORVEX_LAYER_OBJECT);
static_assert(static_cast<int>(kit::Layer::material) == ORVEX_LAYER_MATERIAL);
static_assert(static_cast<int>(kit::Layer::face) == ORVEX_LAYER_FACE);

kit::Layer layer_of(orvex_layer layer, const char* name) {
    require_choice(layer, ORVEX_LAYER_FACE, name);
    return static_cast<kit::Layer>(layer);
}

orvex_type type_of(kit::Sample sample) {
    switch (sample) {
    case kit::Sample::u8:
        return ORVEX_TYPE_U8;
    case kit::Sample::u16:
        return ORVEX_TYPE_U16;
    case kit::Sample::f32:
        return ORVEX_TYPE_F32;
    case kit::Sample::i32:
        return ORVEX_TYPE_I32;
    }
    return ORVEX_TYPE_DEFAULT;
}

kit::LayerPlane plane_of(const orvex_plane& told, int width, const std::string& name) {
    if (told.reserved != 0)
        refuse_argument((name + ".reserved").c_str(), std::to_string(told.reserved), "it is 0");
    const kit::Layer layer = layer_of(told.layer, (name + ".layer").c_str());
    require_pointer(told.rows, (name + ".rows").c_str());
    const auto sample = static_cast<std::ptrdiff_t>(kit::size_of(kit::sample_of(layer)));
    const std::string row_name = name + ".row_bytes";
    if (told.row_bytes % sample != 0)
        refuse_argument(row_name.c_str(), std::to_string(told.row_bytes),
                        ("it is a multiple of " + std::to_string(sample)).c_str());
    return {layer, told.rows,
            row_bytes_or_dense(told.row_bytes, sample * kit::channels_of(layer) * width,
                               row_name.c_str())};
}

} // namespace

orvex_result orvex_layer_get_info(orvex_layer layer, orvex_layer_info* info) {
    return guarded([&] {
        const kit::Layer told = layer_of(layer, "layer");
        record_out({0, kit::name_of(told), kit::channels_of(told), type_of(kit::sample_of(told))},
                   info, "info");
    });
}

orvex_result orvex_layer_named(const char* name, orvex_layer* layer) {
    return guarded([&] {
        require_pointer(name, "name");
        require_pointer(layer, "layer");
        const std::optional<kit::Layer> found = kit::layer_named(name);
        if (!found)
            refuse_argument("name", name,
                            "layers are color, depth, normal, position, object, material and face");
        *layer = static_cast<orvex_layer>(*found);
    });
}

orvex_result orvex_view_draw_layers(orvex_view view, const orvex_camera* camera,
                                    const orvex_model* models, size_t count,
                                    const orvex_plane* planes, size_t plane_count,
                                    const orvex_layer_options* options) {
    return guarded([&] {
        const Drawing drawing(view);
        const Seen seen = seen_by(camera, models_of(models, count));
        const orvex_layer_options told = record_in(options, "options");
        require_choice(told.space, ORVEX_SPACE_CAMERA, "options->space");
        require_reserved(told.reserved, "options");
        if (plane_count > 0)
            require_pointer(planes, "planes");
        require_range(static_cast<double>(plane_count), 0, 4096, "plane_count");
        std::vector<kit::LayerPlane> wanted;
        for (std::size_t i = 0; i < plane_count; ++i)
            wanted.push_back(
                plane_of(planes[i], drawing.view.width(), "planes[" + std::to_string(i) + "]"));
        kit::LayerOptions how;
        how.space =
            told.space == ORVEX_SPACE_CAMERA ? kit::LayerSpace::camera : kit::LayerSpace::world;
        how.lit_from = seen.lit_from;
        require(kit::draw_layers(drawing.view, seen.camera, seen.models, wanted, how),
                ORVEX_ERROR_DRIVER);
    });
}
