// Views off screen and on a context of the host's.

#define _POSIX_C_SOURCE 200809L

#include "check.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <math.h>
#include <pthread.h>
#include <string.h>

static orvex_camera front_camera(void) {
    orvex_camera camera = new_camera();
    camera.eye[2] = 5;
    return camera;
}

static int is_color(const unsigned char* pixel, int r, int g, int b, int a) {
    return pixel[0] == r && pixel[1] == g && pixel[2] == b && pixel[3] == a;
}

static void a_view_tells_what_it_is(void) {
    stage all = begin_stage();
    orvex_view_info info = {.size = sizeof info};
    CHECK_OK(orvex_view_get_info(all.view, &info));
    CHECK(info.width == 32 && info.height == 32 && info.samples >= 1);
    CHECK(info.supersampling == 1 && info.path == ORVEX_PATH_GL3 && info.driver[0] != '\0');
    end_stage(&all);
}

static void options_choose_how_it_draws(void) {
    stage all = begin_stage();
    orvex_view_options options = {.size = sizeof options, .samples = 1};
    orvex_view_info info = {.size = sizeof info};
    orvex_view view = NULL;
    CHECK_OK(orvex_view_create(all.engine, 20, 10, &options, &view));
    CHECK_OK(orvex_view_get_info(view, &info));
    CHECK(info.samples == 1 && info.width == 20 && info.height == 10);
    options.supersampling = 2;
    options.path = ORVEX_PATH_GL2;
    options.depth_bits = 16;
    options.device = "software";
    CHECK_OK(orvex_view_create(all.engine, 20, 10, &options, &view));
    CHECK_OK(orvex_view_get_info(view, &info));
    CHECK(info.supersampling == 2 && info.path == ORVEX_PATH_GL2);
    end_stage(&all);
}

static void a_device_that_is_not_there_is_refused(void) {
    stage all = begin_stage();
    orvex_view_options options = {.size = sizeof options, .device = "77"};
    orvex_view view = NULL;
    CHECK_RESULT(ORVEX_ERROR_DRIVER, orvex_view_create(all.engine, 8, 8, &options, &view));
    CHECK_SAYS("\"77\"");
    CHECK(view == NULL);
    CHECK_OK(orvex_view_create(all.engine, 8, 8, NULL, &view));
    end_stage(&all);
}

static void sizes_that_cannot_be_are_refused(void) {
    stage all = begin_stage();
    orvex_view view = NULL;
    orvex_view_info info = {.size = sizeof info};
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_view_create(all.engine, -3, 8, NULL, &view));
    CHECK_SAYS("width is -3");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_view_create(all.engine, 8, 0, NULL, &view));
    CHECK_SAYS("height is 0");
    CHECK_RESULT(ORVEX_ERROR_DRIVER, orvex_view_create(all.engine, INT32_MAX, 8, NULL, &view));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_view_resize(all.view, 8, -1));
    CHECK_SAYS("height is -1");
    CHECK_RESULT(ORVEX_ERROR_DRIVER, orvex_view_resize(all.view, INT32_MAX, INT32_MAX));
    CHECK_OK(orvex_view_get_info(all.view, &info));
    CHECK(info.width == 32 && info.height == 32);
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_view_get_info(all.view, NULL));
    end_stage(&all);
}

static void bad_options_are_refused(void) {
    stage all = begin_stage();
    orvex_view view = NULL;
    orvex_view_options options = {.size = sizeof options, .surface = 2};
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_view_create(all.engine, 8, 8, &options, &view));
    CHECK_SAYS("options->surface is 2");
    options.surface = 0;
    options.path = -1;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_view_create(all.engine, 8, 8, &options, &view));
    options.path = 0;
    options.samples = -1;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_view_create(all.engine, 8, 8, &options, &view));
    CHECK_SAYS("options->samples is -1");
    options.samples = 0;
    options.supersampling = 9;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_view_create(all.engine, 8, 8, &options, &view));
    options.supersampling = 0;
    options.depth_bits = 33;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_view_create(all.engine, 8, 8, &options, &view));
    options.depth_bits = 0;
    options.keep_states = 2;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_view_create(all.engine, 8, 8, &options, &view));
    CHECK_SAYS("options->keep_states is 2");
    end_stage(&all);
}

