// Meshes of the caller's numbers, of every kind and wherever they lie.

#include "check.h"

#include <math.h>
#include <string.h>

static orvex_camera front_camera(void) {
    orvex_camera camera = new_camera();
    camera.eye[2] = 5;
    camera.fov = 20;
    return camera;
}

/// The pixel in the middle of a frame of one model, without light.
static void draw_middle(const stage* all, orvex_model model, unsigned char* pixel) {
    static unsigned char pixels[32][32][4];
    orvex_camera camera = front_camera();
    CHECK_OK(orvex_view_set_look(all->view, "plain"));
    CHECK_OK(orvex_view_draw(all->view, &camera, &model, 1));
    CHECK_OK(orvex_view_read(all->view, pixels, 0));
    memcpy(pixel, pixels[16][14], 4);
}

static int is_near(int a, int b) {
    return a - b <= 2 && b - a <= 2;
}

static const float places[12] = {-1, -1, 0, 1, -1, 0, 1, 1, 0, -1, 1, 0};

static orvex_mesh_data square_data(void) {
    static const uint32_t faces[6] = {0, 1, 2, 0, 2, 3};
    orvex_mesh_data data = {.size = sizeof data, .vertex_count = 4, .face_count = 2};
    data.positions.data = places;
    data.faces.data = faces;
    return data;
}

static void a_mesh_is_a_model(void) {
    stage all = begin_engine();
    orvex_mesh_data data = square_data();
    orvex_model_info info = {.size = sizeof info};
    orvex_mesh_info mesh = {.size = sizeof mesh};
    orvex_model model = NULL;
    data.name = "tile";
    CHECK_OK(orvex_mesh_create(all.engine, &data, &model));
    CHECK_OK(orvex_model_get_info(model, &info));
    CHECK(info.mesh_count == 1 && info.vertex_count == 4 && info.face_count == 2);
    CHECK(info.loader[0] == '\0' && info.file_count == 0 && info.up_axis == ORVEX_UP_Y);
    CHECK_OK(orvex_model_get_mesh(model, 0, &mesh));
    CHECK(strcmp(mesh.name, "tile") == 0 && mesh.bounds_min[0] == -1 && mesh.bounds_max[1] == 1);
    CHECK_OK(orvex_model_destroy(model));
    end_stage(&all);
}

static void numbers_may_be_of_every_kind(void) {
    stage all = begin_stage();
    const double wide[12] = {-1, -1, 0, 1, -1, 0, 1, 1, 0, -1, 1, 0};
    const uint8_t u8[6] = {0, 1, 2, 0, 2, 3};
    const uint16_t u16[6] = {0, 1, 2, 0, 2, 3};
    const int32_t i32[6] = {0, 1, 2, 0, 2, 3};
    const int64_t i64[6] = {0, 1, 2, 0, 2, 3};
    const struct {
        const void* data;
        orvex_type type;
    } kinds[4] = {
        {u8, ORVEX_TYPE_U8}, {u16, ORVEX_TYPE_U16}, {i32, ORVEX_TYPE_I32}, {i64, ORVEX_TYPE_I64}};
    for (int i = 0; i < 4; ++i) {
        orvex_mesh_data data = square_data();
        orvex_model model = NULL;
        unsigned char pixel[4];
        data.positions.data = wide;
        data.positions.type = ORVEX_TYPE_F64;
        data.faces.data = kinds[i].data;
        data.faces.type = kinds[i].type;
        CHECK_OK(orvex_mesh_create(all.engine, &data, &model));
        draw_middle(&all, model, pixel);
        CHECK(pixel[0] > 100);
    }
    end_stage(&all);
}

static void numbers_may_lie_in_records_and_backwards(void) {
    stage all = begin_stage();
    typedef struct vertex {
        uint8_t color[4];
        float place[3];
    } vertex;
    const vertex vertices[4] = {{{0, 255, 0, 255}, {-1, 1, 0}},
                                {{0, 255, 0, 255}, {1, 1, 0}},
                                {{0, 255, 0, 255}, {1, -1, 0}},
                                {{0, 255, 0, 255}, {-1, -1, 0}}};
    orvex_mesh_data data = square_data();
    orvex_model model = NULL;
    unsigned char pixel[4];
    data.positions.data = vertices[3].place;
    data.positions.stride = -(ptrdiff_t)sizeof(vertex);
    data.colors.data = vertices;
    data.colors.type = ORVEX_TYPE_U8;
    data.colors.stride = sizeof(vertex);
    CHECK_OK(orvex_mesh_create(all.engine, &data, &model));
    draw_middle(&all, model, pixel);
    CHECK(is_near(pixel[0], 0) && is_near(pixel[1], 255) && is_near(pixel[2], 0));
    end_stage(&all);
}

