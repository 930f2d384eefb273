// Models from files: what is told of them, where they stand, and what rays meet.

#include "check.h"

#include <math.h>
#include <string.h>

/// A square with a material that names a texture which isn't there.
static orvex_model load_square(orvex_engine engine) {
    orvex_model model = NULL;
    char path[300];
    written("square.mtl", "newmtl red\nKd 1 0 0\nmap_Kd missing.png\n");
    strcpy(path, written("square.obj", "mtllib square.mtl\no tile\nv -1 -1 0\nv 1 -1 0\nv 1 1 0\n"
                                       "v -1 1 0\nvn 0 0 1\nusemtl red\nf 1//1 2//1 3//1\n"
                                       "f 1//1 3//1 4//1\n"));
    CHECK_OK(orvex_model_load(engine, path, NULL, &model));
    return model;
}

static void a_model_tells_what_it_holds(void) {
    stage all = begin_engine();
    orvex_model model = load_square(all.engine);
    orvex_model_info info = {.size = sizeof info};
    orvex_mesh_info mesh = {.size = sizeof mesh};
    orvex_material_info material = {.size = sizeof material};
    orvex_texture_info texture = {.size = sizeof texture};
    const char* path = NULL;
    CHECK_OK(orvex_model_get_info(model, &info));
    CHECK(info.mesh_count == 1 && info.material_count == 1 && info.texture_count == 1);
    CHECK(info.vertex_count >= 4 && info.face_count == 2 && info.point_count == 0);
    CHECK(info.up_axis == ORVEX_UP_Y && info.file_up_axis == ORVEX_UP_Y && info.loader[0] != '\0');
    CHECK(info.bounds_min[0] == -1 && info.bounds_max[1] == 1 && info.bounds_max[2] == 0);
    CHECK_OK(orvex_model_get_mesh(model, 0, &mesh));
    CHECK(mesh.face_count == 2 && mesh.bounds_min[1] == -1);
    CHECK_OK(orvex_model_get_material(model, 0, &material));
    CHECK(strcmp(material.name, "red") == 0 && material.diffuse[0] == 1 && material.opacity == 1);
    CHECK(material.texture_count == 1 && material.textures[0] == 0);
    CHECK_OK(orvex_model_get_texture(model, 0, &texture));
    CHECK(strcmp(texture.name, "missing.png") == 0 && texture.reason[0] != '\0');
    CHECK(texture.width == 0 && texture.height == 0);
    CHECK(info.file_count >= 2);
    CHECK_OK(orvex_model_get_file(model, 0, &path));
    CHECK(strstr(path, "square.obj") != NULL);
    end_stage(&all);
}

static void indices_beyond_the_end_are_refused(void) {
    stage all = begin_engine();
    orvex_model model = load_square(all.engine);
    orvex_mesh_info mesh = {.size = sizeof mesh};
    orvex_material_info material = {.size = sizeof material};
    orvex_texture_info texture = {.size = sizeof texture};
    const char* words = NULL;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_model_get_mesh(model, 1, &mesh));
    CHECK_SAYS("index is 1: there are 1");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_model_get_material(model, (size_t)-1, &material));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_model_get_texture(model, 1, &texture));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_model_get_note(model, 99, &words));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_model_get_file(model, 99, &words));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_model_get_info(model, NULL));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_model_get_mesh(model, 0, NULL));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_model_get_material(model, 0, NULL));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_model_get_texture(model, 0, NULL));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_model_get_file(model, 0, NULL));
    end_stage(&all);
}

static void what_is_odd_is_noted(void) {
    stage all = begin_engine();
    orvex_model model = NULL;
    orvex_model_info info = {.size = sizeof info};
    const char* note = NULL;
    CHECK_OK(orvex_model_load(
        all.engine, written("flat.obj", "v 0 0 0\nv 1 0 0\nv 2 0 0\nf 1 2 3\n"), NULL, &model));
    CHECK_OK(orvex_model_get_info(model, &info));
    CHECK(info.note_count > 0);
    CHECK_OK(orvex_model_get_note(model, 0, &note));
    CHECK(note && note[0] != '\0');
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_model_get_note(model, 0, NULL));
    end_stage(&all);
}

