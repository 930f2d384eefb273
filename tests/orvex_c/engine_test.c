// The engine from its start to its stop, its log, its plugins and the devices.

#include "check.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

typedef struct heard {
    int lines;
    int warm;
    orvex_engine engine;
    orvex_result result;
    char sentence[200];
} heard;

static void hear(void* user, const char* line) {
    heard* const all = user;
    ++all->lines;
    all->warm += strlen(line) > 10;
}

static void an_engine_starts_and_stops(void) {
    orvex_engine engine = NULL;
    CHECK_OK(orvex_engine_start(NULL, &engine));
    CHECK(engine != NULL);
    CHECK_OK(orvex_engine_stop(engine));
    CHECK_RESULT(ORVEX_ERROR_HANDLE, orvex_engine_stop(engine));
    CHECK_OK(orvex_engine_start(NULL, &engine));
    CHECK_OK(orvex_engine_stop(engine));
}

static void a_second_engine_is_refused(void) {
    orvex_engine engine = NULL;
    orvex_engine second = (orvex_engine)&second;
    CHECK_OK(orvex_engine_start(NULL, &engine));
    CHECK_RESULT(ORVEX_ERROR_ENGINE, orvex_engine_start(NULL, &second));
    CHECK_SAYS("an engine runs already, on this thread");
    CHECK(second == NULL);
    CHECK_OK(orvex_engine_stop(engine));
}

/// Asks for a device that isn't there, of which the log tells.
static void make_a_line(orvex_engine engine) {
    orvex_view_options options = {.size = sizeof options, .device = "77"};
    orvex_view view = NULL;
    CHECK_RESULT(ORVEX_ERROR_DRIVER, orvex_view_create(engine, 8, 8, &options, &view));
}

static void a_callback_hears_the_log(void) {
    heard all = {0, 0, NULL, ORVEX_OK, ""};
    orvex_engine_options options = {
        .size = sizeof options, .log = hear, .log_user = &all, .debug_lines = 1};
    orvex_engine engine = NULL;
    CHECK_OK(orvex_engine_start(&options, &engine));
    make_a_line(engine);
    CHECK_OK(orvex_engine_stop(engine));
    CHECK(all.lines > 0 && all.warm == all.lines);
}

static void call_back(void* user, const char* line) {
    heard* const all = user;
    orvex_engine engine = NULL;
    size_t count = 0;
    ++all->lines;
    (void)line;
    all->result = all->engine ? orvex_engine_plugin_count(all->engine, &count)
                              : orvex_engine_start(NULL, &engine);
    snprintf(all->sentence, sizeof all->sentence, "%s", orvex_last_error());
    // What needs no handle may be called.
    CHECK_OK(orvex_look_count(&count));
}

static void a_callback_that_calls_back_is_refused(void) {
    heard all = {0, 0, NULL, ORVEX_OK, ""};
    orvex_engine_options options = {
        .size = sizeof options, .log = call_back, .log_user = &all, .debug_lines = 1};
    orvex_engine engine = NULL;
    CHECK_OK(orvex_engine_start(&options, &engine));
    make_a_line(engine);
    CHECK(all.lines > 0 && all.result == ORVEX_ERROR_CALLBACK);
    CHECK(strstr(all.sentence, "a log callback can't call back") != NULL);
    all.engine = engine;
    all.lines = 0;
    make_a_line(engine);
    CHECK(all.lines > 0 && all.result == ORVEX_ERROR_CALLBACK);
    CHECK_OK(orvex_engine_stop(engine));
}

static void the_log_goes_to_a_file(void) {
    char path[300];
    unsigned char start[8];
    orvex_engine_options options = {.size = sizeof options, .log_file = path};
    orvex_engine engine = NULL;
    snprintf(path, sizeof path, "%s", file_in_folder("log.txt"));
    CHECK_OK(orvex_engine_start(&options, &engine));
    make_a_line(engine);
    CHECK_OK(orvex_engine_stop(engine));
    CHECK(read_start(path, start, sizeof start) == sizeof start);
}

static void bad_options_are_refused_and_leave_no_engine(void) {
    orvex_engine engine = NULL;
    const char* const none[1] = {NULL};
    orvex_engine_options options = {.size = sizeof options, .debug_lines = 2};
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_engine_start(&options, &engine));
    CHECK_SAYS("options->debug_lines is 2");
    options.debug_lines = 0;
    options.plugin_count = 1;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_engine_start(&options, &engine));
    CHECK_SAYS("options->plugins is null");
    options.plugins = none;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_engine_start(&options, &engine));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_engine_start(NULL, NULL));
    CHECK_SAYS("engine is null");
    CHECK(engine == NULL);
}

