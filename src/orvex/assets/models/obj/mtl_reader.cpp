#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "orvex/assets/models/obj/private/obj_reader.h"
#include "orvex/assets/models/obj/private/text_stream.h"
#include "orvex/platform/private/file_bytes.h"

// Keywords are looked for anywhere on a line, in a fixed order, and the first that fits takes the
// line. That is loose on purpose: exporters indent, and put options in front.

namespace orvex {

namespace {

constexpr std::size_t line_limit = 255;
constexpr std::size_t name_offset = 7; ///< a name begins one separator behind its keyword
constexpr int illum_with_specular = 2;

/// What stands `name_offset` behind `keyword`, up to the end of the line.
std::string_view name_behind(std::string_view line, std::size_t keyword) {
    if (keyword + name_offset >= line.size())
        return {};
    const std::string_view name = line.substr(keyword + name_offset);
    return name.substr(0, name.find_first_of("\n\r"));
}

class MaterialReader {
public:
    explicit MaterialReader(OBJ_Model& model)
        : model(model) {}

    /// @param ends_file  the line was cut short by the end of the file
    void read_line(const std::string& line, bool ends_file) {
        if (line.empty() || line[0] == '#' || line[0] == '\n' || line[0] == '\r')
            return;
        if (read_name(line) || !material)
            return;
        read_diffuse_map(line, ends_file) || read_color(line, "Kd", material->diffuse) ||
            read_number(line, "Ns", material->specular_exp) ||
            read_color(line, "Ka", material->ambient) || read_illum(line) ||
            (illum == illum_with_specular && read_color(line, "Ks", material->specular)) ||
            read_number(line, "d ", material->opacity) ||
            read_number(line, "Tr ", material->opacity);
    }

private:
    bool read_name(const std::string& line) {
        const std::size_t keyword = line.find("newmtl");
        if (keyword == std::string::npos)
            return false;
        const OBJ_Name name(name_behind(line, keyword));
        material = &model.materials.find_or_add(name);
        material->set_library_defaults();
        map_count = 0;
        illum = 1;
        return true;
    }

    bool read_diffuse_map(const std::string& line, bool ends_file) {
        const std::size_t keyword = line.find("map_Kd");
        if (keyword == std::string::npos)
            return false;
        if (map_count < OBJ_Material::num_textures) {
            auto& slot = material->texture_filenames[map_count];
            slot.fill('\0');
            // A name that the end of the file cuts short can't be told from a whole one.
            const std::string_view name =
                ends_file ? std::string_view() : name_behind(line, keyword);
            name.copy(slot.data(), 255);
        }
        ++map_count;
        return true;
    }

    static bool read_color(const std::string& line, const char* keyword,
                           std::array<float, 4>& color) {
        if (line.find(keyword) == std::string::npos)
            return false;
        std::sscanf(line.c_str(), "%*s %f %f %f", &color[0], &color[1], &color[2]);
        color[3] = 1.0f;
        return true;
    }

    static bool read_number(const std::string& line, const char* keyword, float& number) {
        if (line.find(keyword) == std::string::npos)
            return false;
        std::sscanf(line.c_str(), "%*s %f", &number);
        return true;
    }

    bool read_illum(const std::string& line) {
        if (line.find("illum ") == std::string::npos)
            return false;
        if (std::sscanf(line.c_str(), "%*s %d", &illum) != 1)
            illum = 1;
        return true;
    }

    OBJ_Model& model;
    OBJ_Material* material = nullptr;
    std::size_t map_count = 0;
    int illum = 1;
};

} // namespace

void read_material_text(OBJ_Model& model, const char* text, std::size_t size) {
    const NumericCLocale locale;
    TextStream stream(text, size);
    MaterialReader reader(model);
    while (stream.tell() < stream.size()) {
        const std::string_view bytes = stream.read_line(line_limit);
        const bool ends_file = bytes.size() < line_limit && bytes.back() != '\n';
        reader.read_line(std::string(bytes.substr(0, bytes.find('\0'))), ends_file);
    }
}

void read_material_file(OBJ_Model& model, const std::string& path) {
    FileBytes file;
    if (file.read(path.c_str()))
        read_material_text(model, file.text(), file.size());
}

} // namespace orvex
