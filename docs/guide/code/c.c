/* The page on C: what it shows stands here. guide_c model picture.png depth.npy */

#include <orvex_c/orvex.h>
#include <stdint.h>
#include <stdio.h>

enum { width = 320, height = 240 };

static float depth[height][width];
static int32_t mesh[height][width];

static void keep_line(void* user, const char* line) {
    (void)line;
    ++*(int*)user;
}

/* A triangle behind the model. */
static orvex_result make_triangle(orvex_engine engine, orvex_model* triangle) {
    const float places[3][3] = {{-4, 0, -4}, {4, 0, -4}, {0, 8, -4}};
    const uint8_t colors[3][4] = {{255, 0, 0, 255}, {0, 255, 0, 255}, {0, 0, 255, 255}};
    orvex_mesh_data data = {.size = sizeof data, .vertex_count = 3};
    data.positions.data = places;
    data.colors.data = colors;
    data.colors.type = ORVEX_TYPE_U8;
    return orvex_mesh_create(engine, &data, triangle);
}

static orvex_result draw(orvex_engine engine, const char* path, const char* picture_path,
                         const char* depth_path) {
    orvex_view view = NULL;
    orvex_model models[2] = {NULL, NULL};
    orvex_camera camera = {.size = sizeof camera};
    orvex_result result = orvex_view_create(engine, width, height, NULL, &view);
    if (!result)
        result = orvex_model_load(engine, path, NULL, &models[0]);
    if (!result)
        result = make_triangle(engine, &models[1]);
    if (!result)
        result = orvex_camera_orbit(models, 1, width, height, NULL, &camera);
    if (result)
        return result;
    /* The planes lie around the first model alone: 0 has them lie around all that is drawn. */
    camera.near_plane = camera.far_plane = 0;
    const orvex_plane planes[] = {{.layer = ORVEX_LAYER_DEPTH, .rows = depth},
                                  {.layer = ORVEX_LAYER_OBJECT, .rows = mesh}};
    result = orvex_view_draw(view, &camera, models, 2);
    if (!result)
        result = orvex_view_write(view, picture_path, NULL);
    if (!result)
        result = orvex_view_draw_layers(view, &camera, models, 2, planes, 2, NULL);
    const orvex_picture picture = {.size = sizeof picture,
                                   .width = width,
                                   .height = height,
                                   .channels = 1,
                                   .type = ORVEX_TYPE_F32,
                                   .rows = depth};
    if (!result)
        result = orvex_picture_write(&picture, depth_path, NULL);
    if (!result)
        printf("in the middle: mesh %d, %.1f away\n", (int)mesh[height / 2][width / 2],
               depth[height / 2][width / 2]);
    return result;
}

int main(int argc, char** argv) {
    int lines = 0;
    const orvex_engine_options options = {
        .size = sizeof options, .log = keep_line, .log_user = &lines};
    orvex_engine engine = NULL;
    if (argc < 4)
        return 2;
    if (orvex_engine_start(&options, &engine) || draw(engine, argv[1], argv[2], argv[3])) {
        fprintf(stderr, "%s\n", orvex_last_error());
        return 1;
    }
    return orvex_engine_stop(engine) ? 1 : 0;
}
