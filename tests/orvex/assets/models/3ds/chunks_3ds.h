#pragma once

/// @file
/// Writes 3DS files for tests, chunk by chunk. Every part is a string of bytes; parts are added up.
///
/// @code
/// const std::string file = file_3ds(material("red") + mesh("m", points({...}) + faces({...})));
/// @endcode

#include <array>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>
#include <vector>

namespace orvex_test {

inline std::string byte(unsigned value) {
    return {static_cast<char>(value & 0xFFu)};
}

inline std::string word(unsigned value) {
    return byte(value) + byte(value >> 8);
}

inline std::string dword(std::uint32_t value) {
    return word(value) + word(value >> 16);
}

inline std::string real(float value) {
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof(bits));
    return dword(bits);
}

inline std::string reals(std::initializer_list<float> values) {
    std::string bytes;
    for (const float value : values)
        bytes += real(value);
    return bytes;
}

/// With its terminator.
inline std::string text(const std::string& value) {
    return value + '\0';
}

inline std::string chunk(unsigned id, const std::string& content) {
    return word(id) + dword(static_cast<std::uint32_t>(content.size()) + 6) + content;
}

/// A chunk whose size says something else than the truth.
inline std::string lying_chunk(unsigned id, std::uint32_t size, const std::string& content) {
    return word(id) + dword(size) + content;
}

// --- Materials -------------------------------------------------------------------------------

inline std::string color(unsigned id, unsigned r, unsigned g, unsigned b) {
    return chunk(id, chunk(0x0011, byte(r) + byte(g) + byte(b)));
}

inline std::string ambient(unsigned r, unsigned g, unsigned b) {
    return color(0xA010, r, g, b);
}

inline std::string diffuse(unsigned r, unsigned g, unsigned b) {
    return color(0xA020, r, g, b);
}

inline std::string specular(unsigned r, unsigned g, unsigned b) {
    return color(0xA030, r, g, b);
}

inline std::string percentage(unsigned id, int percent) {
    return chunk(id, chunk(0x0030, word(static_cast<unsigned>(percent))));
}

inline std::string shininess(int percent) {
    return percentage(0xA040, percent);
}

inline std::string transparency(int percent) {
    return percentage(0xA050, percent);
}

/// A map of a material, 0xA200 for the first texture.
inline std::string texture_map(unsigned id, const std::string& filename) {
    return chunk(id, chunk(0xA300, text(filename)));
}

inline std::string material(const std::string& name, const std::string& more = {}) {
    return chunk(0xAFFF, chunk(0xA000, text(name)) + more);
}

// --- Meshes ----------------------------------------------------------------------------------

using Float3 = std::array<float, 3>;
using Float2 = std::array<float, 2>;
using Index3 = std::array<unsigned, 3>;

inline std::string points(const std::vector<Float3>& values) {
    std::string bytes = word(static_cast<unsigned>(values.size()));
    for (const Float3& value : values)
        bytes += reals({value[0], value[1], value[2]});
    return chunk(0x4110, bytes);
}

inline std::string texcoords(const std::vector<Float2>& values) {
    std::string bytes = word(static_cast<unsigned>(values.size()));
    for (const Float2& value : values)
        bytes += reals({value[0], value[1]});
    return chunk(0x4140, bytes);
}

/// @param more  chunks of the faces: material and smoothing groups
inline std::string faces(const std::vector<Index3>& values, const std::string& more = {}) {
    std::string bytes = word(static_cast<unsigned>(values.size()));
    for (const Index3& value : values)
        bytes += word(value[0]) + word(value[1]) + word(value[2]) + word(7);
    return chunk(0x4120, bytes + more);
}

inline std::string face_material(const std::string& name,
                                 const std::vector<unsigned>& face_numbers) {
    std::string bytes = text(name) + word(static_cast<unsigned>(face_numbers.size()));
    for (const unsigned number : face_numbers)
        bytes += word(number);
    return chunk(0x4130, bytes);
}

inline std::string smooth_groups(const std::vector<std::uint32_t>& values) {
    std::string bytes;
    for (const std::uint32_t value : values)
        bytes += dword(value);
    return chunk(0x4150, bytes);
}

