#ifndef ORVEX_TESTS_C_CHECK_H
#define ORVEX_TESTS_C_CHECK_H

/// @file
/// What the tests of the C interface check by. They are C themselves, and so is this.

#include <orvex_c/orvex.h>

/// Notes a failure unless the condition holds, and goes on.
#define CHECK(condition) check_that((condition) ? 1 : 0, #condition, __FILE__, __LINE__)
/// Notes a failure unless a call has that result. A failure of the call has to have a sentence.
#define CHECK_RESULT(expected, call) check_result((expected), (call), #call, __FILE__, __LINE__)
/// The same of a call that is well done.
#define CHECK_OK(call) CHECK_RESULT(ORVEX_OK, call)
/// Notes a failure unless the last error has a text in it.
#define CHECK_SAYS(part) check_says(part, __FILE__, __LINE__)

void check_that(int holds, const char* condition, const char* file, int line);
void check_result(orvex_result expected, orvex_result result, const char* call, const char* file,
                  int line);
void check_says(const char* part, const char* file, int line);

/// Runs a test, named as its function.
#define RUN(test) run_test(#test, test)
void run_test(const char* name, void (*test)(void));

/// A new folder, and a file in it; both are there until the program ends. The name is valid until
/// the next call.
const char* file_in_folder(const char* name);
/// The same with a text in the file.
const char* written(const char* name, const char* text);
/// The bytes of a file at its beginning. @return how many there are, up to `size`
size_t read_start(const char* path, unsigned char* bytes, size_t size);

/// An engine without plugins and a view of 32x32 pixels, or a failure that is noted.
typedef struct stage {
    orvex_engine engine;
    orvex_view view;
} stage;
stage begin_stage(void);
/// The same without a view, for what isn't drawn.
stage begin_engine(void);
/// Stops the engine.
void end_stage(const stage* all);
/// Has one engine and one view do for all stages from here on, in the state of new ones: they are
/// what a test waits for. Models and texts of a test live on until the end.
void share_stage(void);
/// Stops that engine.
void end_sharing(void);
/// The number in an empty camera's size and all else as 0.
orvex_camera new_camera(void);
/// A white square of two triangles, from -1 to 1 in x and y, that faces z.
orvex_model new_square(orvex_engine engine);

/// Sanitizers need more address space than a limit could leave.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define CAN_LIMIT_MEMORY 1
/// From here to the end of the limit the process gets so many bytes beyond those that it has.
void limit_memory(size_t more);
void end_limit(void);
#else
#define CAN_LIMIT_MEMORY 0
#endif

/// The tests of a family.
void camera_tests(void);
void engine_tests(void);
void handle_tests(void);
void layer_tests(void);
void mesh_tests(void);
void model_tests(void);
void no_driver_tests(void);
void picture_tests(void);
void record_tests(void);
void text_tests(void);
void early_thread_tests(void);
void thread_tests(void);
void view_tests(void);

#endif
