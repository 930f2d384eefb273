// Layers into the caller's memory.

#include "check.h"

#include <math.h>
#include <string.h>

static orvex_camera front_camera(void) {
    orvex_camera camera = new_camera();
    camera.eye[2] = 5;
    camera.fov = 40;
    return camera;
}

static void all_layers_come_from_one_call(void) {
    stage all = begin_stage();
    orvex_model models[2] = {new_square(all.engine), new_square(all.engine)};
    orvex_camera camera = front_camera();
    const float behind[16] = {9, 0, 0, 0, 0, 9, 0, 0, 0, 0, 1, 0, 9, 0, -2, 1};
    static unsigned char color[32][32][4];
    static float depth[32][32], normal[32][32][3], position[32][40][3];
    static int32_t object[32][32], material[32][32], face[32][32];
    orvex_plane planes[7] = {{ORVEX_LAYER_COLOR, 0, color, 0},
                             {ORVEX_LAYER_DEPTH, 0, depth, 0},
                             {ORVEX_LAYER_NORMAL, 0, normal, 0},
                             {ORVEX_LAYER_POSITION, 0, position, sizeof position[0]},
                             {ORVEX_LAYER_OBJECT, 0, object, 0},
                             {ORVEX_LAYER_MATERIAL, 0, material, 0},
                             {ORVEX_LAYER_FACE, 0, face[31], -(ptrdiff_t)sizeof face[0]}};
    CHECK_OK(orvex_model_set_transform(models[1], behind));
    position[16][32][0] = 77;
    CHECK_OK(orvex_view_draw_layers(all.view, &camera, models, 2, planes, 7, NULL));
    CHECK(color[16][16][3] == 255);
    CHECK(fabsf(depth[16][16] - 5) < 1e-4f && fabsf(depth[16][28] - 7) < 1e-4f);
    CHECK(isinf(depth[16][1]) && depth[16][1] > 0);
    CHECK(normal[16][16][2] > 0.99f && normal[16][1][2] == 0);
    CHECK(fabsf(position[16][28][2] + 2) < 1e-4f && isnan(position[16][1][0]));
    CHECK(position[16][32][0] == 77);
    CHECK(object[16][16] == 0 && object[16][28] == 1 && object[16][1] == -1);
    CHECK(material[16][16] == -1 && material[16][1] == -1);
    CHECK(face[16][16] >= 0 && face[16][16] <= 1 && face[16][1] == -1);
    end_stage(&all);
}

static void depth_agrees_with_rays(void) {
    stage all = begin_stage();
    orvex_model model = new_square(all.engine);
    // Leans back.
    const float leans[16] = {1, 0, 0, 0, 0, 0.8f, 0.6f, 0, 0, -0.6f, 0.8f, 0, 0, 0, 0, 1};
    const double eye[3] = {1, 2, 5}, target[3] = {0, 0, 0};
    orvex_camera camera = new_camera();
    orvex_pick pick = {.size = sizeof pick};
    static float depth[32][32];
    static int32_t object[32][32];
    const orvex_plane planes[2] = {{ORVEX_LAYER_DEPTH, 0, depth, 0},
                                   {ORVEX_LAYER_OBJECT, 0, object, 0}};
    double pose[16], origin[3], way[3];
    int hits = 0;
    CHECK_OK(orvex_model_set_transform(model, leans));
    CHECK_OK(orvex_camera_look_at(eye, target, NULL, 30, &camera));
    CHECK_OK(orvex_camera_pose(&camera, pose));
    CHECK_OK(orvex_view_draw_layers(all.view, &camera, &model, 1, planes, 2, NULL));
    for (int y = 1; y < 31; ++y)
        for (int x = 1; x < 31; ++x) {
            double along = pose[11];
            // Edges are the rasterizer's.
            if (object[y][x - 1] < 0 || object[y][x + 1] < 0 || object[y - 1][x] < 0 ||
                object[y + 1][x] < 0 || object[y][x] < 0)
                continue;
            CHECK_OK(orvex_camera_ray(&camera, 32, 32, x + 0.5, y + 0.5, origin, way));
            CHECK_OK(orvex_pick_ray(&model, 1, origin, way, &pick));
            for (int i = 0; i < 3; ++i)
                along += pose[8 + i] * pick.point[i];
            CHECK(pick.hit == 1 && fabs(depth[y][x] / along - 1) < 1e-5);
            ++hits;
        }
    CHECK(hits > 100);
    end_stage(&all);
}

static void normals_may_be_told_in_the_cameras_space(void) {
    stage all = begin_stage();
    orvex_model model = new_square(all.engine);
    orvex_camera camera = front_camera();
    orvex_layer_options options = {.size = sizeof options, .space = ORVEX_SPACE_CAMERA};
    static float normal[32][32][3];
    orvex_plane plane = {ORVEX_LAYER_NORMAL, 0, normal, 0};
    CHECK_OK(orvex_view_draw_layers(all.view, &camera, &model, 1, &plane, 1, &options));
    CHECK(normal[16][16][2] < -0.99f);
    CHECK_OK(orvex_view_draw_layers(all.view, &camera, NULL, 0, NULL, 0, NULL));
    end_stage(&all);
}

static void bad_planes_are_refused(void) {
    stage all = begin_stage();
    orvex_camera camera = front_camera();
    static float depth[32][32];
    orvex_plane plane = {ORVEX_LAYER_DEPTH, 0, depth, 0};
    orvex_layer_options options = {.size = sizeof options, .space = 2};
#define REFUSED(says)                                                                              \
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT,                                                             \
                 orvex_view_draw_layers(all.view, &camera, NULL, 0, &plane, 1, NULL));             \
    CHECK_SAYS(says)
    plane.layer = 7;
    REFUSED("planes[0].layer is 7");
    plane.layer = ORVEX_LAYER_DEPTH;
    plane.rows = NULL;
    REFUSED("planes[0].rows is null");
    plane.rows = depth;
    plane.row_bytes = 127;
    REFUSED("planes[0].row_bytes is 127");
    plane.row_bytes = 64;
    REFUSED("planes[0].row_bytes is 64: a row has 128 bytes");
    plane.row_bytes = 0;
    plane.reserved = 1;
    REFUSED("planes[0].reserved is 1");
#undef REFUSED
    plane.reserved = 0;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT,
                 orvex_view_draw_layers(all.view, &camera, NULL, 0, &plane, 1, &options));
    CHECK_SAYS("options->space is 2");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT,
                 orvex_view_draw_layers(all.view, &camera, NULL, 0, NULL, 1, NULL));
    CHECK_SAYS("planes is null");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT,
                 orvex_view_draw_layers(all.view, &camera, NULL, 0, &plane, (size_t)-1, NULL));
    end_stage(&all);
}

void layer_tests(void) {
    share_stage();
    RUN(all_layers_come_from_one_call);
    RUN(depth_agrees_with_rays);
    RUN(normals_may_be_told_in_the_cameras_space);
    RUN(bad_planes_are_refused);
    end_sharing();
}
