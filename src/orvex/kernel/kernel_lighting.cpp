#include "orvex/kernel/kernel.h"

#include <cmath>

#include "orvex/assets/materials/material.h"
#include "orvex/base/private/misuse.h"
#include "orvex/math/mat4.h"
#include "orvex/renderer/records/vertex.h"
#include "orvex/scene/light.h"

namespace orvex {

namespace {

/// What a light does to one vertex; as it stands, what no light does.
struct VertexLight {
    float attenuation = 1.0f;
    float n_dot_l = 1.0f;
    vec4 ambient = vec4::ONE;
    vec4 diffuse = vec4::ONE;
};

float attenuation_at(const vec4& from_light, float radius) {
    const float inverse_radius = 1.0f / radius;
    const float attenuation = 1.0f - inverse_radius * std::sqrt(from_light.dot(from_light));
    if (attenuation < 0.0f)
        return 0.0f;
    return attenuation > 1.0f ? 1.0f : attenuation;
}

/// The normal goes through the full matrix, and what faces away counts below zero: hosts see the
/// colours of both.
VertexLight light_of(const Light& light, const vec4& light_position, const mat4& transform,
                     const Vertex& vertex) {
    vec4 from_light = transform * vertex.position - light_position;
    VertexLight lit;
    lit.attenuation = attenuation_at(from_light, light.get_radius());
    from_light.normalize();
    vec4 normal = transform * vertex.normal;
    normal.normalize();
    lit.n_dot_l = normal.dot(-from_light);
    lit.ambient = light.get_ambient();
    lit.diffuse = light.get_diffuse();
    return lit;
}

vec4 lit_color(const Vertex& vertex, const Material* material, const VertexLight& light) {
    const vec4 material_ambient = material ? material->get_ambient() : vec4::ONE;
    const vec4 material_diffuse = material ? material->get_diffuse() : vec4::ONE;
    vec4 color = vertex.color * material_ambient * light.ambient;
    color += material_diffuse * light.diffuse * light.n_dot_l;
    color *= light.attenuation;
    return color;
}

} // namespace

bool Kernel::compute_object_vertex_color(Object* object, unsigned long vertex_index,
                                         vec4& out_color, Material* material, Light* light,
                                         bool clamp) const {
    if (!object)
        return misuse("Kernel::compute_object_vertex_color", "a null object");
    return compute_object_vertex_color_v2(object, object->get_absolute_transform(), vertex_index,
                                          out_color, material, light,
                                          light ? *light->get_absolute_position() : vec4(), clamp);
}

bool Kernel::compute_object_vertex_color_v2(Object* object, const mat4& transform,
                                            unsigned long vertex_index, vec4& out_color,
                                            Material* material, Light* light,
                                            const vec4& light_position, bool clamp) const {
    if (!object)
        return misuse("Kernel::compute_object_vertex_color_v2", "a null object");
    const Vertex* const vertex = object->get_vertex(vertex_index);
    if (!vertex)
        return misuse("Kernel::compute_object_vertex_color_v2", "no vertex that it could read");
    const VertexLight lit =
        light ? light_of(*light, light_position, transform, *vertex) : VertexLight();
    vec4 color = lit_color(*vertex, material, lit);
    if (clamp)
        color.clamp(0.0f, 1.0f);
    out_color = color;
    return true;
}

} // namespace orvex