static void a_frame_is_drawn_and_read(void) {
    stage all = begin_stage();
    orvex_model model = new_square(all.engine);
    orvex_camera camera = front_camera();
    const float blue[4] = {0, 0, 1, 1};
    unsigned char pixels[32][32][4];
    CHECK_OK(orvex_view_set_background(all.view, blue));
    CHECK_OK(orvex_view_draw(all.view, &camera, &model, 1));
    CHECK_OK(orvex_view_read(all.view, pixels, 0));
    CHECK(is_color(pixels[0][0], 0, 0, 255, 255));
    CHECK(pixels[16][16][2] < 250 && pixels[16][16][3] == 255);
    CHECK_OK(orvex_view_draw(all.view, &camera, NULL, 0));
    CHECK_OK(orvex_view_read(all.view, pixels, 0));
    CHECK(is_color(pixels[16][16], 0, 0, 255, 255));
    end_stage(&all);
}

/// The upper half, so that up and down differ.
static void draw_upper_half(const stage* all) {
    orvex_model model = new_square(all->engine);
    orvex_camera camera = front_camera();
    const float clear[4] = {1, 0, 0, 0.5f};
    const float up[16] = {9, 0, 0, 0, 0, 9, 0, 0, 0, 0, 1, 0, 0, 9, 0, 1};
    CHECK_OK(orvex_view_set_background(all->view, clear));
    CHECK_OK(orvex_view_set_look(all->view, "plain"));
    CHECK_OK(orvex_model_set_transform(model, up));
    CHECK_OK(orvex_view_draw(all->view, &camera, &model, 1));
}

static void rows_lie_wherever_the_caller_wants(void) {
    stage all = begin_stage();
    static unsigned char dense[32][32][4], apart[32][40][4], turned[32][32][4], both[32][40][4];
    draw_upper_half(&all);
    memset(apart, 77, sizeof apart);
    CHECK_OK(orvex_view_read(all.view, dense, 128));
    CHECK_OK(orvex_view_read(all.view, apart, 160));
    CHECK_OK(orvex_view_read(all.view, turned[31], -128));
    CHECK_OK(orvex_view_read(all.view, both[31], -160));
    CHECK(dense[2][16][3] == 255 && is_color(dense[30][16], 255, 0, 0, 128));
    for (int y = 0; y < 32; ++y) {
        CHECK(memcmp(dense[y], apart[y], 128) == 0);
        CHECK(apart[y][32][0] == 77 && apart[y][39][3] == 77);
        CHECK(memcmp(dense[y], turned[31 - y], 128) == 0);
        CHECK(memcmp(dense[y], both[31 - y], 128) == 0);
    }
    end_stage(&all);
}

static void bad_memory_to_read_into_is_refused(void) {
    stage all = begin_stage();
    unsigned char pixels[4];
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_view_read(all.view, NULL, 0));
    CHECK_SAYS("rows is null");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_view_read(all.view, pixels, 127));
    CHECK_SAYS("row_bytes is 127: a row has 128 bytes");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_view_read(all.view, pixels, -1));
    end_stage(&all);
}

static void a_picture_is_written(void) {
    stage all = begin_stage();
    unsigned char start[4] = {0};
    const orvex_write_options jpeg = {.size = sizeof jpeg, .format = "jpeg", .jpeg_quality = 50};
    draw_upper_half(&all);
    CHECK_OK(orvex_view_write(all.view, file_in_folder("view.png"), NULL));
    CHECK(read_start(file_in_folder("view.png"), start, 4) == 4 && start[1] == 'P');
    CHECK_OK(orvex_view_write(all.view, file_in_folder("view"), &jpeg));
    CHECK(read_start(file_in_folder("view"), start, 4) == 4 && start[0] == 0xff);
    CHECK_RESULT(ORVEX_ERROR_FILE, orvex_view_write(all.view, "/no/such/folder/a.png", NULL));
    CHECK_SAYS("/no/such/folder/a.png");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_view_write(all.view, NULL, NULL));
    end_stage(&all);
}

static void a_view_takes_another_size(void) {
    stage all = begin_stage();
    orvex_model model = new_square(all.engine);
    orvex_camera camera = front_camera();
    orvex_view_info info = {.size = sizeof info};
    static unsigned char pixels[48][64][4];
    CHECK_OK(orvex_view_resize(all.view, 64, 48));
    CHECK_OK(orvex_view_get_info(all.view, &info));
    CHECK(info.width == 64 && info.height == 48);
    CHECK_OK(orvex_view_draw(all.view, &camera, &model, 1));
    CHECK_OK(orvex_view_read(all.view, pixels, 0));
    CHECK(memcmp(pixels[24][32], pixels[0][0], 3) != 0);
    end_stage(&all);
}

