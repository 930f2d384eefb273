#pragma once

#include <string>

#include "tests/support/temp_dir.h"

namespace orvex_test {

/// A white square of two triangles, from -1 to 1 in x and y, that faces z; as an OBJ file.
inline std::string write_square(const TempDir& folder) {
    return folder.write("square.obj", "v -1 -1 0\nv 1 -1 0\nv 1 1 0\nv -1 1 0\nvn 0 0 1\n"
                                      "f 1//1 2//1 3//1\nf 1//1 3//1 4//1\n");
}

} // namespace orvex_test
