// Handles that are null, freed, of another kind, of an engine that was stopped, or never were one.

#include "check.h"

#include <stdint.h>
#include <string.h>

static orvex_text new_text(orvex_view view) {
    orvex_text text = NULL;
    CHECK_OK(orvex_text_create(view, NULL, &text));
    return text;
}

/// Every operation that takes a handle answers alike.
static void check_all(orvex_engine engine, orvex_view view, orvex_model model, orvex_text text) {
    orvex_view other_view = NULL;
    orvex_model other_model = NULL;
    orvex_text other_text = NULL;
    orvex_camera camera = new_camera();
    orvex_mesh_data data = {.size = sizeof data};
    orvex_plugin_info plugin = {.size = sizeof plugin};
    orvex_view_info view_info = {.size = sizeof view_info};
    orvex_model_info model_info = {.size = sizeof model_info};
    orvex_mesh_info mesh_info = {.size = sizeof mesh_info};
    orvex_material_info material_info = {.size = sizeof material_info};
    orvex_texture_info texture_info = {.size = sizeof texture_info};
    orvex_text_extent extent = {.size = sizeof extent};
    orvex_pick pick = {.size = sizeof pick};
    const float color[4] = {0, 0, 0, 1};
    double low[3], high[3];
    unsigned char pixels[4];
    size_t count = 0;
    const char* words = NULL;
    camera.eye[2] = 5;
#define REFUSED(call) CHECK_RESULT(ORVEX_ERROR_HANDLE, call)
    REFUSED(orvex_engine_stop(engine));
    REFUSED(orvex_engine_plugin_count(engine, &count));
    REFUSED(orvex_engine_plugin(engine, 0, &plugin));
    REFUSED(orvex_engine_formats(engine, &words));
    REFUSED(orvex_view_create(engine, 8, 8, NULL, &other_view));
    REFUSED(orvex_model_load(engine, "a.obj", NULL, &other_model));
    REFUSED(orvex_mesh_create(engine, &data, &other_model));
    REFUSED(orvex_view_destroy(view));
    REFUSED(orvex_view_get_info(view, &view_info));
    REFUSED(orvex_view_resize(view, 8, 8));
    REFUSED(orvex_view_set_background(view, color));
    REFUSED(orvex_view_set_look(view, "lit"));
    REFUSED(orvex_view_set_look_source(view, NULL, "text"));
    REFUSED(orvex_view_draw(view, &camera, NULL, 0));
    REFUSED(orvex_view_draw_layers(view, &camera, NULL, 0, NULL, 0, NULL));
    REFUSED(orvex_view_read(view, pixels, 0));
    REFUSED(orvex_view_write(view, "a.png", NULL));
    REFUSED(orvex_text_create(view, NULL, &other_text));
    REFUSED(orvex_model_destroy(model));
    REFUSED(orvex_model_get_info(model, &model_info));
    REFUSED(orvex_model_get_mesh(model, 0, &mesh_info));
    REFUSED(orvex_model_get_material(model, 0, &material_info));
    REFUSED(orvex_model_get_texture(model, 0, &texture_info));
    REFUSED(orvex_model_get_note(model, 0, &words));
    REFUSED(orvex_model_get_file(model, 0, &words));
    REFUSED(orvex_model_get_extent(model, low, high));
    REFUSED(orvex_model_stand_up(model));
    REFUSED(orvex_model_set_transform(model, NULL));
    REFUSED(orvex_mesh_update(model, &data));
    REFUSED(orvex_camera_orbit(&model, 1, 8, 8, NULL, &camera));
    REFUSED(orvex_camera_fit(&camera, &model, 1));
    REFUSED(orvex_pick_ray(&model, 1, camera.eye, camera.eye, &pick));
    REFUSED(orvex_text_destroy(text));
    REFUSED(orvex_text_add(text, "a", 0, 0, NULL));
    REFUSED(orvex_text_draw(text));
    REFUSED(orvex_text_measure(text, "a", NULL, &extent));
#undef REFUSED
    CHECK(other_view == NULL && other_model == NULL && other_text == NULL);
}

static void null_handles_are_refused(void) {
    check_all(NULL, NULL, NULL, NULL);
    CHECK_RESULT(ORVEX_ERROR_HANDLE, orvex_view_resize(NULL, 8, 8));
    CHECK_SAYS("the handle of the view is null");
}

