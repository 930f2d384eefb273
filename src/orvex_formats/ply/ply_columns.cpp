#include "orvex_formats/ply/private/ply_columns.h"

#include <algorithm>

namespace orvex::formats {

namespace {

struct NamedColumn {
    const char* name;
    int column;
};

/// Programs agree on places and normals; colours and coordinates have several names.
constexpr std::array<NamedColumn, 31> columns = {{{"x", column_x},
                                                  {"y", column_x + 1},
                                                  {"z", column_x + 2},
                                                  {"nx", column_nx},
                                                  {"ny", column_nx + 1},
                                                  {"nz", column_nx + 2},
                                                  {"normal_x", column_nx},
                                                  {"normal_y", column_nx + 1},
                                                  {"normal_z", column_nx + 2},
                                                  {"red", column_red},
                                                  {"green", column_red + 1},
                                                  {"blue", column_red + 2},
                                                  {"alpha", column_alpha},
                                                  {"r", column_red},
                                                  {"g", column_red + 1},
                                                  {"b", column_red + 2},
                                                  {"a", column_alpha},
                                                  {"diffuse_red", column_red},
                                                  {"diffuse_green", column_red + 1},
                                                  {"diffuse_blue", column_red + 2},
                                                  {"diffuse_alpha", column_alpha},
                                                  {"s", column_u},
                                                  {"t", column_v},
                                                  {"u", column_u},
                                                  {"v", column_v},
                                                  {"texture_u", column_u},
                                                  {"texture_v", column_v},
                                                  {"texture_s", column_u},
                                                  {"texture_t", column_v},
                                                  {"tex_u", column_u},
                                                  {"tex_v", column_v}}};

bool is_color(int column) {
    return column >= column_red && column <= column_alpha;
}

} // namespace

PlyColumns::PlyColumns(const PlyElement& element) {
    for (const PlyProperty& property : element.properties) {
        const auto* const known =
            std::find_if(columns.begin(), columns.end(),
                         [&](const NamedColumn& column) { return column.name == property.name; });
        Place place;
        if (known != columns.end() && !property.is_list &&
            !is_there[static_cast<std::size_t>(known->column)]) {
            place.column = known->column;
            is_there[static_cast<std::size_t>(known->column)] = true;
            const double largest = largest_of(property.type);
            if (is_color(known->column) && largest > 0.0)
                place.scale = static_cast<float>(1.0 / largest);
        } else
            others.push_back(property.name);
        places.push_back(place);
    }
}

} // namespace orvex::formats