static void backgrounds_out_of_range_are_refused(void) {
    stage all = begin_stage();
    const float high[4] = {0, 0, 1.5f, 1};
    const float nan[4] = {0, 0, 0, NAN};
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_view_set_background(all.view, high));
    CHECK_SAYS("color[2] is 1.5");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_view_set_background(all.view, nan));
    CHECK_SAYS("color[3] is");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_view_set_background(all.view, NULL));
    end_stage(&all);
}

static const char* const green_look = "[Vertex_Shader]\n"
                                      "uniform mat4 orvex_ModelViewProjectionMatrix;\n"
                                      "void main() { gl_Position = "
                                      "orvex_ModelViewProjectionMatrix * POSITION; }\n"
                                      "[Pixel_Shader]\n"
                                      "void main() { COLOR = vec4(0.0, 1.0, 0.0, 1.0); }\n";

static void models_look_as_the_host_wants(void) {
    stage all = begin_stage();
    orvex_model model = new_square(all.engine);
    orvex_camera camera = front_camera();
    static unsigned char pixels[32][32][4];
    CHECK_OK(orvex_view_set_look_source(all.view, NULL, green_look));
    CHECK_OK(orvex_view_draw(all.view, &camera, &model, 1));
    CHECK_OK(orvex_view_read(all.view, pixels, 0));
    CHECK(is_color(pixels[16][16], 0, 255, 0, 255));
    CHECK_OK(orvex_view_set_look(all.view, "matcap"));
    CHECK_OK(orvex_view_set_look_source(all.view, written("green.glsl", green_look), NULL));
    CHECK_OK(orvex_view_draw(all.view, &camera, &model, 1));
    CHECK_OK(orvex_view_read(all.view, pixels, 0));
    CHECK(is_color(pixels[16][16], 0, 255, 0, 255));
    end_stage(&all);
}

static void bad_looks_are_refused(void) {
    stage all = begin_stage();
    CHECK_RESULT(ORVEX_ERROR_LOOK, orvex_view_set_look(all.view, "shiny"));
    CHECK_SAYS("shiny");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_view_set_look(all.view, NULL));
    CHECK_RESULT(ORVEX_ERROR_LOOK, orvex_view_set_look_source(all.view, NULL, "nothing"));
    CHECK_RESULT(ORVEX_ERROR_FILE, orvex_view_set_look_source(all.view, "/no/such.glsl", NULL));
    CHECK_SAYS("/no/such.glsl");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_view_set_look_source(all.view, NULL, NULL));
    CHECK_SAYS("both null");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_view_set_look_source(all.view, "a", "b"));
    CHECK_SAYS("both given");
    end_stage(&all);
}

static void frames_of_bad_arguments_are_refused(void) {
    stage all = begin_stage();
    orvex_model model = new_square(all.engine);
    orvex_camera camera = front_camera();
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_view_draw(all.view, NULL, NULL, 0));
    CHECK_SAYS("camera is null");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_view_draw(all.view, &camera, NULL, 1));
    CHECK_SAYS("models is null");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_view_draw(all.view, &camera, &model, (size_t)1 << 32));
    CHECK_SAYS("count is 4294967296: there are no so many models");
    camera.light_up = 9;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_view_draw(all.view, &camera, NULL, 0));
    CHECK_SAYS("camera->light_up is 9");
    camera.light_up = ORVEX_UP_Y;
    camera.light_azimuth = INFINITY;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_view_draw(all.view, &camera, NULL, 0));
    CHECK_SAYS("camera->light_azimuth[0] is inf");
    end_stage(&all);
}

static void lights_go_with_the_eye_unless_they_are_told(void) {
    stage all = begin_stage();
    orvex_model model = new_square(all.engine);
    orvex_camera camera = new_camera();
    orvex_orbit orbit = {.size = sizeof orbit, .azimuth = 40, .elevation = 30};
    static unsigned char told[32][32][4], found[32][32][4], other[32][32][4];
    CHECK_OK(orvex_camera_orbit(&model, 1, 32, 32, &orbit, &camera));
    CHECK_OK(orvex_view_draw(all.view, &camera, &model, 1));
    CHECK_OK(orvex_view_read(all.view, told, 0));
    camera.light_up = ORVEX_UP_AUTOMATIC;
    camera.light_azimuth = NAN;
    CHECK_OK(orvex_view_draw(all.view, &camera, &model, 1));
    CHECK_OK(orvex_view_read(all.view, found, 0));
    camera.light_up = ORVEX_UP_Y;
    camera.light_azimuth = 170;
    CHECK_OK(orvex_view_draw(all.view, &camera, &model, 1));
    CHECK_OK(orvex_view_read(all.view, other, 0));
    for (int i = 0; i < 4; ++i)
        CHECK(told[16][16][i] - found[16][16][i] <= 1 && found[16][16][i] - told[16][16][i] <= 1);
    CHECK(told[16][16][0] > other[16][16][0] + 20);
    end_stage(&all);
}

