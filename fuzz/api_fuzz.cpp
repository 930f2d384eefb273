// Plays bytes as calls of the public operations: on nodes, meshes, textures, programs, targets,
// windows, overlays, in whatever order, with whatever numbers, on an OpenGL that draws nothing.

#include <cstdint>

#include "fuzz/api/operations.h"
#include "fuzz/support/null_gl.h"
#include "fuzz/support/target.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static constexpr int versions[][2] = {{2, 1}, {3, 0}, {3, 3}, {4, 3}, {4, 6}};
    orvex_fuzz::Bytes in(data, size);
    const unsigned int choice = in.byte();
    const int* const version = versions[choice % 5];
    orvex_fuzz::NullGl gl;
    gl.set_version(version[0], version[1]);
    // Mostly a willing driver.
    gl.set_refusals(in.byte() < 16 ? in.byte() : 0);
    orvex_fuzz::Stage stage;
    stage.core = choice >= 128;
    stage.gl_major = stage.core ? 3 : 2;
    stage.gl_minor = stage.core ? 2 : 1;
    orvex_fuzz::play(in, stage);
    return 0;
}
