// Cameras as records.

#include "check.h"

#include <math.h>
#include <string.h>

static const double eye[3] = {3, 2, 5};
static const double middle[3] = {0, 0, 0};

static int is_near(double a, double b, double most) {
    return fabs(a - b) <= most;
}

static void a_camera_looks_at_a_point(void) {
    orvex_camera camera = new_camera();
    double seen[3];
    CHECK_OK(orvex_camera_look_at(eye, middle, NULL, 40, &camera));
    CHECK(camera.size == sizeof camera);
    CHECK_OK(orvex_camera_project(&camera, 640, 480, middle, 1, seen));
    CHECK(is_near(seen[0], 320, 1e-3) && is_near(seen[1], 240, 1e-3));
    CHECK(is_near(seen[2], sqrt(38), 1e-5));
}

static void a_record_of_zeros_but_its_place_is_a_camera(void) {
    orvex_camera camera = new_camera();
    double pose[16];
    camera.eye[2] = 10;
    CHECK_OK(orvex_camera_pose(&camera, pose));
    CHECK(pose[0] == 1 && pose[5] == -1 && pose[10] == -1 && pose[11] == 10 && pose[15] == 1);
}

static void intrinsics_and_pose_make_the_same_camera(void) {
    const double points[6] = {0.3, -0.2, 0.5, -1, 1, 1};
    orvex_camera first = new_camera();
    orvex_camera second = new_camera();
    double intrinsics[9], pose[16], seen[6], again[6];
    CHECK_OK(orvex_camera_look_at(eye, middle, NULL, 40, &first));
    CHECK_OK(orvex_camera_matrix(&first, 640, 480, intrinsics));
    CHECK(intrinsics[2] == 320 && intrinsics[5] == 240 && intrinsics[8] == 1);
    CHECK_OK(orvex_camera_pose(&first, pose));
    CHECK_OK(orvex_camera_measured(intrinsics, pose, &second));
    CHECK_OK(orvex_camera_project(&first, 640, 480, points, 2, seen));
    CHECK_OK(orvex_camera_project(&second, 640, 480, points, 2, again));
    for (int i = 0; i < 6; ++i)
        CHECK(is_near(seen[i], again[i], 1e-6));
}

static void what_lies_behind_is_seen_nowhere(void) {
    const double behind[3] = {6, 4, 10};
    orvex_camera camera = new_camera();
    double seen[3] = {0, 0, 0};
    CHECK_OK(orvex_camera_look_at(eye, middle, NULL, 0, &camera));
    CHECK_OK(orvex_camera_project(&camera, 640, 480, behind, 1, seen));
    CHECK(isnan(seen[0]) && isnan(seen[1]) && isnan(seen[2]));
    CHECK_OK(orvex_camera_project(&camera, 640, 480, NULL, 0, NULL));
}

static void a_ray_goes_back_to_where_a_point_is_seen(void) {
    const double point[3] = {0.3, -0.2, 0.5};
    orvex_camera camera = new_camera();
    double seen[3], origin[3], way[3];
    CHECK_OK(orvex_camera_look_at(eye, middle, NULL, 40, &camera));
    CHECK_OK(orvex_camera_project(&camera, 640, 480, point, 1, seen));
    CHECK_OK(orvex_camera_ray(&camera, 640, 480, seen[0], seen[1], origin, way));
    CHECK(is_near(way[0] * way[0] + way[1] * way[1] + way[2] * way[2], 1, 1e-6));
    for (int i = 0; i < 3; ++i) {
        const double length = (point[0] - origin[0]) / way[0];
        CHECK(is_near(origin[i] + way[i] * length, point[i], 1e-4));
    }
}

static void a_parallel_camera_has_no_intrinsics(void) {
    orvex_camera camera = new_camera();
    double intrinsics[9], seen[3];
    const double point[3] = {0.5, 0, 0};
    camera.lens = ORVEX_LENS_PARALLEL;
    camera.height = 4;
    camera.eye[2] = 10;
    CHECK_OK(orvex_camera_project(&camera, 40, 40, point, 1, seen));
    CHECK(is_near(seen[0], 25, 1e-9) && is_near(seen[1], 20, 1e-9));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_matrix(&camera, 40, 40, intrinsics));
    CHECK_SAYS("without perspective");
    camera.height = -1;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_project(&camera, 40, 40, point, 1, seen));
    CHECK_SAYS("camera->height is -1");
}

