#include "orvex_formats/obj/private/map_options.h"

#include <orvex_names/file_names.h>
#include <orvex_names/map_options.h>

#include "orvex_formats/private/words.h"

namespace orvex::formats {

namespace {

void apply(const names::MapOption& option, MapStatement& map) {
    if (option.word == "-clamp")
        map.is_clamped = option.is_on;
    if (option.num_numbers == 0)
        return;
    if (option.word == "-bm")
        map.strength = option.numbers[0];
    if (option.word == "-o") {
        map.offset_u = option.numbers[0];
        map.offset_v = option.numbers[1];
    }
    if (option.word == "-s") {
        map.scale_u = option.numbers[0];
        map.scale_v = option.num_numbers > 1 ? option.numbers[1] : 1.0f;
    }
}

} // namespace

MapStatement read_map(std::string_view text) {
    MapStatement map;
    for (names::MapOption option; names::take_map_option(text, option);)
        apply(option, map);
    map.name = names::without_quotes(Words(text).remaining());
    return map;
}

PhysicalTexture MapStatement::texture() const {
    PhysicalTexture texture;
    texture.image = name;
    texture.offset_u = offset_u;
    texture.offset_v = offset_v;
    texture.scale_u = scale_u;
    texture.scale_v = scale_v;
    texture.strength = strength;
    if (is_clamped)
        texture.wrap_u = texture.wrap_v = PhysicalTexture::Wrap::clamp;
    return texture;
}

} // namespace orvex::formats
