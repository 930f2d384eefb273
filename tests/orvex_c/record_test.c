// Records that are older or newer than the library, and what needs neither engine nor thread.

#include "check.h"

#include <string.h>

static void results_have_names(void) {
    CHECK(strcmp(orvex_result_name(ORVEX_OK), "ORVEX_OK") == 0);
    CHECK(strcmp(orvex_result_name(ORVEX_ERROR_FILE), "ORVEX_ERROR_FILE") == 0);
    CHECK(strcmp(orvex_result_name(ORVEX_ERROR_INTERNAL), "ORVEX_ERROR_INTERNAL") == 0);
    CHECK(strcmp(orvex_result_name(-1), "unknown") == 0);
    CHECK(strcmp(orvex_result_name(99), "unknown") == 0);
}

static void the_library_tells_its_version(void) {
    CHECK(strchr(orvex_version(), '.') != NULL);
}

static void the_last_error_goes_with_the_next_call(void) {
    size_t count = 0;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_look_count(NULL));
    CHECK_SAYS("count is null");
    CHECK(strcmp(orvex_result_name(ORVEX_OK), "ORVEX_OK") == 0);
    CHECK_SAYS("count is null");
    CHECK_OK(orvex_look_count(&count));
    CHECK(orvex_last_error()[0] == '\0');
}

static void a_record_without_its_size_is_refused(void) {
    orvex_layer_info info = {.size = 0};
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_layer_get_info(ORVEX_LAYER_DEPTH, &info));
    CHECK_SAYS("info->size is 0");
    info.size = (size_t)-1;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_layer_get_info(ORVEX_LAYER_DEPTH, &info));
    CHECK_SAYS("info->size is");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_layer_get_info(ORVEX_LAYER_DEPTH, NULL));
    CHECK_SAYS("info is null");
}

static void an_older_record_gets_what_it_has_room_for(void) {
    orvex_layer_info info;
    memset(&info, 0x5a, sizeof info);
    info.size = offsetof(orvex_layer_info, channels);
    CHECK_OK(orvex_layer_get_info(ORVEX_LAYER_DEPTH, &info));
    CHECK(strcmp(info.name, "depth") == 0);
    CHECK(info.size == offsetof(orvex_layer_info, channels));
    CHECK(info.channels == 0x5a5a5a5a);
}

static void a_newer_record_gets_zeros_behind(void) {
    struct {
        orvex_layer_info info;
        int32_t more[4];
    } newer;
    memset(&newer, 0x5a, sizeof newer);
    newer.info.size = sizeof newer;
    CHECK_OK(orvex_layer_get_info(ORVEX_LAYER_NORMAL, &newer.info));
    CHECK(newer.info.channels == 3);
    CHECK(newer.info.size == sizeof newer);
    CHECK(newer.more[0] == 0 && newer.more[3] == 0);
}

static void an_older_record_asks_for_no_more_than_it_has(void) {
    const unsigned char pixel[4] = {1, 2, 3, 4};
    orvex_picture picture = {.size = sizeof picture, .width = 1, .height = 1, .rows = pixel};
    orvex_write_options options;
    memset(&options, 0x5a, sizeof options);
    options.size = offsetof(orvex_write_options, jpeg_quality);
    options.format = "png";
    CHECK_OK(orvex_picture_write(&picture, file_in_folder("older"), &options));
    picture.size = offsetof(orvex_picture, name);
    picture.name = (const char*)1;
    CHECK_OK(orvex_picture_write(&picture, file_in_folder("older"), &options));
}

static void a_newer_record_is_refused_where_it_asks_for_more(void) {
    const unsigned char pixel[4] = {1, 2, 3, 4};
    orvex_picture picture = {.size = sizeof picture, .width = 1, .height = 1, .rows = pixel};
    struct {
        orvex_write_options options;
        int32_t more[2];
    } newer = {{.size = sizeof newer, .format = "png"}, {0, 0}};
    CHECK_OK(orvex_picture_write(&picture, file_in_folder("newer"), &newer.options));
    newer.more[1] = 1;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT,
                 orvex_picture_write(&picture, file_in_folder("newer"), &newer.options));
    CHECK_SAYS("options asks at byte");
}

static void what_is_reserved_is_0(void) {
    const unsigned char pixel[4] = {1, 2, 3, 4};
    orvex_picture picture = {.size = sizeof picture, .width = 1, .height = 1, .rows = pixel};
    orvex_write_options options = {.size = sizeof options, .format = "png", .reserved = 1};
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT,
                 orvex_picture_write(&picture, file_in_folder("reserved"), &options));
    CHECK_SAYS("options->reserved is 1");
}

static void looks_have_names(void) {
    size_t count = 0;
    size_t known = 0;
    const char* name = NULL;
    CHECK_OK(orvex_look_count(&count));
    for (size_t i = 0; i < count; ++i) {
        CHECK_OK(orvex_look_name(i, &name));
        known += strcmp(name, "lit") == 0 || strcmp(name, "wire") == 0;
    }
    CHECK(known == 2);
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_look_name(count, &name));
    CHECK_SAYS("index is");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_look_name(0, NULL));
}

static void layers_have_names_and_types(void) {
    orvex_layer_info info = {.size = sizeof info};
    orvex_layer layer = -1;
    for (orvex_layer i = ORVEX_LAYER_COLOR; i <= ORVEX_LAYER_FACE; ++i) {
        CHECK_OK(orvex_layer_get_info(i, &info));
        CHECK_OK(orvex_layer_named(info.name, &layer));
        CHECK(layer == i);
    }
    CHECK(info.type == ORVEX_TYPE_I32 && info.channels == 1);
    CHECK_OK(orvex_layer_get_info(ORVEX_LAYER_COLOR, &info));
    CHECK(info.type == ORVEX_TYPE_U8 && info.channels == 4);
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_layer_get_info(7, &info));
    CHECK_SAYS("layer is 7");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_layer_get_info(-1, &info));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_layer_named("colour", &layer));
    CHECK_SAYS("name is colour");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_layer_named(NULL, &layer));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_layer_named("depth", NULL));
}

void record_tests(void) {
    RUN(results_have_names);
    RUN(the_library_tells_its_version);
    RUN(the_last_error_goes_with_the_next_call);
    RUN(a_record_without_its_size_is_refused);
    RUN(an_older_record_gets_what_it_has_room_for);
    RUN(a_newer_record_gets_zeros_behind);
    RUN(an_older_record_asks_for_no_more_than_it_has);
    RUN(a_newer_record_is_refused_where_it_asks_for_more);
    RUN(what_is_reserved_is_0);
    RUN(looks_have_names);
    RUN(layers_have_names_and_types);
}
