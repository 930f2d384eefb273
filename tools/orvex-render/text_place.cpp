#include "text_place.h"

namespace {

struct NamedPlace {
    const char* name;
    TextPlace place;
};

constexpr NamedPlace places[] = {
    {"top-left", {0.0f, 0.0f}},     {"top", {0.5f, 0.0f}},          {"top-right", {1.0f, 0.0f}},
    {"left", {0.0f, 0.5f}},         {"center-left", {0.0f, 0.5f}},  {"center", {0.5f, 0.5f}},
    {"center-right", {1.0f, 0.5f}}, {"right", {1.0f, 0.5f}},        {"bottom-left", {0.0f, 1.0f}},
    {"bottom", {0.5f, 1.0f}},       {"bottom-right", {1.0f, 1.0f}},
};

} // namespace

std::optional<TextPlace> text_place_of(const std::string& name) {
    for (const NamedPlace& known : places)
        if (name == known.name)
            return known.place;
    return std::nullopt;
}
