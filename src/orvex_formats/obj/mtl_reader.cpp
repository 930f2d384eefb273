// Statements of a material come in any order, and say the same in several ways: so they are
// gathered first, and become a material when the next one begins.

#include "orvex_formats/obj/private/mtl_reader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include <orvex_names/file_names.h>

#include "orvex_formats/obj/private/map_options.h"
#include "orvex_formats/obj/private/obj_numbers.h"
#include "orvex_formats/private/refusal.h"
#include "orvex_formats/private/words.h"

namespace orvex::formats {

// --- The materials of a model

namespace {

/// As the engine's own loader of such files has them.
SurfaceMaterial undefined_material(const std::string& name) {
    SurfaceMaterial material;
    material.name = name;
    material.ambient = vec4(0.4f, 0.4f, 0.4f, 1.0f);
    material.diffuse = vec4(0.7f, 0.7f, 0.8f, 1.0f);
    material.specular = vec4(0.6f, 0.6f, 0.6f, 1.0f);
    return material;
}

/// From the file's 0 to 1000 to the fixed pipeline's 0 to 128. Exactly 0 would light everything.
float shininess_of(float exponent) {
    const float shininess = std::clamp(exponent, 0.0f, 1000.0f) / 1000.0f * 128.0f;
    return shininess == 0.0f ? 1.0f : shininess;
}

} // namespace

std::uint32_t MtlTable::find_or_add(const std::string& name) {
    const auto [found, is_new] =
        places.try_emplace(name, static_cast<std::uint32_t>(materials.size()));
    if (is_new) {
        materials.push_back(undefined_material(name));
        materials.back().shininess = shininess_of(24.0f);
        defined.push_back(false);
    }
    return found->second;
}

SurfaceMaterial& MtlTable::define(const std::string& name) {
    const std::uint32_t place = find_or_add(name);
    defined[place] = true;
    materials[place] = undefined_material(name);
    materials[place].specular = vec4(0.2f, 0.2f, 0.2f, 1.0f);
    materials[place].shininess = shininess_of(24.0f);
    return materials[place];
}

std::uint32_t MtlTable::use(const std::string& name) {
    if (places.count(name) == 0) {
        const std::string word(Words(name).take());
        if (const auto found = places.find(word); found != places.end())
            return found->second;
    }
    return find_or_add(name);
}

void Notes::add(const std::string& kind, const std::string& sentence, const char* others) {
    constexpr std::size_t most = 64; // which nobody reads to their end
    constexpr std::size_t none = SIZE_MAX;
    const auto known = kinds.find(kind);
    if (known == kinds.end()) {
        if (kinds.size() < most) {
            kinds.emplace(kind, sentences.size());
            sentences.push_back(sentence);
        }
    } else if (const std::size_t place = std::exchange(known->second, none); place != none) {
        sentences[place] += others;
    }
}

// --- Libraries

namespace {

std::string lower(std::string_view word) {
    std::string text(word.substr(0, 32));
    for (char& letter : text)
        if (letter >= 'A' && letter <= 'Z')
            letter = static_cast<char>(letter - 'A' + 'a');
    return text;
}

/// What the statements of one material say.
struct Statements {
    std::optional<vec3> ambient, diffuse, specular, emissive;
    std::optional<float> exponent, dissolve, transparency, ior;
    std::optional<float> roughness, metallic, clearcoat, clearcoat_roughness;
    int illum = 2;
    std::vector<MapStatement> diffuse_maps;
    std::optional<MapStatement> roughness_map, metallic_map, emissive_map, bump_map, normal_map;
    bool is_physical = false;
};

float share(float value) {
    return value > 0.0f ? std::min(value, 1.0f) : 0.0f;
}

vec3 shares(const vec3& color) {
    return {share(color.x), share(color.y), share(color.z)};
}

vec4 opaque(const vec3& color) {
    return {color.x, color.y, color.z, 1.0f};
}

float opacity_of(const Statements& told) {
    if (told.dissolve)
        return share(*told.dissolve);
    return told.transparency ? 1.0f - share(*told.transparency) : 1.0f;
}

/// A rough surface has a wide highlight.
float roughness_of(const Statements& told) {
    if (told.roughness)
        return share(*told.roughness);
    if (told.roughness_map)
        return 1.0f;
    const float exponent = std::max(told.exponent.value_or(24.0f), 0.0f);
    return share(std::sqrt(2.0f / (exponent + 2.0f)));
}

class MtlReader {
public:
    MtlReader(const std::string& name, MtlTable& table, Notes& notes)
        : name(name)
        , table(table)
        , notes(notes) {}

