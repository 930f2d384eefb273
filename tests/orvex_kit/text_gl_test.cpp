// Texts as they are seen, on both paths.

#include "orvex_kit/text.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include <GL/gl.h>
#include <gtest/gtest.h>

#include <orvex/renderer/records/gpu_program_data.h>
#include <orvex/renderer/renderer.h>

#include "orvex_kit/engine.h"
#include "tests/support/fake_renderer.h"
#include "tests/support/gl_context.h"
#include "tests/support/heap.h"
#include "tests/support/picture.h"
#include "tests/support/temp_dir.h"
#include "view_frame.h"

namespace orvex_test {

namespace {

using namespace orvex::kit;
using orvex::vec4;
using orvex::kit::Camera;
using orvex::kit::Font;

constexpr int width = 640;
constexpr int height = 480;
const std::string plain_font = ORVEX_TEST_DATA_DIR "/tools/font/plain.xml";

class TextTest : public testing::TestWithParam<Path> {
protected:
    Engine engine;
    View view{width, height, options()};

    static ViewOptions options() {
        ViewOptions result;
        result.path = GetParam();
        result.samples = 0;
        return result;
    }
    void SetUp() override {
        ASSERT_TRUE(view) << view.reason();
        view.set_background({0.1f, 0.12f, 0.16f, 1.0f});
    }
    /// A frame with what was added.
    orvex::kit::Picture frame_with(Text& text) {
        view.begin(Camera());
        view.end();
        EXPECT_TRUE(text.draw(width, height));
        return picture_of(view);
    }
    orvex::kit::Picture frame_with(const std::string& words, float x, float y,
                                   const TextStyle& style = {}) {
        Text text(view);
        EXPECT_TRUE(text) << text.reason();
        text.add(words, x, y, style);
        return frame_with(text);
    }
};
INSTANTIATE_TEST_SUITE_P(on, TextTest, testing::Values(Path::gl3, Path::gl2), path_name);

orvex_test::Picture as_test_picture(const orvex::kit::Picture& picture) {
    orvex_test::Picture result(picture.width(), picture.height());
    for (int y = 0; y < picture.height(); ++y)
        std::copy_n(picture.row<std::uint8_t>(y), 4 * picture.width(), result.at(0, y));
    return result;
}

/// The box of all pixels that differ from the background.
struct Ink {
    int left = 9999, top = 9999, right = -1, bottom = -1, count = 0;
};

Ink ink_of(const orvex::kit::Picture& picture) {
    Ink ink;
    const Pixel behind = pixel_at(picture, width - 1, height - 1);
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (pixel_at(picture, x, y) != behind) {
                ink.left = std::min(ink.left, x);
                ink.top = std::min(ink.top, y);
                ink.right = std::max(ink.right, x);
                ink.bottom = std::max(ink.bottom, y);
                ++ink.count;
            }
    return ink;
}

TEST_P(TextTest, shows_latin_greek_and_cyrillic_at_any_size) {
    Text text(view);
    ASSERT_TRUE(text) << text.reason();
    EXPECT_EQ(text.reason(), "");
    TextStyle style;
    text.add("The quick brown fox (24): 0123456789 {}[]@#&%", 10, 10, style);
    style.size = 12;
    text.add("Zwölf Boxkämpfer jagen Viktor – “quer” über den großen Sylter Deich (12)", 10, 40,
             style);
    text.add("Ξεσκεπάζω την ψυχοφθόρα βδελυγμία · Съешь же ещё этих мягких французских булок", 10,
             58, style);
    style.size = 18;
    style.color = {1.0f, 0.8f, 0.4f, 1.0f};
    text.add("Příliš žluťoučký kůň · Đặc biệt · İstanbul · fi ﬁ · 5 m² · 20 € · №1 · ≤ ∞", 10, 82,
             style);
    style.size = 90;
    style.color = {0.5f, 0.8f, 1.0f, 0.7f};
    text.add("Größe Ωψ Жя", 4, 110, style);
    style.size = 16;
    style.color = {0.8f, 0.9f, 0.8f, 1.0f};
    style.wrap_width = 200;
    const char* const words = "Words are wrapped at a width, and the lines begin, end or lie in "
                              "the middle.\nA_word_that_is_longer_than_a_line breaks within.";
    for (const Align align : {Align::left, Align::center, Align::right}) {
        style.align = align;
        text.add(words, 10 + 210 * static_cast<float>(align), 230, style);
    }
    style.wrap_width = 0;
    style.line_spacing = 1.5f;
    style.align = Align::right;
    text.add("No glyph: 漢\xff.\nTwo lines\tand a half", 10, 400, style);
    const orvex::kit::Picture picture = frame_with(text);
    EXPECT_TRUE(compare_with_golden(ORVEX_TEST_DATA_DIR "/golden", ORVEX_TEST_OUTPUT_DIR,
                                    "kit_text", as_test_picture(picture), false));
}

TEST_P(TextTest, stands_in_the_room_that_was_measured) {
    for (const float size : {10.0f, 24.0f, 100.0f})
        for (const char* const words : {"Hxjg", "Жщ\nΩ", "äöü ÄÖÜ ß"}) {
            TextStyle style;
            style.size = size;
            const TextExtent room = Font().measure(words, style);
            const Ink ink = ink_of(frame_with(words, 20, 30, style));
            SCOPED_TRACE(testing::Message() << words << " " << size);
            EXPECT_GE(static_cast<float>(ink.left), 20 - 0.05f * size - 1);
            EXPECT_LE(static_cast<float>(ink.right), 20 + room.width + 0.05f * size + 1);
            EXPECT_GT(static_cast<float>(ink.right), 20 + room.width - 0.2f * size - 1);
            EXPECT_GE(ink.top, 30 - 1);
            EXPECT_LE(static_cast<float>(ink.bottom), 30 + room.height + 1);
        }
}

TEST_P(TextTest, keeps_what_is_behind_it_where_there_is_no_ink) {
    const orvex::kit::Picture blank = frame_with("   \n\t", 10, 10);
    EXPECT_EQ(ink_of(blank).count, 0);
    TextStyle style;
    style.size = 200;
    style.color = {1.0f, 0.0f, 0.0f, 0.5f};
    const orvex::kit::Picture bar = frame_with("|", 100, 100, style);
    const Ink ink = ink_of(bar);
    const Pixel behind = pixel_at(bar, 0, 0);
    const Pixel middle = pixel_at(bar, (ink.left + ink.right) / 2, (ink.top + ink.bottom) / 2);
    EXPECT_NEAR(middle[0], (behind[0] + 255) / 2, 2);
    EXPECT_NEAR(middle[1], behind[1] / 2, 2);
    // A stroke that is sharp: a pixel at each side that is neither full nor empty.
    EXPECT_NE(pixel_at(bar, ink.left + 2, (ink.top + ink.bottom) / 2), behind);
    EXPECT_EQ(pixel_at(bar, ink.left + 2, (ink.top + ink.bottom) / 2), middle);
    EXPECT_EQ(pixel_at(bar, ink.right - 2, (ink.top + ink.bottom) / 2), middle);
}

TEST_P(TextTest, lies_over_nothing_as_over_what_is_put_behind_it_later) {
    TextStyle style;
    style.size = 60;
    style.color = {1.0f, 0.6f, 0.2f, 0.5f};
    view.set_background({0.0f, 0.0f, 0.0f, 0.0f});
    const orvex::kit::Picture alone = frame_with("Over", 10, 10, style);
    view.set_background({0.2f, 0.4f, 1.0f, 1.0f});
    const orvex::kit::Picture wanted = frame_with("Over", 10, 10, style);
    const Pixel behind = pixel_at(wanted, width - 1, height - 1);
    int largest = 0;
    for (int y = 0; y < 80; ++y)
        for (int x = 0; x < 200; ++x) {
            const Pixel over = pixel_at(alone, x, y);
            for (std::size_t i = 0; i < 3; ++i) {
                const double put = (over[i] * over[3] + behind[i] * (255 - over[3])) / 255.0;
                largest = std::max(largest, static_cast<int>(std::abs(std::lround(put) -
                                                                      pixel_at(wanted, x, y)[i])));
            }
        }
    EXPECT_GT(ink_of(alone).count, 500);
    EXPECT_LE(largest, 3) << "of what is rounded three times";
}

TEST_P(TextTest, is_drawn_once_for_each_time_it_was_added) {
    Text text(view);
    text.add("A", 10, 10);
    const int one = ink_of(frame_with(text)).count;
    EXPECT_GT(one, 20);
    EXPECT_EQ(ink_of(frame_with(text)).count, 0) << "forgotten";
    // More than the mesh had room for, in one draw.
    for (int i = 0; i < 100; ++i)
        text.add("A", static_cast<float>(10 + 20 * (i % 25)),
                 static_cast<float>(10 + 40 * (i / 25)));
    EXPECT_EQ(ink_of(frame_with(text)).count, 100 * one);
    text.add("A", 10, 10);
    EXPECT_EQ(ink_of(frame_with(text)).count, one);
}

TEST_P(TextTest, leaves_depth_test_and_blending_as_models_want_them) {
    Text text(view);
    text.add("A", 10, 10);
    frame_with(text);
    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_P(TextTest, is_drawn_with_a_renderer_of_the_hosts) {
    Text text(*view.renderer(), GetParam());
    ASSERT_TRUE(text) << text.reason();
    text.add("Own", 10, 10);
    const orvex::kit::Picture own = frame_with(text);
    EXPECT_TRUE(own == frame_with("Own", 10, 10));
    EXPECT_GT(ink_of(own).count, 100);
}

TEST_P(TextTest, is_drawn_with_a_sheet_from_a_file) {
    Text text(view, Font(plain_font));
    ASSERT_TRUE(text) << text.reason();
    text.add("Own {sheet}", 10, 10);
    const Ink ink = ink_of(frame_with(text));
    EXPECT_GT(ink.count, 300);
    EXPECT_LE(static_cast<float>(ink.right), 10 + Font(plain_font).measure("Own {sheet}").width);
}

TEST_P(TextTest, tells_of_a_font_that_isnt_one) {
    const TempDir folder;
    const Text none(view, Font("/none.xml"));
    EXPECT_FALSE(none);
    EXPECT_EQ(none.reason(), "/none.xml: No such file or directory");
    const std::string font =
        folder.write("bare.xml", "<font><common lineHeight=\"9\" scaleW=\"8\" scaleH=\"8\"/><pages>"
                                 "<page id=\"0\" file=\"none.png\"/></pages></font>");
    Text bare(view, Font(font));
    EXPECT_FALSE(bare);
    EXPECT_EQ(bare.reason(),
              font + ": its sheet " + folder.file("none.png") + " can't be read as a picture");
    bare.add("words", 1, 1);
    EXPECT_TRUE(bare.draw(width, height)) << "nothing";
}

TEST_P(TextTest, ends_with_its_view_and_may_be_moved) {
    View other(32, 32, options());
    Text text(other);
    text.add("A", 1, 1);
    Text moved = std::move(text);
    EXPECT_FALSE(text); // NOLINT(bugprone-use-after-move): it is empty then
    EXPECT_EQ(text.reason(), "it was moved from");
    ASSERT_TRUE(moved);
    other = View();
    EXPECT_FALSE(moved);
    EXPECT_EQ(moved.reason(), "its view or the engine has ended");
    moved.add("A", 1, 1);
    EXPECT_TRUE(moved.draw(32, 32));
    EXPECT_EQ(Text(other).reason(), "its view is empty");
}

TEST_P(TextTest, takes_the_place_of_another) {
    Text text(view), other(view);
    text.add("A", 10, 10);
    other.add("A", 300, 300);
    text = std::move(other);
    EXPECT_FALSE(other); // NOLINT(bugprone-use-after-move): it is empty then
    const Ink ink = ink_of(frame_with(text));
    EXPECT_GT(ink.count, 20);
    EXPECT_GE(ink.left, 300);
    View none;
    text = Text(none);
    EXPECT_EQ(text.reason(), "its view is empty");
}

TEST_P(TextTest, tells_that_another_thread_has_its_context) {
    {
        const TakenContext taken(view);
        const Text text(view);
        EXPECT_FALSE(text);
        EXPECT_EQ(text.reason(), "the context of its view can't be made current");
    }
    EXPECT_GT(ink_of(frame_with("A", 10, 10)).count, 20);
}

TEST_P(TextTest, passes_over_what_means_nothing) {
    Text text(view);
    TextStyle style;
    for (const float size : {0.0f, -3.0f, NAN, INFINITY}) {
        style.size = size;
        text.add("A", 10, 10, style);
    }
    text.add("", 10, 10);
    EXPECT_EQ(ink_of(frame_with(text)).count, 0);
    text.add("A", 10, 10);
    EXPECT_TRUE(text.draw(0, 10));
    EXPECT_TRUE(text.draw(10, -1));
}

TEST_P(TextTest, draws_nothing_without_memory_and_all_of_it_then) {
    Text text(view);
    text.add("A", 10, 10);
    const int one = ink_of(frame_with(text)).count;
    text.add(std::string(400, 'A'), 10, 10);
    {
        const RefuseArrays refusal({.min_size = 4096});
        EXPECT_FALSE(text.draw(width, height));
    }
    EXPECT_EQ(ink_of(frame_with(text)).count, 0) << "it was forgotten";
    text.add("A", 10, 10);
    EXPECT_EQ(ink_of(frame_with(text)).count, one);
}

/// Refuses each block as large as a sheet once, until there is a text. @return how many there were
unsigned long refusals_of_a_text(View& view, bool single) {
    for (unsigned long n = 0; n < 20; ++n) {
        const RefuseArrays refusal(
            {.granted = n, .refused = 1, .min_size = std::size_t{1} << 20, .single = single});
        const Text text(view);
        if (text)
            return n;
        EXPECT_EQ(text.reason(), "no memory for the built-in font");
    }
    ADD_FAILURE() << "it never got all";
    return 0;
}

TEST_P(TextTest, tells_that_there_is_no_memory_for_its_letters) {
    EXPECT_GE(refusals_of_a_text(view, true), 2u);
    EXPECT_GE(refusals_of_a_text(view, false), 1u);
    EXPECT_GT(ink_of(frame_with("A", 10, 10)).count, 20);
}

/// Compiles nothing, and says why.
class Refusing : public FakeRenderer {
public:
    bool gpu_program_load_shader_from_memory(GpuProgramData* program, GPU_SHADER_TYPE type,
                                             const char* /*source*/,
                                             unsigned long /*size*/) override {
        const std::string words = "no shaders here";
        program->set_shader_info_log(type, words.c_str(), words.size());
        return false;
    }
};

TEST(Text, tells_what_the_compiler_of_a_renderer_says) {
    const Engine engine;
    Refusing renderer;
    const Text text(renderer, Path::gl3);
    EXPECT_FALSE(text);
    EXPECT_EQ(text.reason(), "the program of texts doesn't compile: text: no shaders here");
}

TEST(Text, tells_what_a_renderer_of_the_hosts_refuses) {
    struct Row {
        const char* refused;
        const char* reason;
    };
    const Engine engine;
    for (const Row& row :
         {Row{"gpu_program_load_shader_from_memory",
              "the program of texts doesn't compile; the log tells why"},
          Row{"gpu_program_activate", "the program of texts doesn't link; the log tells why"},
          Row{"texture_2d_load",
              "the driver takes no sheet of letters: there isn't enough memory"}}) {
        FakeRenderer renderer;
        renderer.results[row.refused] = false;
        Text text(renderer, Path::gl3);
        EXPECT_FALSE(text);
        EXPECT_EQ(text.reason(), row.reason);
        text.add("A", 1, 1);
        EXPECT_TRUE(text.draw(16, 16)) << "nothing";
    }
}

TEST(Text, needs_an_engine) {
    std::optional<Engine> engine(std::in_place);
    View view(16, 16);
    Text text(view);
    ASSERT_TRUE(text) << text.reason();
    Text of_host(*view.renderer(), view.path());
    ASSERT_TRUE(of_host) << of_host.reason();
    engine.reset();
    for (Text* const ended : {&text, &of_host}) {
        EXPECT_FALSE(*ended);
        EXPECT_EQ(ended->reason(), "its view or the engine has ended");
        ended->add("A", 1, 1);
        EXPECT_TRUE(ended->draw(16, 16));
    }
}

} // namespace

} // namespace orvex_test
