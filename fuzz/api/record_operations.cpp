// The records behind meshes, lines, points, textures and programs, whose fields are public: what
// their headers let a host do past the objects that own them.

#include <algorithm>
#include <iterator>

#include "fuzz/api/operations.h"

namespace orvex_fuzz {

using namespace orvex;

namespace {

/// A host that writes through the arrays says what it has changed.
void mark_mesh(World& world, Bytes& in) {
    MeshData* const data = Place<MeshData>::find(world, in);
    if (!data)
        return;
    const unsigned int choice = in.byte();
    data->positions_need_update = choice & 1;
    data->normals_need_update = choice & 2;
    data->tangents_need_update = choice & 4;
    data->colors_need_update = choice & 8;
    data->uv0_need_update = choice & 16;
    data->uv1_need_update = choice & 32;
    data->faces_need_update = choice & 64;
    data->quad_edges_need_update = choice & 128;
    data->tessellation_state = in.byte() == 1;
    data->draw_start_vertex = 0;
    data->draw_end_vertex = data->num_vertices;
}

VertexAttribArray& any_array(MeshData& data, Bytes& in) {
    VertexAttribArray* const arrays[] = {&data.position, &data.color, &data.normal,
                                         &data.uv0,      &data.uv1,   &data.tangent};
    return *arrays[in.byte() % std::size(arrays)];
}

/// An array that is given back is none: what is read from it is the default.
void free_array(World& world, Bytes& in) {
    Mesh* const mesh = world.reach<Mesh>(in);
    MeshData* const data = mesh ? mesh->get_mesh_data() : nullptr;
    if (data)
        mesh->free_vertex_attrib_array(any_array(*data, in));
}

/// Who says that all of an array is about to be written writes all of it.
void fill_array(World& world, Bytes& in) {
    MeshData* const data = Place<MeshData>::find(world, in);
    if (!data)
        return;
    VertexAttribArray& array = any_array(*data, in);
    data->prepare_to_fill(array);
    if (array.data)
        std::fill_n(array.data, array.num_elements, draw<vec4>(world, in));
}

void mark_line(World& world, Bytes& in) {
    PolylineData* const data = Place<PolylineData>::find(world, in);
    if (!data)
        return;
    if (in.flag())
        data->free_vertices();
}

void change_pool(World& world, Bytes& in) {
    VertexPoolData* const data = Place<VertexPoolData>::find(world, in);
    if (!data)
        return;
    const unsigned int choice = in.byte();
    data->vertices_need_update = choice & 1;
    data->positions_need_update = choice & 2;
    data->colors_need_update = choice & 4;
    data->use_generic_vertex_attribs = choice & 8;
    data->has_color = choice & 16;
    data->has_normal = choice & 32;
}

/// A host may write the sizes and the format of an image: what its buffers don't hold is refused.
/// One that stored pixels of its own, or shares a codec's, keeps its hands off.
void change_image(World& world, Bytes& in) {
    Image* const image = Place<Image>::find(world, in);
    if (!image || image->pixmap_external)
        return;
    image->width = in.size();
    image->height = in.size();
    image->pixel_format = draw<PIXEL_FORMAT>(world, in);
}

void change_texture(World& world, Bytes& in) {
    TextureData* const data = Place<TextureData>::find(world, in);
    if (!data)
        return;
    data->needs_gpu_update = in.flag();
    data->type = static_cast<int>(in.byte() % 8);
    data->gen_mipmaps = in.flag();
    data->filtering_mode = draw<SAMPLER_FILTERING_MODE>(world, in);
    data->addressing_mode = draw<SAMPLER_ADDRESSING_MODE>(world, in);
    data->anisotropy = static_cast<float>(in.real());
    data->cubemap_faces[in.byte() % 6].enabled = in.flag();
}

void create_face(World& world, Bytes& in) {
    Texture* const texture = world.reach<Texture>(in);
    Image* const face =
        texture ? texture->get_cubemap_image_ptr(draw<CUBEMAP_FACE>(world, in)) : nullptr;
    if (!face)
        return;
    const unsigned long width = in.size();
    face->create(width, in.size(), 1, draw<PIXEL_FORMAT>(world, in), in.flag());
}

void change_particles(World& world, Bytes& in) {
    ParticlePool* const pool = Place<ParticlePool>::find(world, in);
    if (!pool)
        return;
    pool->scan_position = in.size();
    if (pool->num_particles == 0)
        return;
    const unsigned long i = in.byte() % pool->num_particles;
    pool->lifetimes[i] = static_cast<float>(in.real());
    pool->positions[i] = draw<vec3>(world, in);
    pool->velocities[i] = draw<vec3>(world, in);
}

constexpr Operation rows[] = {
    {"MeshData", &mark_mesh},
    {"MeshData::free_vertex_attrib_array", &free_array},
    {"MeshData::prepare_to_fill", &fill_array},
    ORVEX_FUZZ_CALL(MeshData, alloc_vertex_data),
    ORVEX_FUZZ_CALL(MeshData, alloc_vertex_data_v2),
    ORVEX_FUZZ_CALL(MeshData, free_vertex_data),
    ORVEX_FUZZ_CALL(MeshData, copy_vertex_data),
    ORVEX_FUZZ_CALL(MeshData, alloc_quad_edge_data),
    ORVEX_FUZZ_CALL(MeshData, free_quad_edge_data),
    ORVEX_FUZZ_CALL(MeshData, alloc_user_vertex_attribs),
    ORVEX_FUZZ_CALL(MeshData, free_user_vertex_attribs),
    ORVEX_FUZZ_CALL(MeshData, set_position_attrib_location),
    ORVEX_FUZZ_CALL(MeshData, set_color_attrib_location),
    ORVEX_FUZZ_CALL(MeshData, set_uv1_attrib_location),
    ORVEX_FUZZ_CALL(MeshData, set_user_attrib_location),
    ORVEX_FUZZ_CALL(MeshData, get_user_attrib_location),
    ORVEX_FUZZ_CALL(MeshData, set_use_generic_vertex_attribs_state),
    ORVEX_FUZZ_CALL(MeshData, get_position),
    ORVEX_FUZZ_CALL(MeshData, get_uv1),
    ORVEX_FUZZ_CALL_OF(MeshData, set_position, void, (unsigned long, const vec3&)),
    ORVEX_FUZZ_CALL(MeshData, set_normal),
    ORVEX_FUZZ_CALL(MeshData, set_uv1),
    ORVEX_FUZZ_CALL(MeshData, set_user_attrib),
    {"PolylineData", &mark_line},
    {"VertexPoolData", &change_pool},
    ORVEX_FUZZ_CALL(VertexPoolData, init),
    ORVEX_FUZZ_CALL(VertexPoolData, init_v2),
    ORVEX_FUZZ_CALL(VertexPoolData, cleanup),
    {"Image", &change_image},
    {"TextureData", &change_texture},
    {"Image::create", &create_face},
    ORVEX_FUZZ_CALL(TextureData, cleanup_cubemap_data),
    ORVEX_FUZZ_CALL(TextureData, get_cubemap_size),
    {"ParticlePool", &change_particles},
    ORVEX_FUZZ_CALL(GpuProgramData, get_shader_source_code),
    ORVEX_FUZZ_CALL(GpuProgramData, get_shader_info_log),
    ORVEX_FUZZ_CALL(GpuProgramData, set_vertex_attrib_name),
    ORVEX_FUZZ_CALL(GpuProgramData, set_viewport_uniform_name),
    ORVEX_FUZZ_CALL(GpuProgramData, kill_uniforms),
    ORVEX_FUZZ_CALL(GpuProgramData, set_uniform_4f),
    ORVEX_FUZZ_COUNTED(GpuProgramData, set_uniform_3fv),
    ORVEX_FUZZ_COUNTED(GpuProgramData, _set_uniform_fv),
    ORVEX_FUZZ_COUNTED(GpuProgramData, _set_uniform_dv),
    {"second renderer", [](World& world, Bytes&) { world.make_second_renderer(); }},
};

} // namespace

std::span<const Operation> record_operations() {
    return rows;
}

} // namespace orvex_fuzz
