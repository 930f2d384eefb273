#pragma once

/// @file
/// What programs that read models say of a file, each in the same words: a line of JSON a file.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string>
#include <vector>

namespace orvex_test {

struct Verdict {
    struct Material {
        std::string name;
        std::array<float, 3> color{};
    };

    void add_place(float x, float y, float z) {
        const float place[] = {x, y, z};
        if (!std::isfinite(x + y + z))
            return;
        for (std::size_t i = 0; i < 3; ++i) {
            least[i] = std::min(least[i], place[i]);
            most[i] = std::max(most[i], place[i]);
        }
    }

    std::size_t vertices = 0, triangles = 0, lines = 0, draws = 0;
    std::array<float, 3> least{infinity, infinity, infinity}, most{-infinity, -infinity, -infinity};
    std::vector<Material> materials;
    bool has_bounds = true; ///< whether the program knows them

    static constexpr float infinity = std::numeric_limits<float>::infinity();
};

/// A text within the quotes of JSON; its bytes needn't be UTF-8.
inline std::string quoted(const std::string& text) {
    std::string result;
    for (const char letter : text)
        if (letter == '"' || letter == '\\')
            result += std::string("\\") + letter;
        else
            result += letter >= ' ' && letter <= '~' ? letter : '?';
    return result;
}

inline void tell_refusal(const std::string& reason) {
    std::printf("{\"read\": false, \"reason\": \"%s\"}\n", quoted(reason).c_str());
}

inline void tell(const Verdict& verdict) {
    std::printf("{\"read\": true, \"vertices\": %zu, \"triangles\": %zu, \"materials\": %zu, "
                "\"lines\": %zu, \"draws\": %zu, \"colors\": {",
                verdict.vertices, verdict.triangles, verdict.materials.size(), verdict.lines,
                verdict.draws);
    for (std::size_t i = 0; i < verdict.materials.size(); ++i) {
        const Verdict::Material& material = verdict.materials[i];
        const auto number = [&](std::size_t k) {
            return std::isfinite(material.color[k]) ? double(material.color[k]) : 0.0;
        };
        std::printf("%s\"%s\": [%g, %g, %g]", i > 0 ? ", " : "", quoted(material.name).c_str(),
                    number(0), number(1), number(2));
    }
    std::printf("}, \"bounds\": ");
    if (verdict.has_bounds && verdict.least[0] <= verdict.most[0])
        std::printf("[%.9g, %.9g, %.9g, %.9g, %.9g, %.9g]}\n", double(verdict.least[0]),
                    double(verdict.least[1]), double(verdict.least[2]), double(verdict.most[0]),
                    double(verdict.most[1]), double(verdict.most[2]));
    else
        std::printf("null}\n");
}

} // namespace orvex_test