/// The mesh's own matrix: the pictures of the three axes, then the origin.
inline std::string mesh_matrix(const std::array<Float3, 4>& rows) {
    std::string bytes;
    for (const Float3& row : rows)
        bytes += reals({row[0], row[1], row[2]});
    return chunk(0x4160, bytes);
}

inline std::string named_object(const std::string& name, const std::string& content) {
    return chunk(0x4000, text(name) + content);
}

inline std::string mesh(const std::string& name, const std::string& arrays) {
    return named_object(name, chunk(0x4100, arrays));
}

// --- Nodes -----------------------------------------------------------------------------------

constexpr unsigned NO_PARENT = 65535;

inline std::string node_id(unsigned id) {
    return chunk(0xB030, word(id));
}

inline std::string node_header(const std::string& name, unsigned parent = NO_PARENT) {
    return chunk(0xB010, text(name) + word(0) + word(0) + word(parent));
}

inline std::string pivot(float x, float y, float z) {
    return chunk(0xB013, reals({x, y, z}));
}

inline std::string instance_name(const std::string& name) {
    return chunk(0xB011, text(name));
}

/// A track of keys.
/// @param id  0xB020 position, 0xB021 rotation, 0xB022 scale, …
inline std::string track(unsigned id, const std::vector<std::string>& keys, unsigned flags = 0) {
    std::string bytes =
        word(flags) + dword(0) + dword(0) + dword(static_cast<std::uint32_t>(keys.size()));
    for (const std::string& key : keys)
        bytes += key;
    return chunk(id, bytes);
}

inline std::string key(std::int32_t frame, std::initializer_list<float> values) {
    return dword(static_cast<std::uint32_t>(frame)) + word(0) + reals(values);
}

inline std::string position(float x, float y, float z) {
    return track(0xB020, {key(0, {x, y, z})});
}

/// A node that shows the mesh of that name.
inline std::string mesh_node(const std::string& mesh_name, const std::string& more = {},
                             unsigned parent = NO_PARENT) {
    return chunk(0xB002, node_header(mesh_name, parent) + more);
}

// --- Files -----------------------------------------------------------------------------------

/// @param objects  materials and named objects
/// @param nodes    none: the file has no nodes at all
inline std::string file_3ds(const std::string& objects, const std::string& nodes = {}) {
    const std::string version = chunk(0x0002, dword(3));
    const std::string keyframer = nodes.empty() ? std::string() : chunk(0xB000, nodes);
    return chunk(0x4D4D, version + chunk(0x3D3D, objects) + keyframer);
}

/// One triangle in the plane of x and y, with no materials.
inline std::string triangle() {
    return points({{0, 0, 0}, {2, 0, 0}, {0, 3, 0}}) + faces({{0, 1, 2}});
}

