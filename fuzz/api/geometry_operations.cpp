// Meshes, models, shapes and rays.

#include "fuzz/api/operations.h"

namespace orvex_fuzz {

using namespace orvex;

namespace {

/// Shapes and meshes of any format, one that doesn't exist included.
template<class Type>
void make(World& world, Bytes& in) {
    if (in.flag())
        world.hold(new Type);
    else
        world.hold(new Type(static_cast<VERTEX_FORMAT>(in.byte() % 6 - 1)));
}

/// Alignments are powers of two, as the header asks.
int alignment(Bytes& in) {
    static constexpr int known[] = {-1, 0, 1, 2, 16, 64, 4096};
    return known[in.byte() % 7];
}

void choose_layout(World& world, Bytes& in) {
    if (Mesh* const mesh = world.reach<Mesh>(in))
        mesh->set_vertex_alloc_params(in.flag(), alignment(in));
}

/// Instances are allocated per mesh: as many as memory is refused for, or few.
void init_instances(World& world, Bytes& in) {
    Mesh* const mesh = world.reach<Mesh>(in);
    if (!mesh)
        return;
    const unsigned int wanted = in.byte();
    InstancingInitParams arrays;
    arrays.position = wanted & 1;
    arrays.rotation = wanted & 2;
    arrays.scale = wanted & 4;
    arrays.color = wanted & 8;
    arrays.misc = wanted & 16;
    const unsigned long count = in.size();
    mesh->instancing_init(count, arrays, alignment(in));
}

/// Writes the whole of a mapped vertex buffer, which is not smaller than the vertices.
void write_mapped(World& world, Bytes& in) {
    Mesh* const mesh = world.reach<Mesh>(in);
    if (!mesh)
        return;
    auto* const bytes = static_cast<unsigned char*>(mesh->map_vertex_buffer(world.renderer));
    const MeshData* const data = mesh->get_mesh_data();
    if (bytes && data && in.flag())
        bytes[0] = 1;
    if (in.flag())
        mesh->unmap_vertex_buffer(world.renderer);
}

/// One triangle after the other, so that a mesh of lists has something to build from.
void add_triangle(World& world, Bytes& in) {
    Mesh* const mesh = world.reach<Mesh>(in);
    if (!mesh)
        return;
    const auto a = static_cast<unsigned int>(mesh->user_geometry_add_vertex(vec4(0, 0, 0, 1)));
    mesh->user_geometry_add_vertex(vec4(1, 0, 0, 1));
    mesh->user_geometry_add_vertex(draw<vec4>(world, in));
    mesh->user_geometry_add_face32(a, a + 1, a + 2);
    mesh->update_build_state(true);
    mesh->build(nullptr);
}

/// What a model makes is the caller's.
void create_part(World& world, Bytes& in) {
    Model* const model = world.reach<Model>(in);
    if (!model)
        return;
    model->set_mesh_vertex_alloc_params(in.flag(), alignment(in));
    Object* const part = in.flag() ? model->create_mesh() : model->create_object();
    if (in.flag())
        model->add_child(part);
    world.hold(part);
}

/// A terrain keeps no reference on its map, which it reads in the first build.
void build_terrain(World& world, Bytes& in) {
    auto* const terrain = world.reach<MeshTerrain>(in);
    if (!terrain)
        return;
    auto* const map = draw<Texture*>(world, in);
    const auto scale = static_cast<float>(in.real());
    const auto half_size = static_cast<float>(in.real());
    terrain->set_build_params(map, in.integer(), scale, half_size, static_cast<float>(in.real()));
    terrain->build(nullptr);
    terrain->elevation(in.integer(), in.integer(), in.integer(), scale);
    terrain->set_build_params(nullptr, 1, scale, half_size, 0.0f);
    terrain->update_build_state(in.flag());
}

void cast_ray(World& world, Bytes& in) {
    Ray ray;
    auto* const camera = draw<Camera*>(world, in);
    const int x = in.integer();
    if (in.flag())
        world.ray_caster.get_ray(camera, x, in.integer(), ray);
    else
        world.ray_caster.get_ray_ortho_cam(camera, x, in.integer(), ray);
    if (in.flag())
        ray.direction = draw<vec4>(world, in);
    world.intersection = RayObjectIntersection();
    world.intersection.stop_at_first_hit = in.flag();
    world.ray_caster.cast_ray_object(ray, draw<Object*>(world, in), world.intersection);
}

void project(World& world, Bytes& in) {
    vec4 out;
    auto* const camera = draw<Camera*>(world, in);
    world.ray_caster.project_object_position_into_viewport(camera, draw<Object*>(world, in), out);
}

/// A shape that is there to be drawn, in any layout and on either path.
void make_built(World& world, Bytes& in) {
    const auto format = static_cast<VERTEX_FORMAT>(in.byte() % 4);
    Mesh* mesh = nullptr;
    switch (in.byte() % 4) {
    case 0:
        mesh = new MeshBox(format);
        break;
    case 1:
        mesh = new MeshSphere(format);
        break;
    case 2:
        mesh = new MeshPlane(format);
        break;
    default:
        mesh = new MeshTriangle(format);
    }
    mesh->set_vertex_alloc_params(in.flag(), alignment(in));
    mesh->set_opengl_2_3_rendering_states(in.flag(), nullptr);
    mesh->build(nullptr);
    world.hold(mesh);
}

/// Draws twice, so that the second time finds what the first one left.
void draw_object(World& world, Bytes& in) {
    Object* const object = world.reach<Object>(in);
    if (!object)
        return;
    if (GpuProgram* const program = draw<GpuProgram*>(world, in))
        program->bind(world.renderer);
    object->render(world.renderer, nullptr);
    if (in.flag())
        object->scale_vertices_position(vec4(2, 2, 2, 1), nullptr);
    if (in.flag() && !world.windows.empty())
        one_of(world.windows, in)->apply_context(true);
    object->render(world.renderer, nullptr);
}

/// A ray that meets most of what was built, as shapes stand around the origin.
void cast_at_origin(World& world, Bytes& in) {
    Ray ray;
    ray.origin = vec4(static_cast<float>(in.real()), 50.0f, 0.1f, 1.0f);
    ray.direction = vec4(0.01f, -1.0f, static_cast<float>(in.real()) / 100.0f, 0.0f);
    Mesh* const mesh = world.reach<Mesh>(in);
    if (mesh && in.flag())
        mesh->update_bounding_sphere(nullptr);
    world.intersection = RayObjectIntersection();
    world.intersection.stop_at_first_hit = in.flag();
    world.ray_caster.cast_ray_object(ray, mesh, world.intersection);
}

/// What a node, or a plugin, is taken for.
void ask_kind(World& world, Bytes& in) {
    auto* const node = draw<Node*>(world, in);
    if (Mesh* const mesh = Mesh::from_node(node))
        mesh->get_num_faces(nullptr);
    if (Polyline* const line = Polyline::from_node(node))
        line->get_polyline_data();
    if (VertexPool* const pool = VertexPool::from_node(node))
        pool->get_pool_size();
    if (Camera* const camera = Camera::from_node(node))
        static_cast<void>(camera->get_view_vector());
    if (Texture* const texture = Texture::from_node(node))
        texture->get_width();
    Plugin* const plugin = PluginMgr::get()->get_plugin_by_index(in.byte());
    if (Loader3D* const loader = Loader3D::from_plugin(plugin))
        static_cast<void>(loader->get_failure_reason());
    if (ImageCodec* const codec = ImageCodec::from_plugin(plugin))
        static_cast<void>(codec->get_failure_reason());
}

constexpr Operation rows[] = {
    {"new shape", &make_built},
    {"new shape", &make_built},
    {"new shape", &make_built},
    {"draw", &draw_object},
    {"draw", &draw_object},
    {"draw", &draw_object},
    {"RayCaster::cast_ray_object", &cast_at_origin},
    {"new Mesh", &make<Mesh>},
    {"new Model", [](World& world, Bytes&) { world.hold(new Model); }},
    {"new MeshBox", &make<MeshBox>},
    {"new MeshCylinder", &make<MeshCylinder>},
    {"new MeshEllipse", &make<MeshEllipse>},
    {"new MeshPlane", &make<MeshPlane>},
    {"new MeshQuad", &make<MeshQuad>},
    {"new MeshQuadHud", &make<MeshQuadHud>},
    {"new MeshSphere", &make<MeshSphere>},
    {"new MeshTerrain", &make<MeshTerrain>},
    {"new MeshTorus", &make<MeshTorus>},
    {"new MeshTriangle", &make<MeshTriangle>},
    ORVEX_FUZZ_CALL(MeshBox, set_build_params),
    ORVEX_FUZZ_CALL(MeshCylinder, set_build_params),
    ORVEX_FUZZ_CALL(MeshEllipse, set_build_params),
    ORVEX_FUZZ_CALL(MeshPlane, set_build_params),
    ORVEX_FUZZ_CALL(MeshQuad, set_build_params),
    ORVEX_FUZZ_CALL(MeshQuad, update_params),
    ORVEX_FUZZ_CALL(MeshQuadHud, set_build_params),
    ORVEX_FUZZ_CALL(MeshSphere, set_build_params),
    ORVEX_FUZZ_CALL(MeshTorus, set_build_params),
    ORVEX_FUZZ_CALL(MeshTriangle, set_build_params),
    ORVEX_FUZZ_CALL(Mesh, build),
    ORVEX_FUZZ_CALL(Mesh, build),
    {"MeshTerrain::build", &build_terrain},
    ORVEX_FUZZ_CALL(MeshTerrain, init_terrain_buffer),
    {"Model::create_mesh", &create_part},
    ORVEX_FUZZ_CALL(Model, render_geometry),

    ORVEX_FUZZ_CALL(Mesh, init_mesh_data),
    ORVEX_FUZZ_CALL(Mesh, share_mesh_data),
    ORVEX_FUZZ_CALL(Mesh, cleanup_mesh_data),
    ORVEX_FUZZ_CALL(Mesh, free_mesh_data),
    {"Mesh::set_vertex_alloc_params", &choose_layout},
    ORVEX_FUZZ_CALL(Mesh, alloc_vertex_data),
    ORVEX_FUZZ_CALL(Mesh, alloc_user_vertex_attribs),
    ORVEX_FUZZ_CALL(Mesh, alloc_face_data),
    ORVEX_FUZZ_CALL(Mesh, copy_geometry),
    ORVEX_FUZZ_CALL(Mesh, set_face_material),
    ORVEX_FUZZ_CALL(Mesh, set_material_to_all_faces),
    ORVEX_FUZZ_CALL(Mesh, set_face_indexes),
    ORVEX_FUZZ_CALL(Mesh, get_face_indexes),
    ORVEX_FUZZ_CALL(Mesh, set_render_wireframe_quad_state),
    ORVEX_FUZZ_CALL(Mesh, set_vertex_position),
    ORVEX_FUZZ_CALL(Mesh, set_vertex_position_w),
    ORVEX_FUZZ_CALL(Mesh, get_vertex_position),
    ORVEX_FUZZ_CALL(Mesh, get_vertex_absolute_position),
    ORVEX_FUZZ_CALL(Mesh, set_vertex_normal),
    ORVEX_FUZZ_CALL(Mesh, get_vertex_normal),
    ORVEX_FUZZ_CALL(Mesh, set_vertex_tangent),
    ORVEX_FUZZ_CALL(Mesh, get_vertex_tangent),
    ORVEX_FUZZ_CALL(Mesh, set_vertex_color),
    ORVEX_FUZZ_CALL(Mesh, get_vertex_color),
    ORVEX_FUZZ_CALL(Mesh, set_vertex_uv),
    ORVEX_FUZZ_CALL(Mesh, get_vertex_uv),
    ORVEX_FUZZ_CALL(Mesh, set_user_vertex_attrib),
    ORVEX_FUZZ_CALL(Mesh, get_user_vertex_attrib),
    ORVEX_FUZZ_CALL(Mesh, user_geometry_add_vertex),
    ORVEX_FUZZ_CALL(Mesh, user_geometry_set_vertex_position),
    ORVEX_FUZZ_CALL(Mesh, user_geometry_set_vertex_color),
    ORVEX_FUZZ_CALL(Mesh, user_geometry_set_vertex_normal),
    ORVEX_FUZZ_CALL(Mesh, user_geometry_set_vertex_uv0),
    ORVEX_FUZZ_CALL(Mesh, user_geometry_add_face32),
    ORVEX_FUZZ_CALL(Mesh, user_geometry_cleanup),
    {"Mesh::user_geometry", &add_triangle},
    ORVEX_FUZZ_CALL(Mesh, init_subsets),
    ORVEX_FUZZ_CALL(Mesh, render_subset),
    ORVEX_FUZZ_CALL(Mesh, render_subset_geometry),
    ORVEX_FUZZ_CALL(Mesh, render_subset_geometry_draw),
    {"Mesh::instancing_init", &init_instances},
    ORVEX_FUZZ_CALL(Mesh, instancing_cleanup),
    ORVEX_FUZZ_CALL(Mesh, set_instance_position),
    ORVEX_FUZZ_CALL(Mesh, get_instance_position),
    ORVEX_FUZZ_CALL(Mesh, instance_position_need_update),
    ORVEX_FUZZ_CALL(Mesh, set_instance_rotation),
    ORVEX_FUZZ_CALL(Mesh, instance_rotation_need_update),
    ORVEX_FUZZ_CALL(Mesh, set_instance_scale),
    ORVEX_FUZZ_CALL(Mesh, instance_scale_need_update),
    ORVEX_FUZZ_CALL(Mesh, set_instance_color),
    ORVEX_FUZZ_CALL(Mesh, instance_color_need_update),
    ORVEX_FUZZ_CALL(Mesh, set_instance_misc),
    ORVEX_FUZZ_CALL(Mesh, instance_misc_need_update),
    {"Mesh::map_vertex_buffer", &write_mapped},
    ORVEX_FUZZ_CALL(Mesh, unmap_vertex_buffer),
    ORVEX_FUZZ_CALL(Mesh, do_linear_tweening),
    ORVEX_FUZZ_CALL(Mesh, set_vertex_particle),
    ORVEX_FUZZ_CALL(Mesh, set_vertex_particle_w),
    ORVEX_FUZZ_CALL(Mesh, set_vertices_particle_w),
    ORVEX_FUZZ_CALL(Mesh, update_vertex_particle_from_position),
    ORVEX_FUZZ_CALL(Mesh, vertex_particle_attach_border),
    ORVEX_FUZZ_CALL(Mesh, vertex_particle_attach_border_two_points),
    {"from_node, from_plugin", &ask_kind},
    {"RayCaster::cast_ray_object", &cast_ray},
    {"RayCaster::project_object_position_into_viewport", &project},
};

} // namespace

std::span<const Operation> geometry_operations() {
    return rows;
}

} // namespace orvex_fuzz
