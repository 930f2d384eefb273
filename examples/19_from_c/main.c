/* The kit from C99: a model from a file on ground of the program's own numbers, seen as a whole,
 * with a word about what lies in the middle of the picture: from_c [gl2] */

#include <stdint.h>
#include <stdio.h>

#include <orvex_c/orvex.h>

enum { width = 800, height = 600, side = 24 };

/* A square of tiles in two colours below a model, with vertices of their own for each triangle. */
static orvex_result make_ground(orvex_engine engine, orvex_model model, orvex_model* ground) {
    static float places[side * side * 6][3];
    static uint8_t colors[side * side * 6][3];
    static const int corners[6][2] = {{0, 0}, {0, 1}, {1, 1}, {0, 0}, {1, 1}, {1, 0}};
    double min[3], max[3];
    orvex_mesh_data data = {.size = sizeof data, .vertex_count = side * side * 6};
    const orvex_result result = orvex_model_get_extent(model, min, max);
    if (result)
        return result;
    for (int i = 0; i < side * side * 6; ++i) {
        const int tile = i / 6, x = tile % side, z = tile / side;
        const double step = (max[0] - min[0]) * 1.3 / side;
        places[i][0] = (float)((x + corners[i % 6][0] - side / 2) * step);
        places[i][1] = (float)min[1];
        places[i][2] = (float)((z + corners[i % 6][1] - side / 2) * step);
        for (int channel = 0; channel < 3; ++channel)
            colors[i][channel] = (x + z) % 2 ? 210 : 110;
    }
    data.positions.data = places;
    data.colors.data = colors;
    data.colors.type = ORVEX_TYPE_U8;
    data.colors.components = 3;
    data.name = "ground";
    return orvex_mesh_create(engine, &data, ground);
}

/* Tells what lies in the middle of the picture, and how far away. */
static orvex_result tell_of_middle(const orvex_camera* camera, const orvex_model* models) {
    double origin[3], direction[3];
    orvex_pick pick = {.size = sizeof pick};
    orvex_mesh_info mesh = {.size = sizeof mesh};
    orvex_result result =
        orvex_camera_ray(camera, width, height, width / 2.0, height / 2.0, origin, direction);
    if (!result)
        result = orvex_pick_ray(models, 2, origin, direction, &pick);
    if (!result && pick.hit)
        result = orvex_model_get_mesh(models[pick.model], pick.mesh, &mesh);
    if (!result && pick.hit)
        printf("in the middle: %s, %.1f away\n", mesh.name, pick.distance);
    return result;
}

int main(int argc, char** argv) {
    const orvex_view_options options = {.size = sizeof options,
                                        .path = argc > 1 ? ORVEX_PATH_GL2 : ORVEX_PATH_GL3};
    const orvex_orbit orbit = {.size = sizeof orbit, .azimuth = 35, .elevation = 25};
    orvex_camera camera = {.size = sizeof camera};
    orvex_engine engine = NULL;
    orvex_view view = NULL;
    orvex_model models[2] = {NULL, NULL};
    orvex_text text = NULL;
    (void)argv;
    /* Each call answers 0 where all went well; the first that doesn't has the last word. */
    if (orvex_engine_start(NULL, &engine) ||
        orvex_view_create(engine, width, height, &options, &view) ||
        orvex_model_load(engine, "lighthouse.obj", NULL, &models[0]) ||
        make_ground(engine, models[0], &models[1]) ||
        orvex_camera_orbit(models, 2, width, height, &orbit, &camera) ||
        orvex_view_draw(view, &camera, models, 2) || tell_of_middle(&camera, models) ||
        orvex_text_create(view, NULL, &text) ||
        orvex_text_add(text, "drawn from C", 24, 24, NULL) || orvex_text_draw(text) ||
        orvex_view_write(view, "from_c.jpg", NULL)) {
        fprintf(stderr, "%s\n", orvex_last_error());
        return 1;
    }
    return orvex_engine_stop(engine) ? 1 : 0;
}
