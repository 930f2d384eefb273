// Pictures of the caller's to files.

#include "check.h"

#include <string.h>

/// Four pixels, two in a row, with a gap behind each row.
static const unsigned char pixels[2][12] = {{255, 0, 0, 255, 0, 255, 0, 255},
                                            {0, 0, 255, 255, 9, 9, 9, 128}};

static orvex_picture small_picture(void) {
    orvex_picture picture = {
        .size = sizeof picture, .width = 2, .height = 2, .rows = pixels, .row_bytes = 12};
    return picture;
}

static void a_picture_is_written_by_its_suffix(void) {
    const orvex_picture picture = small_picture();
    unsigned char start[8] = {0};
    CHECK_OK(orvex_picture_write(&picture, file_in_folder("a.png"), NULL));
    CHECK(read_start(file_in_folder("a.png"), start, 8) == 8);
    CHECK(memcmp(start, "\x89PNG\r\n\x1a\n", 8) == 0);
    CHECK_OK(orvex_picture_write(&picture, file_in_folder("a.jpg"), NULL));
    CHECK(read_start(file_in_folder("a.jpg"), start, 2) == 2 && start[0] == 0xff);
    CHECK_OK(orvex_picture_write(&picture, file_in_folder("a.npy"), NULL));
    CHECK(read_start(file_in_folder("a.npy"), start, 6) == 6 && memcmp(start, "\x93NUMPY", 6) == 0);
}

static void a_word_tells_the_format(void) {
    const orvex_picture picture = small_picture();
    orvex_write_options options = {.size = sizeof options, .format = "raw"};
    unsigned char bytes[32] = {0};
    CHECK_OK(orvex_picture_write(&picture, file_in_folder("pixels"), &options));
    CHECK(read_start(file_in_folder("pixels"), bytes, sizeof bytes) == 16);
    CHECK(memcmp(bytes, pixels[0], 8) == 0 && memcmp(bytes + 8, pixels[1], 8) == 0);
    options.format = "gif";
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT,
                 orvex_picture_write(&picture, file_in_folder("pixels"), &options));
    CHECK_SAYS("options->format is gif");
}

static void rows_may_lie_the_other_way_round(void) {
    orvex_picture picture = small_picture();
    orvex_write_options options = {.size = sizeof options, .format = "raw"};
    unsigned char bytes[16] = {0};
    picture.rows = pixels[1];
    picture.row_bytes = -12;
    CHECK_OK(orvex_picture_write(&picture, file_in_folder("turned"), &options));
    CHECK(read_start(file_in_folder("turned"), bytes, sizeof bytes) == 16);
    CHECK(memcmp(bytes, pixels[1], 8) == 0 && memcmp(bytes + 8, pixels[0], 8) == 0);
}

static void samples_may_be_of_16_bits_or_ids(void) {
    const uint16_t deep[2] = {0x0102, 0xfffe};
    const int32_t ids[2] = {-1, 0x01020304};
    const struct {
        orvex_type type;
        const void* rows;
        size_t size;
        const char* word;
    } kinds[] = {{ORVEX_TYPE_U16, deep, sizeof deep, "'descr': '<u2'"},
                 {ORVEX_TYPE_I32, ids, sizeof ids, "'descr': '<i4'"}};
    for (int i = 0; i < 2; ++i) {
        orvex_picture picture = {
            .size = sizeof picture, .width = 2, .height = 1, .channels = 1, .type = kinds[i].type};
        char bytes[200] = "";
        size_t size = 0;
        picture.rows = kinds[i].rows;
        CHECK_OK(orvex_picture_write(&picture, file_in_folder("samples.npy"), NULL));
        size = read_start(file_in_folder("samples.npy"), (unsigned char*)bytes, sizeof bytes - 1);
        CHECK(size == 128 + kinds[i].size && strstr(bytes + 10, kinds[i].word) != NULL);
        CHECK(memcmp(bytes + 128, kinds[i].rows, kinds[i].size) == 0);
    }
}