static void lights_go_with_the_eye_whatever_is_upward(void) {
    stage all = begin_stage();
    orvex_model model = new_square(all.engine);
    static unsigned char told[32][32][4], found[32][32][4];
    for (int i = 0; i < 12; ++i) { // from above and from below
        const orvex_up_axis up = i / 2 + 1;
        orvex_camera camera = new_camera();
        orvex_orbit orbit = {.size = sizeof orbit, .azimuth = 40, .up = up};
        orbit.elevation = i % 2 == 0 ? 30 : -30;
        CHECK_OK(orvex_camera_orbit(&model, 1, 32, 32, &orbit, &camera));
        CHECK(camera.light_up == up);
        CHECK_OK(orvex_view_draw(all.view, &camera, &model, 1));
        CHECK_OK(orvex_view_read(all.view, told, 0));
        camera.light_up = ORVEX_UP_AUTOMATIC;
        CHECK_OK(orvex_view_draw(all.view, &camera, &model, 1));
        CHECK_OK(orvex_view_read(all.view, found, 0));
        for (int channel = 0; channel < 3; ++channel) {
            const int apart = told[16][16][channel] - found[16][16][channel];
            CHECK(-1 <= apart && apart <= 1);
        }
    }
    end_stage(&all);
}

/// A context of the test's own, without a window.
typedef struct host_context {
    EGLDisplay display;
    EGLContext context;
    EGLSurface surface;
} host_context;

static host_context begin_host(void) {
    static const EGLint kinds[] = {EGL_SURFACE_TYPE,
                                   EGL_PBUFFER_BIT,
                                   EGL_RENDERABLE_TYPE,
                                   EGL_OPENGL_BIT,
                                   EGL_RED_SIZE,
                                   8,
                                   EGL_ALPHA_SIZE,
                                   8,
                                   EGL_DEPTH_SIZE,
                                   24,
                                   EGL_NONE};
    static const EGLint version[] = {EGL_CONTEXT_MAJOR_VERSION, 3, EGL_CONTEXT_MINOR_VERSION, 3,
                                     EGL_NONE};
    static const EGLint sides[] = {EGL_WIDTH, 32, EGL_HEIGHT, 32, EGL_NONE};
    EGLConfig config = NULL;
    EGLint count = 0;
    host_context host;
    host.display = eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, NULL);
    CHECK(eglInitialize(host.display, NULL, NULL) && eglBindAPI(EGL_OPENGL_API));
    CHECK(eglChooseConfig(host.display, kinds, &config, 1, &count) && count == 1);
    host.context = eglCreateContext(host.display, config, EGL_NO_CONTEXT, version);
    host.surface = eglCreatePbufferSurface(host.display, config, sides);
    CHECK(eglMakeCurrent(host.display, host.surface, host.surface, host.context));
    return host;
}

