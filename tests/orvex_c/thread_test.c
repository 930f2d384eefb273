// Other threads, and processes that are forked off.

#define _POSIX_C_SOURCE 200809L

#include "check.h"

#include <pthread.h>
#include <stdio.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

typedef struct outcome {
    stage all;
    orvex_model model;
    orvex_result results[4];
    char sentence[200];
    char other[200];
} outcome;

static void* use_from_another_thread(void* argument) {
    outcome* const told = argument;
    orvex_model_info info = {.size = sizeof info};
    orvex_engine second = NULL;
    size_t count = 0;
    told->results[0] = orvex_model_get_info(told->model, &info);
    snprintf(told->sentence, sizeof told->sentence, "%s", orvex_last_error());
    told->results[1] = orvex_engine_stop(told->all.engine);
    told->results[2] = orvex_engine_start(NULL, &second);
    snprintf(told->other, sizeof told->other, "%s", orvex_last_error());
    // What needs no handle may be called on any thread.
    told->results[3] = orvex_look_count(&count);
    return NULL;
}

static void run_beside(void* (*work)(void*), void* argument) {
    pthread_t thread;
    CHECK(pthread_create(&thread, NULL, work, argument) == 0);
    CHECK(pthread_join(thread, NULL) == 0);
}

static void another_thread_is_refused(void) {
    outcome told = {.all = begin_stage()};
    orvex_model_info info = {.size = sizeof info};
    told.model = new_square(told.all.engine);
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_look_count(NULL));
    run_beside(use_from_another_thread, &told);
    // Each has its own last error.
    CHECK_SAYS("count is null");
    CHECK(told.results[0] == ORVEX_ERROR_THREAD && told.results[1] == ORVEX_ERROR_THREAD);
    CHECK(strstr(told.sentence, "belongs to the thread that started it") != NULL);
    CHECK(told.results[2] == ORVEX_ERROR_ENGINE && told.results[3] == ORVEX_OK);
    CHECK(strstr(told.other, "on another thread") != NULL);
    CHECK_OK(orvex_model_get_info(told.model, &info));
    end_stage(&told.all);
}

static void* draw_on_this_thread(void* argument) {
    orvex_camera camera = new_camera();
    stage all = begin_stage();
    orvex_model model = new_square(all.engine);
    static unsigned char pixels[32][32][4];
    (void)argument;
    camera.eye[2] = 5;
    CHECK_OK(orvex_view_draw(all.view, &camera, &model, 1));
    CHECK_OK(orvex_view_read(all.view, pixels, 0));
    end_stage(&all);
    return NULL;
}

static void the_next_engine_may_belong_to_another_thread(void) {
    stage all = begin_engine();
    end_stage(&all);
    run_beside(draw_on_this_thread, NULL);
    all = begin_engine();
    end_stage(&all);
}

/// Forks, and runs a part of it in the child. @return whether that holds
static int holds_in_child(int (*part)(const outcome*), const outcome* told) {
    int status = -1;
    pid_t child;
    fflush(stdout);
    child = fork();
    if (child == 0)
        _exit(part(told) ? 0 : 1);
    CHECK(child > 0 && waitpid(child, &status, 0) == child);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

static int is_refused_here(const outcome* told) {
    orvex_engine engine = NULL;
    orvex_camera camera = new_camera();
    double pose[16];
    unsigned char pixels[4];
    camera.eye[2] = 5;
    return orvex_view_draw(told->all.view, &camera, &told->model, 1) == ORVEX_ERROR_FORK &&
           strstr(orvex_last_error(), "forked off while an engine ran") != NULL &&
           orvex_view_read(told->all.view, pixels, 0) == ORVEX_ERROR_FORK &&
           orvex_model_destroy(told->model) == ORVEX_ERROR_FORK &&
           orvex_engine_stop(told->all.engine) == ORVEX_ERROR_FORK &&
           orvex_engine_start(NULL, &engine) == ORVEX_ERROR_FORK && engine == NULL &&
           orvex_camera_pose(&camera, pose) == ORVEX_OK;
}

static int is_refused_a_start_here(const outcome* told) {
    orvex_engine engine = NULL;
    return !told && orvex_engine_start(NULL, &engine) == ORVEX_ERROR_FORK && engine == NULL &&
           strstr(orvex_last_error(), "forked off after the driver had started") != NULL;
}

static int is_refused_a_list_here(const outcome* told) {
    size_t count = 7;
    return orvex_device_count(&count) == ORVEX_ERROR_FORK && count == 7 &&
           strstr(orvex_last_error(), "forked off") != NULL &&
           (told || is_refused_a_start_here(told));
}

static void a_child_process_is_refused_and_its_parent_draws_on(void) {
    outcome told = {.all = begin_stage()};
    orvex_camera camera = new_camera();
    static unsigned char before[32][32][4], after[32][32][4];
    camera.eye[2] = 5;
    told.model = new_square(told.all.engine);
    CHECK_OK(orvex_view_draw(told.all.view, &camera, &told.model, 1));
    CHECK_OK(orvex_view_read(told.all.view, before, 0));
    CHECK(holds_in_child(is_refused_here, &told));
    CHECK(holds_in_child(is_refused_a_list_here, &told));
    CHECK_OK(orvex_view_draw(told.all.view, &camera, &told.model, 1));
    CHECK_OK(orvex_view_read(told.all.view, after, 0));
    CHECK(memcmp(before, after, sizeof before) == 0);
    end_stage(&told.all);
}

static int starts_here(const outcome* told) {
    orvex_engine_options options = {.size = sizeof options, .skip_plugins = 1};
    orvex_engine engine = NULL;
    return !told && orvex_engine_start(&options, &engine) == ORVEX_OK &&
           orvex_engine_stop(engine) == ORVEX_OK;
}

static void a_child_process_that_came_before_the_first_view_has_its_own_engine(void) {
    stage all = begin_engine();
    end_stage(&all);
    CHECK(holds_in_child(starts_here, NULL));
}

static void a_child_process_that_came_after_a_view_is_refused_though_the_engine_was_stopped(void) {
    stage all = begin_stage();
    end_stage(&all);
    CHECK(holds_in_child(is_refused_a_start_here, NULL));
    all = begin_stage();
    end_stage(&all);
}

static int lists_here(const outcome* told) {
    size_t count = 0;
    return !told && orvex_device_count(&count) == ORVEX_OK && count > 0;
}

static void a_child_process_may_list_devices_and_its_parent_start_views(void) {
    CHECK(holds_in_child(lists_here, NULL));
    CHECK(holds_in_child(starts_here, NULL));
}

static void a_child_process_that_came_after_a_list_of_devices_is_refused(void) {
    size_t count = 0;
    CHECK_OK(orvex_device_count(&count));
    CHECK(holds_in_child(is_refused_a_list_here, NULL));
}

/// Comes before all others: there has been no view yet.
void early_thread_tests(void) {
    RUN(a_child_process_that_came_before_the_first_view_has_its_own_engine);
    RUN(a_child_process_may_list_devices_and_its_parent_start_views);
    RUN(a_child_process_that_came_after_a_list_of_devices_is_refused);
}

void thread_tests(void) {
    RUN(another_thread_is_refused);
    RUN(the_next_engine_may_belong_to_another_thread);
    RUN(a_child_process_is_refused_and_its_parent_draws_on);
    RUN(a_child_process_that_came_after_a_view_is_refused_though_the_engine_was_stopped);
}
