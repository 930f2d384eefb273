#include <gtest/gtest.h>

#include "orvex/assets/materials/material.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/gpu/gpu_program.h"
#include "orvex/renderer/records/texture_data.h"
#include "tests/support/fake_renderer.h"
#include "tests/support/heap.h"

namespace orvex_test {

using namespace orvex;
namespace {

/// Counts calls instead of writing them down.
class QuietRenderer : public orvex_test::FakeRenderer {
public:
    int calls_made = 0;
    bool texture_bind(TextureData*, unsigned long) override { return ++calls_made > 0; }
    bool gpu_program_activate(GpuProgramData*) override { return ++calls_made > 0; }
    bool gpu_program_deactivate(GpuProgramData*) override { return ++calls_made > 0; }
    bool gpu_program_bind_uniforms(GpuProgramData*) override { return ++calls_made > 0; }
    bool gpu_program_optimize(GpuProgramData*) override { return ++calls_made > 0; }
    void material_set_colors(const vec4&, const vec4&, const vec4&, float) override {
        ++calls_made;
    }
};

TEST(MaterialBinding, allocates_nothing) {
    const orvex_test::CountAllocations allocations;
    QuietRenderer renderer;
    auto* const material = new Material;
    material->set_gpu_program(new GpuProgram);
    for (int i = 0; i < 4; ++i) {
        auto* const texture = new Texture;
        texture->get_data_ptr()->needs_gpu_update = false;
        material->add_texture(texture);
    }
    material->set_use_fixed_material_colors_state(true);
    material->bind(&renderer);
    material->unbind(&renderer);
    const int calls_of_one_draw = renderer.calls_made;
    EXPECT_GE(calls_of_one_draw, 10);

    const unsigned long before = allocations.count();
    EXPECT_GT(before, 0u);
    for (int i = 0; i < 100; ++i) {
        material->bind(&renderer);
        material->unbind(&renderer);
    }
    EXPECT_EQ(allocations.count(), before);
    EXPECT_EQ(renderer.calls_made, 101 * calls_of_one_draw);
    material->release(nullptr, nullptr);
}

} // namespace
} // namespace orvex_test
