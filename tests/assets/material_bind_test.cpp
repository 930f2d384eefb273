#include <atomic>
#include <cstdlib>
#include <new>

#include <gtest/gtest.h>

#include "assets/material.h"
#include "assets/texture.h"
#include "assets/texture_data.h"
#include "gpu/gpu_program.h"
#include "support/fake_renderer.h"

namespace {

std::atomic<long> allocations = 0;

} // namespace

// The whole program counts what it allocates; that is why this test has one of its own.

void* operator new(std::size_t size) {
    ++allocations;
    if (void* const memory = std::malloc(size ? size : 1))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace orvex {
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

TEST(MaterialBinding, AllocatesNothing) {
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

    const long before = allocations;
    for (int i = 0; i < 100; ++i) {
        material->bind(&renderer);
        material->unbind(&renderer);
    }
    EXPECT_EQ(allocations - before, 0);
    EXPECT_EQ(renderer.calls_made, 101 * calls_of_one_draw);
    material->release(nullptr, nullptr);
}

} // namespace
} // namespace orvex
