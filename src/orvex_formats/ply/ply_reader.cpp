// The elements "vertex", "face" and "tristrips" are read, in whatever order the head has them.

#include "orvex_formats/ply/private/ply_reader.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "orvex_formats/ply/private/ply_columns.h"
#include "orvex_formats/ply/private/ply_header.h"
#include "orvex_formats/ply/private/ply_rows.h"
#include "orvex_formats/private/byte_stream.h"
#include "orvex_formats/private/polygon_shape.h"
#include "orvex_formats/private/refusal.h"

namespace orvex::formats {

namespace {

constexpr std::uint64_t most_vertices = UINT32_MAX - 1;

constexpr std::size_t most_names = 8; ///< in a note

void add_name(std::vector<std::string>& names, const std::string& name) {
    if (names.size() <= most_names && std::find(names.begin(), names.end(), name) == names.end())
        names.push_back(name);
}

std::string list_of(const std::vector<std::string>& names) {
    std::string list;
    for (std::size_t i = 0; i < names.size() && i < most_names; ++i)
        list += (i == 0 ? "" : ", ") + in_words(names[i]);
    return names.size() > most_names ? list + " and others" : list;
}

/// A property of lists of vertices, under either name.
int find_indices(const PlyElement& element) {
    const int found = std::max(element.find("vertex_indices"), element.find("vertex_index"));
    return found >= 0 && element.properties[static_cast<std::size_t>(found)].is_list ? found : -1;
}

enum class Part { unknown, vertices, faces, strips };

/// What is made of each element of a head.
std::vector<Part> parts_of(const PlyHeader& header) {
    std::vector<Part> parts;
    for (const PlyElement& element : header.elements) {
        const bool is_first = std::find(parts.begin(), parts.end(), Part::vertices) == parts.end();
        if (element.name == "vertex" && is_first)
            parts.push_back(Part::vertices);
        else if (element.name == "face" && find_indices(element) >= 0)
            parts.push_back(Part::faces);
        else if (element.name == "tristrips" && find_indices(element) >= 0)
            parts.push_back(Part::strips);
        else
            parts.push_back(Part::unknown);
    }
    return parts;
}

template<class Rows>
class BodyReader {
public:
    BodyReader(const PlyHeader& header, Rows rows, PolygonShape& shape)
        : header(header)
        , rows(rows)
        , shape(shape) {}

    void read() {
        const std::vector<Part> parts = parts_of(header);
        tell_vertices(parts);
        if (!header.unknown.empty())
            shape.add_note(header.unknown);
        // What is unknown needs no reading where nothing known is behind it.
        const auto last = std::find_if(parts.rbegin(), parts.rend(),
                                       [](Part part) { return part != Part::unknown; });
        const auto num_read = static_cast<std::size_t>(parts.rend() - last);
        for (std::size_t i = 0; i < num_read; ++i)
            read(header.elements[i], parts[i]);
        for (std::size_t i = 0; i < parts.size(); ++i)
            if (parts[i] == Part::unknown && header.elements[i].num_rows > 0)
                add_name(unknown_elements, header.elements[i].name);
        tell_of_unknown();
        if (const std::string rest = rows.rest(); !rest.empty() && num_read == parts.size())
            shape.add_note(rest);
    }

private:
    /// Faces may stand before the vertices that they are made of.
    void tell_vertices(const std::vector<Part>& parts) {
        const auto found = std::find(parts.begin(), parts.end(), Part::vertices);
        if (found == parts.end())
            refuse("the file has no vertices");
        const PlyElement& element =
            header.elements[static_cast<std::size_t>(found - parts.begin())];
        if (element.num_rows == 0)
            refuse("the file has no vertices");
        if (element.num_rows > most_vertices)
            refuse("more vertices than any that are read: %llu",
                   static_cast<unsigned long long>(element.num_rows));
        num_vertices = element.num_rows;
    }

