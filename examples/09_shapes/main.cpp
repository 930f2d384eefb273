// Parametric shapes of the engine, lit, and below them the quads of four as lines. Nodes of the
// engine are drawn in a frame of the kit, by a program of this host: shapes [gl2]

#include <cstdio>

#include <orvex/orvex.h>
#include <orvex_kit/kit.h>

using namespace orvex;

static const char paint_text[] = R"([Vertex_Shader]
uniform mat4 orvex_ModelViewMatrix;
uniform mat4 orvex_ModelViewProjectionMatrix;
OUT vec3 place;
OUT vec3 normal;
void main() {
    place = (orvex_ModelViewMatrix * POSITION).xyz;
    normal = mat3(orvex_ModelViewMatrix) * NORMAL;
    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;
}
[Pixel_Shader]
uniform vec3 tint;
uniform float is_lit; // 0 or 1
IN vec3 place;
IN vec3 normal;
void main() {
    vec3 to_eye = normalize(-place);
    vec3 facing = normalize(dot(normal, to_eye) < 0.0 ? -normal : normal);
    vec3 to_lamp = normalize(vec3(-0.5, 0.7, 0.6));
    float shine = pow(max(dot(facing, normalize(to_lamp + to_eye)), 0.0), 48.0);
    vec3 lit = tint * (0.25 + 0.75 * max(dot(facing, to_lamp), 0.0)) + 0.4 * shine;
    COLOR = vec4(mix(tint, lit, is_lit), 1.0);
}
)";

/// Draws shapes from left to right, row by row.
struct Shelf {
    kit::View& view;
    kit::Program program;
    int taken = 0;

    void draw(Mesh& shape, const vec3& tint, bool is_lit = true) {
        const int column = taken % 4;
        const int row = taken / 4;
        shape.set_position(3.3f * static_cast<float>(column) - 4.95f,
                           3.0f - 3.0f * static_cast<float>(row), 0.0f);
        shape.set_render_wireframe_quad_state(!is_lit);
        program.set("tint", tint);
        program.set("is_lit", is_lit ? 1.0f : 0.0f);
        program.gpu()->bind(view.renderer());
        shape.render(view.renderer(), nullptr);
        program.gpu()->unbind(view.renderer());
        ++taken;
    }

    template<class Shape, class... Values>
    kit::Ref<Shape> make(float tilt, float turn, Values... values) {
        kit::Ref<Shape> shape = kit::make<Shape>();
        shape->set_build_params(values...);
        shape->build(nullptr);
        shape->set_opengl_2_3_rendering_states(view.path() == kit::Path::gl2, nullptr);
        shape->set_orientation_euler_xyz(tilt, turn, 0.0f);
        return shape;
    }

    void fill() {
        draw(*make<MeshBox>(30, 35, 1.7f, 1.7f, 1.7f, 2, 2, 2), {0.85f, 0.35f, 0.25f});
        draw(*make<MeshEllipse>(55, 0, 1.4f, 1.1f, 48, 4, 300.0f), {0.3f, 0.5f, 0.8f});
        draw(*make<MeshPlane>(55, 30, 2.2f, 2.2f, 6, 6), {0.3f, 0.65f, 0.65f});
        draw(*make<MeshTriangle>(0, -25, vec4(-1.2f, -1, 0, 1), vec4(1.2f, -1, 0, 1),
                                 vec4(0, 1.1f, 0, 1)),
             {0.75f, 0.4f, 0.7f});

        const auto sphere = make<MeshSphere>(-60, 0, 1.2f, 32, 20);
        const auto cylinder = make<MeshCylinder>(-65, 0, 0.9f, 1.9f, 6, 32);
        const auto torus = make<MeshTorus>(50, 0, 1.35f, 0.45f, 32);
        Texture* const heights = TextureMgr::get()->create_texture_2d_from_file("hills.png", false);
        const auto terrain = make<MeshTerrain>(35, 40, heights, 32, 1.4f, 1.1f, 0.05f);
        terrain->compute_faces_normal(nullptr);
        terrain->compute_vertices_normal(nullptr);
        for (const bool is_lit : {true, false}) {
            draw(*sphere, {0.95f, 0.65f, 0.2f}, is_lit);
            draw(*cylinder, {0.75f, 0.75f, 0.3f}, is_lit);
            draw(*torus, {0.4f, 0.7f, 0.35f}, is_lit);
            draw(*terrain, {0.45f, 0.65f, 0.4f}, is_lit);
        }
    }
};

int main(int argc, char**) {
    const kit::Engine engine;
    kit::View view(800, 560, {argc > 1 ? kit::Path::gl2 : kit::Path::gl3, 0, 3});
    Shelf shelf{view, kit::Program::from_text(view, paint_text, "paint")};
    if (!shelf.program) {
        std::fprintf(stderr, "%s%s\n", view.reason().c_str(), shelf.program.reason().c_str());
        return 1;
    }
    kit::Camera camera;
    camera.look_at({0, 0, 30, 1}, {0, 0, 0, 1});
    camera.set_opening(18);
    view.begin(camera);
    shelf.fill();
    view.end();

    const kit::Outcome written = view.write("shapes.jpg");
    if (!written)
        std::fprintf(stderr, "%s\n", written.reason().c_str());
    return written ? 0 : 1;
}