static void what_cannot_be_written_is_named(void) {
    const orvex_picture picture = small_picture();
    CHECK_RESULT(ORVEX_ERROR_FILE, orvex_picture_write(&picture, "/no/such/folder/a.png", NULL));
    CHECK_SAYS("/no/such/folder/a.png");
    CHECK_RESULT(ORVEX_ERROR_FILE, orvex_picture_write(&picture, file_in_folder("a.txt"), NULL));
    CHECK_SAYS("a.txt");
}

static void bad_pictures_are_refused(void) {
    orvex_picture picture = small_picture();
    const char* const path = file_in_folder("bad.png");
    orvex_write_options options = {.size = sizeof options, .jpeg_quality = 101};
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_picture_write(NULL, path, NULL));
    CHECK_SAYS("picture is null");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_picture_write(&picture, NULL, NULL));
    CHECK_SAYS("path is null");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_picture_write(&picture, path, &options));
    CHECK_SAYS("options->jpeg_quality is 101");
    picture.width = -2;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_picture_write(&picture, path, NULL));
    CHECK_SAYS("picture->width is -2");
    picture.width = 2;
    picture.height = 70000;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_picture_write(&picture, path, NULL));
    CHECK_SAYS("picture->height is 70000");
    picture.height = 2;
    picture.channels = 5;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_picture_write(&picture, path, NULL));
    picture.channels = 0;
    picture.type = ORVEX_TYPE_F64;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_picture_write(&picture, path, NULL));
    CHECK_SAYS("picture->type is 7");
    picture.type = 0;
    picture.row_bytes = 7;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_picture_write(&picture, path, NULL));
    CHECK_SAYS("picture->row_bytes is 7: a row has 8 bytes");
    picture.row_bytes = 0;
    picture.rows = NULL;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_picture_write(&picture, path, NULL));
    CHECK_SAYS("picture->rows is null");
}

static void a_file_of_layers_holds_several(void) {
    const float depth[4] = {1, 2, 3, 4};
    orvex_picture pictures[2] = {small_picture(), small_picture()};
    int32_t can = -1;
    pictures[1].type = ORVEX_TYPE_F32;
    pictures[1].channels = 1;
    pictures[1].rows = depth;
    pictures[1].row_bytes = 0;
    pictures[1].name = "depth";
    pictures[1].letters = "Z";
    CHECK_OK(orvex_picture_can_write("exr", &can));
    CHECK_RESULT(can ? ORVEX_OK : ORVEX_ERROR_FILE,
                 orvex_picture_write_layers(pictures, 2, file_in_folder("a.exr"), NULL));
    CHECK_RESULT(ORVEX_ERROR_FILE,
                 orvex_picture_write_layers(pictures, 2, file_in_folder("layers.png"), NULL));
    pictures[1].rows = NULL;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT,
                 orvex_picture_write_layers(pictures, 2, file_in_folder("a.exr"), NULL));
    CHECK_SAYS("pictures[1]->rows is null");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT,
                 orvex_picture_write_layers(NULL, 2, file_in_folder("a.exr"), NULL));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT,
                 orvex_picture_write_layers(pictures, 0, file_in_folder("a.exr"), NULL));
    CHECK_SAYS("count is 0");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_picture_write_layers(pictures, 2, NULL, NULL));
}

static void formats_are_known_by_their_words(void) {
    int32_t can = -1;
    CHECK_OK(orvex_picture_can_write("png", &can));
    CHECK(can == 1);
    CHECK_OK(orvex_picture_can_write("gif", &can));
    CHECK(can == 0);
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_picture_can_write(NULL, &can));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_picture_can_write("png", NULL));
}

void picture_tests(void) {
    RUN(a_picture_is_written_by_its_suffix);
    RUN(a_word_tells_the_format);
    RUN(rows_may_lie_the_other_way_round);
    RUN(samples_may_be_of_16_bits_or_ids);
    RUN(what_cannot_be_written_is_named);
    RUN(bad_pictures_are_refused);
    RUN(a_file_of_layers_holds_several);
    RUN(formats_are_known_by_their_words);
}