    void check_room(const PlyElement& element) const {
        const std::uint64_t size = element.least_row_size(header.encoding);
        if (size > 0 && element.num_rows > rows.left() / size)
            refuse("%s: the file says that it has %llu rows of \"%s\", and is too short for them",
                   rows.place().c_str(), static_cast<unsigned long long>(element.num_rows),
                   in_words(element.name).c_str());
    }

    void read(const PlyElement& element, Part part) {
        check_room(element);
        if (part == Part::vertices)
            read_vertices(element);
        else if (part == Part::faces)
            read_faces(element);
        else if (part == Part::strips)
            read_strips(element);
        else
            skip(element);
    }

    void note_properties(const PlyColumns& columns) {
        for (const std::string& name : columns.unknown())
            if (name != "vertex_indices" && name != "vertex_index" && name != "texcoord" &&
                name != "texnumber")
                add_name(unknown_properties, name);
    }

    void tell_of_unknown() {
        if (!unknown_elements.empty())
            shape.add_note("elements that aren't known were left out: " +
                           list_of(unknown_elements));
        if (!unknown_properties.empty())
            shape.add_note("properties that aren't known were left out: " +
                           list_of(unknown_properties));
    }

    // --- Lists

    std::uint64_t take_count(const PlyProperty& property) {
        const double count = rows.number(property.count_type);
        if (!(count >= 0.0))
            refuse("%s: a list of less than nothing", rows.place().c_str());
        const auto size = static_cast<double>(rows.least_size(property.type));
        if (!(count * size <= static_cast<double>(rows.left())))
            refuse("%s: a list of %.0f numbers, and the file is too short for them",
                   rows.place().c_str(), count);
        return static_cast<std::uint64_t>(count);
    }

    template<class Number>
    void take_list(const PlyProperty& property, std::vector<Number>& list) {
        const std::uint64_t count = take_count(property);
        list.clear();
        for (std::uint64_t i = 0; i < count; ++i)
            list.push_back(static_cast<Number>(rows.number(property.type)));
    }

    void skip(const PlyProperty& property) {
        rows.skip(property.type, property.is_list ? take_count(property) : 1);
    }

    void skip(const PlyElement& element) {
        if (element.properties.empty())
            return;
        for (std::uint64_t i = 0; i < element.num_rows; ++i)
            for (const PlyProperty& property : element.properties)
                skip(property);
    }

    // --- Elements

    void read_vertices(const PlyElement& element) {
        const PlyColumns columns(element);
        if (!columns.has_positions())
            refuse("the vertices have no x, y and z");
        note_properties(columns);
        shape.begin_vertices(columns.parts(), element.num_rows);
        for (std::uint64_t i = 0; i < element.num_rows; ++i) {
            ShapeValues values = no_shape_values;
            for (std::size_t p = 0; p < element.properties.size(); ++p)
                take_value(element.properties[p], columns.of(p), values);
            shape.add_vertex(values);
        }
    }

    void take_value(const PlyProperty& property, PlyColumns::Place place, ShapeValues& values) {
        if (place.column < 0)
            skip(property);
        else
            values[static_cast<std::size_t>(place.column)] =
                static_cast<float>(rows.number(property.type)) * place.scale;
    }

    void read_faces(const PlyElement& element) {
        const int indices = find_indices(element), coordinates = element.find("texcoord"),
                  picture = element.find("texnumber");
        const PlyColumns columns(element);
        note_properties(columns);
        make_room_for_faces(element);
        if (element.properties.size() == 1 && indices == 0)
            return read_bare_faces(element);
        ShapeFace face;
        face.has_color = columns.has_colors();
        ShapeValues values;
        for (std::uint64_t i = 0; i < element.num_rows; ++i) {
            values = no_shape_values;
            for (std::size_t p = 0; p < element.properties.size(); ++p) {
                const PlyProperty& property = element.properties[p];
                if (const int place = static_cast<int>(p); place == indices)
                    take_indices(property, face.corners);
                else if (place == coordinates && property.is_list)
                    take_list(property, face.coordinates);
                else if (place == picture && !property.is_list)
                    face.picture = rows.number(property.type);
                else
                    take_value(property, columns.of(p), values);
            }
            face.color = vec4(values[column_red], values[column_red + 1], values[column_red + 2],
                              values[column_alpha]);
            shape.add_face(face);
        }
    }

