#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

#include "orvex_formats/import/program/requests.h"
#include "orvex_formats/private/importer_protocol.h"

#ifdef ORVEX_WITH_DRACO
#include <draco/compression/decode.h>
#include <draco/mesh/mesh.h>
#endif

namespace orvex::formats {

#ifdef ORVEX_WITH_DRACO

namespace {

std::vector<char> read_input() {
    struct stat found {};
    if (fstat(input_descriptor, &found) != 0 || found.st_size < 0)
        throw std::runtime_error("the packed meshes can't be read");
    std::vector<char> bytes(static_cast<std::size_t>(found.st_size));
    for (std::size_t place = 0; place < bytes.size();) {
        const ssize_t got = pread(input_descriptor, bytes.data() + place, bytes.size() - place,
                                  static_cast<off_t>(place));
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            throw std::runtime_error("the packed meshes can't be read");
        place += static_cast<std::size_t>(got);
    }
    return bytes;
}

/// Numbers of a type that holds all those of the attribute; whole ones stay as they are stored.
template<class Number>
void add_numbers(const draco::PointAttribute& attribute, std::uint32_t num_vertices,
                 std::vector<float>& numbers) {
    const auto width = static_cast<std::size_t>(attribute.num_components());
    std::vector<Number> element(width);
    for (std::uint32_t i = 0; i < num_vertices; ++i) {
        const draco::AttributeValueIndex place = attribute.mapped_index(draco::PointIndex(i));
        if (!attribute.ConvertValue<Number>(place, element.data()))
            throw std::runtime_error("an attribute of a type that can't be read");
        for (const Number number : element)
            numbers.push_back(static_cast<float>(number));
    }
}

void write_attribute(const draco::PointAttribute& attribute, std::uint32_t num_vertices,
                     AnswerRoom& room) {
    std::vector<float> numbers;
    switch (attribute.data_type()) {
    case draco::DT_INT8:
    case draco::DT_INT16:
    case draco::DT_INT32:
        add_numbers<std::int32_t>(attribute, num_vertices, numbers);
        break;
    case draco::DT_UINT8:
    case draco::DT_UINT16:
    case draco::DT_UINT32:
        add_numbers<std::uint32_t>(attribute, num_vertices, numbers);
        break;
    default:
        add_numbers<float>(attribute, num_vertices, numbers);
    }
    room.add_number(attribute.unique_id());
    room.add_number(static_cast<std::uint32_t>(attribute.num_components()));
    room.add_number(static_cast<std::uint64_t>(numbers.size()));
    room.add(numbers.data(), numbers.size() * sizeof(float));
}

void write_mesh(const draco::Mesh& mesh, AnswerRoom& room) {
    const std::uint32_t num_vertices = mesh.num_points();
    room.add_number(num_vertices);
    room.add_number(std::uint64_t{3} * mesh.num_faces());
    for (draco::FaceIndex i(0); i < mesh.num_faces(); ++i)
        for (const draco::PointIndex& corner : mesh.face(i))
            room.add_number(corner.value());
    room.add_number(static_cast<std::uint32_t>(mesh.num_attributes()));
    for (int i = 0; i < mesh.num_attributes(); ++i)
        write_attribute(*mesh.attribute(i), num_vertices, room);
}

} // namespace

void unpack_meshes(std::size_t count, AnswerRoom& room) {
    const std::vector<char> bytes = read_input();
    std::size_t place = 0;
    for (std::size_t i = 0; i < count; ++i) {
        std::uint64_t size = 0;
        if (bytes.size() - place < sizeof size)
            throw std::runtime_error("the packed meshes are cut off");
        std::copy_n(bytes.data() + place, sizeof size, reinterpret_cast<char*>(&size));
        place += sizeof size;
        if (size > bytes.size() - place)
            throw std::runtime_error("the packed meshes are cut off");
        draco::DecoderBuffer buffer;
        buffer.Init(bytes.data() + place, size);
        place += size;
        draco::Decoder decoder;
        draco::StatusOr<std::unique_ptr<draco::Mesh>> mesh = decoder.DecodeMeshFromBuffer(&buffer);
        if (!mesh.ok())
            throw std::runtime_error("packed mesh " + std::to_string(i) + ": " +
                                     mesh.status().error_msg_string());
        write_mesh(*mesh.value(), room);
    }
}

#else

void unpack_meshes(std::size_t, AnswerRoom&) {
    throw std::runtime_error("orvex-import was built without libdraco");
}

#endif

} // namespace orvex::formats