static void without_faces_every_three_vertices_are_one(void) {
    stage all = begin_stage();
    const float triangle[9] = {-2, -1, 0, 2, -1, 0, 0, 2, 0};
    orvex_mesh_data data = {.size = sizeof data, .vertex_count = 3};
    orvex_model_info info = {.size = sizeof info};
    orvex_model model = NULL;
    unsigned char pixel[4];
    data.positions.data = triangle;
    CHECK_OK(orvex_mesh_create(all.engine, &data, &model));
    CHECK_OK(orvex_model_get_info(model, &info));
    CHECK(info.face_count == 1);
    draw_middle(&all, model, pixel);
    CHECK(pixel[0] > 100);
    end_stage(&all);
}

static void a_mesh_has_a_color_or_those_of_its_vertices(void) {
    stage all = begin_stage();
    const float red[12] = {1, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0};
    const float white[12] = {1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
    orvex_mesh_data data = square_data();
    orvex_model model = NULL;
    unsigned char pixel[4];
    data.color[2] = data.color[3] = 1;
    CHECK_OK(orvex_mesh_create(all.engine, &data, &model));
    draw_middle(&all, model, pixel);
    CHECK(is_near(pixel[0], 0) && is_near(pixel[2], 255));
    data = square_data();
    data.colors.data = red;
    data.colors.components = 3;
    CHECK_OK(orvex_mesh_create(all.engine, &data, &model));
    draw_middle(&all, model, pixel);
    CHECK(is_near(pixel[0], 255) && is_near(pixel[2], 0));
    data.colors.data = white;
    CHECK_OK(orvex_mesh_create(all.engine, &data, &model));
    draw_middle(&all, model, pixel);
    CHECK(is_near(pixel[0], 255) && is_near(pixel[2], 255));
    end_stage(&all);
}

static void a_texture_lies_as_its_coordinates_say(void) {
    stage all = begin_stage();
    // Left blue, right red; the coordinates of the square show the middle of the left half.
    const unsigned char colors[2][2][3] = {{{0, 0, 255}, {255, 0, 0}}, {{0, 0, 255}, {255, 0, 0}}};
    const float left[8] = {0.2f, 0, 0.3f, 0, 0.3f, 1, 0.2f, 1};
    orvex_picture texture = {
        .size = sizeof texture, .width = 2, .height = 2, .channels = 3, .rows = colors};
    orvex_mesh_data data = square_data();
    orvex_model model = NULL;
    unsigned char pixel[4];
    data.texcoords.data = left;
    data.texture = &texture;
    CHECK_OK(orvex_mesh_create(all.engine, &data, &model));
    draw_middle(&all, model, pixel);
    CHECK(pixel[2] > 200 && pixel[0] < 60);
    texture.type = ORVEX_TYPE_U16;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_mesh_create(all.engine, &data, &model));
    CHECK_SAYS("data->texture->type is 2");
    end_stage(&all);
}

static void normals_are_given_smooth_or_flat(void) {
    stage all = begin_stage();
    const float given[12] = {1, 0, 1, 1, 0, 1, 1, 0, 1, 1, 0, 1};
    static float normal[32][32][3];
    orvex_plane plane = {.layer = ORVEX_LAYER_NORMAL, .rows = normal};
    orvex_camera camera = front_camera();
    orvex_mesh_data data = square_data();
    orvex_model model = NULL;
    data.normals.data = given;
    for (orvex_normals shading = ORVEX_NORMALS_AS_GIVEN; shading <= ORVEX_NORMALS_FLAT; ++shading) {
        const int is_given = shading <= ORVEX_NORMALS_FILE;
        data.shading = shading;
        CHECK_OK(orvex_mesh_create(all.engine, &data, &model));
        CHECK_OK(orvex_view_draw_layers(all.view, &camera, &model, 1, &plane, 1, NULL));
        CHECK(fabs(normal[16][16][0] - (is_given ? sqrt(0.5) : 0)) < 1e-3);
        CHECK(fabs(normal[16][16][2] - (is_given ? sqrt(0.5) : 1)) < 1e-3);
    }
    end_stage(&all);
}

