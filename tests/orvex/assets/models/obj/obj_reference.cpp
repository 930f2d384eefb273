#include "obj_reference.h"

#include <array>
#include <cstdio>
#include <cstring>
#include <memory>
#include <sstream>
#include <vector>

#include "orvex/assets/models/obj/private/obj_reader.h"

namespace orvex_test {

using namespace orvex;

namespace {

struct PlainMaterial {
    std::string name;
    std::array<float, 12> colors{};
    float specular_exp = 0.0f;
    float opacity = 0.0f;
    std::array<std::string, 4> textures;
    int face_count = 0;

    void set_defaults(float specular) {
        colors = {0.4f, 0.4f, 0.4f,     1.0f,     0.7f,     0.7f,
                  0.8f, 1.0f, specular, specular, specular, 1.0f};
        specular_exp = 24.0f;
        opacity = 1.0f;
    }
};

struct PlainTriangle {
    std::array<int, 9> indices{};
    std::size_t material = 0;
};

struct PlainGroup {
    std::string name;
    std::size_t num_triangles = 0;
    std::vector<std::size_t> triangles;
};

struct PlainModel {
    std::size_t num_vertices = 0, num_texcoords = 0, num_normals = 0, num_triangles = 0;
    std::vector<std::array<float, 3>> vertices, texcoords, normals;
    std::vector<PlainTriangle> triangles;
    std::vector<PlainGroup> groups;
    std::vector<PlainMaterial> materials;
};

template<class Record>
std::ptrdiff_t index_of(const std::vector<Record>& records, const std::string& name) {
    for (std::size_t i = 0; i < records.size(); ++i)
        if (records[i].name == name)
            return static_cast<std::ptrdiff_t>(i);
    return -1;
}

template<class Record>
std::size_t find_or_add(std::vector<Record>& records, const std::string& name, bool& added) {
    const std::ptrdiff_t found = index_of(records, name);
    added = found < 0;
    if (!added)
        return static_cast<std::size_t>(found);
    records.emplace_back();
    records.back().name = name;
    return records.size() - 1;
}

std::string read_string(const char* line) {
    while (*line == ' ')
        ++line;
    const std::string text = line;
    return text.substr(0, std::min<std::size_t>(text.find_first_of("\n\r"), 127));
}

std::string cut_to_word(const char* line) {
    char first[512] = "";
    char second[512] = "";
    const int count = std::sscanf(line, "%511s %511s", first, second);
    return count == 2 ? second : count == 1 ? first : line;
}

/// Runs `fgets` on a cleared buffer, so that the end of the file leaves nothing behind.
void get_line(char (&buffer)[512], std::FILE* file) {
    std::memset(buffer, 0, sizeof buffer);
    if (std::fgets(buffer, sizeof buffer, file) == nullptr)
        buffer[0] = '\0';
}

struct Form {
    int (*scan_file)(std::FILE* file, int* numbers);
    int (*scan_text)(const char* text, int* numbers);
    std::array<int, 3> slots; ///< which index kind each number is: 0 vertex, 1 normal, 2 texcoord
    int num_numbers;
};

// The formats stand as literals at their calls, where the compiler checks them.
const Form FORMS[] = {
    {[](std::FILE* f, int* n) { return std::fscanf(f, "%d//%d", &n[0], &n[1]); },
     [](const char* t, int* n) { return std::sscanf(t, "%d//%d", &n[0], &n[1]); },
     {0, 1, -1},
     2},
    {[](std::FILE* f, int* n) { return std::fscanf(f, "%d/%d/%d", &n[0], &n[1], &n[2]); },
     [](const char* t, int* n) { return std::sscanf(t, "%d/%d/%d", &n[0], &n[1], &n[2]); },
     {0, 2, 1},
     3},
    {[](std::FILE* f, int* n) { return std::fscanf(f, "%d/%d", &n[0], &n[1]); },
     [](const char* t, int* n) { return std::sscanf(t, "%d/%d", &n[0], &n[1]); },
     {0, 2, -1},
     2},
    {[](std::FILE* f, int* n) { return std::fscanf(f, "%d", &n[0]); },
     [](const char* t, int* n) { return std::sscanf(t, "%d", &n[0]); },
     {0, -1, -1},
     1}};

const Form& form_of(const char* token) {
    int n[3];
    if (std::strstr(token, "//") != nullptr)
        return FORMS[0];
    if (std::sscanf(token, "%d/%d/%d", &n[0], &n[1], &n[2]) == 3)
        return FORMS[1];
    if (std::sscanf(token, "%d/%d", &n[0], &n[1]) == 2)
        return FORMS[2];
    return FORMS[3];
}

void put_corner(PlainTriangle& triangle, std::size_t corner, const Form& form, const int* numbers) {
    for (std::size_t kind = 0; kind < 3; ++kind)
        triangle.indices[kind * 3 + corner] = 0;
    for (int i = 0; i < form.num_numbers; ++i) {
        const auto kind = static_cast<std::size_t>(form.slots[static_cast<std::size_t>(i)]);
        triangle.indices[kind * 3 + corner] = numbers[i];
    }
}

template<class Take>
void read_face(std::FILE* file, Take take) {
    char token[512] = "";
    if (std::fscanf(file, "%511s", token) != 1)
        token[0] = '\0';
    const Form& form = form_of(token);
    PlainTriangle triangle;
    int numbers[3] = {0, 0, 0};
    form.scan_text(token, numbers);
    put_corner(triangle, 0, form, numbers);
    for (std::size_t corner = 1; corner < 3; ++corner) {
        std::memset(numbers, 0, sizeof numbers);
        form.scan_file(file, numbers);
        put_corner(triangle, corner, form, numbers);
    }
    take(triangle);
    for (;;) {
        std::memset(numbers, 0, sizeof numbers);
        if (form.scan_file(file, numbers) < 1)
            return;
        for (std::size_t kind = 0; kind < 3; ++kind)
            triangle.indices[kind * 3 + 1] = triangle.indices[kind * 3 + 2];
        put_corner(triangle, 2, form, numbers);
        take(triangle);
    }
}

void read_library(PlainModel& model, const std::string& path) {
    std::FILE* file = std::fopen(path.c_str(), "rt");
    if (file == nullptr)
        return;
    std::ptrdiff_t current = -1;
    std::size_t map_count = 0;
    int illum = 1;
    char line[256];
    while (std::feof(file) == 0 && std::ferror(file) == 0) {
        std::memset(line, 0, sizeof line);
        if (std::fgets(line, sizeof line, file) == nullptr)
            line[0] = '\0';
        if (line[0] == '#' || line[0] == '\n' || line[0] == '\r')
            continue;
        const auto name_behind = [&line](const char* keyword) {
            std::string name;
            for (const char* c = keyword; c < keyword + 7; ++c)
                if (*c == '\0')
                    return name;
            name = keyword + 7;
            return name.substr(0, name.find_first_of("\n\r"));
        };
        if (const char* keyword = std::strstr(line, "newmtl")) {
            bool added = false;
            current = static_cast<std::ptrdiff_t>(
                find_or_add(model.materials, name_behind(keyword).substr(0, 127), added));
            model.materials[static_cast<std::size_t>(current)].set_defaults(0.2f);
            map_count = 0;
            illum = 1;
            continue;
        }
        if (current < 0)
            continue;
        PlainMaterial& material = model.materials[static_cast<std::size_t>(current)];
        const auto read_color = [&](std::size_t at) {
            char word[256];
            std::sscanf(line, "%s %f %f %f", word, &material.colors[at], &material.colors[at + 1],
                        &material.colors[at + 2]);
            material.colors[at + 3] = 1.0f;
        };
        const auto read_number = [&](float& number) {
            char word[256];
            std::sscanf(line, "%s %f", word, &number);
        };
        if (const char* keyword = std::strstr(line, "map_Kd")) {
            if (map_count < 4)
                material.textures[map_count] =
                    std::feof(file) != 0 ? "" : name_behind(keyword).substr(0, 255);
            ++map_count;
        } else if (std::strstr(line, "Kd") != nullptr) {
            read_color(4);
        } else if (std::strstr(line, "Ns") != nullptr) {
            read_number(material.specular_exp);
        } else if (std::strstr(line, "Ka") != nullptr) {
            read_color(0);
        } else if (std::strstr(line, "illum ") != nullptr) {
            char word[256];
            if (std::sscanf(line, "%s %d", word, &illum) != 2)
                illum = 1;
        } else if (illum == 2 && std::strstr(line, "Ks") != nullptr) {
            read_color(8);
        } else if (std::strstr(line, "d ") != nullptr || std::strstr(line, "Tr ") != nullptr) {
            read_number(material.opacity);
        }
    }
    std::fclose(file);
}

struct PlainReader {
    PlainModel model;
    std::string model_dir;
    std::size_t group = 0;
    std::size_t material = 0;

