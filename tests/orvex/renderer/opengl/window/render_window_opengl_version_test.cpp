#include "orvex/renderer/opengl/window/private/render_window_opengl.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/fake_gl.h"
#include "tests/support/fake_window_platform.h"

namespace orvex_test {

using namespace orvex;

namespace {

class RenderWindowOpenGLVersionTest : public testing::Test {
protected:
    orvex_test::FakeWindowPlatform platform;
    orvex_test::FakeGl gl;
    RenderWindowOpenGL window;

    void SetUp() override { make_current(window); }

    /// Gives a window a context that is current, and whose version nobody has read.
    static void make_current(RenderWindowOpenGL& window) {
        ASSERT_TRUE(window.osx_create_cgl_context(nullptr, 1, 1, nullptr, nullptr, nullptr));
        ASSERT_TRUE(window.osx_apply_context(true));
    }
};

TEST_F(RenderWindowOpenGLVersionTest, tells_the_major_version_2_to_4_as_its_api) {
    struct Row {
        const char* text;
        int major;
        int api;
    };
    for (const Row& row :
         {Row{"2.1 old", 0, 2}, Row{"3.2 new", 3, 3}, Row{"4.5 newer", 4, 4},
          Row{"1.4 oldest", 0, 2}, Row{"5.0 unheard of", 5, 2}, Row{nullptr, 0, 2}}) {
        gl.serve(row.text, row.major, 0);
        EXPECT_TRUE(window.initialize(nullptr, nullptr, 1, 1, nullptr, nullptr, nullptr));
        EXPECT_EQ(window.get_api_3d(), row.api) << (row.text ? row.text : "null");
    }
}

TEST_F(RenderWindowOpenGLVersionTest, reads_the_version_numbers_from_3_on) {
    gl.serve("text that nobody reads", 4, 6);
    int major = 0, minor = 0;
    EXPECT_TRUE(window.get_opengl_version(&major, &minor));
    EXPECT_EQ(major, 4);
    EXPECT_EQ(minor, 6);
}

TEST_F(RenderWindowOpenGLVersionTest, reads_the_first_and_third_character_below_3) {
    struct Row {
        const char* text;
        int major;
        int minor;
    };
    for (const Row& row : {Row{"2.1 Driver 10.3", 2, 1}, Row{"1.4", 1, 4}, Row{"2.12", 2, 1}}) {
        RenderWindowOpenGL fresh;
        make_current(fresh);
        gl.serve(row.text, 0, 0);
        int major = 0, minor = 0;
        EXPECT_TRUE(fresh.get_opengl_version(&major, &minor)) << row.text;
        EXPECT_EQ(major, row.major) << row.text;
        EXPECT_EQ(minor, row.minor) << row.text;
    }
}

TEST_F(RenderWindowOpenGLVersionTest, reads_no_version_without_a_text_or_from_a_cut_one) {
    for (const char* text : {static_cast<const char*>(nullptr), "", "2", "2."}) {
        gl.serve(text, 0, 0);
        int major = 77, minor = 78;
        EXPECT_FALSE(window.get_opengl_version(&major, &minor));
        EXPECT_EQ(major, 77);
        EXPECT_EQ(minor, 78);
    }
}

TEST_F(RenderWindowOpenGLVersionTest, writes_only_the_outputs_that_are_there) {
    gl.serve("3.3", 3, 3);
    int major = 0, minor = 0;
    EXPECT_TRUE(window.get_opengl_version(nullptr, nullptr));
    EXPECT_TRUE(window.get_opengl_version(&major, nullptr));
    EXPECT_TRUE(window.get_opengl_version(nullptr, &minor));
    EXPECT_EQ(major, 3);
    EXPECT_EQ(minor, 3);
}

TEST_F(RenderWindowOpenGLVersionTest, reads_the_version_once_until_it_is_initialized_again) {
    gl.serve("3.3", 3, 3);
    EXPECT_TRUE(window.get_opengl_version(nullptr, nullptr));
    gl.serve("4.1", 4, 1);
    int major = 0;
    EXPECT_TRUE(window.get_opengl_version(&major, nullptr));
    EXPECT_EQ(major, 3);
    EXPECT_TRUE(window.initialize(nullptr, nullptr, 1, 1, nullptr, nullptr, nullptr));
    EXPECT_TRUE(window.get_opengl_version(&major, nullptr));
    EXPECT_EQ(major, 4);
}

TEST_F(RenderWindowOpenGLVersionTest, supports_what_is_not_above_the_contexts_version) {
    struct Row {
        const char* text;
        int major, minor;
        int wanted_major, wanted_minor;
        bool supported;
    };
    for (const Row& row : {
             Row{"4.1 a", 4, 1, 3, 3, true},
             Row{"3.2 b", 3, 2, 3, 3, false},
             Row{"3.3 c", 3, 3, 3, 3, true},
             Row{"3.3 d", 3, 3, 4, 0, false},
             Row{"4.0 e", 4, 0, 3, 9, true},
             Row{"2.1 f", 0, 0, 2, 1, true},
             Row{"2.1 g", 0, 0, 3, 0, false},
             Row{"4.1 the text says more", 3, 2, 4, 1, true},
             Row{"4.10 two digits", 4, 1, 4, 10, true},
             Row{nullptr, 0, 0, 1, 0, false},
         }) {
        RenderWindowOpenGL fresh;
        make_current(fresh);
        gl.serve(row.text, row.major, row.minor);
        EXPECT_EQ(fresh.is_opengl_version_supported(row.wanted_major, row.wanted_minor),
                  row.supported)
            << (row.text ? row.text : "null");
    }
}

TEST_F(RenderWindowOpenGLVersionTest, is_never_read_from_a_context_of_another_window) {
    gl.serve("4.5", 4, 5);
    RenderWindowOpenGL other;
    EXPECT_FALSE(other.get_opengl_version(nullptr, nullptr)) << "it has none";
    EXPECT_FALSE(other.is_opengl_version_supported(1, 0));
    ASSERT_TRUE(other.osx_create_cgl_context(nullptr, 1, 1, nullptr, nullptr, nullptr));
    EXPECT_FALSE(other.get_opengl_version(nullptr, nullptr)) << "its own isn't current";
    EXPECT_TRUE(window.get_opengl_version(nullptr, nullptr));
}

TEST_F(RenderWindowOpenGLVersionTest, stays_unknown_when_a_first_context_fails) {
    gl.serve("4.5", 4, 5);
    platform.refuses_contexts = true;
    RenderWindowOpenGL other;
    EXPECT_FALSE(other.initialize(nullptr, nullptr, 1, 1, nullptr, nullptr, nullptr));
    EXPECT_EQ(other.get_api_3d(), 2);
    EXPECT_FALSE(other.get_opengl_version(nullptr, nullptr));
}

TEST_F(RenderWindowOpenGLVersionTest, stays_as_it_is_when_a_second_context_fails) {
    gl.serve("4.1", 4, 1);
    EXPECT_TRUE(window.initialize(nullptr, nullptr, 1, 1, nullptr, nullptr, nullptr));
    EXPECT_TRUE(window.apply_context(false));
    platform.refuses_contexts = true;
    gl.serve("3.3", 3, 3);
    EXPECT_FALSE(window.initialize(nullptr, nullptr, 1, 1, nullptr, nullptr, nullptr));
    int major = 0;
    EXPECT_TRUE(window.get_opengl_version(&major, nullptr));
    EXPECT_EQ(major, 4);
    EXPECT_EQ(window.get_api_3d(), 4);
}

TEST_F(RenderWindowOpenGLVersionTest, is_read_anew_from_an_adopted_context) {
    gl.serve("2.1", 0, 0);
    EXPECT_TRUE(window.initialize(nullptr, nullptr, 1, 1, nullptr, nullptr, nullptr));
    EXPECT_TRUE(window.apply_context(false));
    gl.serve("4.5", 4, 5);
    platform.has_host_context = true;
    int host = 0;
    EXPECT_TRUE(window.osx_init_with_cocoa_nsgl_ctx(&host));
    EXPECT_EQ(window.get_api_3d(), 4);
    EXPECT_TRUE(window.is_opengl_version_supported(4, 5));
}

/// What is listed, in order.
std::vector<std::string> listed(RenderWindow& window) {
    std::vector<std::string> names;
    for (unsigned long i = 0; i < window.get_num_opengl_extensions(); ++i)
        names.emplace_back(window.get_opengl_extension(i));
    return names;
}

using Names = std::vector<std::string>;

class RenderWindowOpenGLExtensionTest : public RenderWindowOpenGLVersionTest {
protected:
    void serve_indexed(std::vector<const char*> names) {
        gl.serve("3.0", 3, 0);
        gl.indexed = std::move(names);
        platform.get_string_i = gl.get_string_i();
    }

