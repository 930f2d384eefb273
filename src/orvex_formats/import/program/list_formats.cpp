// Writes a header with the formats that assimp reads and no reader of ours does. It runs where the
// importer is built.

#include <cctype>
#include <cstdio>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <assimp/Importer.hpp>
#include <assimp/importerdesc.h>

int main() {
    // Own readers; archives, which are opened before; and names that tell nothing.
    const std::set<std::string> others = {"3ds", "3mf", "glb", "gltf", "obj",
                                          "off", "ply", "stl", "bsp",  "ifczip",
                                          "pk3", "zae", "zgl", "xml",  "mesh.xml"};
    std::set<std::string> suffixes;
    const Assimp::Importer importer;
    for (std::size_t i = 0; i < importer.GetImporterCount(); ++i) {
        std::istringstream words(importer.GetImporterInfo(i)->mFileExtensions);
        for (std::string suffix; words >> suffix;)
            if (others.count(suffix) == 0)
                suffixes.insert(suffix);
    }
    // What everybody knows comes first.
    std::vector<std::string> order;
    for (const char* const known : {"fbx", "dae", "blend"})
        if (suffixes.erase(known) > 0)
            order.push_back(known);
    order.insert(order.end(), suffixes.begin(), suffixes.end());
    std::string names, list;
    for (const std::string& suffix : order) {
        list += "    \"." + suffix + "\",\n";
        names += names.empty() ? "" : ", ";
        for (const char letter : suffix)
            names += static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    }
    std::printf("// Made of assimp's own list.\n#pragma once\n\nnamespace orvex::formats {\n\n"
                "inline constexpr const char* imported_suffixes[] = {\n%s};\n"
                "inline constexpr const char* all_imported_formats =\n    \"%s\";\n\n"
                "} // namespace orvex::formats\n",
                list.c_str(), names.c_str());
    return 0;
}
