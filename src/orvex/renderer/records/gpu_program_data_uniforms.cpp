#include "orvex/renderer/records/gpu_program_data.h"

#include <algorithm>
#include <cstring>

#include "orvex/base/private/misuse.h"
#include "orvex/math/vec2.h"
#include "orvex/math/vec3.h"
#include "orvex/renderer/records/gpu_program_uniform.h"
#include "orvex/renderer/records/private/uniform_kinds.h"

// The uniforms that wait for the next bind: a table of records by name, which grows and never
// shrinks. A setter finds or makes the record, stores the value in the field of its kind and marks
// it; a back end sends what is marked. After the first frame nothing here allocates.

namespace orvex {

namespace {

constexpr unsigned long name_length = GpuProgramUniform::NAME_SIZE - 1;

bool has_name(const GpuProgramUniform* uniform, const char* name) {
    return uniform && std::strncmp(uniform->name, name, name_length) == 0;
}

/// Setters come in the same order for each object, so the slot behind the last hit is mostly right,
/// and behind the last one in use the first.
/// @return the record there, null if it is another's
inline GpuProgramUniform* find_next(GpuProgramUniform* const* uniforms, unsigned long count,
                                    unsigned long& last_found, const char* name) {
    const unsigned long next = last_found + 1;
    const unsigned long slot = next < count && uniforms[next] ? next : 0;
    if (slot >= count || !*name || !has_name(uniforms[slot], name))
        return nullptr;
    last_found = slot;
    return uniforms[slot];
}

} // namespace

GpuProgramUniform* GpuProgramData::find_uniform(const char* name) {
    if (!name)
        return nullptr;
    if (GpuProgramUniform* const next = find_next(uniforms, num_uniforms, last_found, name))
        return next;
    for (unsigned long i = 0; i < num_uniforms; ++i) {
        if (has_name(uniforms[i], name)) {
            last_found = i;
            return uniforms[i];
        }
    }
    return nullptr;
}

GpuProgramUniform* GpuProgramData::get_new_uniform() {
    GpuProgramUniform** const end = uniforms + num_uniforms;
    GpuProgramUniform** slot = std::find(uniforms, end, nullptr);
    if (slot == end) {
        auto* const grown = new GpuProgramUniform*[num_uniforms + UNIFORM_SLOTS]();
        slot = std::copy(uniforms, end, grown);
        delete[] uniforms;
        uniforms = grown;
        num_uniforms += UNIFORM_SLOTS;
    }
    *slot = new GpuProgramUniform;
    asked_in_stretch = 0;
    return *slot;
}

void GpuProgramData::kill_uniforms() {
    for (unsigned long i = 0; i < num_uniforms; ++i)
        delete uniforms[i];
    delete[] uniforms;
    uniforms = nullptr;
    num_uniforms = 0;
    last_found = 0;
}

bool GpuProgramData::need_bind_uniforms() {
    if (!uniforms)
        return false;
    for (unsigned long i = 0; i < num_uniforms; ++i)
        if (uniforms[i])
            uniforms[i]->dirty = true;
    uniforms_optimized = false;
    return true;
}

// Returns the record to store into, marked dirty. A new one gets the type; an old one keeps its
// own.
GpuProgramUniform* GpuProgramData::touch_uniform(const char* name, int type) {
    if (!name) {
        misuse("GpuProgramData::set_uniform", "a null name");
        return nullptr;
    }
    GpuProgramUniform* uniform = find_uniform(name);
    if (!uniform) {
        uniform = get_new_uniform();
        uniform->type = GPU_SHADER_UNIFORM(type);
        std::strncpy(uniform->name, name, name_length);
    }
    uniform->dirty = true;
    return uniform;
}

namespace {

// Writes the first `components` of a vector field.
template<typename Vector, typename Value>
bool store(GpuProgramUniform* uniform, Vector GpuProgramUniform::*field, int components, Value x,
           Value y = 0, Value z = 0, Value w = 0) {
    if (!uniform)
        return false;
    Vector& vector = uniform->*field;
    vector.x = x;
    if (components > 1)
        vector.y = y;
    if (components > 2)
        vector.z = z;
    if (components > 3)
        vector.w = w;
    return true;
}

template<typename Value, std::size_t size>
Value* numbers_of(Value (&matrix)[size]) {
    return matrix;
}

float* numbers_of(mat4& matrix) {
    return matrix.m;
}

double* numbers_of(mat4d& matrix) {
    return matrix.m;
}

bool is_component_count(int components) {
    return components >= 1 && components <= 4;
}

bool is_array(const void* values, int count, int components) {
    return values && count >= 0 && is_component_count(components);
}

// The count belongs to the record, not to the array: arrays of several kinds may live under one
// name, so the array's own length decides as well whether it can be used again.
template<typename Value>
void store_array(GpuProgramUniform& uniform, std::vector<Value>& array, const Value* values,
                 int count, int components) {
    const auto size = std::size_t(count) * std::size_t(components);
    if (uniform.count != count || array.size() < size)
        array = std::vector<Value>(values, values + size);
    else
        std::copy_n(values, size, array.begin());
    uniform.count = count;
}

} // namespace

bool GpuProgramData::_set_uniform_ui(const char* name, const unsigned int* values, int components) {
    if (!values || !is_component_count(components))
        return false;
    GpuProgramUniform* const uniform = touch_uniform(name, GPU_SHADER_UNIFORM_1UI + components - 1);
    if (!uniform)
        return false;
    std::copy_n(values, components, uniform->ui);
    uniforms_optimized = false;
    return true;
}

bool GpuProgramData::_set_uniform_iv(const char* name, const int* values, int count,
                                     int components) {
    if (!is_array(values, count, components))
        return false;
    GpuProgramUniform* const uniform = touch_uniform(name, GPU_SHADER_UNIFORM_1IV + components - 1);
    if (!uniform)
        return false;
    store_array(*uniform, uniform->iv, values, count, components);
    uniforms_optimized = false;
    return true;
}

bool GpuProgramData::_set_uniform_fv(const char* name, const float* values, int count,
                                     int components) {
    if (!is_array(values, count, components))
        return false;
    GpuProgramUniform* const uniform = touch_uniform(name, GPU_SHADER_UNIFORM_1FV + components - 1);
    if (!uniform)
        return false;
    store_array(*uniform, uniform->fv, values, count, components);
    return true;
}

bool GpuProgramData::_set_uniform_dv(const char* name, const double* values, int count,
                                     int components) {
    if (!is_array(values, count, components))
        return false;
    GpuProgramUniform* const uniform = touch_uniform(name, GPU_SHADER_UNIFORM_1DV + components - 1);
    if (!uniform)
        return false;
    // Doubles of another count take the place of floats set under the same name.
    if (uniform->count != count)
        uniform->fv = {};
    store_array(*uniform, uniform->dv, values, count, components);
    return true;
}

bool GpuProgramData::_set_uniform_ui64v(const char* name, const unsigned long long* values,
                                        int count, int components) {
    if (!is_array(values, count, components))
        return false;
    GpuProgramUniform* const uniform =
        touch_uniform(name, GPU_SHADER_UNIFORM_1UI64V + components - 1);
    if (!uniform)
        return false;
    store_array(*uniform, uniform->ui64v, values, count, components);
    return true;
}

// One setter for each kind of uniform.

#define ORVEX_SET_VALUE(kind, KIND, Type, components, field)                                       \
    bool GpuProgramData::set_uniform_##kind(const char* name,                                      \
                                            ORVEX_UNIFORM_PARAMETERS_##components(Type)) {         \
        return store(touch_uniform(name, GPU_SHADER_UNIFORM_##KIND), &GpuProgramUniform::field,    \
                     components, ORVEX_UNIFORM_ARGUMENTS_##components);                            \
    }

#define ORVEX_SET_WORDS(kind, KIND, Type, components, field)                                       \
    bool GpuProgramData::set_uniform_##kind(const char* name,                                      \
                                            ORVEX_UNIFORM_PARAMETERS_##components(Type)) {         \
        const Type values[] = {ORVEX_UNIFORM_ARGUMENTS_##components};                              \
        return _set_uniform_##field(name, values, components);                                     \
    }

#define ORVEX_SET_HANDLE(kind, KIND, Type, components, field)                                      \
    bool GpuProgramData::set_uniform_##kind(const char* name, Type value) {                        \
        GpuProgramUniform* const uniform = touch_uniform(name, GPU_SHADER_UNIFORM_##KIND);         \
        if (!uniform)                                                                              \
            return false;                                                                          \
        uniform->field = value;                                                                    \
        return true;                                                                               \
    }

// A vector is its numbers, one behind the other.
#define ORVEX_SET_ARRAY(kind, KIND, Type, components, field)                                       \
    bool GpuProgramData::set_uniform_##kind(const char* name, const Type* values, int count) {     \
        using Number = decltype(GpuProgramUniform::field)::value_type;                             \
        static_assert(sizeof(Type) == sizeof(Number) ||                                            \
                      sizeof(Type) == (components) * sizeof(Number));                              \
        return _set_uniform_##field(name, reinterpret_cast<const Number*>(values), count,          \
                                    components);                                                   \
    }

