#pragma once

#include <optional>
#include <string>

/// A place on a picture, as parts of the room that a text leaves: 0 is left or top, 1 right or
/// bottom.
struct TextPlace {
    float across;
    float down;
};

/// The place with a name: "top", "center" and "bottom", each alone or with "-left" or "-right"
/// behind it, "left" and "right". Nothing for other names.
std::optional<TextPlace> text_place_of(const std::string& name);