    void first_pass(std::FILE* file) {
        char buffer[512];
        bool added = false;
        group = find_or_add(model.groups, "orvex_obj_default_group", added);
        material = find_or_add(model.materials, "orvex_obj_default_material", added);
        model.materials[material].set_defaults(0.6f);
        while (std::fscanf(file, "%511s", buffer) == 1) {
            switch (buffer[0]) {
            case 'f':
                ++model.materials[material].face_count;
                read_face(file, [this](const PlainTriangle&) {
                    ++model.num_triangles;
                    ++model.groups[group].num_triangles;
                });
                break;
            case 'g': {
                get_line(buffer, file);
                const std::string name = read_string(buffer);
                if (!name.empty())
                    group = find_or_add(model.groups, name, added);
                break;
            }
            case 'm': {
                get_line(buffer, file);
                const std::string name = cut_to_word(buffer);
                if (!name.empty())
                    read_library(model, model_dir + name);
                break;
            }
            case 'u': {
                if (std::strncmp(buffer + 1, "semtl", 5) != 0)
                    break;
                get_line(buffer, file);
                const std::string name = read_string(cut_to_word(buffer).c_str());
                if (name.empty())
                    break;
                material = find_or_add(model.materials, name, added);
                if (added)
                    model.materials[material].set_defaults(0.6f);
                break;
            }
            case 'v': {
                std::size_t* count = buffer[1] == '\0'  ? &model.num_vertices
                                     : buffer[1] == 't' ? &model.num_texcoords
                                     : buffer[1] == 'n' ? &model.num_normals
                                                        : nullptr;
                if (count == nullptr)
                    break;
                ++*count;
                get_line(buffer, file);
                break;
            }
            default:
                get_line(buffer, file);
            }
        }
    }