static void a_file_that_is_none_is_named(void) {
    stage all = begin_engine();
    orvex_model model = (orvex_model)&all;
    orvex_model_options options = {.size = sizeof options, .loader = "nobody"};
    CHECK_RESULT(ORVEX_ERROR_FILE, orvex_model_load(all.engine, "/no/such.obj", NULL, &model));
    CHECK_SAYS("/no/such.obj");
    CHECK(model == NULL);
    CHECK_RESULT(ORVEX_ERROR_FILE,
                 orvex_model_load(all.engine, written("none.obj", "\x01\x02"), NULL, &model));
    CHECK_SAYS("none.obj");
    CHECK_RESULT(ORVEX_ERROR_FILE,
                 orvex_model_load(all.engine, written("a.obj", "v 0 0 0\n"), &options, &model));
    CHECK_SAYS("no loader is called nobody");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_model_load(all.engine, NULL, NULL, &model));
    options.loader = NULL;
    options.normals = 4;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_model_load(all.engine, "a.obj", &options, &model));
    CHECK_SAYS("options->normals is 4");
    options.normals = 0;
    options.allow_outside = -1;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_model_load(all.engine, "a.obj", &options, &model));
    CHECK_SAYS("options->allow_outside is -1");
    end_stage(&all);
}

static void a_model_stands_where_its_transform_says(void) {
    stage all = begin_engine();
    orvex_model model = load_square(all.engine);
    double low[3], high[3];
    float matrix[16] = {2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 5, 6, 7, 1};
    orvex_model_info info = {.size = sizeof info};
    CHECK_OK(orvex_model_set_transform(model, matrix));
    CHECK_OK(orvex_model_get_extent(model, low, high));
    CHECK(low[0] == 3 && high[0] == 7 && low[1] == 4 && high[1] == 8 && low[2] == 7);
    CHECK_OK(orvex_model_get_info(model, &info));
    CHECK(info.bounds_max[0] == 1);
    CHECK_OK(orvex_model_stand_up(model));
    CHECK_OK(orvex_model_get_extent(model, low, high));
    CHECK(low[0] == 3 && high[0] == 7);
    CHECK_OK(orvex_model_set_transform(model, NULL));
    CHECK_OK(orvex_model_get_extent(model, low, high));
    CHECK(low[0] == -1 && high[0] == 1);
    matrix[5] = NAN;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_model_set_transform(model, matrix));
    CHECK_SAYS("matrix[5] is nan");
    matrix[5] = 1;
    matrix[7] = 1;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_model_set_transform(model, matrix));
    CHECK_SAYS("0 0 0 1");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_model_get_extent(model, NULL, high));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_model_get_extent(model, low, NULL));
    end_stage(&all);
}

static void a_ray_meets_the_nearest_of_several_models(void) {
    stage all = begin_engine();
    orvex_model models[2] = {load_square(all.engine), new_square(all.engine)};
    const float nearer[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0.5f, 0, 2, 1};
    const double from[3] = {0.25, 0.5, 10}, beside[3] = {-0.75, 0.5, 10}, away[3] = {9, 9, 10};
    const double way[3] = {0, 0, -2};
    orvex_pick pick = {.size = sizeof pick};
    CHECK_OK(orvex_model_set_transform(models[1], nearer));
    CHECK_OK(orvex_pick_ray(models, 2, from, way, &pick));
    CHECK(pick.hit == 1 && pick.model == 1 && pick.mesh == 0 && pick.object == 1);
    CHECK(pick.distance == 4 && pick.point[2] == 2 && pick.material == -1);
    CHECK(fabs(pick.barycentric[0] + pick.barycentric[1] + pick.barycentric[2] - 1) < 1e-6);
    CHECK_OK(orvex_pick_ray(models, 2, beside, way, &pick));
    CHECK(pick.hit == 1 && pick.model == 0 && pick.material == 0 && pick.face == 1);
    CHECK_OK(orvex_pick_ray(models, 2, away, way, &pick));
    CHECK(pick.hit == 0 && pick.distance == 0);
    end_stage(&all);
}

static void rays_that_are_none_are_refused(void) {
    stage all = begin_engine();
    orvex_model model = new_square(all.engine);
    const double zero[3] = {0, 0, 0}, bad[3] = {0, INFINITY, 0};
    orvex_pick pick = {.size = sizeof pick};
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_pick_ray(&model, 1, zero, zero, &pick));
    CHECK_SAYS("direction is 0 0 0");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_pick_ray(&model, 1, bad, zero, &pick));
    CHECK_SAYS("origin[1] is inf");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_pick_ray(&model, 1, NULL, zero, &pick));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_pick_ray(&model, 1, zero, NULL, &pick));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_pick_ray(NULL, 1, zero, zero, &pick));
    end_stage(&all);
}

void model_tests(void) {
    RUN(a_model_tells_what_it_holds);
    RUN(indices_beyond_the_end_are_refused);
    RUN(what_is_odd_is_noted);
    RUN(a_file_that_is_none_is_named);
    RUN(a_model_stands_where_its_transform_says);
    RUN(a_ray_meets_the_nearest_of_several_models);
    RUN(rays_that_are_none_are_refused);
}
