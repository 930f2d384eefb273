#pragma once

/// @file
/// Packages of 3MF, put together in memory.

#include <string>

#include "tests/orvex_formats/archives.h"

namespace orvex_test {

/// A text as the model's part of a package.
inline Zip package_of(const std::string& model) {
    return Zip()
        .add("[Content_Types].xml", "<Types/>")
        .add("_rels/.rels", "<Relationships><Relationship Target=\"/3D/main.model\" "
                            "Type=\"http://a/b/3dmodel\"/></Relationships>")
        .add("3D/main.model", model);
}

inline std::string model_of(const std::string& resources, const std::string& items) {
    return "<?xml version=\"1.0\"?><model><resources>" + resources + "</resources><build>" + items +
           "</build></model>";
}

const std::string triangle_mesh =
    "<mesh><vertices><vertex x=\"0\" y=\"0\" z=\"0\"/><vertex x=\"1\" y=\"0\" z=\"0\"/>"
    "<vertex x=\"0\" y=\"1\" z=\"0\"/></vertices><triangles><triangle v1=\"0\" v2=\"1\" v3=\"2\"/>"
    "</triangles></mesh>";

} // namespace orvex_test