static void end_host(const host_context* host) {
    eglMakeCurrent(host->display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    eglDestroySurface(host->display, host->surface);
    eglDestroyContext(host->display, host->context);
}

static void a_view_draws_on_the_hosts_context(void) {
    host_context host = begin_host();
    orvex_view_options options = {
        .size = sizeof options, .surface = ORVEX_SURFACE_CURRENT, .keep_states = 1};
    orvex_engine_options quiet = {.size = sizeof quiet, .skip_plugins = 1};
    orvex_camera camera = front_camera();
    orvex_engine engine = NULL;
    orvex_view view = NULL;
    orvex_text text = NULL;
    orvex_model model = NULL;
    static unsigned char pixels[32][32][4];
    CHECK_OK(orvex_engine_start(&quiet, &engine));
    CHECK_OK(orvex_view_create(engine, 32, 32, &options, &view));
    model = new_square(engine);
    CHECK_OK(orvex_view_set_look_source(view, NULL, green_look));
    CHECK_OK(orvex_view_draw(view, &camera, &model, 1));
    CHECK_OK(orvex_view_read(view, pixels, 0));
    CHECK(is_color(pixels[16][16], 0, 255, 0, 255));
    CHECK_OK(orvex_text_create(view, NULL, &text));
    CHECK_OK(orvex_text_add(text, "g", 1, 1, NULL));
    CHECK_OK(orvex_text_draw(text));
    CHECK(eglGetCurrentContext() == host.context);
    CHECK_OK(orvex_view_destroy(view));
    CHECK(eglGetCurrentContext() == host.context);
    CHECK_OK(orvex_engine_stop(engine));
    end_host(&host);
}

static void without_a_current_context_there_is_no_view_on_it(void) {
    stage all = begin_stage();
    orvex_view_options options = {.size = sizeof options, .surface = ORVEX_SURFACE_CURRENT};
    orvex_view view = NULL;
    CHECK_OK(orvex_view_destroy(all.view));
    eglMakeCurrent(eglGetCurrentDisplay(), EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    CHECK_RESULT(ORVEX_ERROR_DRIVER, orvex_view_create(all.engine, 32, 32, &options, &view));
    CHECK_SAYS("no OpenGL context is current");
    end_stage(&all);
}

/// A context that another thread has made current, and keeps until it is told to let go.
typedef struct taken_context {
    EGLDisplay display;
    EGLSurface surface;
    EGLContext context;
    pthread_barrier_t taken, done;
    int is_taken;
} taken_context;

static void* take_context(void* argument) {
    taken_context* const all = argument;
    all->is_taken = eglBindAPI(EGL_OPENGL_API) &&
                    eglMakeCurrent(all->display, all->surface, all->surface, all->context);
    pthread_barrier_wait(&all->taken);
    pthread_barrier_wait(&all->done);
    eglMakeCurrent(all->display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    eglReleaseThread();
    return NULL;
}

static void a_view_whose_context_another_thread_has_is_refused_until_it_lets_go(void) {
    stage all = begin_stage();
    orvex_camera camera = front_camera();
    taken_context taken = {.display = eglGetCurrentDisplay(),
                           .surface = eglGetCurrentSurface(EGL_DRAW),
                           .context = eglGetCurrentContext()};
    static unsigned char pixels[32][32][4];
    pthread_t thread;
    CHECK(pthread_barrier_init(&taken.taken, NULL, 2) == 0);
    CHECK(pthread_barrier_init(&taken.done, NULL, 2) == 0);
    eglMakeCurrent(taken.display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    CHECK(pthread_create(&thread, NULL, take_context, &taken) == 0);
    pthread_barrier_wait(&taken.taken);
    CHECK(taken.is_taken);
    CHECK_RESULT(ORVEX_ERROR_DRIVER, orvex_view_draw(all.view, &camera, NULL, 0));
    CHECK_SAYS("the context of the view can't be made current");
    CHECK_RESULT(ORVEX_ERROR_DRIVER, orvex_view_read(all.view, pixels, 0));
    CHECK_SAYS("the context of the view can't be made current");
    pthread_barrier_wait(&taken.done);
    CHECK(pthread_join(thread, NULL) == 0);
    CHECK_OK(orvex_view_draw(all.view, &camera, NULL, 0));
    CHECK_OK(orvex_view_read(all.view, pixels, 0));
    CHECK(is_color(pixels[16][16], 43, 48, 56, 255));
    pthread_barrier_destroy(&taken.taken);
    pthread_barrier_destroy(&taken.done);
    end_stage(&all);
}

void view_tests(void) {
    share_stage();
    RUN(a_view_tells_what_it_is);
    RUN(options_choose_how_it_draws);
    RUN(a_device_that_is_not_there_is_refused);
    RUN(sizes_that_cannot_be_are_refused);
    RUN(bad_options_are_refused);
    RUN(a_frame_is_drawn_and_read);
    RUN(rows_lie_wherever_the_caller_wants);
    RUN(bad_memory_to_read_into_is_refused);
    RUN(a_picture_is_written);
    RUN(a_view_takes_another_size);
    RUN(backgrounds_out_of_range_are_refused);
    RUN(models_look_as_the_host_wants);
    RUN(bad_looks_are_refused);
    RUN(frames_of_bad_arguments_are_refused);
    RUN(lights_go_with_the_eye_unless_they_are_told);
    RUN(lights_go_with_the_eye_whatever_is_upward);
    end_sharing();
    RUN(a_view_draws_on_the_hosts_context);
    RUN(without_a_current_context_there_is_no_view_on_it);
    RUN(a_view_whose_context_another_thread_has_is_refused_until_it_lets_go);
}
