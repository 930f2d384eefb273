#pragma once

#include <cmath>
#include <string>

#include "tests/support/temp_dir.h"

namespace orvex_test {

/// A white square of two triangles, from -1 to 1 in x and y, that faces z; as an OBJ file.
inline std::string write_square(const TempDir& folder) {
    return folder.write("square.obj", "v -1 -1 0\nv 1 -1 0\nv 1 1 0\nv -1 1 0\nvn 0 0 1\n"
                                      "f 1//1 2//1 3//1\nf 1//1 3//1 4//1\n");
}

/// A box of six faces from -1 to 1, without normals.
inline std::string write_box(const TempDir& folder) {
    std::string text;
    for (int i = 0; i < 8; ++i)
        text += "v " + std::to_string(i & 1 ? 1 : -1) + " " + std::to_string(i & 2 ? 1 : -1) + " " +
                std::to_string(i & 4 ? 1 : -1) + "\n";
    for (const char* const face :
         {"1 3 4 2", "5 6 8 7", "1 2 6 5", "3 7 8 4", "1 5 7 3", "2 4 8 6"})
        text += std::string("f ") + face + "\n";
    return folder.write("box.obj", text);
}

/// A ball of radius 1 with its normals, in as many parts around and half as many from pole to pole.
inline std::string write_ball(const TempDir& folder, int parts = 24) {
    std::string text;
    const int rows = parts / 2;
    for (int row = 0; row <= rows; ++row)
        for (int part = 0; part < parts; ++part) {
            const double down = M_PI * row / rows, around = 2 * M_PI * part / parts;
            const std::string place = std::to_string(std::sin(down) * std::cos(around)) + " " +
                                      std::to_string(std::cos(down)) + " " +
                                      std::to_string(std::sin(down) * std::sin(around)) + "\n";
            text += "v " + place + "vn " + place;
        }
    const auto corner = [&](int row, int part) {
        const std::string number = std::to_string(row * parts + part % parts + 1);
        return " " + number + "//" + number;
    };
    for (int row = 0; row < rows; ++row)
        for (int part = 0; part < parts; ++part) {
            text +=
                "f" + corner(row, part) + corner(row + 1, part + 1) + corner(row + 1, part) + "\n";
            text +=
                "f" + corner(row, part) + corner(row, part + 1) + corner(row + 1, part + 1) + "\n";
        }
    return folder.write("ball.obj", text);
}

} // namespace orvex_test
