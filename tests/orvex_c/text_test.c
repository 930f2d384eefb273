// Text over a picture.

#include "check.h"

#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static void a_text_is_drawn_over_the_picture(void) {
    stage all = begin_stage();
    orvex_camera camera = new_camera();
    orvex_text text = NULL;
    orvex_text_style style = {.size = sizeof style, .line_height = 30, .color = {1, 0, 0, 1}};
    static unsigned char before[32][32][4], after[32][32][4];
    int red = 0;
    camera.eye[2] = 5;
    CHECK_OK(orvex_text_create(all.view, NULL, &text));
    CHECK_OK(orvex_view_draw(all.view, &camera, NULL, 0));
    CHECK_OK(orvex_view_read(all.view, before, 0));
    CHECK_OK(orvex_text_add(text, "MM", 1, 1, &style));
    CHECK_OK(orvex_text_draw(text));
    CHECK_OK(orvex_view_read(all.view, after, 0));
    for (int i = 0; i < 32 * 32; ++i)
        red += after[i / 32][i % 32][0] > 200 && after[i / 32][i % 32][1] < 60;
    CHECK(red > 20 && memcmp(before, after, sizeof before) != 0);
    CHECK_OK(orvex_view_draw(all.view, &camera, NULL, 0));
    CHECK_OK(orvex_text_draw(text));
    CHECK_OK(orvex_view_read(all.view, after, 0));
    CHECK(memcmp(before, after, sizeof before) == 0);
    CHECK_OK(orvex_text_destroy(text));
    end_stage(&all);
}

static void a_text_tells_what_room_it_takes(void) {
    stage all = begin_stage();
    orvex_text text = NULL;
    orvex_text_extent one = {.size = sizeof one}, two = {.size = sizeof two};
    orvex_text_style style = {.size = sizeof style, .line_height = 48, .align = ORVEX_ALIGN_RIGHT};
    CHECK_OK(orvex_text_create(all.view, NULL, &text));
    CHECK_OK(orvex_text_measure(text, "word", NULL, &one));
    CHECK_OK(orvex_text_measure(text, "word\nword \xff", &style, &two));
    CHECK(one.line_count == 1 && one.width > 20 && one.height > 10 && one.invalid_bytes == 0);
    CHECK(two.line_count == 2 && two.width > one.width * 1.9f && two.invalid_bytes == 1);
    style.wrap_width = 1;
    style.line_spacing = 2;
    CHECK_OK(orvex_text_measure(text, "a b", &style, &two));
    CHECK(two.line_count == 2);
    end_stage(&all);
}

static void bad_texts_are_refused(void) {
    stage all = begin_stage();
    orvex_text text = NULL;
    orvex_text_extent room = {.size = sizeof room};
    orvex_text_style style = {.size = sizeof style};
    CHECK_RESULT(ORVEX_ERROR_FILE, orvex_text_create(all.view, "/no/such.xml", &text));
    CHECK_SAYS("/no/such.xml");
    CHECK(text == NULL);
    CHECK_OK(orvex_text_create(all.view, NULL, &text));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_text_add(text, NULL, 0, 0, NULL));
    CHECK_SAYS("string is null");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_text_add(text, "a", NAN, 0, NULL));
    style.line_height = -1;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_text_add(text, "a", 0, 0, &style));
    CHECK_SAYS("style->line_height is -1");
    style.line_height = 0;
    style.align = 3;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_text_add(text, "a", 0, 0, &style));
    style.align = 0;
    style.color[1] = 2;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_text_add(text, "a", 0, 0, &style));
    CHECK_SAYS("style->color[1] is 2");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_text_measure(text, NULL, NULL, &room));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_text_measure(text, "a", NULL, NULL));
    end_stage(&all);
}

static void a_font_without_its_sheet_is_refused(void) {
    stage all = begin_stage();
    orvex_text text = (orvex_text)&all;
    char path[300], sheet[300], sentence[700];
    strcpy(sheet, file_in_folder("no_sheet.png"));
    strcpy(path,
           written("bare.xml", "<font><common lineHeight=\"9\" scaleW=\"8\" scaleH=\"8\"/><pages>"
                               "<page id=\"0\" file=\"no_sheet.png\"/></pages></font>"));
    CHECK_RESULT(ORVEX_ERROR_FILE, orvex_text_create(all.view, path, &text));
    snprintf(sentence, sizeof sentence, "%s: its sheet %s can't be read as a picture", path, sheet);
    CHECK(strcmp(orvex_last_error(), sentence) == 0);
    CHECK(text == NULL);
    end_stage(&all);
}

#if CAN_LIMIT_MEMORY
static void memory_that_runs_out_is_told_and_the_text_goes_on(void) {
    stage all = begin_stage();
    const size_t length = 200000;
    char* const words = malloc(length + 1);
    orvex_text text = NULL;
    CHECK(words != NULL);
    if (!words)
        return;
    memset(words, 'A', length);
    words[length] = '\0';
    CHECK_OK(orvex_text_create(all.view, NULL, &text));
    limit_memory((size_t)16 << 20);
    CHECK_RESULT(ORVEX_ERROR_MEMORY, orvex_text_add(text, words, 1, 1, NULL));
    end_limit();
    CHECK(strcmp(orvex_last_error(), "there isn't enough memory") == 0);
    CHECK_OK(orvex_text_add(text, words, 1, 1, NULL));
    limit_memory((size_t)16 << 20);
    CHECK_RESULT(ORVEX_ERROR_MEMORY, orvex_text_draw(text));
    end_limit();
    CHECK(strcmp(orvex_last_error(), "there isn't enough memory for the text") == 0);
    CHECK_OK(orvex_text_add(text, "A", 1, 1, NULL));
    CHECK_OK(orvex_text_draw(text));
    CHECK_OK(orvex_text_destroy(text));
    free(words);
    end_stage(&all);
}
#endif

void text_tests(void) {
    share_stage();
    RUN(a_text_is_drawn_over_the_picture);
    RUN(a_text_tells_what_room_it_takes);
    RUN(bad_texts_are_refused);
    RUN(a_font_without_its_sheet_is_refused);
#if CAN_LIMIT_MEMORY
    RUN(memory_that_runs_out_is_told_and_the_text_goes_on);
#endif
    end_sharing();
}
