// The light: a record of numbers and names, and the one operation that hands it to what draws
// next.

#include "orvex/scene/light.h"

#include <cstdio>

#include "orvex/base/private/misuse.h"
#include "orvex/renderer/renderer.h"
#include "orvex/scene/private/node_data.h"

namespace orvex {

Light::Light()
    : data(std::make_unique<LightData>()) {
    set_type(NODE_TYPE_LIGHT);
    NodeData::of(*this).kind = this;
    data->position_uniform_name.assign("orvex_light_position");
    data->radius_uniform_name.assign("orvex_light_radius");
    data->ambient_uniform_name.assign("orvex_light_ambient");
    data->diffuse_uniform_name.assign("orvex_light_diffuse");
    data->specular_uniform_name.assign("orvex_light_specular");
}

Light::~Light() = default;

Light* Light::from_node(Node* node) {
    return node_as<Light>(node);
}

LightData* Light::get_light_data() {
    return data.get();
}

const LightData* Light::get_light_data() const {
    return data.get();
}

void Light::set_index(unsigned int index) {
    data->index = index;
}

unsigned int Light::get_index() const {
    return data->index;
}

void Light::set_radius(float radius) {
    data->radius = radius;
}

float Light::get_radius() const {
    return data->radius;
}

void Light::set_ambient(const vec4& color) {
    data->ambient = color;
}

void Light::set_ambient(float r, float g, float b, float a) {
    data->ambient.set(r, g, b, a);
}

const vec4& Light::get_ambient() const {
    return data->ambient;
}

void Light::set_diffuse(const vec4& color) {
    data->diffuse = color;
}

void Light::set_diffuse(float r, float g, float b, float a) {
    data->diffuse.set(r, g, b, a);
}

const vec4& Light::get_diffuse() const {
    return data->diffuse;
}

void Light::set_specular(const vec4& color) {
    data->specular = color;
}

void Light::set_specular(float r, float g, float b, float a) {
    data->specular.set(r, g, b, a);
}

const vec4& Light::get_specular() const {
    return data->specular;
}

void Light::set_position_uniform_name(const char* name) {
    data->position_uniform_name.assign(name);
}

const char* Light::get_position_uniform_name() const {
    return data->position_uniform_name.get();
}

void Light::set_radius_uniform_name(const char* name) {
    data->radius_uniform_name.assign(name);
}

const char* Light::get_radius_uniform_name() const {
    return data->radius_uniform_name.get();
}

void Light::set_ambient_uniform_name(const char* name) {
    data->ambient_uniform_name.assign(name);
}

const char* Light::get_ambient_uniform_name() const {
    return data->ambient_uniform_name.get();
}

void Light::set_diffuse_uniform_name(const char* name) {
    data->diffuse_uniform_name.assign(name);
}

const char* Light::get_diffuse_uniform_name() const {
    return data->diffuse_uniform_name.get();
}

void Light::set_specular_uniform_name(const char* name) {
    data->specular_uniform_name.assign(name);
}

const char* Light::get_specular_uniform_name() const {
    return data->specular_uniform_name.get();
}

namespace {

/// The uniforms of one light in one program.
class LightUniforms {
public:
    LightUniforms(Renderer& renderer, GpuProgramData& program, unsigned int index)
        : renderer(renderer)
        , program(program)
        , index(static_cast<int>(index)) {}

    void send(const char* name, const vec4& value) {
        if (name)
            renderer.gpu_program_set_uniform_4f(&program, numbered(name), value.x, value.y, value.z,
                                                value.w);
    }

    void send(const char* name, float value) {
        if (name)
            renderer.gpu_program_set_uniform_1f(&program, numbered(name), value);
    }

private:
    Renderer& renderer;
    GpuProgramData& program;
    int index;
    char text[128];

    const char* numbered(const char* name) {
        std::snprintf(text, sizeof text, "%s_%d", name, index);
        return text;
    }
};

} // namespace

void Light::bind(Renderer* renderer) {
    if (!renderer) {
        misuse("Light::bind", "a null renderer");
        return;
    }
    if (get_use_fixed_mvp_matrices_state())
        renderer->light_set_colors(data->index, data->ambient, data->diffuse, data->specular);
    GpuProgramData* const program = renderer->gpu_program_get_active_program();
    if (!program)
        return;
    LightUniforms uniforms(*renderer, *program, data->index);
    uniforms.send(data->position_uniform_name.get(), get_position());
    uniforms.send(data->radius_uniform_name.get(), data->radius);
    uniforms.send(data->ambient_uniform_name.get(), data->ambient);
    uniforms.send(data->diffuse_uniform_name.get(), data->diffuse);
    // Under the ambient name on purpose: shaders read the specular colour there.
    uniforms.send(data->ambient_uniform_name.get(), data->specular);
}

} // namespace orvex