static void bad_meshes_are_refused_by_the_number(void) {
    stage all = begin_engine();
    const float bad[12] = {0, 0, 0, 0, 0, 0, 0, NAN, 0, 0, 0, 0};
    const double huge[12] = {0, 0, 0, 1e300, 0, 0, 0, 0, 0, 0, 0, 0};
    const int64_t faces[6] = {0, 1, 2, 0, 2, 4}, negative[6] = {0, 1, 2, 0, -2, 3};
    orvex_model model = NULL;
    orvex_mesh_data data = square_data();
#define REFUSED(says)                                                                              \
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_mesh_create(all.engine, &data, &model));              \
    CHECK_SAYS(says);                                                                              \
    CHECK(model == NULL);                                                                          \
    data = square_data()
    data.positions.data = bad;
    REFUSED("positions[2] holds nan");
    data.positions.data = huge;
    data.positions.type = ORVEX_TYPE_F64;
    REFUSED("positions[1] holds 1");
    data.faces.data = faces;
    data.faces.type = ORVEX_TYPE_I64;
    REFUSED("faces[1] name vertex 4: there are 4");
    data.faces.data = negative;
    data.faces.type = ORVEX_TYPE_I64;
    REFUSED("faces[1] name vertex -2");
    data.positions.type = ORVEX_TYPE_U8;
    REFUSED("positions are numbers of a kind");
    data.faces.type = ORVEX_TYPE_F32;
    REFUSED("faces are numbers of a kind");
    data.positions.components = 2;
    REFUSED("positions have 2 components");
    data.positions.components = -1;
    REFUSED("data->positions.components is -1");
    data.positions.stride = 8;
    REFUSED("positions have a stride of 8 bytes");
    data.positions.type = 8;
    REFUSED("data->positions.type is 8");
    data.positions.data = NULL;
    REFUSED("a mesh without positions");
    data.vertex_count = 0;
    REFUSED("a mesh of 0 vertices");
    data.vertex_count = (size_t)-1;
    REFUSED("18446744073709551615");
    data.face_count = (size_t)1 << 40;
    REFUSED("1099511627776");
    data.face_count = 0;
    REFUSED("a mesh of 0 faces");
    data.faces.data = NULL;
    REFUSED("without faces");
    data.faces.data = NULL;
    data.face_count = 0;
    REFUSED("three vertices for each");
    data.color[0] = 2;
    REFUSED("data->color[0] is 2");
    data.shading = 5;
    REFUSED("data->shading is 5");
#undef REFUSED
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_mesh_create(all.engine, NULL, &model));
    end_stage(&all);
}

static void a_mesh_takes_other_numbers(void) {
    stage all = begin_stage();
    orvex_model model = new_square(all.engine);
    const float larger[12] = {-2, -2, 1, 2, -2, 1, 2, 2, 1, -2, 2, 1};
    const uint8_t green[16] = {0, 255, 0, 255, 0, 255, 0, 255, 0, 255, 0, 255, 0, 255, 0, 255};
    orvex_mesh_data data = {.size = sizeof data};
    orvex_model_info info = {.size = sizeof info};
    const double from[3] = {1.5, 1.5, 10}, way[3] = {0, 0, -1};
    orvex_pick pick = {.size = sizeof pick};
    unsigned char pixel[4];
    draw_middle(&all, model, pixel);
    data.positions.data = larger;
    CHECK_OK(orvex_mesh_update(model, &data));
    CHECK_OK(orvex_model_get_info(model, &info));
    CHECK(info.bounds_max[0] == 2 && info.bounds_min[2] == 1 && info.face_count == 2);
    CHECK_OK(orvex_pick_ray(&model, 1, from, way, &pick));
    CHECK(pick.hit == 1 && pick.distance == 9);
    data.positions.data = NULL;
    data.colors.data = green;
    data.colors.type = ORVEX_TYPE_U8;
    CHECK_OK(orvex_mesh_update(model, &data));
    draw_middle(&all, model, pixel);
    CHECK(is_near(pixel[0], 0) && is_near(pixel[1], 255));
    CHECK_OK(orvex_model_get_info(model, &info));
    CHECK(info.bounds_max[0] == 2);
    end_stage(&all);
}

