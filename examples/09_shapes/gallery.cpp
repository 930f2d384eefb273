#include "gallery.h"

using namespace orvex;

namespace {

// The light's uniforms are those of `Light::bind`, which leaves the specular colour under the
// ambient name; the ambient colour itself comes as a uniform of this example.
const char* const vertex_stage = R"(
uniform mat4 orvex_ModelViewMatrix;
uniform mat4 orvex_ModelViewProjectionMatrix;
OUT vec3 eye_position;
OUT vec3 eye_normal;
OUT vec2 uv;

void main()
{
    eye_position = (orvex_ModelViewMatrix * POSITION).xyz;
    eye_normal = mat3(orvex_ModelViewMatrix) * NORMAL;
    uv = TEXCOORD;
    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;
}
)";

const char* const pixel_stage = R"(
uniform mat4 orvex_ViewMatrix;
uniform vec4 orvex_light_position_0;
uniform float orvex_light_radius_0;
uniform vec4 orvex_light_ambient_0;
uniform vec4 orvex_light_diffuse_0;
uniform vec4 ambient;
uniform vec4 tint;
uniform float shaded; // 0 or 1
IN vec3 eye_position;
IN vec3 eye_normal;
IN vec2 uv;

void main()
{
    vec3 to_eye = normalize(-eye_position);
    vec3 normal = normalize(eye_normal);
    // Open shapes show their inside as well.
    normal = dot(normal, to_eye) < 0.0 ? -normal : normal;
    vec3 way = (orvex_ViewMatrix * vec4(orvex_light_position_0.xyz, 1.0)).xyz - eye_position;
    float reach = clamp(1.0 - length(way) / orvex_light_radius_0, 0.0, 1.0);
    vec3 to_light = normalize(way);
    float lambert = max(dot(normal, to_light), 0.0);
    float lobe = pow(max(dot(normal, normalize(to_light + to_eye)), 0.0), 48.0);

    vec2 field = floor(uv * 8.0);
    vec3 paint = tint.rgb * (mod(field.x + field.y, 2.0) < 0.5 ? 1.0 : 0.8);
    vec3 lit = paint * (ambient.rgb + orvex_light_diffuse_0.rgb * lambert * reach) +
               orvex_light_ambient_0.rgb * lobe * reach;
    COLOR = vec4(mix(tint.rgb, lit, shaded), 1.0);
}
)";

constexpr float spacing = 3.5f;

template<class Shape, class... Values>
Shape* shape(Values... values) {
    auto* const mesh = new Shape;
    mesh->set_build_params(values...);
    return mesh;
}

} // namespace

Gallery::Gallery(OffScreen& stage_, const char* height_map)
    : stage(stage_)
    , heights(TextureMgr::get()->create_texture_2d_from_file(height_map, false))
    , program(stage.make_program("gallery", vertex_stage, pixel_stage))
    , light(new Light)
    , camera(new Camera) {
    add_upper_row();
    add_lower_row();
    light->set_position(-4.0f, 9.0f, 9.0f);
    light->set_radius(80.0f);
    light->set_use_fixed_mvp_matrices_state(!stage.gl3, nullptr);
    const float aspect = static_cast<float>(stage.width) / static_cast<float>(stage.height);
    camera->set_viewport(0, 0, stage.width, stage.height);
    camera->build_projection_persp(25.5f, aspect, 0.1f, 100.0f, true);
    camera->set_view_params(vec4(0.0f, 11.0f, 16.0f, 1.0f), vec4(0.0f, -0.2f, 0.0f, 1.0f),
                            vec4(0.0f, 1.0f, 0.0f, 0.0f), true);
}

Gallery::~Gallery() {
    for (const Exhibit& exhibit : exhibits)
        exhibit.mesh->kill(stage.renderer, nullptr);
    light->release(nullptr, nullptr);
    camera->release(nullptr, nullptr);
}

bool Gallery::is_complete() const {
    return heights && program->is_valid();
}

