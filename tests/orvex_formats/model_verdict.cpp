// Says of each file whether it is read, by the reader that its suffix calls for, and what it holds.

#include <string>

#include "orvex_formats/3mf/private/3mf_reader.h"
#include "orvex_formats/gltf/private/gltf_reader.h"
#include "orvex_formats/obj/private/obj_reader.h"
#include "orvex_formats/off/private/off_reader.h"
#include "orvex_formats/ply/private/ply_reader.h"
#include "orvex_formats/private/model_file.h"
#include "orvex_formats/private/refusal.h"
#include "orvex_formats/stl/private/stl_reader.h"
#include "verdict.h"

namespace {

using namespace orvex::formats;
using orvex::vec3;
using orvex_test::Verdict;

void add_places(const std::vector<vec3>& places, Verdict& verdict) {
    for (const vec3& place : places)
        verdict.add_place(place.x, place.y, place.z);
}

Verdict verdict_on(const Draft& draft) {
    Verdict verdict;
    for (const Surface& surface : draft.surfaces) {
        verdict.vertices += surface.positions.size();
        verdict.triangles += surface.triangles.size();
        add_places(surface.positions, verdict);
    }
    for (const Cloud& cloud : draft.clouds) {
        verdict.vertices += cloud.positions.size();
        add_places(cloud.positions, verdict);
    }
    for (const Lines& lines : draft.lines)
        add_places(lines.positions, verdict);
    for (const SurfaceMaterial& material : draft.materials) {
        const orvex::vec4& color =
            material.physical ? material.physical->base_color : material.diffuse;
        verdict.materials.push_back({material.name, {color.x, color.y, color.z}});
    }
    verdict.lines = draft.lines.size();
    verdict.draws = draft.surfaces.size() + draft.clouds.size() + draft.lines.size();
    return verdict;
}

struct Reader {
    const char* suffix;
    Draft (*read)(const InputFile& file);
};

constexpr Reader readers[] = {{".3mf", read_3mf}, {".glb", read_gltf}, {".gltf", read_gltf},
                              {".obj", read_obj}, {".off", read_off},  {".ply", read_ply},
                              {".stl", read_stl}};

void judge(const std::string& path) {
    try {
        const ModelFile opened = open_model_file(path, "");
        for (const Reader& reader : readers)
            if (has_suffix(path, reader.suffix))
                return tell(verdict_on(reader.read(opened.file)));
        orvex_test::tell_refusal("no suffix that is known");
    } catch (const Refusal& refusal) {
        orvex_test::tell_refusal(refusal.what());
    }
}

} // namespace

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i)
        judge(argv[i]);
}