    void read(std::string_view text) {
        while (!text.empty()) {
            ++num_lines;
            const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
            read_statement(text.substr(0, end));
            const bool is_two = text.substr(end, 2) == "\r\n";
            text.remove_prefix(std::min(end + (is_two ? 2 : 1), text.size()));
        }
        finish();
    }

private:
    void note(const std::string& kind, const std::string& what) {
        notes.add("mtl " + kind,
                  in_words(name) + ", line " + std::to_string(num_lines) + ": " + what);
    }
    void note_left_out(std::string_view word) {
        note(std::string(word), "\"" + in_words(std::string(word)) + "\" was left out");
    }

    void read_statement(std::string_view line) {
        Words words(line);
        const std::string_view word = words.take();
        if (word.empty() || word[0] == '#')
            return;
        if (lower(word) == "newmtl")
            return begin(names::without_quotes(words.remaining()));
        if (!is_open)
            return note("outside", "\"" + in_words(std::string(word)) +
                                       "\" before the first material was left out");
        if (!take_color(word, words) && !take_factor(word, words) && !take_map(word, words))
            note_left_out(word);
    }

    void begin(const std::string& material) {
        finish();
        told = {};
        is_open = true;
        material_name = material;
    }

    // --- Statements

    /// One number for all three, or three.
    bool take_color(std::string_view word, Words& words) {
        const std::pair<std::string_view, std::optional<vec3>*> all[] = {{"Ka", &told.ambient},
                                                                         {"Kd", &told.diffuse},
                                                                         {"Ks", &told.specular},
                                                                         {"Ke", &told.emissive}};
        for (const auto& [keyword, color] : all) {
            if (word != keyword)
                continue;
            float red = 0.0f, green = 0.0f, blue = 0.0f;
            if (!take_finite(words, red)) {
                note(std::string(word) + " numbers",
                     "\"" + std::string(word) + "\" without numbers was left out");
                return true;
            }
            const bool is_grey = !take_finite(words, green);
            *color =
                is_grey || !take_finite(words, blue) ? vec3(red, red, red) : vec3(red, green, blue);
            told.is_physical = told.is_physical || (word == "Ke" && red + green + blue > 0.0f);
            return true;
        }
        return false;
    }

    static bool take_finite(Words& words, float& number) {
        const std::string_view word = words.take();
        const char* const end = word.data() + word.size();
        return !word.empty() && read_float(word.data(), end, number) == end &&
               std::isfinite(number);
    }

    bool take_factor(std::string_view word, Words& words) {
        struct Factor {
            std::string_view word;
            std::optional<float>* value;
            bool is_physical;
        };
        const Factor all[] = {
            {"Ns", &told.exponent, false},     {"d", &told.dissolve, false},
            {"Tr", &told.transparency, false}, {"Ni", &told.ior, false},
            {"Pr", &told.roughness, true},     {"Pm", &told.metallic, true},
            {"Pc", &told.clearcoat, true},     {"Pcr", &told.clearcoat_roughness, true}};
        const auto* const found = std::find_if(std::begin(all), std::end(all),
                                               [&](const Factor& one) { return one.word == word; });
        if (found == std::end(all) && word != "illum")
            return false;
        float value = 0.0f;
        Words rest = words;
        if (rest.take() == "-halo") // it fades towards the middle, which nobody draws
            words = rest;
        if (!take_finite(words, value))
            note(std::string(word) + " numbers",
                 "\"" + std::string(word) + "\" without a number was left out");
        else if (found == std::end(all))
            told.illum = static_cast<int>(std::clamp(value, -1.0f, 100.0f));
        else
            *found->value = value;
        told.is_physical = told.is_physical || (found != std::end(all) && found->is_physical);
        return true;
    }

    bool take_map(std::string_view word, const Words& words) {
        MapStatement map = read_map(words.remaining());
        if (map.name.empty())
            return false;
        const std::string keyword = lower(word);
        if (keyword == "map_kd") {
            told.diffuse_maps.push_back(std::move(map));
            return true;
        }
        const std::pair<std::string_view, std::optional<MapStatement>*> all[] = {
            {"map_pr", &told.roughness_map}, {"map_pm", &told.metallic_map},
            {"map_ke", &told.emissive_map},  {"norm", &told.normal_map},
            {"map_bump", &told.bump_map},    {"bump", &told.bump_map}};
        for (const auto& [known, place] : all) {
            if (keyword != known)
                continue;
            told.is_physical = told.is_physical || place != &told.bump_map;
            *place = std::move(map);
            return true;
        }
        return false;
    }

