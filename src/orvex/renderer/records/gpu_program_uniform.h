#pragma once

#include "orvex/api.h"
#include "orvex/math/mat4.h"
#include "orvex/math/mat4d.h"
#include "orvex/math/vec4.h"
#include "orvex/math/vec4d.h"
#include "orvex/math/vec4i.h"

#include <vector>

namespace orvex {

/// What a waiting uniform holds, and so which field of `GpuProgramUniform` is sent.
enum GPU_SHADER_UNIFORM : int {
    GPU_SHADER_UNIFORM_1I = 0,      ///< `i`
    GPU_SHADER_UNIFORM_2I = 1,      ///< `i`, its first two components
    GPU_SHADER_UNIFORM_3I = 2,      ///< `i`, its first three components
    GPU_SHADER_UNIFORM_4I = 3,      ///< `i`
    GPU_SHADER_UNIFORM_1IV = 4,     ///< `iv`, `count`
    GPU_SHADER_UNIFORM_2IV = 5,     ///< `iv`, `count`, two ints an element
    GPU_SHADER_UNIFORM_3IV = 6,     ///< `iv`, `count`, three ints an element
    GPU_SHADER_UNIFORM_4IV = 7,     ///< `iv`, `count`, four ints an element
    GPU_SHADER_UNIFORM_1F = 8,      ///< `f`
    GPU_SHADER_UNIFORM_2F = 9,      ///< `f`, its first two components
    GPU_SHADER_UNIFORM_3F = 10,     ///< `f`, its first three components
    GPU_SHADER_UNIFORM_4F = 11,     ///< `f`
    GPU_SHADER_UNIFORM_1FV = 12,    ///< `fv`, `count`
    GPU_SHADER_UNIFORM_2FV = 13,    ///< `fv`, `count`, two floats an element
    GPU_SHADER_UNIFORM_3FV = 14,    ///< `fv`, `count`, three floats an element
    GPU_SHADER_UNIFORM_4FV = 15,    ///< `fv`, `count`, four floats an element
    GPU_SHADER_UNIFORM_1D = 16,     ///< `d`
    GPU_SHADER_UNIFORM_2D = 17,     ///< `d`, its first two components
    GPU_SHADER_UNIFORM_3D = 18,     ///< `d`, its first three components
    GPU_SHADER_UNIFORM_4D = 19,     ///< `d`
    GPU_SHADER_UNIFORM_1DV = 20,    ///< `dv`, `count`
    GPU_SHADER_UNIFORM_2DV = 21,    ///< `dv`, `count`, two doubles an element
    GPU_SHADER_UNIFORM_3DV = 22,    ///< `dv`, `count`, three doubles an element
    GPU_SHADER_UNIFORM_4DV = 23,    ///< `dv`, `count`, four doubles an element
    GPU_SHADER_UNIFORM_3X3F = 24,   ///< `m3f`
    GPU_SHADER_UNIFORM_4X4F = 25,   ///< `m4f`
    GPU_SHADER_UNIFORM_3X3D = 26,   ///< `m3d`; recorded, never sent
    GPU_SHADER_UNIFORM_4X4D = 27,   ///< `m4d`; recorded, never sent
    GPU_SHADER_UNIFORM_1UI = 28,    ///< `ui`
    GPU_SHADER_UNIFORM_2UI = 29,    ///< `ui`, its first two components
    GPU_SHADER_UNIFORM_3UI = 30,    ///< `ui`, its first three components
    GPU_SHADER_UNIFORM_4UI = 31,    ///< `ui`
    GPU_SHADER_UNIFORM_1UI64 = 32,  ///< `ui64`
    GPU_SHADER_UNIFORM_1UI64V = 33, ///< `ui64v`, `count`
    GPU_SHADER_UNIFORM_2UI64V = 34, ///< recorded, never sent, and so are the two below
    GPU_SHADER_UNIFORM_3UI64V = 35, ///< recorded, never sent
    GPU_SHADER_UNIFORM_4UI64V = 36  ///< recorded, never sent
};

/// One value that waits in a program's table until the program is bound.
///
/// `GpuProgramData` makes, owns and destroys it. The type is fixed when the record is made: a later
/// setter of another kind stores into its own field and leaves the type, so that the field of the
/// first kind is still the one that is sent.
struct GpuProgramUniform {
    /// Room for the name with its terminator; a longer name is known by its first 63 characters.
    static constexpr unsigned long NAME_SIZE = 64;

    int location = -1; ///< below 0: not looked up, or absent from the linked program
    /// The kind of the setter that made the record.
    GPU_SHADER_UNIFORM type = GPU_SHADER_UNIFORM_1F;
    bool dirty = false;        ///< to be sent at the next `Renderer::gpu_program_bind_uniforms`
    char name[NAME_SIZE] = {}; ///< always terminated

    unsigned int ui[4] = {};     ///< the `ui` kinds: the first 1 to 4 of them
    vec4i i;                     ///< the `i` kinds: x first
    vec4 f;                      ///< the `f` kinds: x first
    unsigned long long ui64 = 0; ///< a texture handle
    vec4d d;                     ///< the `d` kinds: x first
    mat4 m4f;                    ///< column by column
    mat4d m4d;                   ///< column by column
    float m3f[9] = {};           ///< column by column
    double m3d[9] = {};          ///< column by column

    /// Elements that the last array setter of any kind was given. An array of another kind may hold
    /// fewer: never read more than its own size.
    int count = 0;
    std::vector<int> iv;                   ///< deep copies of the caller's data, empty until set
    std::vector<float> fv;                 ///< deep copy, as `iv`
    std::vector<double> dv;                ///< deep copy, as `iv`
    std::vector<unsigned long long> ui64v; ///< deep copy, as `iv`
};

} // namespace orvex
