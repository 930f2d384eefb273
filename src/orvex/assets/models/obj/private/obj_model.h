#pragma once

/// @file
/// What one OBJ file holds between its reader and the builder of meshes.

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "orvex/fwd.h"

namespace orvex {

/// A name as the reader keeps it: cut to 127 characters.
class OBJ_Name {
public:
    OBJ_Name() = default;
    explicit OBJ_Name(std::string_view text);

    const char* c_str() const { return text; }
    std::string_view view() const { return text; }

private:
    char text[128] = {};
};

/// A material while one file is read: what "usemtl" named or a material library described.
struct OBJ_Material {
    static constexpr std::size_t num_textures = 4;

    Material* material = nullptr; ///< set when built
    OBJ_Name name;
    std::uint32_t index = 0;
    std::array<float, 4> ambient = {0.4f, 0.4f, 0.4f, 1.0f};
    std::array<float, 4> diffuse = {0.7f, 0.7f, 0.8f, 1.0f};
    std::array<float, 4> specular = {0.6f, 0.6f, 0.6f, 1.0f};
    float specular_exp = 24.0f;
    float opacity = 1.0f;
    std::array<std::array<char, 260>, num_textures> texture_filenames = {};
    std::int32_t face_count = 0; ///< faces that used it

    /// Back to the colours of a material that a library has just named.
    void set_library_defaults();
};

/// Triangles that lie one behind the other in the model's list and share a material.
struct OBJ_TriangleRun {
    std::size_t first = 0;
    std::size_t count = 0;
    std::uint32_t material = 0;
};

struct OBJ_Group {
    OBJ_Name name;
    std::uint32_t index = 0;
    std::size_t num_triangles = 0; ///< as the first pass counted them
    std::size_t num_filled = 0;    ///< as the second pass filed them, never more
    std::vector<OBJ_TriangleRun> triangles;
};

/// Indices count from 1; 0 stands for "none" and reads the zero entry of its array.
struct OBJ_Corner {
    std::int32_t vertex = 0;
    std::int32_t texcoord = 0;
    std::int32_t normal = 0;
};

using OBJ_Triangle = std::array<OBJ_Corner, 3>;
using OBJ_Float3 = std::array<float, 3>;
using OBJ_Float2 = std::array<float, 2>;

/// Records in order of first mention, found again by name.
template<class Record>
class OBJ_NamedList {
public:
    std::size_t size() const { return records.size(); }
    Record& operator[](std::size_t index) const { return *records[index]; }
    auto begin() const { return records.begin(); }
    auto end() const { return records.end(); }

    Record* find(const OBJ_Name& name) const {
        const auto found = by_name.find(name.view());
        return found != by_name.end() ? found->second : nullptr;
    }

    Record& add(const OBJ_Name& name) {
        Record& record = *records.emplace_back(std::make_unique<Record>());
        record.name = name;
        record.index = static_cast<std::uint32_t>(records.size() - 1);
        by_name.emplace(record.name.view(), &record);
        return record;
    }

    Record& find_or_add(const OBJ_Name& name) {
        Record* record = find(name);
        return record ? *record : add(name);
    }

private:
    std::vector<std::unique_ptr<Record>> records;
    std::unordered_map<std::string_view, Record*> by_name; ///< views into the records
};

/// What one file holds, on its way into a `Model`.
struct OBJ_Model {
    std::size_t num_vertices = 0;
    std::size_t num_texcoords = 0;
    std::size_t num_normals = 0;
    std::size_t num_faces = 0;
    std::size_t num_triangles = 0;
    std::vector<OBJ_Float3> vertices;  ///< `num_vertices` + 1, entry 0 zero
    std::vector<OBJ_Float2> texcoords; ///< `num_texcoords` + 1, or empty
    std::vector<OBJ_Float3> normals;   ///< `num_normals` + 1, or empty
    std::vector<OBJ_Triangle> triangles;
    OBJ_NamedList<OBJ_Material> materials;
    OBJ_NamedList<OBJ_Group> groups;
};

} // namespace orvex
