#include "orvex/renderer/records/gpu_program_data.h"

#include <algorithm>
#include <cstring>

#include "orvex/math/vec2.h"
#include "orvex/math/vec3.h"
#include "orvex/renderer/records/gpu_program_uniform.h"

namespace orvex {

namespace {

constexpr unsigned long NAME_LENGTH = GpuProgramUniform::NAME_SIZE - 1;

bool has_name(const GpuProgramUniform* uniform, const char* name) {
    return uniform && std::strncmp(uniform->name, name, NAME_LENGTH) == 0;
}

} // namespace

GpuProgramUniform* GpuProgramData::find_uniform(const char* name) {
    if (!name)
        return nullptr;
    // Setters come in the same order each frame, so the slot behind the last hit is mostly right.
    const unsigned long next = last_found_ + 1;
    if (next < num_uniforms && *name && has_name(uniforms[next], name)) {
        last_found_ = next;
        return uniforms[next];
    }
    for (unsigned long i = 0; i < num_uniforms; ++i) {
        if (has_name(uniforms[i], name)) {
            last_found_ = i;
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
    return *slot;
}

void GpuProgramData::kill_uniforms() {
    for (unsigned long i = 0; i < num_uniforms; ++i)
        delete uniforms[i];
    delete[] uniforms;
    uniforms = nullptr;
    num_uniforms = 0;
    last_found_ = 0;
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
    if (!name)
        return nullptr;
    GpuProgramUniform* uniform = find_uniform(name);
    if (!uniform) {
        uniform = get_new_uniform();
        uniform->type = GPU_SHADER_UNIFORM(type);
        std::strncpy(uniform->name, name, NAME_LENGTH);
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

} // namespace

bool GpuProgramData::set_uniform_1i(const char* name, int x) {
    return store(touch_uniform(name, GPU_SHADER_UNIFORM_1I), &GpuProgramUniform::i, 1, x);
}

bool GpuProgramData::set_uniform_2i(const char* name, int x, int y) {
    return store(touch_uniform(name, GPU_SHADER_UNIFORM_2I), &GpuProgramUniform::i, 2, x, y);
}

bool GpuProgramData::set_uniform_3i(const char* name, int x, int y, int z) {
    return store(touch_uniform(name, GPU_SHADER_UNIFORM_3I), &GpuProgramUniform::i, 3, x, y, z);
}

bool GpuProgramData::set_uniform_4i(const char* name, int x, int y, int z, int w) {
    return store(touch_uniform(name, GPU_SHADER_UNIFORM_4I), &GpuProgramUniform::i, 4, x, y, z, w);
}

bool GpuProgramData::set_uniform_1f(const char* name, float x) {
    return store(touch_uniform(name, GPU_SHADER_UNIFORM_1F), &GpuProgramUniform::f, 1, x);
}

bool GpuProgramData::set_uniform_2f(const char* name, float x, float y) {
    return store(touch_uniform(name, GPU_SHADER_UNIFORM_2F), &GpuProgramUniform::f, 2, x, y);
}

bool GpuProgramData::set_uniform_3f(const char* name, float x, float y, float z) {
    return store(touch_uniform(name, GPU_SHADER_UNIFORM_3F), &GpuProgramUniform::f, 3, x, y, z);
}

bool GpuProgramData::set_uniform_4f(const char* name, float x, float y, float z, float w) {
    return store(touch_uniform(name, GPU_SHADER_UNIFORM_4F), &GpuProgramUniform::f, 4, x, y, z, w);
}

bool GpuProgramData::set_uniform_1d(const char* name, double x) {
    return store(touch_uniform(name, GPU_SHADER_UNIFORM_1D), &GpuProgramUniform::d, 1, x);
}

bool GpuProgramData::set_uniform_2d(const char* name, double x, double y) {
    return store(touch_uniform(name, GPU_SHADER_UNIFORM_2D), &GpuProgramUniform::d, 2, x, y);
}

bool GpuProgramData::set_uniform_3d(const char* name, double x, double y, double z) {
    return store(touch_uniform(name, GPU_SHADER_UNIFORM_3D), &GpuProgramUniform::d, 3, x, y, z);
}

bool GpuProgramData::set_uniform_4d(const char* name, double x, double y, double z, double w) {
    return store(touch_uniform(name, GPU_SHADER_UNIFORM_4D), &GpuProgramUniform::d, 4, x, y, z, w);
}

namespace {

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

bool GpuProgramData::set_uniform_1ui(const char* name, unsigned int x) {
    const unsigned int values[] = {x};
    return _set_uniform_ui(name, values, 1);
}

bool GpuProgramData::set_uniform_2ui(const char* name, unsigned int x, unsigned int y) {
    const unsigned int values[] = {x, y};
    return _set_uniform_ui(name, values, 2);
}

bool GpuProgramData::set_uniform_3ui(const char* name, unsigned int x, unsigned int y,
                                     unsigned int z) {
    const unsigned int values[] = {x, y, z};
    return _set_uniform_ui(name, values, 3);
}

bool GpuProgramData::set_uniform_4ui(const char* name, unsigned int x, unsigned int y,
                                     unsigned int z, unsigned int w) {
    const unsigned int values[] = {x, y, z, w};
    return _set_uniform_ui(name, values, 4);
}

bool GpuProgramData::set_uniform_1ui64(const char* name, unsigned long long value) {
    GpuProgramUniform* const uniform = touch_uniform(name, GPU_SHADER_UNIFORM_1UI64);
    if (!uniform)
        return false;
    uniform->ui64 = value;
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

bool GpuProgramData::set_uniform_1iv(const char* name, const int* values, int count) {
    return _set_uniform_iv(name, values, count, 1);
}

bool GpuProgramData::set_uniform_2iv(const char* name, const int* values, int count) {
    return _set_uniform_iv(name, values, count, 2);
}

bool GpuProgramData::set_uniform_3iv(const char* name, const int* values, int count) {
    return _set_uniform_iv(name, values, count, 3);
}

bool GpuProgramData::set_uniform_4iv(const char* name, const int* values, int count) {
    return _set_uniform_iv(name, values, count, 4);
}

bool GpuProgramData::set_uniform_1fv(const char* name, const float* values, int count) {
    return _set_uniform_fv(name, values, count, 1);
}

bool GpuProgramData::set_uniform_2fv(const char* name, const vec2* values, int count) {
    return _set_uniform_fv(name, reinterpret_cast<const float*>(values), count, 2);
}

bool GpuProgramData::set_uniform_3fv(const char* name, const vec3* values, int count) {
    return _set_uniform_fv(name, reinterpret_cast<const float*>(values), count, 3);
}

bool GpuProgramData::set_uniform_4fv(const char* name, const vec4* values, int count) {
    return _set_uniform_fv(name, reinterpret_cast<const float*>(values), count, 4);
}

bool GpuProgramData::set_uniform_1dv(const char* name, const double* values, int count) {
    return _set_uniform_dv(name, values, count, 1);
}

bool GpuProgramData::set_uniform_2dv(const char* name, const double* values, int count) {
    return _set_uniform_dv(name, values, count, 2);
}

bool GpuProgramData::set_uniform_3dv(const char* name, const double* values, int count) {
    return _set_uniform_dv(name, values, count, 3);
}

bool GpuProgramData::set_uniform_4dv(const char* name, const double* values, int count) {
    return _set_uniform_dv(name, values, count, 4);
}

bool GpuProgramData::set_uniform_1ui64v(const char* name, const unsigned long long* values,
                                        int count) {
    return _set_uniform_ui64v(name, values, count, 1);
}

bool GpuProgramData::set_uniform_3x3f(const char* name, const float* values) {
    GpuProgramUniform* const uniform =
        values ? touch_uniform(name, GPU_SHADER_UNIFORM_3X3F) : nullptr;
    if (!uniform)
        return false;
    std::copy_n(values, 9, uniform->m3f);
    return true;
}

bool GpuProgramData::set_uniform_4x4f(const char* name, const float* values) {
    GpuProgramUniform* const uniform =
        values ? touch_uniform(name, GPU_SHADER_UNIFORM_4X4F) : nullptr;
    if (!uniform)
        return false;
    std::copy_n(values, 16, uniform->m4f.m);
    return true;
}

bool GpuProgramData::set_uniform_4x4f(const char* name, const mat4& value) {
    return set_uniform_4x4f(name, value.m);
}

bool GpuProgramData::set_uniform_3x3d(const char* name, const double* values) {
    GpuProgramUniform* const uniform =
        values ? touch_uniform(name, GPU_SHADER_UNIFORM_3X3D) : nullptr;
    if (!uniform)
        return false;
    std::copy_n(values, 9, uniform->m3d);
    return true;
}

bool GpuProgramData::set_uniform_4x4d(const char* name, const double* values) {
    GpuProgramUniform* const uniform =
        values ? touch_uniform(name, GPU_SHADER_UNIFORM_4X4D) : nullptr;
    if (!uniform)
        return false;
    std::copy_n(values, 16, uniform->m4d.m);
    return true;
}

} // namespace orvex