#define ORVEX_SET_MATRIX(kind, KIND, Type, components, field)                                      \
    bool GpuProgramData::set_uniform_##kind(const char* name, const Type* values) {                \
        GpuProgramUniform* const uniform =                                                         \
            values ? touch_uniform(name, GPU_SHADER_UNIFORM_##KIND) : nullptr;                     \
        if (!uniform)                                                                              \
            return false;                                                                          \
        std::copy_n(values, components, numbers_of(uniform->field));                               \
        return true;                                                                               \
    }

ORVEX_UNIFORM_KINDS(ORVEX_SET_VALUE, ORVEX_SET_WORDS, ORVEX_SET_HANDLE, ORVEX_SET_ARRAY,
                    ORVEX_SET_ARRAY, ORVEX_SET_MATRIX, ORVEX_SET_MATRIX)

#undef ORVEX_SET_VALUE
#undef ORVEX_SET_WORDS
#undef ORVEX_SET_HANDLE
#undef ORVEX_SET_ARRAY
#undef ORVEX_SET_MATRIX

// The engine's own values, several for each object.
bool GpuProgramData::set_uniform_4x4f(const char* name, const mat4& value) {
    GpuProgramUniform* const next =
        name ? find_next(uniforms, num_uniforms, last_found, name) : nullptr;
    if (!next)
        return set_uniform_4x4f(name, value.m);
    next->dirty = true;
    next->m4f = value;
    return true;
}

} // namespace orvex
