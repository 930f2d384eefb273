// From the host's numbers, of whatever kind and wherever they lie, to those of the engine.

#include "orvex_kit/private/mesh_parts.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <utility>

namespace orvex::kit {

namespace {

constexpr std::size_t most = std::numeric_limits<std::int32_t>::max();

/// Calls `use` with a number of a kind.
template<class Use>
auto with_kind(Number kind, Use use) {
    switch (kind) {
    case Number::u8:
        return use(std::uint8_t{});
    case Number::u16:
        return use(std::uint16_t{});
    case Number::u32:
        return use(std::uint32_t{});
    case Number::i32:
        return use(std::int32_t{});
    case Number::i64:
        return use(std::int64_t{});
    case Number::f64:
        return use(double{});
    case Number::f32:
        break;
    }
    return use(float{});
}

std::ptrdiff_t size_of(Number kind) {
    return with_kind(kind, [](auto number) { return static_cast<std::ptrdiff_t>(sizeof(number)); });
}

bool is_real(Number kind) {
    return kind == Number::f32 || kind == Number::f64;
}

/// An array with all that is left out filled in.
struct Array {
    const char* name;
    Numbers numbers;
    std::size_t size;

    Array(const char* name, const Numbers& given, std::size_t size, int wanted)
        : name(name)
        , numbers(given)
        , size(size) {
        if (numbers.components == 0)
            numbers.components = wanted;
        if (numbers.stride == 0)
            numbers.stride = numbers.components * size_of(numbers.kind);
    }

    const unsigned char* element(std::size_t i) const {
        return static_cast<const unsigned char*>(numbers.data) +
               numbers.stride * static_cast<std::ptrdiff_t>(i);
    }
    /// Of one element, wherever it lies.
    template<class Type>
    Type number(std::size_t i, int component) const {
        Type value;
        std::memcpy(&value, element(i) + static_cast<std::size_t>(component) * sizeof(Type),
                    sizeof(Type));
        return value;
    }
    /// What is wrong with what it is said to be.
    std::string mistake(bool is_kind_good, int least, int largest) const {
        if (!is_kind_good)
            return std::string(name) + " are numbers of a kind that they can't be";
        if (numbers.components < least || numbers.components > largest)
            return std::string(name) + " have " + std::to_string(numbers.components) +
                   " components: " + std::to_string(least) +
                   (least < largest ? " or " + std::to_string(largest) : "") + " are wanted";
        if (std::abs(numbers.stride) < numbers.components * size_of(numbers.kind))
            return std::string(name) + " have a stride of " + std::to_string(numbers.stride) +
                   " bytes, which is less than an element has";
        return "";
    }
};

/// Reals, or bytes as parts of 255, behind the numbers that an element begins with.
std::string read_reals(const Array& array, const vec4& fresh, std::vector<vec4>& result) {
    result.assign(array.size, fresh);
    return with_kind(array.numbers.kind, [&](auto kind) -> std::string {
        using Type = decltype(kind);
        constexpr float scale = std::is_same_v<Type, std::uint8_t> ? 1.0f / 255.0f : 1.0f;
        for (std::size_t i = 0; i < array.size; ++i) {
            float parts[4] = {fresh.x, fresh.y, fresh.z, fresh.w};
            for (int part = 0; part < array.numbers.components; ++part) {
                const Type number = array.number<Type>(i, part);
                parts[part] = static_cast<float>(number) * scale;
                if (!std::isfinite(parts[part]))
                    return std::string(array.name) + "[" + std::to_string(i) + "] holds " +
                           std::to_string(number) + ", which is no finite float";
            }
            result[i] = vec4(parts[0], parts[1], parts[2], parts[3]);
        }
        return "";
    });
}

/// @return what is wrong; an array that isn't there is right
std::string read_vertices(const Array& array, int least, int largest, bool takes_bytes,
                          const vec4& fresh, std::vector<vec4>& result) {
    const Number kind = array.numbers.kind;
    if (!array.numbers.data)
        return "";
    std::string mistake =
        array.mistake(is_real(kind) || (takes_bytes && kind == Number::u8), least, largest);
    return mistake.empty() ? read_reals(array, fresh, result) : mistake;
}

std::string read_faces(const Array& array, std::size_t num_vertices,
                       std::vector<std::array<unsigned, 3>>& faces) {
    if (std::string mistake = array.mistake(!is_real(array.numbers.kind), 3, 3); !mistake.empty())
        return mistake;
    faces.resize(array.size);
    return with_kind(array.numbers.kind, [&](auto kind) -> std::string {
        using Type = decltype(kind);
        for (std::size_t i = 0; i < array.size; ++i)
            for (int corner = 0; corner < 3; ++corner) {
                const auto vertex = static_cast<std::int64_t>(array.number<Type>(i, corner));
                if (vertex < 0 || vertex >= static_cast<std::int64_t>(num_vertices))
                    return "faces[" + std::to_string(i) + "] name vertex " +
                           std::to_string(vertex) + ": there are " + std::to_string(num_vertices);
                faces[i][static_cast<std::size_t>(corner)] = static_cast<unsigned>(vertex);
            }
        return "";
    });
}

std::string mistake_in_counts(const MeshNumbers& numbers, std::size_t num_vertices) {
    if (num_vertices > most)
        return "the number of vertices is " + std::to_string(num_vertices) + ": the most are " +
               std::to_string(most);
    if (numbers.num_faces > most / 3)
        return "the number of faces is " + std::to_string(numbers.num_faces) + ": the most are " +
               std::to_string(most / 3);
    return "";
}

} // namespace

std::string read_parts(const MeshNumbers& numbers, std::size_t num_vertices, MeshParts& parts) {
    std::string mistake = mistake_in_counts(numbers, num_vertices);
    const vec4 nothing(0.0f, 0.0f, 0.0f, 0.0f);
    const auto read = [&](const char* name, const Numbers& given, int least, int most_parts,
                          bool takes_bytes, const vec4& fresh, std::vector<vec4>& result) {
        if (mistake.empty())
            mistake = read_vertices(Array(name, given, num_vertices, most_parts), least, most_parts,
                                    takes_bytes, fresh, result);
    };
    read("positions", numbers.positions, 3, 3, false, vec4(0.0f, 0.0f, 0.0f, 1.0f),
         parts.positions);
    read("normals", numbers.normals, 3, 3, false, nothing, parts.normals);
    read("texcoords", numbers.texcoords, 2, 2, false, vec4(0.0f, 0.0f, 0.0f, 1.0f),
         parts.texcoords);
    read("colors", numbers.colors, 3, 4, true, vec4(1.0f, 1.0f, 1.0f, 1.0f), parts.colors);
    if (mistake.empty() && numbers.faces.data)
        mistake = read_faces(Array("faces", numbers.faces, numbers.num_faces, 3), num_vertices,
                             parts.faces);
    if (mistake.empty() && numbers.texture && numbers.texture->sample() != Sample::u8)
        mistake = "the texture's samples aren't 8-bit";
    return mistake;
}

} // namespace orvex::kit
