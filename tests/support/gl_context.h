#pragma once

/// @file
/// Real OpenGL contexts without a screen, made straight from EGL, for tests of the back end.
///
/// @code
/// class BlendState : public orvex_test::GlTest {};
/// ORVEX_BOTH_PROFILES(BlendState);
///
/// TEST_P(BlendState, is_off_at_first) {
///     EXPECT_FALSE(glIsEnabled(GL_BLEND));
///     EXPECT_NO_GL_ERROR();
/// }
/// @endcode

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace orvex_test {

/// The contexts that tests run on.
enum class Profile {
    compatibility, ///< what a plain request gives: 4.5 compatibility on Mesa
    core,          ///< what a 3.2 core request gives: 4.5 core on Mesa
    gl_2_1, ///< reports 2.1. The driver settles this once per process, so keep these tests in
            ///< a program that makes no other compatibility context.
};

std::ostream& operator<<(std::ostream& out, Profile profile);

/// What the driver said through KHR_debug.
struct GlMessage {
    bool is_error = false;
    std::string text;
};

/// An off-screen context with a colour buffer of 8/8/8/8 and 24 depth bits. Current on the thread
/// that made it until it dies, `release` is called or another one is made current.
class GlContext {
public:
    /// Makes the context and makes it current. Fails the running test if there is none to be had.
    explicit GlContext(Profile profile = Profile::compatibility, int width = 256, int height = 256,
                       const GlContext* share = nullptr);
    ~GlContext();
    GlContext(const GlContext&) = delete;
    GlContext& operator=(const GlContext&) = delete;

    bool ok() const;
    int width() const;
    int height() const;
    void make_current() const;
    void release() const;

    /// Everything that the driver said since the last call.
    std::vector<GlMessage> take_messages();
    /// The errors among them.
    std::vector<std::string> take_errors();

private:
    struct State;
    std::unique_ptr<State> state;
};

/// Whether glGetError gives exactly this, and nothing after it. Leaves no error behind.
testing::AssertionResult gl_error_is(unsigned int expected);

/// Takes the errors that the current context kept.
void forget_gl_errors();

/// The name of an error code, such as "GL_INVALID_VALUE".
std::string gl_error_name(unsigned int error);

/// Whether the context is in a core profile, by its profile mask.
bool is_core_context();

/// A fixture with a current context of 256 by 256 pixels. A GL error left over at the end of a test
/// fails it.
class GlTest : public testing::TestWithParam<Profile> {
protected:
    void SetUp() override;
    void TearDown() override;

    GlContext& context() { return *gl; }

private:
    std::unique_ptr<GlContext> gl;
};

/// The same on a compatibility context, for tests written with TEST_F.
class GlCompatibilityTest : public testing::Test {
protected:
    void TearDown() override;
    GlContext gl{Profile::compatibility};
};

/// The same on a core context, for tests written with TEST_F.
class GlCoreTest : public testing::Test {
protected:
    void TearDown() override;
    GlContext gl{Profile::core};
};

/// Names the instances of a test after their profile.
std::string profile_name(const testing::TestParamInfo<Profile>& info);

} // namespace orvex_test

/// Runs every TEST_P of a suite on a compatibility and on a core context.
#define ORVEX_BOTH_PROFILES(suite)                                                                 \
    INSTANTIATE_TEST_SUITE_P(                                                                      \
        on, suite, testing::Values(orvex_test::Profile::compatibility, orvex_test::Profile::core), \
        orvex_test::profile_name)

#define EXPECT_GL_ERROR(code) EXPECT_TRUE(orvex_test::gl_error_is(code))
#define EXPECT_NO_GL_ERROR() EXPECT_TRUE(orvex_test::gl_error_is(0))
#define ASSERT_NO_GL_ERROR() ASSERT_TRUE(orvex_test::gl_error_is(0))