    static void read_entry(std::FILE* file, std::vector<std::array<float, 3>>& entries,
                           std::size_t& cursor, int num_floats) {
        std::array<float, 3> entry{};
        if (num_floats == 3)
            static_cast<void>(std::fscanf(file, "%f %f %f", &entry[0], &entry[1], &entry[2]));
        else
            static_cast<void>(std::fscanf(file, "%f %f", &entry[0], &entry[1]));
        if (cursor < entries.size())
            entries[cursor++] = entry;
    }

    void second_pass(std::FILE* file) {
        char buffer[512];
        model.vertices.resize(model.num_vertices + 1);
        model.texcoords.resize(model.num_texcoords + 1);
        model.normals.resize(model.num_normals + 1);
        std::size_t vertex = 1, texcoord = 1, normal = 1;
        group = material = 0;
        while (std::fscanf(file, "%511s", buffer) == 1) {
            switch (buffer[0]) {
            case 'f':
                read_face(file, [this](const PlainTriangle& triangle) { file_it(triangle); });
                break;
            case 'g': {
                get_line(buffer, file);
                const std::ptrdiff_t found = index_of(model.groups, read_string(buffer));
                if (found >= 0)
                    group = static_cast<std::size_t>(found);
                break;
            }
            case 'u': {
                if (std::strncmp(buffer + 1, "semtl", 5) != 0)
                    break;
                get_line(buffer, file);
                const std::string name = read_string(cut_to_word(buffer).c_str());
                const std::ptrdiff_t found = name.empty() ? -1 : index_of(model.materials, name);
                if (found >= 0)
                    material = static_cast<std::size_t>(found);
                break;
            }
            case 'v':
                if (buffer[1] == '\0')
                    read_entry(file, model.vertices, vertex, 3);
                else if (buffer[1] == 't')
                    read_entry(file, model.texcoords, texcoord, 2);
                else if (buffer[1] == 'n')
                    read_entry(file, model.normals, normal, 3);
                break;
            default:
                get_line(buffer, file);
            }
        }
    }