static void a_mesh_takes_other_counts_and_keeps_its_place(void) {
    stage all = begin_stage();
    orvex_model model = new_square(all.engine);
    const float triangle[9] = {-1, -1, 0, 1, -1, 0, 0, 1, 0};
    const float aside[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 5, 0, 0, 1};
    const uint16_t one_face[3] = {0, 1, 3};
    orvex_mesh_data data = {.size = sizeof data, .face_count = 1};
    orvex_model_info info = {.size = sizeof info};
    double low[3], high[3];
    unsigned char pixel[4];
    draw_middle(&all, model, pixel);
    CHECK_OK(orvex_model_set_transform(model, aside));
    data.faces.data = one_face;
    data.faces.type = ORVEX_TYPE_U16;
    CHECK_OK(orvex_mesh_update(model, &data));
    CHECK_OK(orvex_model_get_info(model, &info));
    CHECK(info.vertex_count == 4 && info.face_count == 1);
    memset(&data, 0, sizeof data);
    data.size = sizeof data;
    data.vertex_count = 3;
    data.positions.data = triangle;
    data.color[0] = data.color[3] = 1;
    CHECK_OK(orvex_mesh_update(model, &data));
    CHECK_OK(orvex_model_get_info(model, &info));
    CHECK(info.vertex_count == 3 && info.face_count == 1 && info.bounds_max[0] == 1);
    CHECK_OK(orvex_model_get_extent(model, low, high));
    CHECK(low[0] == 4 && high[0] == 6);
    CHECK_OK(orvex_model_set_transform(model, NULL));
    draw_middle(&all, model, pixel);
    CHECK(is_near(pixel[0], 255) && is_near(pixel[1], 0));
    end_stage(&all);
}

static void a_bad_update_leaves_the_mesh(void) {
    stage all = begin_engine();
    orvex_model model = new_square(all.engine);
    orvex_model file = NULL;
    const float bad[12] = {9, 9, 9, NAN};
    const uint32_t faces[6] = {0, 1, 2, 0, 2, 4};
    orvex_mesh_data data = {.size = sizeof data};
    orvex_model_info info = {.size = sizeof info};
    data.positions.data = bad;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_mesh_update(model, &data));
    CHECK_SAYS("positions[1] holds nan");
    data.positions.data = NULL;
    data.vertex_count = 9;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_mesh_update(model, &data));
    CHECK_SAYS("without positions");
    data.vertex_count = 0;
    data.face_count = 7;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_mesh_update(model, &data));
    CHECK_SAYS("the number of faces is 7 without faces");
    data.face_count = 2;
    data.faces.data = faces;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_mesh_update(model, &data));
    CHECK_SAYS("faces[1] name vertex 4");
    data.face_count = 0;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_mesh_update(model, &data));
    CHECK_SAYS("the number of faces is 0");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_mesh_update(model, NULL));
    CHECK_OK(orvex_model_get_info(model, &info));
    CHECK(info.bounds_max[0] == 1 && info.vertex_count == 4 && info.face_count == 2);
    CHECK_OK(orvex_model_load(
        all.engine, written("file.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n"), NULL, &file));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_mesh_update(file, &data));
    CHECK_SAYS("a model from a file keeps its numbers");
    end_stage(&all);
}

static void the_texture_and_the_style_stay_with_other_faces(void) {
    stage all = begin_stage();
    const unsigned char blue[4] = {0, 0, 255, 255};
    const float uvs[8] = {0, 0, 1, 0, 1, 1, 0, 1};
    const uint32_t faces[3] = {0, 2, 3};
    orvex_picture texture = {.size = sizeof texture, .width = 1, .height = 1, .rows = blue};
    orvex_mesh_data data = square_data();
    orvex_mesh_info info = {.size = sizeof info};
    orvex_model model = NULL;
    unsigned char pixel[4];
    data.texcoords.data = uvs;
    data.texture = &texture;
    data.name = "tile";
    CHECK_OK(orvex_mesh_create(all.engine, &data, &model));
    draw_middle(&all, model, pixel);
    memset(&data, 0, sizeof data);
    data.size = sizeof data;
    data.face_count = 1;
    data.faces.data = faces;
    CHECK_OK(orvex_mesh_update(model, &data));
    CHECK_OK(orvex_model_get_mesh(model, 0, &info));
    CHECK(strcmp(info.name, "tile") == 0 && info.face_count == 1);
    draw_middle(&all, model, pixel);
    CHECK(pixel[2] > 200 && pixel[0] < 60);
    end_stage(&all);
}

void mesh_tests(void) {
    share_stage();
    RUN(a_mesh_is_a_model);
    RUN(numbers_may_be_of_every_kind);
    RUN(numbers_may_lie_in_records_and_backwards);
    RUN(without_faces_every_three_vertices_are_one);
    RUN(a_mesh_has_a_color_or_those_of_its_vertices);
    RUN(a_texture_lies_as_its_coordinates_say);
    RUN(normals_are_given_smooth_or_flat);
    RUN(bad_meshes_are_refused_by_the_number);
    RUN(a_mesh_takes_other_numbers);
    RUN(a_mesh_takes_other_counts_and_keeps_its_place);
    RUN(a_bad_update_leaves_the_mesh);
    RUN(the_texture_and_the_style_stay_with_other_faces);
    end_sharing();
}