static void bad_numbers_are_refused_by_their_names(void) {
    const double bad_eye[3] = {0, NAN, 0};
    const double huge[3] = {0, 0, 1e300};
    double pose[16] = {0}, intrinsics[9] = {1, 0, 1, 0, 1, 1, 0, 0, 1};
    orvex_camera camera = new_camera();
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_look_at(bad_eye, middle, NULL, 40, &camera));
    CHECK_SAYS("camera->eye[1] is nan");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_look_at(huge, middle, NULL, 40, &camera));
    CHECK_SAYS("camera->eye[2] is 1e+300");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_look_at(middle, middle, NULL, 40, &camera));
    CHECK_SAYS("they are apart");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_look_at(eye, middle, NULL, 180, &camera));
    CHECK_SAYS("camera->fov is 180");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_look_at(eye, middle, NULL, -1, &camera));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_look_at(eye, middle, NULL, NAN, &camera));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_measured(intrinsics, pose, &camera));
    CHECK_SAYS("the last row of a pose isn't 0 0 0 1");
    intrinsics[0] = -1;
    pose[0] = pose[5] = pose[10] = pose[15] = 1;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_measured(intrinsics, pose, &camera));
    CHECK_SAYS("fx and fy");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_measured(NULL, pose, &camera));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_measured(intrinsics, NULL, &camera));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_look_at(NULL, middle, NULL, 0, &camera));
    CHECK_SAYS("eye is null");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_look_at(eye, middle, NULL, 0, NULL));
    CHECK_SAYS("camera is null");
}

static void records_with_bad_words_are_refused(void) {
    double numbers[16], more[3];
    orvex_camera camera = new_camera();
    CHECK_OK(orvex_camera_look_at(eye, middle, NULL, 40, &camera));
    camera.stand = 2;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_pose(&camera, numbers));
    CHECK_SAYS("camera->stand is 2");
    camera.stand = 0;
    camera.lens = -1;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_pose(&camera, numbers));
    CHECK_SAYS("camera->lens is -1");
    camera.lens = 0;
    camera.near_plane = 2;
    camera.far_plane = 1;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_pose(&camera, numbers));
    CHECK_SAYS("2 and 1");
    camera.far_plane = 3;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_pose(&camera, NULL));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_pose(NULL, numbers));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_matrix(&camera, 0, 1, numbers));
    CHECK_SAYS("width is 0");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_matrix(&camera, 1, 1, NULL));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_project(&camera, 1, -1, middle, 1, numbers));
    CHECK_SAYS("height is -1");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_project(&camera, 1, 1, NULL, 1, numbers));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_project(&camera, 1, 1, middle, 1, NULL));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_ray(&camera, 0, 1, 0, 0, numbers, more));
    CHECK_SAYS("width is 0");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_ray(&camera, 1, 0, 0, 0, numbers, more));
    CHECK_SAYS("height is 0");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_ray(&camera, 1, 1, INFINITY, 0, numbers, more));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_ray(&camera, 1, 1, 0, 0, NULL, more));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_ray(&camera, 1, 1, 0, 0, numbers, NULL));
}

static void models_are_seen_as_a_whole(void) {
    stage all = begin_engine();
    orvex_model models[2] = {new_square(all.engine), new_square(all.engine)};
    const float aside[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 10, 0, 0, 1};
    const double corners[12] = {-1, -1, 0, 1, 1, 0, 9, -1, 0, 11, 1, 0};
    double seen[12];
    orvex_camera camera = new_camera();
    CHECK_OK(orvex_model_set_transform(models[1], aside));
    for (orvex_aim aim = ORVEX_AIM_TIGHT; aim <= ORVEX_AIM_TURN; ++aim) {
        orvex_orbit orbit = {.size = sizeof orbit, .azimuth = 10, .elevation = 5, .aim = aim};
        CHECK_OK(orvex_camera_orbit(models, 2, 64, 48, &orbit, &camera));
        CHECK_OK(orvex_camera_project(&camera, 64, 48, corners, 4, seen));
        for (int i = 0; i < 4; ++i) {
            CHECK(seen[i * 3] > 0 && seen[i * 3] < 64 && seen[i * 3 + 1] > 0 &&
                  seen[i * 3 + 1] < 48);
            CHECK(seen[i * 3 + 2] > camera.near_plane && seen[i * 3 + 2] < camera.far_plane);
        }
        CHECK(camera.light_azimuth == 10 && camera.light_up == ORVEX_UP_Y);
    }
    end_stage(&all);
}