static void a_plugin_that_is_none_says_why(void) {
    char path[300];
    const char* const plugins[1] = {path};
    orvex_engine_options options = {
        .size = sizeof options, .skip_plugins = 1, .plugins = plugins, .plugin_count = 1};
    orvex_engine engine = NULL;
    orvex_plugin_info info = {.size = sizeof info};
    size_t count = 0;
    snprintf(path, sizeof path, "%s", written("none.so", "no plugin"));
    CHECK_OK(orvex_engine_start(&options, &engine));
    CHECK_OK(orvex_engine_plugin_count(engine, &count));
    CHECK(count == 1);
    CHECK_OK(orvex_engine_plugin(engine, 0, &info));
    CHECK(strcmp(info.path, path) == 0 && info.name[0] == '\0');
    CHECK(strstr(info.reason, "can't be loaded") != NULL);
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_engine_plugin(engine, 1, &info));
    CHECK_SAYS("index is 1");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_engine_plugin(engine, 0, NULL));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_engine_plugin_count(engine, NULL));
    CHECK_OK(orvex_engine_stop(engine));
}

static void an_engine_tells_what_it_reads(void) {
    orvex_engine_options options = {.size = sizeof options, .skip_plugins = 1};
    orvex_engine engine = NULL;
    const char* formats = NULL;
    CHECK_OK(orvex_engine_start(&options, &engine));
    CHECK_OK(orvex_engine_formats(engine, &formats));
    CHECK(strncmp(formats, "OBJ", 3) == 0);
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_engine_formats(engine, NULL));
    CHECK_OK(orvex_engine_stop(engine));
}

static void devices_are_listed(void) {
    orvex_device_info info = {.size = sizeof info};
    size_t count = 0;
    CHECK_OK(orvex_device_count(&count));
    for (size_t i = 0; i < count; ++i) {
        CHECK_OK(orvex_device(i, &info));
        CHECK((info.driver[0] == '\0') == (info.refusal[0] != '\0'));
        CHECK(info.node && info.pci && (info.software == 0 || info.software == 1));
    }
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_device(count, &info));
    CHECK_SAYS("index is");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_device_count(NULL));
}

static void hear_the_environment(void* user, const char* line) {
    const char* const device = getenv("ORVEX_GL_DEVICE");
    heard* const all = user;
    ++all->lines;
    all->warm += strstr(line, "device 77: no such device") != NULL;
    CHECK(device == NULL);
}

static void a_device_is_chosen_without_the_environment(void) {
    heard all = {0, 0, NULL, ORVEX_OK, ""};
    orvex_engine_options options = {
        .size = sizeof options, .log = hear_the_environment, .log_user = &all, .skip_plugins = 1};
    orvex_view_options chosen = {.size = sizeof chosen, .device = "software"};
    orvex_engine engine = NULL;
    orvex_view view = NULL;
    CHECK_OK(orvex_engine_start(&options, &engine));
    make_a_line(engine);
    CHECK_SAYS("the device \"77\" isn't there");
    CHECK(all.warm > 0);
    CHECK_OK(orvex_view_create(engine, 8, 8, &chosen, &view));
    CHECK_OK(orvex_engine_stop(engine));
}

static void without_a_driver_views_say_what_would_help_and_all_else_goes_on(void) {
    const stage all = begin_engine();
    const orvex_path paths[] = {ORVEX_PATH_GL3, ORVEX_PATH_GL2};
    orvex_model model = new_square(all.engine);
    orvex_model_info info = {.size = sizeof info};
    size_t count = 1;
    CHECK_OK(orvex_device_count(&count));
    CHECK(count == 0);
    for (int i = 0; i < 2; ++i) {
        orvex_view_options options = {.size = sizeof options, .path = paths[i]};
        orvex_view view = (orvex_view)&options;
        CHECK_RESULT(ORVEX_ERROR_DRIVER, orvex_view_create(all.engine, 8, 8, &options, &view));
        CHECK_SAYS("no EGL driver is found: install libgl1-mesa-dri");
        CHECK(view == NULL);
    }
    CHECK_OK(orvex_model_get_info(model, &info));
    CHECK(info.face_count == 2);
    end_stage(&all);
}

#if CAN_LIMIT_MEMORY
static void a_view_tells_that_memory_is_short(void) {
    const stage all = begin_engine();
    orvex_view view = (orvex_view)&all;
    limit_memory((size_t)64 << 20);
    CHECK_RESULT(ORVEX_ERROR_MEMORY, orvex_view_create(all.engine, 8, 8, NULL, &view));
    end_limit();
    CHECK(strcmp(orvex_last_error(), "there isn't enough memory for an OpenGL driver") == 0);
    CHECK(view == NULL);
    end_stage(&all);
}
#endif

/// Where no driver can be found. EGL looks for them once in a process.
void no_driver_tests(void) {
    RUN(without_a_driver_views_say_what_would_help_and_all_else_goes_on);
#if CAN_LIMIT_MEMORY
    RUN(a_view_tells_that_memory_is_short);
#endif
}

void engine_tests(void) {
    RUN(an_engine_starts_and_stops);
    RUN(a_second_engine_is_refused);
    RUN(a_callback_hears_the_log);
    RUN(a_callback_that_calls_back_is_refused);
    RUN(the_log_goes_to_a_file);
    RUN(bad_options_are_refused_and_leave_no_engine);
    RUN(a_plugin_that_is_none_says_why);
    RUN(an_engine_tells_what_it_reads);
    RUN(devices_are_listed);
    RUN(a_device_is_chosen_without_the_environment);
}
