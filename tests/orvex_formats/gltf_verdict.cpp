// Says of each file whether it is read as glTF, and what it holds: a line of JSON a file.

#include <cstdio>
#include <string>

#include "orvex_formats/gltf/private/gltf_reader.h"
#include "orvex_formats/private/refusal.h"

namespace {

using namespace orvex::formats;

void tell(const Draft& draft) {
    std::size_t vertices = 0, triangles = 0;
    for (const Surface& surface : draft.surfaces) {
        vertices += surface.positions.size();
        triangles += surface.triangles.size();
    }
    for (const Cloud& cloud : draft.clouds)
        vertices += cloud.positions.size();
    std::printf("{\"read\": true, \"vertices\": %zu, \"triangles\": %zu, \"materials\": %zu, "
                "\"lines\": %zu, \"draws\": %zu}\n",
                vertices, triangles, draft.materials.size(), draft.lines.size(),
                draft.surfaces.size() + draft.clouds.size() + draft.lines.size());
}

/// A text within the quotes of JSON.
std::string quoted(const std::string& text) {
    std::string result;
    for (const char letter : text)
        result +=
            letter == '"' || letter == '\\' ? std::string("\\") + letter : std::string(1, letter);
    return result;
}

} // namespace

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        try {
            tell(read_gltf(InputFile(argv[i])));
        } catch (const Refusal& refusal) {
            std::printf("{\"read\": false, \"reason\": \"%s\"}\n", quoted(refusal.what()).c_str());
        }
    }
}