static void an_orbit_turns_comes_nearer_and_goes_farther(void) {
    stage all = begin_engine();
    orvex_model model = new_square(all.engine);
    orvex_camera first = new_camera(), second = new_camera();
    orvex_orbit orbit = {.size = sizeof orbit, .azimuth = 25, .elevation = 20};
    CHECK_OK(orvex_camera_orbit(&model, 1, 32, 32, NULL, &first));
    CHECK_OK(orvex_camera_orbit(&model, 1, 32, 32, &orbit, &second));
    CHECK(memcmp(&first, &second, sizeof first) == 0);
    orbit.distance = 2;
    CHECK_OK(orvex_camera_orbit(&model, 1, 32, 32, &orbit, &second));
    CHECK(second.eye[2] > first.eye[2] * 1.5);
    orbit.distance = 0;
    orbit.zoom = 2;
    CHECK_OK(orvex_camera_orbit(&model, 1, 32, 32, &orbit, &second));
    CHECK(second.fov < first.fov * 0.6);
    orbit.zoom = 0;
    orbit.up = ORVEX_UP_Z;
    CHECK_OK(orvex_camera_orbit(&model, 1, 32, 32, &orbit, &second));
    CHECK(second.up[2] > 0.9 && second.light_up == ORVEX_UP_Z);
    end_stage(&all);
}

static void orbits_of_bad_numbers_are_refused(void) {
    stage all = begin_engine();
    orvex_model model = new_square(all.engine);
    orvex_camera camera = new_camera();
    orvex_orbit orbit = {.size = sizeof orbit, .azimuth = NAN};
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_orbit(&model, 1, 8, 8, &orbit, &camera));
    CHECK_SAYS("orbit->azimuth[0] is nan");
    orbit.azimuth = 0;
    orbit.zoom = -1;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_orbit(&model, 1, 8, 8, &orbit, &camera));
    CHECK_SAYS("orbit->zoom is -1");
    orbit.zoom = 0;
    orbit.aim = 3;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_orbit(&model, 1, 8, 8, &orbit, &camera));
    orbit.aim = 0;
    orbit.up = 7;
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_orbit(&model, 1, 8, 8, &orbit, &camera));
    CHECK_SAYS("orbit->up is 7");
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_orbit(&model, 0, 8, 8, NULL, &camera));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_orbit(NULL, 1, 8, 8, NULL, &camera));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_orbit(&model, 1, 8, 0, NULL, &camera));
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_orbit(&model, 1, 8, 8, NULL, NULL));
    end_stage(&all);
}

static void planes_are_put_around_models(void) {
    stage all = begin_engine();
    orvex_model model = new_square(all.engine);
    const double up[3] = {0, 1, 0}, before[3] = {0, 0, 5}, beyond[3] = {0, 0, 9};
    orvex_camera camera = new_camera();
    CHECK_OK(orvex_camera_look_at(before, middle, up, 40, &camera));
    CHECK(camera.near_plane == 0 && camera.far_plane == 0);
    CHECK_OK(orvex_camera_fit(&camera, &model, 1));
    CHECK(camera.near_plane > 4.9 && camera.near_plane < 5);
    CHECK(camera.far_plane > 5 && camera.far_plane < 5.1);
    CHECK_OK(orvex_camera_look_at(before, beyond, up, 40, &camera));
    CHECK_OK(orvex_camera_fit(&camera, &model, 1));
    CHECK(is_near(camera.near_plane, 0.1, 1e-6) && camera.far_plane == 1000);
    CHECK_RESULT(ORVEX_ERROR_ARGUMENT, orvex_camera_fit(NULL, &model, 1));
    end_stage(&all);
}

void camera_tests(void) {
    RUN(a_camera_looks_at_a_point);
    RUN(a_record_of_zeros_but_its_place_is_a_camera);
    RUN(intrinsics_and_pose_make_the_same_camera);
    RUN(what_lies_behind_is_seen_nowhere);
    RUN(a_ray_goes_back_to_where_a_point_is_seen);
    RUN(a_parallel_camera_has_no_intrinsics);
    RUN(bad_numbers_are_refused_by_their_names);
    RUN(records_with_bad_words_are_refused);
    RUN(models_are_seen_as_a_whole);
    RUN(an_orbit_turns_comes_nearer_and_goes_farther);
    RUN(orbits_of_bad_numbers_are_refused);
    RUN(planes_are_put_around_models);
}
