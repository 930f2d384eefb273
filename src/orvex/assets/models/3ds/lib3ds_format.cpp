#include "orvex/assets/models/3ds/private/lib3ds_format.h"

#include <algorithm>
#include <iterator>

namespace orvex::lib3ds {

namespace {

constexpr std::uint32_t key_of(Place place, std::uint16_t id) {
    return static_cast<std::uint32_t>(place) << 16 | id;
}

constexpr bool is_before(const Layout& a, const Layout& b) {
    return key_of(a.place, a.id) < key_of(b.place, b.id);
}

/// Chunks without a line here are either looked at by hand in the checks, or are of a fixed size
/// that lib3ds reads without harm, wherever they end.
constexpr Layout layouts[] = {
    {PLACE_FILE, CHUNK_MDATA, 0, 0, PLACE_MDATA},
    {PLACE_FILE, 0xB000, 0, 0, PLACE_KEYFRAMER},
    {PLACE_MDATA, 0x1100, 0, name_size, PLACE_NOWHERE}, // background picture
    {PLACE_MDATA, 0x1200, 0, 0, PLACE_LIST},            // background colour
    {PLACE_MDATA, 0x1300, 4, 0, PLACE_GRADIENT},
    {PLACE_MDATA, 0x2100, 0, 0, PLACE_LIST},  // ambient light
    {PLACE_MDATA, 0x2200, 16, 0, PLACE_LIST}, // fog
    {PLACE_MDATA, 0x2300, 16, 0, PLACE_LIST}, // distance cue
    {PLACE_MDATA, 0x2302, 16, 0, PLACE_LIST}, // layered fog
    {PLACE_MDATA, 0x3000, 0, 0, PLACE_LIST},  // default view
    {PLACE_MDATA, 0x4000, 0, name_size, PLACE_OBJECT},
    {PLACE_MDATA, 0x7001, 14, 0, PLACE_LIST}, // viewports
    {PLACE_MDATA, 0xAFFF, 0, 0, PLACE_MATERIAL},
    {PLACE_KEYFRAMER, 0x3000, 0, 0, PLACE_LIST},
    {PLACE_KEYFRAMER, 0x7001, 14, 0, PLACE_LIST},
    {PLACE_KEYFRAMER, 0xB001, 0, 0, PLACE_NODE}, // ambient light
    {PLACE_KEYFRAMER, CHUNK_OBJECT_NODE, 0, 0, PLACE_NODE},
    {PLACE_KEYFRAMER, 0xB003, 0, 0, PLACE_NODE},     // camera
    {PLACE_KEYFRAMER, 0xB004, 0, 0, PLACE_NODE},     // its target
    {PLACE_KEYFRAMER, 0xB005, 0, 0, PLACE_NODE},     // light
    {PLACE_KEYFRAMER, 0xB006, 0, 0, PLACE_NODE},     // target of a spotlight
    {PLACE_KEYFRAMER, 0xB007, 0, 0, PLACE_NODE},     // spotlight
    {PLACE_KEYFRAMER, 0xB00A, 2, 13, PLACE_NOWHERE}, // header
    {PLACE_MATERIAL, 0xA000, 0, name_size, PLACE_NOWHERE},
    {PLACE_MATERIAL, 0xA010, 0, 0, PLACE_LIST}, // ambient
    {PLACE_MATERIAL, 0xA020, 0, 0, PLACE_LIST}, // diffuse
    {PLACE_MATERIAL, 0xA030, 0, 0, PLACE_LIST}, // specular
    {PLACE_MATERIAL, 0xA040, 0, 0, PLACE_LIST}, // shininess
    {PLACE_MATERIAL, 0xA041, 0, 0, PLACE_LIST}, // its strength
    {PLACE_MATERIAL, 0xA050, 0, 0, PLACE_LIST}, // transparency
    {PLACE_MATERIAL, 0xA052, 0, 0, PLACE_LIST}, // its falloff
    {PLACE_MATERIAL, 0xA053, 0, 0, PLACE_LIST}, // reflection blur
    {PLACE_MATERIAL, 0xA084, 0, 0, PLACE_LIST}, // own light
    // The sixteen maps and masks.
    {PLACE_MATERIAL, 0xA200, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA204, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA210, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA220, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA230, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA33A, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA33C, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA33D, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA33E, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA340, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA342, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA344, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA346, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA348, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA34A, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_MATERIAL, 0xA34C, 0, 0, PLACE_TEXTURE_MAP},
    {PLACE_TEXTURE_MAP, 0xA300, 0, name_size, PLACE_NOWHERE},
    {PLACE_OBJECT, 0x4100, 0, 0, PLACE_MESH},
    {PLACE_OBJECT, 0x4600, 12, 0, PLACE_LIGHT},
    {PLACE_OBJECT, 0x4700, 32, 0, PLACE_LIST}, // camera
    {PLACE_LIGHT, 0x4610, 20, 0, PLACE_SPOTLIGHT},
    {PLACE_SPOTLIGHT, 0x4653, 0, name_size, PLACE_NOWHERE}, // projected picture
    {PLACE_NODE, 0xB011, 0, name_size, PLACE_NOWHERE},      // instance name
};
static_assert(std::is_sorted(std::begin(layouts), std::end(layouts), is_before));

} // namespace

const Layout* layout_of(Place place, std::uint16_t id) {
    const Layout wanted{place, id, 0, 0, PLACE_NOWHERE};
    const Layout* const found =
        std::lower_bound(std::begin(layouts), std::end(layouts), wanted, is_before);
    return found != std::end(layouts) && found->place == place && found->id == id ? found : nullptr;
}

} // namespace orvex::lib3ds
