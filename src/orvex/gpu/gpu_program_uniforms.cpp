#include "orvex/gpu/gpu_program.h"

#include "orvex/math/vec2.h"
#include "orvex/math/vec3.h"
#include "orvex/math/vec4.h"
#include "orvex/renderer/records/gpu_program_data.h"
#include "orvex/renderer/records/private/uniform_kinds.h"
#include "orvex/renderer/renderer.h"

// With a renderer a value acts at once, on the program that is active then; without one it waits in
// this program's table. The renderer's setters lack a `const` that they would keep.

namespace orvex {

#define ORVEX_SET_VALUE(kind, KIND, Type, components, field)                                       \
    bool GpuProgram::set_uniform_##kind(Renderer* renderer, const char* name,                      \
                                        ORVEX_UNIFORM_PARAMETERS_##components(Type)) {             \
        if (!renderer)                                                                             \
            return data->set_uniform_##kind(name, ORVEX_UNIFORM_ARGUMENTS_##components);           \
        renderer->gpu_program_set_uniform_##kind(data.get(), name,                                 \
                                                 ORVEX_UNIFORM_ARGUMENTS_##components);            \
        return true;                                                                               \
    }

// NOLINTBEGIN(bugprone-macro-parentheses): the argument is a type.
#define ORVEX_SET_ARRAY(kind, KIND, Type, components, field)                                       \
    bool GpuProgram::set_uniform_##kind(Renderer* renderer, const char* name, const Type* values,  \
                                        int count) {                                               \
        if (!renderer)                                                                             \
            return data->set_uniform_##kind(name, values, count);                                  \
        renderer->gpu_program_set_uniform_##kind(data.get(), name, const_cast<Type*>(values),      \
                                                 count);                                           \
        return true;                                                                               \
    }

#define ORVEX_SET_MATRIX(kind, KIND, Type, components, field)                                      \
    bool GpuProgram::set_uniform_##kind##v(Renderer* renderer, const char* name,                   \
                                           const Type* values, int count) {                        \
        if (!renderer)                                                                             \
            return data->set_uniform_##kind(name, values);                                         \
        renderer->gpu_program_set_uniform_##kind##v(data.get(), name, const_cast<Type*>(values),   \
                                                    count);                                        \
        return true;                                                                               \
    }
// NOLINTEND(bugprone-macro-parentheses)

ORVEX_UNIFORM_KINDS(ORVEX_SET_VALUE, ORVEX_SET_VALUE, ORVEX_SET_VALUE, ORVEX_SET_ARRAY,
                    ORVEX_SET_ARRAY, ORVEX_SET_MATRIX, ORVEX_NO_UNIFORM)

#undef ORVEX_SET_VALUE
#undef ORVEX_SET_ARRAY
#undef ORVEX_SET_MATRIX

} // namespace orvex