    void serve_text(const char* names) {
        gl.serve("2.1", 0, 0);
        gl.extensions = names;
    }
};

TEST_F(RenderWindowOpenGLExtensionTest, knows_no_name_before_the_list_is_built) {
    serve_indexed({"GL_A"});
    EXPECT_FALSE(window.check_opengl_extension("GL_A"));
    EXPECT_EQ(window.get_opengl_extension(0), nullptr);
}

TEST_F(RenderWindowOpenGLExtensionTest, lists_indexed_names_and_returns_false) {
    serve_indexed({"GL_A", "WGL_B", nullptr, "GL_C", "XWGL"});
    EXPECT_FALSE(window.build_opengl_extensions_list());
    EXPECT_EQ(listed(window), Names({"GL_A", "WGL_B", "GL_C", "XWGL"}));
    EXPECT_EQ(window.get_num_GL_extensions(), 4) << "the driver's count less the foreign one";
    EXPECT_EQ(window.get_num_WGL_extensions(), 0);
    EXPECT_EQ(window.get_num_GLX_extensions(), 0);
}

TEST_F(RenderWindowOpenGLExtensionTest, compares_names_exactly) {
    serve_indexed({"GL_ARB_multitexture"});
    window.build_opengl_extensions_list();
    EXPECT_TRUE(window.check_opengl_extension("GL_ARB_multitexture"));
    EXPECT_FALSE(window.check_opengl_extension("gl_arb_multitexture"));
    EXPECT_FALSE(window.check_opengl_extension("GL_ARB_multi"));
    EXPECT_FALSE(window.check_opengl_extension("GL_ARB_multitexture2"));
    EXPECT_FALSE(window.check_opengl_extension(""));
    EXPECT_FALSE(window.check_opengl_extension(nullptr));
}

TEST_F(RenderWindowOpenGLExtensionTest, lists_the_names_of_a_text_that_are_followed_by_a_blank) {
    struct Row {
        const char* text;
        Names names;
    };
    for (const Row& row : {
             Row{"GL_A GL_B ", {"GL_A", "GL_B"}},
             Row{"GL_A GL_B", {"GL_A"}},
             Row{"GL_A", {}},
             Row{"", {}},
             Row{" GL_A ", {"", "GL_A"}},
         }) {
        RenderWindowOpenGL fresh;
        serve_text(row.text);
        EXPECT_EQ(fresh.build_opengl_extensions_list(), !row.names.empty()) << row.text;
        EXPECT_EQ(listed(fresh), row.names) << row.text;
        EXPECT_EQ(fresh.get_num_GL_extensions(), static_cast<int>(row.names.size())) << row.text;
    }
}

TEST_F(RenderWindowOpenGLExtensionTest, cuts_a_name_of_a_text_to_127_characters) {
    const std::string name = std::string(126, 'a') + "bcd";
    const std::string text = name + " " + name.substr(0, 127) + " ";
    serve_text(text.c_str());
    EXPECT_TRUE(window.build_opengl_extensions_list());
    EXPECT_EQ(listed(window), Names({name.substr(0, 127), name.substr(0, 127)}));
}

TEST_F(RenderWindowOpenGLExtensionTest, takes_the_old_way_when_the_indexed_one_gives_nothing) {
    serve_indexed({});
    EXPECT_FALSE(window.build_opengl_extensions_list()) << "no text either";
    gl.extensions = "GL_OLD ";
    EXPECT_TRUE(window.build_opengl_extensions_list());
    EXPECT_EQ(listed(window), Names({"GL_OLD"}));

    RenderWindowOpenGL other;
    serve_indexed({nullptr, nullptr});
    EXPECT_TRUE(other.build_opengl_extensions_list());
    EXPECT_EQ(listed(other), Names({"GL_OLD"}));
}

TEST_F(RenderWindowOpenGLExtensionTest, appends_when_it_builds_twice) {
    serve_text("GL_A ");
    EXPECT_TRUE(window.build_opengl_extensions_list());
    EXPECT_TRUE(window.build_opengl_extensions_list());
    EXPECT_EQ(listed(window), Names({"GL_A", "GL_A"}));
    EXPECT_EQ(window.get_num_GL_extensions(), 2);
}

TEST_F(RenderWindowOpenGLExtensionTest, fails_without_any_list) {
    serve_text(nullptr);
    EXPECT_FALSE(window.build_opengl_extensions_list());
    EXPECT_EQ(window.get_num_opengl_extensions(), 0u);
}

TEST_F(RenderWindowOpenGLExtensionTest, keeps_its_counters_when_the_list_is_destroyed) {
    serve_indexed({"GL_A", "GL_B"});
    window.build_opengl_extensions_list();
    EXPECT_TRUE(window.destroy_opengl_extensions_list());
    EXPECT_EQ(window.get_num_opengl_extensions(), 0u);
    EXPECT_EQ(window.get_opengl_extension(0), nullptr);
    EXPECT_EQ(window.get_num_GL_extensions(), 2);
    EXPECT_FALSE(window.check_opengl_extension("GL_A"));
}

TEST_F(RenderWindowOpenGLExtensionTest, forgets_its_list_at_its_end) {
    serve_indexed({"GL_A"});
    EXPECT_TRUE(window.initialize(nullptr, nullptr, 1, 1, nullptr, nullptr, nullptr));
    window.build_opengl_extensions_list();
    EXPECT_TRUE(window.terminate());
    EXPECT_EQ(window.get_num_opengl_extensions(), 0u);
}

} // namespace

} // namespace orvex_test