    /// For as many triangles as the rest of the file can hold.
    void make_room_for_faces(const PlyElement& element) {
        const int indices = find_indices(element);
        const PlyProperty& list = element.properties[static_cast<std::size_t>(indices)];
        const std::uint64_t size =
            element.least_row_size(header.encoding) + 3 * rows.least_size(list.type);
        shape.begin_faces(std::min(element.num_rows, rows.left() / size));
    }

    /// Nearly all files have nothing but corners, three of them.
    void read_bare_faces(const PlyElement& element) {
        const PlyProperty& property = element.properties[0];
        ShapeFace face;
        for (std::uint64_t i = 0; i < element.num_rows; ++i) {
            const std::uint64_t count = take_count(property);
            if (count == 3) {
                Triangle triangle{};
                for (std::uint32_t& corner : triangle)
                    corner = vertex_of(rows.number(property.type));
                shape.add_triangle(triangle);
                continue;
            }
            take_corners(property, count, face.corners);
            shape.add_face(face);
        }
    }

    void take_indices(const PlyProperty& property, std::vector<std::uint32_t>& corners) {
        take_corners(property, take_count(property), corners);
    }

    void take_corners(const PlyProperty& property, std::uint64_t count,
                      std::vector<std::uint32_t>& corners) {
        corners.clear();
        for (std::uint64_t i = 0; i < count; ++i)
            corners.push_back(vertex_of(rows.number(property.type)));
    }

    std::uint32_t vertex_of(double index) const {
        if (!(index >= 0.0 && index < static_cast<double>(num_vertices)))
            refuse("%s: vertex %.0f of %llu", rows.place().c_str(), index,
                   static_cast<unsigned long long>(num_vertices));
        return static_cast<std::uint32_t>(index);
    }

    /// Strips in one list are parted by -1.
    void read_strips(const PlyElement& element) {
        const int indices = find_indices(element);
        for (std::uint64_t i = 0; i < element.num_rows; ++i)
            for (std::size_t p = 0; p < element.properties.size(); ++p)
                if (static_cast<int>(p) == indices)
                    read_strip(element.properties[p]);
                else
                    skip(element.properties[p]);
    }

    void read_strip(const PlyProperty& property) {
        const std::uint64_t count = take_count(property);
        Triangle last{};
        for (std::uint64_t i = 0, length = 0; i < count; ++i) {
            const double index = rows.number(property.type);
            length = index == -1.0 ? 0 : length + 1;
            if (length == 0)
                continue;
            last = {last[1], last[2], vertex_of(index)};
            if (length >= 3) // every second triangle turns the other way
                shape.add_triangle(length % 2 == 1 ? last : Triangle{last[1], last[0], last[2]});
        }
    }

    const PlyHeader& header;
    Rows rows;
    PolygonShape& shape;
    std::uint64_t num_vertices = 0;
    std::vector<std::string> unknown_elements, unknown_properties; ///< a few of each
};

} // namespace

Draft read_ply(const InputFile& file) {
    ByteStream stream(file);
    const PlyHeader header = read_ply_header(file, stream);
    PolygonShape shape;
    ByteStream bytes(file, header.end);
    switch (header.encoding) {
    case PlyEncoding::text:
        BodyReader(header, PlyTextRows(stream), shape).read();
        break;
    case PlyEncoding::little:
        BodyReader(header, PlyBinaryRows<std::endian::little>(bytes), shape).read();
        break;
    case PlyEncoding::big:
        BodyReader(header, PlyBinaryRows<std::endian::big>(bytes), shape).read();
        break;
    }
    return shape.finish(header.textures);
}

} // namespace orvex::formats
