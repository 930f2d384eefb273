#include "orvex_formats/gltf/private/gltf_light.h"

#include <array>
#include <cmath>
#include <utility>

#include "orvex_formats/private/build_model.h"

namespace orvex::formats {

namespace {

constexpr const char* extension = "KHR_lights_punctual";

bool is_finite(const vec3& vector) {
    return std::isfinite(vector.x) && std::isfinite(vector.y) && std::isfinite(vector.z);
}

/// Its colour times its intensity, in candela.
vec3 color_of(const Json& light) {
    const std::array<double, 3> color = light.numbers<3>("color", {1.0, 1.0, 1.0});
    const double intensity = light.number("intensity", 1.0);
    return {static_cast<float>(color[0] * intensity), static_cast<float>(color[1] * intensity),
            static_cast<float>(color[2] * intensity)};
}

/// Whether a light gives some of a colour, and takes away of none.
bool shines(const vec3& color) {
    return is_finite(color) && color.x >= 0.0f && color.y >= 0.0f && color.z >= 0.0f &&
           (color.x > 0.0f || color.y > 0.0f || color.z > 0.0f);
}

} // namespace

GltfLights::GltfLights(const Json& json, GltfBudget& budget, GltfNotes& notes, Draft& draft)
    : lights(json.object("extensions").object(extension).list("lights"))
    , budget(budget)
    , notes(notes)
    , draft(draft) {}

void GltfLights::add(const Json& node, const GltfTransform& world) {
    const Json told = node.object("extensions").object(extension);
    if (!told)
        return;
    const Json light = lights.at(told.need("light").as_index(lights.size(), "lights"));
    const bool is_spot = light.text("type") == "spot";
    if (!is_spot && light.text("type") != "point") {
        notes.add(light,
                  "a light that shines from nowhere was left out, as lights stand somewhere");
        return;
    }
    budget.take(size_of_node, node);
    Lamp lamp;
    lamp.name = light.text("name", node.text("name"));
    lamp.place = world.place({0.0f, 0.0f, 0.0f});
    lamp.color = color_of(light);
    lamp.reach = light.real("range", 0.0f);
    if (!shines(lamp.color) || !is_finite(lamp.place) || !(lamp.reach >= 0.0f)) {
        notes.add(light, "a light that doesn't shine was left out");
        return;
    }
    if (is_spot)
        notes.add(light, "a spot light shines to all sides");
    notes.add(light, "looks have lights of their own; the file's are nodes of the model");
    draft.lamps.push_back(std::move(lamp));
}

} // namespace orvex::formats
