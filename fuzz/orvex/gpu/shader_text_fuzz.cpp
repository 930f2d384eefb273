// Reads bytes as the text of a program, and again as names, logs and uniforms. The stages that come
// out must be those of the plainest way to cut the text.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/support/target.h"
#include "orvex/gpu/gpu_program.h"
#include "orvex/renderer/records/gpu_program_uniform.h"
#include "tests/orvex/gpu/fake_compiler.h"

namespace {

using namespace orvex;
using Sources = std::vector<std::pair<int, std::string>>;

void require(bool condition) {
    if (!condition)
        std::abort();
}

struct Marker {
    const char* text;
    int stage;
};

// In the order in which stages are compiled.
constexpr Marker MARKERS[] = {{"[Vertex_Shader]", 0},   {"[Pixel_Shader]", 1},
                              {"[Geometry_Shader]", 2}, {"[TessControl_Shader]", 3},
                              {"[TessEval_Shader]", 4}, {"[Compute_Shader]", 5}};

// Finds all markers, ends the text at each, and takes what follows.
Sources cut(std::string text) {
    char* found[6] = {};
    for (const Marker& marker : MARKERS)
        found[marker.stage] = std::strstr(text.data(), marker.text);
    if (!found[5] && (!found[0] || !found[1]))
        return {};
    for (char* const marker : found)
        if (marker)
            *marker = '\0';
    Sources sources;
    for (const Marker& marker : MARKERS)
        if (found[marker.stage])
            sources.emplace_back(marker.stage, found[marker.stage] + std::strlen(marker.text));
    return sources;
}

void load(const std::string& text) {
    orvex_test::FakeCompiler renderer;
    auto* const program = new GpuProgram;
    const bool loaded = program->load_from_memory(&renderer, text.data(), text.size());
    Sources expected = cut(text.c_str());
    bool expect_loaded = !expected.empty();
    for (std::size_t i = 0; i < expected.size(); ++i) {
        if (std::strstr(expected[i].second.c_str(), "bad")) {
            expected.resize(i + 1);
            expect_loaded = false;
            break;
        }
    }
    require(loaded == expect_loaded);
    require(renderer.sources == expected);
    for (const auto& source : expected) {
        const char* const kept = program->get_shader_source_code(GPU_SHADER_TYPE(source.first));
        require(!kept || kept == source.second);
    }
    require(program->get_shader_error_messages() != nullptr);
    require(program->release(&renderer, nullptr) == 0);
}

// Walks through the bytes as operations on a record.
void feed(const std::uint8_t* data, std::size_t size) {
    GpuProgramData record;
    std::size_t at = 0;
    while (at + 2 <= size) {
        const int operation = data[at] % 8;
        const std::size_t length = std::min<std::size_t>(data[at + 1], size - at - 2);
        const std::string text(reinterpret_cast<const char*>(data + at + 2), length);
        at += 2 + length;
        const int count = int(length / 16);
        const std::vector<float> floats(length + 16, 1.0f);
        const std::vector<double> doubles(length + 16, 1.0);
        switch (operation) {
        case 0:
            record.set_uniform_1f(text.c_str(), 1.0f);
            break;
        case 1:
            record._set_uniform_fv(text.c_str(), floats.data(), count, int(length % 6));
            break;
        case 2:
            record._set_uniform_dv(text.c_str(), doubles.data(), count, int(length % 6));
            break;
        case 3:
            record.set_uniform_4x4f(text.c_str(), floats.data());
            break;
        case 4:
            record.set_shader_info_log(GPU_SHADER_TYPE(int(length) % 10 - 1), text.c_str(),
                                       length * 2);
            break;
        case 5:
            record.set_vertex_attrib_name(unsigned(length), text.c_str());
            break;
        case 6:
            record.set_info_log(text.data(), length);
            break;
        default:
            record.d3d11_set_entry_point_name(GPU_SHADER_TYPE(int(length) % 10 - 1), text.c_str());
            break;
        }
    }
    require(record.get_num_uniforms() % 4 == 0);
    bool ended = false;
    for (unsigned long i = 0; i < record.get_num_uniforms(); ++i) {
        const GpuProgramUniform* const uniform = record.get_uniforms_list()[i];
        ended = ended || !uniform;
        require(ended == !uniform);
        if (uniform) {
            require(std::strlen(uniform->name) <= 63);
            require(record.find_uniform(uniform->name) == uniform);
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    load(std::string(reinterpret_cast<const char*>(data), size));
    feed(data, size);
    return 0;
}
