// Reading glTF from memory: text whose buffer is base64, and text that is nearly all JSON. The peer
// decodes buffers and stops there; the reader goes on to triangles in the places where they stand.

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/support/row.h"
#include "orvex_formats/gltf/private/gltf_reader.h"
#include "tests/orvex_formats/gltf_file.h"

#ifdef ORVEX_BENCH_TINYGLTF
#include <tiny_gltf.h>
#endif

namespace {

using namespace orvex_test;

/// A square of so many places along each side, with normals: 24 bytes a vertex, 24 a square.
std::string base64_text() {
    constexpr std::uint32_t side = 700;
    GltfFile file;
    Bytes places, normals, indices;
    for (std::uint32_t i = 0; i < side * side; ++i) {
        places.add_number(static_cast<float>(i % side)).add_number(0.5f);
        places.add_number(static_cast<float>(i / side));
        normals.add_number(0.0f).add_number(1.0f).add_number(0.0f);
    }
    for (std::uint32_t i = 0; i + side + 1 < side * side; ++i)
        for (const std::uint32_t corner : {i, i + side, i + 1, i + 1, i + side, i + side + 1})
            indices.add_number(corner);
    const std::string view = ",'bufferView':";
    file.add_accessor("VEC3", 5126, side * side,
                      view + std::to_string(file.add_view(places.bytes)));
    file.add_accessor("VEC3", 5126, side * side,
                      view + std::to_string(file.add_view(normals.bytes)));
    file.add_accessor("SCALAR", 5125, indices.bytes.size() / 4,
                      view + std::to_string(file.add_view(indices.bytes)));
    file.rest = "'meshes':[{'primitives':[{'attributes':{'POSITION':0,'NORMAL':1},'indices':2}]}],"
                "'nodes':[{'mesh':0}],'scenes':[{'nodes':[0]}],'scene':0";
    const std::vector<unsigned char> bytes = file.as_text();
    return std::string(bytes.begin(), bytes.end());
}

/// Nodes with names and transforms, each on ten lines.
std::string lines_text() {
    std::string nodes;
    for (int i = 0; i < 10000; ++i)
        nodes += std::string(i == 0 ? "" : ",") + "\n    {\n      'name': 'node " +
                 std::to_string(i) + "',\n      'mesh': 0,\n      'translation': [\n        " +
                 std::to_string(i) +
                 ".25,\n        0.5,\n        -1.75\n      ],\n      'scale': [1, 1.5, 1]\n    }";
    GltfFile file = triangle();
    file.rest = "'meshes':[{'primitives':[{'attributes':{'POSITION':0,'TEXCOORD_0':1}}]}],"
                "'nodes':[" +
                nodes + "]";
    const std::vector<unsigned char> bytes = file.as_text();
    return std::string(bytes.begin(), bytes.end());
}

#ifdef ORVEX_BENCH_TINYGLTF
void beside_tinygltf(benchmark::State& state, const std::string& text) {
    const orvex::formats::InputFile file(std::vector<unsigned char>(text.begin(), text.end()));
    orvex_bench::take_turns(
        state, {"tinygltf", 0.5},
        [&] { benchmark::DoNotOptimize(orvex::formats::read_gltf(file)); },
        [&] {
            tinygltf::TinyGLTF loader;
            tinygltf::Model model;
            std::string error, warning;
            if (!loader.LoadASCIIFromString(&model, &error, &warning, text.c_str(),
                                            static_cast<unsigned>(text.size()), ""))
                state.SkipWithError(error.c_str());
            benchmark::DoNotOptimize(model);
        });
}
BENCHMARK_CAPTURE(beside_tinygltf, base64, base64_text())
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(beside_tinygltf, lines, lines_text())
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
#endif

} // namespace

BENCHMARK_MAIN();
