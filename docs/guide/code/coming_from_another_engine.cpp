// What newcomers from other engines ask first, answered in numbers.

#include <cmath>
#include <cstdio>

#include <orvex_kit/kit.h>

#include "off_screen.h"

using namespace orvex;

namespace {

int whole(float number) {
    return static_cast<int>(std::lround(number));
}

void show(const char* what, const vec4& v) {
    std::printf("%s: (%d, %d, %d)\n", what, whole(v.x), whole(v.y), whole(v.z));
}

void show_space() {
    mat4 turn;
    turn.init_rotate_y(90.0f);
    show("90 degrees about y take z to", turn * vec4(0, 0, 1, 1));

    Camera* camera = new Camera;
    show("a new camera stands at",
         vec4(camera->get_inv_view_matrix().m[12], 0, camera->get_inv_view_matrix().m[14], 1));
    show("and looks along", camera->get_view_vector());
    camera->release(nullptr, nullptr);
}

void show_matrices() {
    mat4 move;
    move.init_translate(5, 6, 7);
    std::printf("a translation lies in m[12] to m[14]: %d %d %d\n", whole(move.m[12]),
                whole(move.m[13]), whole(move.m[14]));
    mat4 turn;
    turn.init_rotate_y(90.0f);
    show("move * turn turns first", move * turn * vec4(0, 0, 1, 1));

    mat4 projection;
    projection.buildRHPerspectiveProjectionMatrix(60.0f, 1.0f, 1.0f, 100.0f, 0.0f);
    const vec4 near = projection * vec4(0, 0, -1, 1);
    const vec4 far = projection * vec4(0, 0, -100, 1);
    std::printf("depth of the near plane %d, of the far one %d\n", whole(near.z / near.w),
                whole(far.z / far.w));
    std::printf("the scalar part of a quaternion comes last: %d\n", whole(quat(1, 2, 3, 4).w));
}

void show_nodes() {
    Object* parent = new Object;
    Object* child = new Object;
    parent->add_child(child);
    parent->set_position(10, 0, 0);
    parent->set_orientation_euler_xyz(0, 90, 0);
    child->set_position(0, 0, 1);
    const mat4 world = child->get_absolute_transform();
    show("a child at (0, 0, 1) of a turned parent stands at",
         vec4(world.m[12], world.m[13], world.m[14], 1));
    parent->kill(nullptr, nullptr);
}

/// Whether the first face with an area is counter-clockwise, as seen from a side.
bool is_counter_clockwise(Mesh& mesh, bool from_outside) {
    for (unsigned long face = 0; face < mesh.get_num_faces(nullptr); ++face) {
        unsigned int corners[3] = {};
        mesh.get_face_indexes(face, &corners[0], &corners[1], &corners[2]);
        const vec4 a = mesh.get_vertex_position(corners[0]);
        const vec4 b = mesh.get_vertex_position(corners[1]);
        const vec4 c = mesh.get_vertex_position(corners[2]);
        const vec3 u(b.x - a.x, b.y - a.y, b.z - a.z);
        const vec3 v(c.x - a.x, c.y - a.y, c.z - a.z);
        const vec3 normal(u.y * v.z - u.z * v.y, u.z * v.x - u.x * v.z, u.x * v.y - u.y * v.x);
        const float outward = normal.x * a.x + normal.y * a.y + normal.z * a.z;
        const float side = from_outside ? outward : normal.z;
        if (side * side > 1e-6f)
            return side > 0.0f;
    }
    return false;
}

template<class Shape>
void show_winding(const char* what, bool from_outside) {
    Shape* shape = new Shape;
    shape->build(nullptr);
    std::printf("a %s is %s\n", what,
                is_counter_clockwise(*shape, from_outside) ? "counter-clockwise" : "clockwise");
    shape->kill(nullptr, nullptr);
}

void show_colours() {
    OffScreen stage(true, 8, 8);
    if (!stage.started)
        return;
    stage.renderer->set_viewport(0, 0, 8, 8);
    stage.renderer->clear_color_depth_buffers(0.5f, 0.25f, 1.0f, 1.0f, 1.0f);
    unsigned char pixels[8 * 8 * 4] = {};
    stage.renderer->get_color_buffer(pixels);
    std::printf("0.5, 0.25 and 1 are written as %d, %d and %d\n", pixels[0], pixels[1], pixels[2]);
}

void show_measured_cameras() {
    const kit::Camera camera;
    const kit::Screen screen{640, 480};
    if (const auto place = camera.project({0, 1, 0, 1}, screen))
        std::printf("(0, 1, 0) is seen %s the middle, %.0f before the eye\n",
                    place->y < 240 ? "above" : "below", place->depth);
    const kit::Pose pose = camera.pose();
    std::printf("the pose turns y to %.0f and z to %.0f\n", pose[1][1], pose[2][2]);
    if (const auto k = camera.intrinsics(640, 480))
        std::printf("cx %.0f, cy %.0f\n", (*k)[0][2], (*k)[1][2]);
}

} // namespace

int main() {
    show_space();
    show_matrices();
    show_nodes();
    show_winding<MeshSphere>("sphere", true);
    show_winding<MeshQuad>("quad", false);
    show_colours();
    show_measured_cameras();
    return 0;
}
