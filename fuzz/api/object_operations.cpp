// Objects: transforms, materials, and what every drawable has.

#include "fuzz/api/operations.h"

namespace orvex_fuzz {

using namespace orvex;

namespace {

/// Takes the square of the number of vertices, as its header says: few, so that the input ends.
void average_normals(World& world, Bytes& in) {
    Object* const object = world.reach<Object>(in);
    if (object && object->get_num_vertices(object) < 1000)
        object->average_vertices_normal(static_cast<float>(in.real()),
                                        in.flag() ? object : nullptr);
}

/// A grid is as many lines as it is told; few, so that the input ends in time.
void set_grid(World& world, Bytes& in) {
    Object* const object = world.reach<Object>(in);
    if (!object)
        return;
    const auto size = static_cast<float>(in.real());
    const int divisions = static_cast<int>(in.byte() % 12) - 1;
    object->set_grid_params(size, size, divisions, 3, in.flag(), in.flag());
}

void render_grid(World& world, Bytes& in) {
    Object* const object = world.reach<Object>(in);
    if (!object)
        return;
    const auto size = static_cast<float>(in.real());
    const int divisions = static_cast<int>(in.byte() % 12) - 1;
    object->render_grid(draw<Renderer*>(world, in), size, size, 3, divisions, in.flag(), true);
}

void compute_color(World& world, Bytes& in) {
    vec4 color;
    auto* const object = draw<Object*>(world, in);
    const unsigned long vertex = in.size();
    auto* const material = draw<Material*>(world, in);
    auto* const light = draw<Light*>(world, in);
    aux::compute_object_vertex_color(object, vertex, color, material, light, in.flag());
}

void compute_color_v2(World& world, Bytes& in) {
    vec4 color;
    auto* const object = draw<Object*>(world, in);
    const mat4 transform = draw<mat4>(world, in);
    const unsigned long vertex = in.size();
    auto* const material = draw<Material*>(world, in);
    auto* const light = draw<Light*>(world, in);
    const vec4 place = draw<vec4>(world, in);
    aux::compute_object_vertex_color_v2(object, transform, vertex, color, material, light, place,
                                        in.flag());
}

/// Each call with a program adds a reference, which only a call with another gives back: the host
/// gives a program once, and takes it back before it lets the object go.
void give_program(World& world, Bytes& in) {
    Object* const object = world.held<Object>(in);
    GpuProgram* const program = draw<GpuProgram*>(world, in);
    if (object && object->get_gpu_program() != program)
        object->set_gpu_program(program, nullptr);
}

constexpr Operation rows[] = {
    {"new Object", [](World& world, Bytes&) { world.hold(new Object); }},
    ORVEX_FUZZ_CALL(Object, render_geometry),
    ORVEX_FUZZ_CALL(Object, render_geometry_prepare),
    ORVEX_FUZZ_CALL(Object, render_geometry_draw),
    ORVEX_FUZZ_CALL(Object, render_geometry_finish),
    ORVEX_FUZZ_CALL(Object, set_use_generic_vertex_attribs_state),
    ORVEX_FUZZ_CALL(Object, set_opengl_2_3_rendering_states),
    ORVEX_FUZZ_CALL(Object, set_use_gl2_vertex_array_state),
    ORVEX_FUZZ_CALL(Object, set_use_fixed_mvp_matrices_state),
    ORVEX_FUZZ_CALL(Object, set_tessellation_state),
    ORVEX_FUZZ_CALL(Object, render_apply_automatic_uniforms),
    ORVEX_FUZZ_CALL(Object, display_tripod),
    ORVEX_FUZZ_CALL(Object, render_tripod),
    {"Object::set_gpu_program", &give_program},
    ORVEX_FUZZ_CALL(Object, get_gpu_program),
    ORVEX_FUZZ_CALL(Object, get_num_vertices),
    ORVEX_FUZZ_CALL(Object, get_num_faces),
    ORVEX_FUZZ_CALL(Object, get_vertex),
    ORVEX_FUZZ_CALL(Object, get_vertex_v2),
    ORVEX_FUZZ_CALL(Object, compute_faces_normal),
    ORVEX_FUZZ_CALL(Object, compute_vertices_normal),
    {"Object::average_vertices_normal", &average_normals},
    ORVEX_FUZZ_CALL(Object, add_material),
    ORVEX_FUZZ_CALL(Object, remove_material),
    ORVEX_FUZZ_CALL(Object, scale_vertices_position),
    ORVEX_FUZZ_CALL(Object, flip_faces),
    ORVEX_FUZZ_CALL(Object, flip_vertex_normals),
    ORVEX_FUZZ_CALL(Object, set_vertices_color),
    ORVEX_FUZZ_CALL(Object, update_bounding_sphere),
    ORVEX_FUZZ_CALL_OF(Object, set_position, void, (float, float, float)),
    ORVEX_FUZZ_CALL_OF(Object, set_position, void, (const vec4&)),
    ORVEX_FUZZ_CALL(Object, set_orientation_euler_xyz),
    ORVEX_FUZZ_CALL(Object, set_orientation),
    ORVEX_FUZZ_CALL(Object, get_orientation),
    ORVEX_FUZZ_CALL_OF(Object, set_scale, void, (const vec4&)),
    ORVEX_FUZZ_CALL_OF(Object, set_transform, void, (const mat4&)),
    ORVEX_FUZZ_CALL_OF(Object, set_transform, void, (const float*)),
    ORVEX_FUZZ_CALL(Object, get_transform),
    ORVEX_FUZZ_CALL(Object, get_absolute_transform),
    ORVEX_FUZZ_CALL(Object, get_absolute_transform_float_ptr),
    ORVEX_FUZZ_CALL(Object, get_absolute_position),
    ORVEX_FUZZ_CALL(Object, set_projection_matrix),
    ORVEX_FUZZ_CALL(Object, set_view_matrix),
    ORVEX_FUZZ_CALL(Object, update_build_state),
    ORVEX_FUZZ_CALL(Object, set_display_tripod_state),
    ORVEX_FUZZ_CALL(Object, set_tripod_size),
    ORVEX_FUZZ_CALL(Object, set_display_grid_state),
    {"Object::set_grid_params", &set_grid},
    ORVEX_FUZZ_CALL(Object, display_grid),
    {"Object::render_grid", &render_grid},
    ORVEX_FUZZ_CALL(Object, get_material),
    ORVEX_FUZZ_CALL(Object, get_material_by_index),
    ORVEX_FUZZ_CALL(Object, get_material_by_name),
    ORVEX_FUZZ_CALL(Object, remove_all_materials),
    ORVEX_FUZZ_CALL(Object, set_all_materials_texture_unit_offset),
    ORVEX_FUZZ_CALL(Object, async_texture_loading_process_all_materials),
    ORVEX_FUZZ_CALL(Object, set_bounding_sphere),
    ORVEX_FUZZ_CALL(Object, bounding_sphere_use_inscribed_sphere),

    ORVEX_FUZZ_CALL_OF(Tripod, set_position, void, (const vec4&)),
    ORVEX_FUZZ_CALL(Tripod, set_orientation),
    ORVEX_FUZZ_CALL(Tripod, set_orientation_euler_angles),
    ORVEX_FUZZ_CALL(Tripod, update_orientation),
    ORVEX_FUZZ_CALL_OF(Tripod, set_scale, void, (float, float, float)),
    ORVEX_FUZZ_CALL(Tripod, update_transform),
    ORVEX_FUZZ_CALL_OF(Tripod, set_transform, void, (const mat4&)),

    {"aux::compute_object_vertex_color", &compute_color},
    {"aux::compute_object_vertex_color_v2", &compute_color_v2},
};

} // namespace

std::span<const Operation> object_operations() {
    return rows;
}

} // namespace orvex_fuzz
