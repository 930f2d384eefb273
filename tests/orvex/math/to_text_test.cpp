#include "orvex/math/to_text.h"

#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "orvex/math/mat4.h"
#include "orvex/math/mat4d.h"
#include "orvex/math/quat.h"
#include "orvex/math/vec3u8.h"
#include "orvex/math/vec4d.h"
#include "orvex/math/vec4i.h"
#include "orvex/math/vec4u8.h"

namespace orvex_test {

using namespace orvex;

namespace {

template<class Value>
std::string text_of(const Value& value) {
    std::ostringstream text;
    text << value;
    return text.str();
}

TEST(ToText, of_vectors_is_their_components_in_brackets) {
    vec2 point;
    point.set(0.5f, -1.0f);
    EXPECT_EQ(text_of(point), "(0.5, -1)");
    EXPECT_EQ(text_of(vec3(1.0f, 2.5f, 0.0f)), "(1, 2.5, 0)");
    EXPECT_EQ(text_of(vec4()), "(0, 0, 0, 1)");
    EXPECT_EQ(text_of(vec4i()), "(0, 0, 0, 1)");
    EXPECT_EQ(text_of(vec4d()), "(0, 0, 0, 1)");
    EXPECT_EQ(text_of(quat(0.0f, 1.0f, 0.0f, -0.5f)), "(0, 1, 0, -0.5)");
}

TEST(ToText, of_bytes_is_numbers) {
    EXPECT_EQ(text_of(vec3u8(255, 65, 0)), "(255, 65, 0)");
    EXPECT_EQ(text_of(vec4u8(255, 65, 0, 10)), "(255, 65, 0, 10)");
}

TEST(ToText, of_a_matrix_is_its_rows) {
    mat4 moved;
    moved.init_translate(7.0f, 8.0f, 9.5f);
    EXPECT_EQ(text_of(moved), "((1, 0, 0, 7), (0, 1, 0, 8), (0, 0, 1, 9.5), (0, 0, 0, 1))");
    EXPECT_EQ(text_of(mat4d()), "((1, 0, 0, 0), (0, 1, 0, 0), (0, 0, 1, 0), (0, 0, 0, 1))");
}

TEST(ToText, follows_the_precision_of_the_stream) {
    std::ostringstream text;
    text.precision(2);
    text << vec3(1.2345f, 0.0f, 100.0f);
    EXPECT_EQ(text.str(), "(1.2, 0, 1e+02)");
}

} // namespace

} // namespace orvex_test
