#define _POSIX_C_SOURCE 200809L

#include "check.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

static int failures = 0;
static int tests = 0;
static char folder[] = "/tmp/orvex_c_test_XXXXXX";
static char path[512];

void check_that(int holds, const char* condition, const char* file, int line) {
    if (holds)
        return;
    ++failures;
    printf("%s:%d: doesn't hold: %s (last error: %s)\n", file, line, condition, orvex_last_error());
}

void check_result(orvex_result expected, orvex_result result, const char* call, const char* file,
                  int line) {
    const int has_sentence = orvex_last_error()[0] != '\0';
    if (result == expected && has_sentence == (result != ORVEX_OK))
        return;
    ++failures;
    printf("%s:%d: %s in place of %s: %s (\"%s\")\n", file, line, orvex_result_name(result),
           orvex_result_name(expected), call, orvex_last_error());
}

void check_says(const char* part, const char* file, int line) {
    if (strstr(orvex_last_error(), part))
        return;
    ++failures;
    printf("%s:%d: \"%s\" isn't in \"%s\"\n", file, line, part, orvex_last_error());
}

void run_test(const char* name, void (*test)(void)) {
    const int before = failures;
    ++tests;
    test();
    printf("[%s] %s\n", failures == before ? " ok " : "FAIL", name);
    fflush(stdout);
}

const char* file_in_folder(const char* name) {
    snprintf(path, sizeof(path), "%s/%s", folder, name);
    return path;
}

const char* written(const char* name, const char* text) {
    FILE* const file = fopen(file_in_folder(name), "wb");
    CHECK(file != NULL);
    if (file) {
        fputs(text, file);
        fclose(file);
    }
    return path;
}

size_t read_start(const char* from, unsigned char* bytes, size_t size) {
    FILE* const file = fopen(from, "rb");
    size_t count = 0;
    if (file) {
        count = fread(bytes, 1, size, file);
        fclose(file);
    }
    return count;
}

static stage shared = {NULL, NULL};

static stage renewed(void) {
    const float grey[4] = {0.17f, 0.19f, 0.22f, 1};
    CHECK_OK(orvex_view_resize(shared.view, 32, 32));
    CHECK_OK(orvex_view_set_background(shared.view, grey));
    CHECK_OK(orvex_view_set_look(shared.view, "lit"));
    return shared;
}

stage begin_engine(void) {
    stage all = {NULL, NULL};
    orvex_engine_options options = {.size = sizeof options, .skip_plugins = 1};
    if (shared.engine)
        return shared;
    CHECK_OK(orvex_engine_start(&options, &all.engine));
    return all;
}

stage begin_stage(void) {
    stage all;
    if (shared.engine)
        return renewed();
    all = begin_engine();
    CHECK_OK(orvex_view_create(all.engine, 32, 32, NULL, &all.view));
    return all;
}

void end_stage(const stage* all) {
    if (!shared.engine)
        CHECK_OK(orvex_engine_stop(all->engine));
}

void share_stage(void) {
    shared = begin_stage();
}

void end_sharing(void) {
    const stage all = shared;
    shared.engine = NULL;
    end_stage(&all);
}

orvex_camera new_camera(void) {
    orvex_camera camera = {.size = sizeof camera};
    return camera;
}

orvex_model new_square(orvex_engine engine) {
    static const float places[] = {-1, -1, 0, 1, -1, 0, 1, 1, 0, -1, 1, 0};
    static const uint32_t faces[] = {0, 1, 2, 0, 2, 3};
    orvex_mesh_data data = {.size = sizeof data, .vertex_count = 4, .face_count = 2};
    orvex_model model = NULL;
    data.positions.data = places;
    data.faces.data = faces;
    CHECK_OK(orvex_mesh_create(engine, &data, &model));
    return model;
}

#if CAN_LIMIT_MEMORY
static struct rlimit whole;

void limit_memory(size_t more) {
    struct rlimit limit;
    unsigned long pages = 0;
    FILE* const file = fopen("/proc/self/statm", "r");
    CHECK(file && fscanf(file, "%lu", &pages) == 1);
    if (file)
        fclose(file);
    CHECK(getrlimit(RLIMIT_AS, &whole) == 0);
    limit = whole;
    limit.rlim_cur = (rlim_t)pages * (rlim_t)sysconf(_SC_PAGESIZE) + more;
    CHECK(setrlimit(RLIMIT_AS, &limit) == 0);
}

void end_limit(void) {
    CHECK(setrlimit(RLIMIT_AS, &whole) == 0);
}
#endif

static void remove_folder(void) {
    char command[600];
    snprintf(command, sizeof(command), "rm -rf '%s'", folder);
    CHECK(system(command) == 0);
}

static void all_tests(void) {
    early_thread_tests();
    record_tests();
    camera_tests();
    picture_tests();
    engine_tests();
    handle_tests();
    view_tests();
    model_tests();
    mesh_tests();
    layer_tests();
    text_tests();
    thread_tests();
}

/// @param arguments  "no-driver" where the environment lets none be found
int main(int count, char** arguments) {
    if (!mkdtemp(folder))
        return 2;
    if (count > 1 && strcmp(arguments[1], "no-driver") == 0)
        no_driver_tests();
    else
        all_tests();
    remove_folder();
    printf("%d tests, %d failures\n", tests, failures);
    return failures == 0 && tests > 0 ? 0 : 1;
}