/// Puts a mesh on the next free place, the upper row first.
void Gallery::add(Mesh* mesh, const vec4& color, float tilt, float turn) {
    const auto place = static_cast<int>(exhibits.size());
    mesh->set_position(static_cast<float>(place % 5 - 2) * spacing, 0.0f, place < 5 ? -2.4f : 2.4f);
    mesh->set_orientation_euler_xyz(tilt, turn, 0.0f);
    exhibits.push_back({stage.build(mesh), color});
}

void Gallery::add_upper_row() {
    add(shape<MeshBox>(2.0f, 1.6f, 1.8f, 2, 2, 2), vec4(0.85f, 0.35f, 0.25f, 1.0f), 0.0f, 35.0f);
    add(shape<MeshSphere>(1.4f, 24, 16), vec4(0.95f, 0.65f, 0.2f, 1.0f), -90.0f, 0.0f);
    add(shape<MeshCylinder>(1.0f, 2.2f, 5, 24), vec4(0.75f, 0.75f, 0.3f, 1.0f), -65.0f, 0.0f);
    add(shape<MeshTorus>(1.6f, 0.5f, 24), vec4(0.4f, 0.7f, 0.35f, 1.0f), 25.0f, 0.0f);
    add(shape<MeshPlane>(2.6f, 2.6f, 6, 6), vec4(0.3f, 0.65f, 0.65f, 1.0f), 20.0f, 20.0f);
}

void Gallery::add_lower_row() {
    add(shape<MeshEllipse>(1.5f, 1.0f, 32, 4, 300.0f), vec4(0.3f, 0.5f, 0.8f, 1.0f), 30.0f, 0.0f);
    add(shape<MeshQuad>(2.4f, 1.8f), vec4(0.5f, 0.4f, 0.8f, 1.0f), 0.0f, 25.0f);
    add(make_terrain(), vec4(0.45f, 0.7f, 0.4f, 1.0f), 0.0f, 0.0f);
    add(shape<MeshTriangle>(vec4(-1.2f, -1.0f, 0.0f, 1.0f), vec4(1.2f, -1.0f, 0.0f, 1.0f),
                            vec4(0.0f, 1.1f, 0.0f, 1.0f)),
        vec4(0.75f, 0.4f, 0.7f, 1.0f), 0.0f, -25.0f);
    add(shape<MeshQuadHud>(), vec4(0.85f, 0.45f, 0.5f, 1.0f), 0.0f, -25.0f);
    // From its lower left corner, unlike the others.
    Mesh* const panel = exhibits.back().mesh;
    panel->set_scale(2.0f, 1.8f, 1.0f);
    panel->set_position(2.0f * spacing - 0.9f, -0.9f, 2.2f);
}

Mesh* Gallery::make_terrain() const {
    auto* const terrain = shape<MeshTerrain>(heights, 48, 1.4f, 1.5f, 0.05f);
    terrain->build(nullptr);
    terrain->compute_faces_normal(nullptr);
    terrain->compute_vertices_normal(nullptr);
    return terrain;
}

void Gallery::draw(bool quads) {
    Renderer* const renderer = stage.renderer;
    camera->bind(renderer, true, true, true, true, !stage.gl3);
    renderer->clear_color_depth_buffers(0.16f, 0.18f, 0.21f, 1.0f, 1.0f);
    program->bind(renderer);
    light->bind(renderer);
    const vec4& ambient = light->get_ambient();
    program->set_uniform_4f(renderer, "ambient", ambient.x, ambient.y, ambient.z, ambient.w);
    for (const Exhibit& exhibit : exhibits) {
        const bool lines = quads && exhibit.mesh->get_mesh_data()->num_quad_edges > 0;
        exhibit.mesh->set_render_wireframe_quad_state(lines);
        program->set_uniform_4f(renderer, "tint", exhibit.color.x, exhibit.color.y, exhibit.color.z,
                                exhibit.color.w);
        program->set_uniform_1f(renderer, "shaded", lines ? 0.0f : 1.0f);
        exhibit.mesh->render(renderer, nullptr);
    }
    program->unbind(renderer);
}
