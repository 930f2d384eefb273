// Where EGL finds no driver.

#include <sys/resource.h>

#include <fstream>

#include <gtest/gtest.h>

#include "child_process.h"
#include "orvex_kit/engine.h"
#include "orvex_kit/view.h"

namespace orvex_test {

namespace {

using namespace orvex::kit;

TEST(View, tells_that_no_driver_is_found) {
    const Engine engine;
    for (const Path path : {Path::gl3, Path::gl2}) {
        ViewOptions options;
        options.path = path;
        const View view(8, 8, options);
        EXPECT_FALSE(view);
        EXPECT_EQ(view.failure(), ViewFailure::no_driver);
        EXPECT_EQ(view.reason(), "no EGL driver is found: install libgl1-mesa-dri");
    }
}

// Sanitizers need more address space than any driver.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST(View, tells_that_memory_is_short) {
    const Engine engine;
    const int status = status_of([] {
        unsigned long pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        const rlim_t bytes = pages * 4096 + (64ul << 20);
        const rlimit limit{bytes, bytes};
        setrlimit(RLIMIT_AS, &limit);
        const View view(8, 8);
        _exit(view.failure() == ViewFailure::memory &&
                      view.reason() == "there isn't enough memory for an OpenGL driver"
                  ? 7
                  : 1);
    });
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 7);
}
#endif

} // namespace

} // namespace orvex_test