    // --- Materials

    void finish() {
        if (!is_open)
            return;
        SurfaceMaterial& material = table.define(material_name);
        if (told.ambient)
            material.ambient = opaque(*told.ambient);
        if (told.diffuse)
            material.diffuse = opaque(*told.diffuse);
        if (told.specular)
            material.specular = opaque(*told.specular);
        if (told.illum == 0 || told.illum == 1) // which says that nothing shines
            material.specular = vec4(0.0f, 0.0f, 0.0f, 1.0f);
        if (told.exponent)
            material.shininess = shininess_of(*told.exponent);
        material.opacity = opacity_of(told);
        constexpr std::size_t most_maps = 4; // as materials have layers
        for (std::size_t i = 0; i < std::min(told.diffuse_maps.size(), most_maps); ++i)
            material.textures.push_back(told.diffuse_maps[i].name);
        if (told.is_physical)
            add_physical(material);
        else if (told.bump_map)
            note_left_out("bump");
    }

    void add_physical(SurfaceMaterial& material) {
        PhysicalMaterial physical;
        const vec3 base = told.diffuse                ? shares(*told.diffuse)
                          : told.diffuse_maps.empty() ? vec3(0.7f, 0.7f, 0.8f)
                                                      : vec3(1.0f, 1.0f, 1.0f);
        physical.base_color = vec4(base.x, base.y, base.z, opacity_of(told));
        physical.metallic = share(told.metallic.value_or(told.metallic_map ? 1.0f : 0.0f));
        physical.roughness = roughness_of(told);
        physical.emissive =
            shares(told.emissive.value_or(told.emissive_map ? vec3(1.0f, 1.0f, 1.0f) : vec3()));
        if (told.emissive)
            physical.emissive_strength =
                std::max({1.0f, told.emissive->x, told.emissive->y, told.emissive->z});
        if (told.emissive && physical.emissive_strength > 1.0f) {
            const float whole = physical.emissive_strength;
            physical.emissive = shares(
                {told.emissive->x / whole, told.emissive->y / whole, told.emissive->z / whole});
        }
        if (told.ior && *told.ior >= 1.0f)
            physical.ior = *told.ior;
        physical.clearcoat = share(told.clearcoat.value_or(0.0f));
        physical.clearcoat_roughness = share(told.clearcoat_roughness.value_or(0.0f));
        if (physical.base_color.w < 1.0f)
            physical.alpha = PhysicalMaterial::Alpha::blend;
        add_physical_maps(material, physical);
        material.physical = physical;
    }

    void add_physical_maps(SurfaceMaterial& material, PhysicalMaterial& physical) {
        if (!told.diffuse_maps.empty())
            physical.base_color_texture = told.diffuse_maps[0].texture();
        const auto add = [&](const std::optional<MapStatement>& map, PhysicalTexture& texture) {
            if (!map)
                return;
            // The looks that know one picture take the first one for the colour.
            if (material.textures.empty())
                material.textures.push_back(MtlTable::white);
            texture = map->texture();
            if (std::find(material.textures.begin(), material.textures.end(), map->name) ==
                material.textures.end())
                material.textures.push_back(map->name);
        };
        add(told.emissive_map, physical.emissive_texture);
        add(told.normal_map ? told.normal_map : told.bump_map, physical.normal_texture);
        // One picture has both: roughness in green, metallic in blue. A grey one is roughness where
        // nothing is metallic, and metallic where all is as rough as can be.
        const bool is_one = told.roughness_map && told.metallic_map &&
                            told.roughness_map->name == told.metallic_map->name;
        if (is_one || (told.roughness_map && !told.metallic_map && physical.metallic == 0.0f))
            add(told.roughness_map, physical.metallic_roughness_texture);
        else if (told.roughness_map || told.metallic_map)
            note("two maps", "\"map_Pr\" and \"map_Pm\" in two pictures were left out");
    }

    const std::string& name;
    MtlTable& table;
    Notes& notes;
    std::size_t num_lines = 0;
    bool is_open = false;
    std::string material_name;
    Statements told;
};

} // namespace

void read_mtl(std::string_view text, const std::string& name, MtlTable& table, Notes& notes) {
    MtlReader(name, table, notes).read(text);
}

} // namespace orvex::formats