/// A file with all that a file can have: colours, maps, groups, lights, cameras, views, fog, nodes.
inline std::string full_file() {
    const std::string linear = chunk(0x0013, reals({0.5f, 0.25f, 1.0f}));
    const std::string plain = chunk(0x0010, reals({0.5f, 0.25f, 1.0f}));
    const std::string settings =
        chunk(0x3D3E, dword(3)) + chunk(0x0100, real(1.0f)) + chunk(0x1400, real(1.0f)) +
        chunk(0x1420, word(256)) + chunk(0x1500, reals({0, 0, 0})) + chunk(0x2100, plain + linear) +
        chunk(0x1100, text("sky.tga")) + chunk(0x1200, plain + linear) +
        chunk(0x1300, real(0.5f) + plain + linear + plain + linear + plain + linear) +
        chunk(0x1201, "") + chunk(0x2200, reals({0, 0, 1, 1}) + linear + chunk(0x2210, "")) +
        chunk(0x2302, reals({0, 1, 1}) + dword(0) + linear) +
        chunk(0x2300, reals({0, 0, 1, 1}) + chunk(0x2310, "")) + chunk(0x2201, "");
    const std::string view = word(0) + word(0) + word(0) + word(0) + word(64) + word(64) + word(1) +
                             reals({1, 0, 0, 0, 0, 0}) + std::string(11, 'c');
    const std::string views =
        chunk(0x7001, std::string(14, '\0') + chunk(0x7020, std::string(8, '\1')) +
                          chunk(0x7012, view) + chunk(0x7012, view)) +
        chunk(0x3000, chunk(0x3010, reals({0, 0, 0, 1})) +
                          chunk(0x3070, reals({0, 0, 0, 1, 2, 3, 4})) +
                          chunk(0x3080, std::string(11, 'c')));
    const std::string materials =
        material("paint", ambient(10, 20, 30) + diffuse(40, 50, 60) + specular(70, 80, 90) +
                              shininess(50) + percentage(0xA041, 30) + transparency(25) +
                              percentage(0xA052, 1) + chunk(0xA100, word(3)) + chunk(0xA081, "") +
                              texture_map(0xA200, "wood.png") + texture_map(0xA230, "bump.png") +
                              chunk(0xA310, std::string(12, '\1'))) +
        material("glass", diffuse(255, 255, 255));
    const std::string groups =
        face_material("paint", {0}) + face_material("glass", {1}) + smooth_groups({1, 1}) +
        chunk(0x4190, text("a") + text("b") + text("c") + text("d") + text("e") + text("f"));
    const std::string square = points({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}) +
                               texcoords({{0, 0}, {1, 0}, {1, 1}, {0, 1}}) +
                               chunk(0x4111, word(4) + word(0) + word(0) + word(0) + word(0)) +
                               mesh_matrix({{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 0, 0}}}) +
                               chunk(0x4165, byte(3)) + faces({{0, 1, 2}, {0, 2, 3}}, groups);
    const std::string spot =
        reals({0, 0, 0, 10, 20}) + chunk(0x4656, real(0)) + chunk(0x4653, text("window.tga"));
    const std::string objects =
        mesh("square", square) +
        named_object("lamp", chunk(0x4600, reals({0, 0, 5}) + plain + chunk(0x4625, "") +
                                               chunk(0x4610, spot))) +
        named_object("eye", chunk(0x4700, reals({0, -5, 2, 0, 0, 0, 0, 35}) +
                                              chunk(0x4720, reals({1, 100}))));
    const std::string nodes =
        chunk(0xB00A, word(5) + text("scene") + dword(100)) + chunk(0xB008, dword(0) + dword(100)) +
        chunk(0xB009, dword(0)) + views +
        chunk(0xB001, node_id(0) + node_header("$AMBIENT$") + track(0xB025, {key(0, {0, 0, 0})})) +
        mesh_node("square",
                  node_id(1) + pivot(0.5f, 0.5f, 0) + instance_name("one") +
                      chunk(0xB014, reals({0, 0, 0, 1, 1, 0})) + position(1, 2, 3) +
                      track(0xB021,
                            {key(0, {0, 0, 0, 1}), key(50, {1, 0, 0, 1}), key(100, {1, 0, 0, 1})},
                            3) +
                      track(0xB022, {key(0, {1, 1, 1})}) + track(0xB029, {key(0, {})}) +
                      chunk(0xB015, real(0))) +
        mesh_node("square", node_id(2) + instance_name("two"), 1) +
        chunk(0xB003, node_id(3) + node_header("eye") + position(0, -5, 2) +
                          track(0xB023, {key(0, {45})}) + track(0xB024, {key(0, {0})})) +
        chunk(0xB004, node_id(4) + node_header("eye") + position(0, 0, 0)) +
        chunk(0xB007, node_id(5) + node_header("lamp") + position(0, 0, 5) +
                          track(0xB025, {key(0, {1, 1, 1})}) + track(0xB027, {key(0, {10})}) +
                          track(0xB028, {key(0, {20})}) + track(0xB024, {key(0, {0})})) +
        chunk(0xB006, node_id(6) + node_header("lamp") + position(0, 0, 0));
    return file_3ds(settings + views + materials + objects, nodes);
}

} // namespace orvex_test