    void file_it(const PlainTriangle& triangle) {
        if (model.triangles.size() == model.num_triangles)
            return;
        model.triangles.push_back(triangle);
        model.triangles.back().material = material;
        PlainGroup& target = model.groups[group];
        if (target.triangles.size() < target.num_triangles)
            target.triangles.push_back(model.triangles.size() - 1);
    }
};

/// The one writer of both descriptions.
class Description {
public:
    template<class Entries>
    void entries(const char* name, const Entries& entries, std::size_t num_floats) {
        text_ << name << ' ' << entries.size() << '\n';
        for (const auto& entry : entries) {
            for (std::size_t i = 0; i < num_floats; ++i)
                number(entry[i]);
            text_ << '\n';
        }
    }

    void material(const std::string& name, int face_count) {
        text_ << "material " << name << ' ' << face_count << '\n';
    }

    // Bits, so that -0 and the sign of a NaN count.
    void number(float value) {
        char bits[16];
        unsigned word = 0;
        std::memcpy(&word, &value, sizeof word);
        std::snprintf(bits, sizeof bits, " %08x", word);
        text_ << bits;
    }

    void texture(const std::string& name) { text_ << " \"" << name << "\""; }
    void group(const std::string& name) { text_ << "\ngroup " << name << '\n'; }
    void triangle(std::size_t material) { text_ << "triangle " << material; }
    void corner(int vertex, int texcoord, int normal) {
        text_ << ' ' << vertex << '/' << texcoord << '/' << normal;
    }
    void end_line() { text_ << '\n'; }

    std::string text() const { return text_.str(); }

private:
    std::ostringstream text_;
};

} // namespace

std::string describe_obj_by_c_streams(const std::string& text, const std::string& model_dir) {
    std::FILE* file = std::tmpfile();
    std::fwrite(text.data(), 1, text.size(), file);
    std::rewind(file);
    PlainReader reader;
    reader.model_dir = model_dir;
    reader.first_pass(file);
    const PlainModel& model = reader.model;
    if (model.num_vertices == 0 || model.num_triangles == 0) {
        std::fclose(file);
        return "none";
    }
    std::rewind(file);
    reader.second_pass(file);
    std::fclose(file);

    Description description;
    description.entries("v", model.vertices, 3);
    description.entries("vt", model.texcoords, 2);
    description.entries("vn", model.normals, 3);
    for (const PlainMaterial& material : model.materials) {
        description.material(material.name, material.face_count);
        for (const float component : material.colors)
            description.number(component);
        description.number(material.specular_exp);
        description.number(material.opacity);
        for (const std::string& texture : material.textures)
            description.texture(texture);
        description.end_line();
    }
    for (const PlainGroup& group : model.groups) {
        description.group(group.name);
        for (const std::size_t index : group.triangles) {
            const PlainTriangle& triangle = model.triangles[index];
            description.triangle(triangle.material);
            for (std::size_t i = 0; i < 3; ++i)
                description.corner(triangle.indices[i], triangle.indices[6 + i],
                                   triangle.indices[3 + i]);
            description.end_line();
        }
    }
    return description.text();
}

namespace {

/// The engine keeps no array where there is nothing; the plain reader keeps the zero entry.
template<class Entry>
std::vector<Entry> with_zero_entry(std::vector<Entry> entries) {
    if (entries.empty())
        entries.emplace_back();
    return entries;
}

} // namespace

std::string describe_obj_by_engine(const std::string& text, const std::string& model_dir) {
    const std::unique_ptr<OBJ_Model> model = read_obj_text(text.c_str(), text.size(), model_dir);
    if (model == nullptr)
        return "none";
    Description description;
    description.entries("v", with_zero_entry(model->vertices), 3);
    description.entries("vt", with_zero_entry(model->texcoords), 2);
    description.entries("vn", with_zero_entry(model->normals), 3);
    for (const auto& material : model->materials) {
        description.material(material->name.c_str(), material->face_count);
        for (const auto* color : {&material->ambient, &material->diffuse, &material->specular})
            for (const float component : *color)
                description.number(component);
        description.number(material->specular_exp);
        description.number(material->opacity);
        for (const auto& texture : material->texture_filenames)
            description.texture(texture.data());
        description.end_line();
    }
    for (const auto& group : model->groups) {
        description.group(group->name.c_str());
        for (const OBJ_TriangleRun& run : group->triangles) {
            for (std::size_t i = run.first; i < run.first + run.count; ++i) {
                description.triangle(run.material);
                for (const OBJ_Corner& corner : model->triangles[i])
                    description.corner(corner.vertex, corner.texcoord, corner.normal);
                description.end_line();
            }
        }
    }
    return description.text();
}

} // namespace orvex_test