static void handles_that_never_were_are_refused(void) {
    stage all = begin_stage();
    int there = 0;
    check_all((orvex_engine)&there, (orvex_view)(uintptr_t)1, (orvex_model)UINTPTR_MAX,
              (orvex_text)&all);
    end_stage(&all);
}

static void handles_of_another_kind_are_refused(void) {
    stage all = begin_stage();
    orvex_model model = new_square(all.engine);
    check_all((orvex_engine)all.view, (orvex_view)model, (orvex_model)all.engine,
              (orvex_text)all.view);
    CHECK_RESULT(ORVEX_ERROR_HANDLE, orvex_view_resize((orvex_view)model, 8, 8));
    CHECK_SAYS("of another kind");
    end_stage(&all);
}

static void freed_handles_are_refused(void) {
    stage all = begin_stage();
    orvex_model model = new_square(all.engine);
    orvex_text text = new_text(all.view);
    orvex_model others[8];
    CHECK_OK(orvex_text_destroy(text));
    CHECK_OK(orvex_view_destroy(all.view));
    CHECK_OK(orvex_model_destroy(model));
    // Whatever takes their places is another.
    for (int i = 0; i < 8; ++i)
        others[i] = new_square(all.engine);
    for (int i = 0; i < 8; ++i)
        CHECK((void*)others[i] != (void*)model && (void*)others[i] != (void*)text);
    CHECK_OK(orvex_engine_stop(all.engine));
    check_all(all.engine, all.view, model, text);
}

static void handles_of_an_engine_that_was_stopped_are_refused(void) {
    stage first = begin_stage();
    orvex_model model = new_square(first.engine);
    orvex_text text = new_text(first.view);
    stage second;
    end_stage(&first);
    check_all(first.engine, first.view, model, text);
    second = begin_engine();
    check_all(first.engine, first.view, model, text);
    CHECK_RESULT(ORVEX_ERROR_HANDLE, orvex_model_destroy(model));
    CHECK_SAYS("its engine was stopped");
    end_stage(&second);
}

static void a_view_ends_with_its_texts_and_leaves_models(void) {
    stage all = begin_stage();
    orvex_model model = new_square(all.engine);
    orvex_text text = new_text(all.view);
    orvex_model_info info = {.size = sizeof info};
    orvex_camera camera = new_camera();
    camera.eye[2] = 5;
    CHECK_OK(orvex_view_draw(all.view, &camera, &model, 1));
    CHECK_OK(orvex_view_destroy(all.view));
    CHECK_RESULT(ORVEX_ERROR_HANDLE, orvex_text_destroy(text));
    CHECK_OK(orvex_model_get_info(model, &info));
    CHECK(info.face_count == 2);
    CHECK_OK(orvex_view_create(all.engine, 8, 8, NULL, &all.view));
    CHECK_OK(orvex_view_draw(all.view, &camera, &model, 1));
    end_stage(&all);
}

static void handles_may_end_in_any_order(void) {
    for (int order = 0; order < 3; ++order) {
        stage all = begin_stage();
        orvex_model model = new_square(all.engine);
        orvex_text text = new_text(all.view);
        orvex_camera camera = new_camera();
        camera.eye[2] = 5;
        CHECK_OK(orvex_view_draw(all.view, &camera, &model, 1));
        for (int step = 0; step < 3; ++step)
            switch ((order + step) % 3) {
            case 0:
                CHECK_OK(orvex_model_destroy(model));
                break;
            case 1:
                CHECK_OK(orvex_view_destroy(all.view));
                break;
            default:
                // It may have ended with its view.
                CHECK(orvex_text_destroy(text) != ORVEX_ERROR_INTERNAL);
            }
        end_stage(&all);
    }
}

static void null_places_for_handles_are_refused(void) {
    stage all = begin_stage();
    orvex_mesh_data data = {.size = sizeof data};
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_view_create(all.engine, 8, 8, NULL, NULL));
    CHECK_SAYS("view is null");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_model_load(all.engine, "a.obj", NULL, NULL));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_mesh_create(all.engine, &data, NULL));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_text_create(all.view, NULL, NULL));
    end_stage(&all);
}

void handle_tests(void) {
    RUN(null_handles_are_refused);
    RUN(handles_that_never_were_are_refused);
    RUN(handles_of_another_kind_are_refused);
    RUN(freed_handles_are_refused);
    RUN(handles_of_an_engine_that_was_stopped_are_refused);
    RUN(a_view_ends_with_its_texts_and_leaves_models);
    RUN(handles_may_end_in_any_order);
    RUN(null_places_for_handles_are_refused);
}
