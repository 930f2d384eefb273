#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/math/vec2.h"
#include "orvex/math/vec3.h"
#include "orvex/renderer/records/gpu_program_data.h"
#include "orvex/renderer/records/gpu_program_uniform.h"

namespace orvex_test {

using namespace orvex;

namespace {

TEST(UniformTable, starts_with_four_empty_slots) {
    GpuProgramData data;
    ASSERT_EQ(data.get_num_uniforms(), 4u);
    for (unsigned long i = 0; i < 4; ++i)
        EXPECT_EQ(data.get_uniforms_list()[i], nullptr);
}

TEST(UniformTable, a_new_record_has_the_defaults) {
    GpuProgramData data;
    const GpuProgramUniform* const uniform = data.get_new_uniform();
    EXPECT_EQ(data.get_uniforms_list()[0], uniform);
    EXPECT_EQ(uniform->location, -1);
    EXPECT_EQ(uniform->type, 8);
    EXPECT_FALSE(uniform->dirty);
    EXPECT_STREQ(uniform->name, "");
    EXPECT_EQ(uniform->count, 0);
    EXPECT_EQ(uniform->i.w, 1);
    EXPECT_EQ(uniform->f.w, 1.0f);
    EXPECT_EQ(uniform->d.w, 1.0);
    EXPECT_EQ(uniform->m4f.m[0], 1.0f);
    EXPECT_EQ(uniform->m4d.m[5], 1.0);
    EXPECT_EQ(uniform->m3f[0], 0.0f);
    EXPECT_EQ(uniform->m3d[8], 0.0);
    EXPECT_EQ(uniform->ui[3], 0u);
    EXPECT_EQ(uniform->ui64, 0u);
    EXPECT_TRUE(uniform->iv.empty());
    EXPECT_TRUE(uniform->fv.empty());
    EXPECT_TRUE(uniform->dv.empty());
    EXPECT_TRUE(uniform->ui64v.empty());
}

TEST(UniformTable, the_fifth_uniform_makes_room_for_eight) {
    GpuProgramData data;
    for (int i = 0; i < 4; ++i)
        data.set_uniform_1i(("u" + std::to_string(i)).c_str(), i);
    EXPECT_EQ(data.get_num_uniforms(), 4u);
    data.set_uniform_1i("u4", 4);
    ASSERT_EQ(data.get_num_uniforms(), 8u);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(data.get_uniforms_list()[i]->i.x, i) << "the records keep their slots";
    for (int i = 5; i < 8; ++i)
        EXPECT_EQ(data.get_uniforms_list()[i], nullptr);
    for (int i = 5; i < 9; ++i)
        data.set_uniform_1i(("u" + std::to_string(i)).c_str(), i);
    EXPECT_EQ(data.get_num_uniforms(), 12u);
    EXPECT_EQ(data.find_uniform("u8"), data.get_uniforms_list()[8]);
}

TEST(UniformTable, finds_by_name_in_any_order) {
    GpuProgramData data;
    const char* const names[] = {"a", "b", "c", "d", "e", "f"};
    for (const char* const name : names)
        data.set_uniform_1f(name, 1.0f);
    for (int pass = 0; pass < 2; ++pass) {
        for (int i = 0; i < 6; ++i)
            EXPECT_EQ(data.find_uniform(names[i]), data.get_uniforms_list()[i]);
        for (int i = 5; i >= 0; --i)
            EXPECT_EQ(data.find_uniform(names[i]), data.get_uniforms_list()[i]);
    }
    EXPECT_EQ(data.find_uniform("g"), nullptr);
    EXPECT_EQ(data.find_uniform("ab"), nullptr);
    EXPECT_EQ(data.find_uniform(""), nullptr);
    EXPECT_EQ(data.find_uniform(nullptr), nullptr);
}

TEST(UniformTable, an_empty_name_finds_the_first_record_without_a_name) {
    GpuProgramData data;
    GpuProgramUniform* const first = data.get_new_uniform();
    data.get_new_uniform();
    EXPECT_EQ(data.find_uniform(""), first);
    EXPECT_EQ(data.find_uniform(""), first);
}

TEST(UniformTable, knows_a_long_name_by_its_first_63_characters) {
    GpuProgramData data;
    const std::string name(70, 'x');
    EXPECT_TRUE(data.set_uniform_1f(name.c_str(), 1.0f));
    GpuProgramUniform* const uniform = data.find_uniform(name.c_str());
    ASSERT_NE(uniform, nullptr);
    EXPECT_EQ(uniform->name, std::string(63, 'x'));
    EXPECT_EQ(data.find_uniform(std::string(63, 'x').c_str()), uniform);
    EXPECT_EQ(data.find_uniform((std::string(63, 'x') + "other").c_str()), uniform);
    EXPECT_EQ(data.find_uniform(std::string(62, 'x').c_str()), nullptr);
    EXPECT_TRUE(data.set_uniform_1f(std::string(100000, 'x').c_str(), 2.0f));
    EXPECT_EQ(data.get_uniforms_list()[1], nullptr);
    EXPECT_EQ(uniform->f.x, 2.0f);
}

TEST(UniformTable, the_type_is_that_of_the_first_setter) {
    GpuProgramData data;
    EXPECT_TRUE(data.set_uniform_1i("u", 5));
    GpuProgramUniform* const uniform = data.find_uniform("u");
    uniform->dirty = false;
    EXPECT_TRUE(data.set_uniform_1f("u", 2.5f));
    EXPECT_EQ(data.find_uniform("u"), uniform);
    EXPECT_EQ(uniform->type, 0);
    EXPECT_EQ(uniform->i.x, 5) << "the old integer is what will be sent";
    EXPECT_EQ(uniform->f.x, 2.5f);
    EXPECT_TRUE(uniform->dirty);
}

TEST(UniformTable, a_setter_leaves_the_location) {
    GpuProgramData data;
    data.set_uniform_1i("u", 5);
    GpuProgramUniform* const uniform = data.find_uniform("u");
    EXPECT_EQ(uniform->location, -1);
    uniform->location = 3;
    data.set_uniform_1i("u", 6);
    EXPECT_EQ(uniform->location, 3);
}

TEST(UniformTable, can_be_made_dirty_as_a_whole) {
    GpuProgramData data;
    data.set_uniform_1i("a", 1);
    data.set_uniform_1i("b", 1);
    data.find_uniform("a")->dirty = data.find_uniform("b")->dirty = false;
    data.uniforms_optimized = true;
    EXPECT_TRUE(data.need_bind_uniforms());
    EXPECT_TRUE(data.find_uniform("a")->dirty);
    EXPECT_TRUE(data.find_uniform("b")->dirty);
    EXPECT_FALSE(data.uniforms_optimized);
}

TEST(UniformTable, works_again_after_its_end) {
    GpuProgramData data;
    data.set_uniform_1i("a", 1);
    data.kill_uniforms();
    EXPECT_EQ(data.get_uniforms_list(), nullptr);
    EXPECT_EQ(data.get_num_uniforms(), 0u);
    EXPECT_EQ(data.find_uniform("a"), nullptr);
    EXPECT_FALSE(data.need_bind_uniforms());
    data.kill_uniforms();
    EXPECT_TRUE(data.set_uniform_1i("a", 2));
    EXPECT_EQ(data.get_num_uniforms(), 4u);
    EXPECT_EQ(data.find_uniform("a")->i.x, 2);
}

struct Setter {
    const char* description;
    int type;
    bool (*set)(GpuProgramData& data, const char* name);
    bool (*holds)(const GpuProgramUniform& uniform);
};

std::ostream& operator<<(std::ostream& out, const Setter& setter) {
    return out << setter.description;
}

using Data = GpuProgramData;
using Uniform = GpuProgramUniform const;

constexpr int INTS[] = {1, 2, 3, 4, 5, 6, 7, 8};
constexpr float FLOATS[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
constexpr double DOUBLES[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
constexpr unsigned long long LONGS[] = {1, 2, 3, 4, 5, 6, 7, 1ull << 63};

const vec2* vec2s() {
    return reinterpret_cast<const vec2*>(FLOATS);
}
const vec3* vec3s() {
    return reinterpret_cast<const vec3*>(FLOATS);
}
const vec4* vec4s() {
    return reinterpret_cast<const vec4*>(FLOATS);
}

template<typename T>
bool is_first(const std::vector<T>& array, const T* values, int size) {
    return array == std::vector<T>(values, values + size);
}

template<typename Vector>
bool is_vector(const Vector& v, int x, int y, int z, int w) {
    return v.x == x && v.y == y && v.z == z && v.w == w;
}

bool is_ui(Uniform& u, unsigned int x, unsigned int y, unsigned int z, unsigned int w) {
    return u.ui[0] == x && u.ui[1] == y && u.ui[2] == z && u.ui[3] == w;
}

// clang-format off
const Setter SETTERS[] = {
    {"1i", 0, [](Data& d, const char* n) { return d.set_uniform_1i(n, 7); }, [](Uniform& u) { return is_vector(u.i, 7, 0, 0, 1); }},
    {"2i", 1, [](Data& d, const char* n) { return d.set_uniform_2i(n, 7, 8); }, [](Uniform& u) { return is_vector(u.i, 7, 8, 0, 1); }},
    {"3i", 2, [](Data& d, const char* n) { return d.set_uniform_3i(n, 7, 8, 9); }, [](Uniform& u) { return is_vector(u.i, 7, 8, 9, 1); }},
    {"4i", 3, [](Data& d, const char* n) { return d.set_uniform_4i(n, 7, 8, 9, 10); }, [](Uniform& u) { return is_vector(u.i, 7, 8, 9, 10); }},
    {"1iv", 4, [](Data& d, const char* n) { return d.set_uniform_1iv(n, INTS, 2); }, [](Uniform& u) { return is_first(u.iv, INTS, 2); }},
    {"2iv", 5, [](Data& d, const char* n) { return d.set_uniform_2iv(n, INTS, 2); }, [](Uniform& u) { return is_first(u.iv, INTS, 4); }},
    {"3iv", 6, [](Data& d, const char* n) { return d.set_uniform_3iv(n, INTS, 2); }, [](Uniform& u) { return is_first(u.iv, INTS, 6); }},
    {"4iv", 7, [](Data& d, const char* n) { return d.set_uniform_4iv(n, INTS, 2); }, [](Uniform& u) { return is_first(u.iv, INTS, 8); }},
    {"1f", 8, [](Data& d, const char* n) { return d.set_uniform_1f(n, 7); }, [](Uniform& u) { return is_vector(u.f, 7, 0, 0, 1); }},
    {"2f", 9, [](Data& d, const char* n) { return d.set_uniform_2f(n, 7, 8); }, [](Uniform& u) { return is_vector(u.f, 7, 8, 0, 1); }},
    {"3f", 10, [](Data& d, const char* n) { return d.set_uniform_3f(n, 7, 8, 9); }, [](Uniform& u) { return is_vector(u.f, 7, 8, 9, 1); }},
    {"4f", 11, [](Data& d, const char* n) { return d.set_uniform_4f(n, 7, 8, 9, 10); }, [](Uniform& u) { return is_vector(u.f, 7, 8, 9, 10); }},
    {"1fv", 12, [](Data& d, const char* n) { return d.set_uniform_1fv(n, FLOATS, 2); }, [](Uniform& u) { return is_first(u.fv, FLOATS, 2); }},
    {"2fv", 13, [](Data& d, const char* n) { return d.set_uniform_2fv(n, vec2s(), 2); }, [](Uniform& u) { return is_first(u.fv, FLOATS, 4); }},
    {"3fv", 14, [](Data& d, const char* n) { return d.set_uniform_3fv(n, vec3s(), 2); }, [](Uniform& u) { return is_first(u.fv, FLOATS, 6); }},
    {"4fv", 15, [](Data& d, const char* n) { return d.set_uniform_4fv(n, vec4s(), 2); }, [](Uniform& u) { return is_first(u.fv, FLOATS, 8); }},
    {"1d", 16, [](Data& d, const char* n) { return d.set_uniform_1d(n, 7); }, [](Uniform& u) { return is_vector(u.d, 7, 0, 0, 1); }},
    {"2d", 17, [](Data& d, const char* n) { return d.set_uniform_2d(n, 7, 8); }, [](Uniform& u) { return is_vector(u.d, 7, 8, 0, 1); }},
    {"3d", 18, [](Data& d, const char* n) { return d.set_uniform_3d(n, 7, 8, 9); }, [](Uniform& u) { return is_vector(u.d, 7, 8, 9, 1); }},
    {"4d", 19, [](Data& d, const char* n) { return d.set_uniform_4d(n, 7, 8, 9, 10); }, [](Uniform& u) { return is_vector(u.d, 7, 8, 9, 10); }},
    {"1dv", 20, [](Data& d, const char* n) { return d.set_uniform_1dv(n, DOUBLES, 2); }, [](Uniform& u) { return is_first(u.dv, DOUBLES, 2); }},
    {"2dv", 21, [](Data& d, const char* n) { return d.set_uniform_2dv(n, DOUBLES, 2); }, [](Uniform& u) { return is_first(u.dv, DOUBLES, 4); }},
    {"3dv", 22, [](Data& d, const char* n) { return d.set_uniform_3dv(n, DOUBLES, 2); }, [](Uniform& u) { return is_first(u.dv, DOUBLES, 6); }},
    {"4dv", 23, [](Data& d, const char* n) { return d.set_uniform_4dv(n, DOUBLES, 2); }, [](Uniform& u) { return is_first(u.dv, DOUBLES, 8); }},
    {"3x3f", 24, [](Data& d, const char* n) { return d.set_uniform_3x3f(n, FLOATS); }, [](Uniform& u) { return std::equal(FLOATS, FLOATS + 9, u.m3f); }},
    {"4x4f", 25, [](Data& d, const char* n) { return d.set_uniform_4x4f(n, FLOATS); }, [](Uniform& u) { return std::equal(FLOATS, FLOATS + 16, u.m4f.m); }},
    {"4x4f_of_a_matrix", 25, [](Data& d, const char* n) { mat4 m; m.m[13] = 5; return d.set_uniform_4x4f(n, m); }, [](Uniform& u) { return u.m4f.m[13] == 5 && u.m4f.m[0] == 1; }},
    {"3x3d", 26, [](Data& d, const char* n) { return d.set_uniform_3x3d(n, DOUBLES); }, [](Uniform& u) { return std::equal(DOUBLES, DOUBLES + 9, u.m3d); }},
    {"4x4d", 27, [](Data& d, const char* n) { return d.set_uniform_4x4d(n, DOUBLES); }, [](Uniform& u) { return std::equal(DOUBLES, DOUBLES + 16, u.m4d.m); }},
    {"1ui", 28, [](Data& d, const char* n) { return d.set_uniform_1ui(n, ~0u); }, [](Uniform& u) { return is_ui(u, ~0u, 0, 0, 0); }},
    {"2ui", 29, [](Data& d, const char* n) { return d.set_uniform_2ui(n, 7, 8); }, [](Uniform& u) { return is_ui(u, 7, 8, 0, 0); }},
    {"3ui", 30, [](Data& d, const char* n) { return d.set_uniform_3ui(n, 7, 8, 9); }, [](Uniform& u) { return is_ui(u, 7, 8, 9, 0); }},
    {"4ui", 31, [](Data& d, const char* n) { return d.set_uniform_4ui(n, 7, 8, 9, 10); }, [](Uniform& u) { return is_ui(u, 7, 8, 9, 10); }},
    {"1ui64", 32, [](Data& d, const char* n) { return d.set_uniform_1ui64(n, 1ull << 63); }, [](Uniform& u) { return u.ui64 == 1ull << 63; }},
    {"1ui64v", 33, [](Data& d, const char* n) { return d.set_uniform_1ui64v(n, LONGS, 8); }, [](Uniform& u) { return is_first(u.ui64v, LONGS, 8); }},
    {"2ui64v", 34, [](Data& d, const char* n) { return d._set_uniform_ui64v(n, LONGS, 2, 2); }, [](Uniform& u) { return is_first(u.ui64v, LONGS, 4); }},
    {"3ui64v", 35, [](Data& d, const char* n) { return d._set_uniform_ui64v(n, LONGS, 2, 3); }, [](Uniform& u) { return is_first(u.ui64v, LONGS, 6); }},
    {"4ui64v", 36, [](Data& d, const char* n) { return d._set_uniform_ui64v(n, LONGS, 2, 4); }, [](Uniform& u) { return is_first(u.ui64v, LONGS, 8); }},
};
// clang-format on

class UniformSetter : public testing::TestWithParam<Setter> {};
INSTANTIATE_TEST_SUITE_P(set_uniform, UniformSetter, testing::ValuesIn(SETTERS),
                         [](const auto& row) { return "_" + std::string(row.param.description); });

TEST_P(UniformSetter, makes_a_dirty_record_of_its_type) {
    GpuProgramData data;
    EXPECT_TRUE(GetParam().set(data, "u"));
    const GpuProgramUniform* const uniform = data.find_uniform("u");
    ASSERT_NE(uniform, nullptr);
    EXPECT_EQ(uniform->type, GetParam().type);
    EXPECT_TRUE(uniform->dirty);
    EXPECT_EQ(uniform->location, -1);
    EXPECT_STREQ(uniform->name, "u");
    EXPECT_TRUE(GetParam().holds(*uniform));
}

TEST_P(UniformSetter, stores_into_a_record_of_another_type_and_leaves_the_type) {
    GpuProgramData data;
    GpuProgramUniform* const uniform = data.get_new_uniform();
    uniform->name[0] = 'u';
    uniform->type = GPU_SHADER_UNIFORM(99);
    EXPECT_TRUE(GetParam().set(data, "u"));
    EXPECT_EQ(uniform->type, 99);
    EXPECT_TRUE(uniform->dirty);
    EXPECT_TRUE(GetParam().holds(*uniform));
    EXPECT_EQ(data.get_uniforms_list()[1], nullptr);
}

TEST_P(UniformSetter, refuses_a_null_name) {
    GpuProgramData data;
    EXPECT_FALSE(GetParam().set(data, nullptr));
    EXPECT_EQ(data.get_uniforms_list()[0], nullptr);
}

TEST_P(UniformSetter, asks_for_new_locations_when_it_sets_integers) {
    GpuProgramData data;
    data.uniforms_optimized = true;
    GetParam().set(data, "u");
    const int type = GetParam().type;
    const bool integers = (type >= 4 && type <= 7) || (type >= 28 && type <= 31);
    EXPECT_EQ(data.uniforms_optimized, !integers);
}

TEST(UniformSetters, refuse_null_values_and_negative_counts) {
    GpuProgramData data;
    EXPECT_FALSE(data.set_uniform_1iv("u", nullptr, 2));
    EXPECT_FALSE(data.set_uniform_4fv("u", nullptr, 2));
    EXPECT_FALSE(data.set_uniform_4dv("u", nullptr, 2));
    EXPECT_FALSE(data.set_uniform_1ui64v("u", nullptr, 2));
    EXPECT_FALSE(data.set_uniform_1iv("u", INTS, -1));
    EXPECT_FALSE(data.set_uniform_1fv("u", FLOATS, -1));
    EXPECT_FALSE(data.set_uniform_1dv("u", DOUBLES, -1));
    EXPECT_FALSE(data.set_uniform_1ui64v("u", LONGS, -1));
    EXPECT_FALSE(data.set_uniform_3x3f("u", nullptr));
    EXPECT_FALSE(data.set_uniform_4x4f("u", nullptr));
    EXPECT_FALSE(data.set_uniform_3x3d("u", nullptr));
    EXPECT_FALSE(data.set_uniform_4x4d("u", nullptr));
    EXPECT_FALSE(data._set_uniform_ui("u", nullptr, 1));
    EXPECT_EQ(data.get_uniforms_list()[0], nullptr);
}

TEST(UniformSetters, refuse_components_outside_1_to_4) {
    GpuProgramData data;
    const unsigned int value = 1;
    for (const int components : {0, 5, -1}) {
        EXPECT_FALSE(data._set_uniform_iv("u", INTS, 1, components));
        EXPECT_FALSE(data._set_uniform_fv("u", FLOATS, 1, components));
        EXPECT_FALSE(data._set_uniform_dv("u", DOUBLES, 1, components));
        EXPECT_FALSE(data._set_uniform_ui64v("u", LONGS, 1, components));
        EXPECT_FALSE(data._set_uniform_ui("u", &value, components));
    }
    EXPECT_EQ(data.get_uniforms_list()[0], nullptr);
}

TEST(UniformArray, of_another_count_is_made_anew_and_used_again_after) {
    GpuProgramData data;
    data.set_uniform_1fv("u", FLOATS, 3);
    const GpuProgramUniform* const uniform = data.find_uniform("u");
    EXPECT_EQ(uniform->count, 3);
    data.set_uniform_1fv("u", FLOATS, 5);
    EXPECT_EQ(uniform->count, 5);
    EXPECT_EQ(uniform->fv.size(), 5u);
    const float* const storage = uniform->fv.data();
    data.set_uniform_1fv("u", FLOATS + 1, 5);
    EXPECT_EQ(uniform->fv.data(), storage);
    EXPECT_TRUE(is_first(uniform->fv, FLOATS + 1, 5));
    data.set_uniform_1fv("u", FLOATS, 2);
    EXPECT_EQ(uniform->count, 2);
    EXPECT_EQ(uniform->fv.size(), 2u);
}

TEST(UniformArray, is_a_copy_of_the_callers_data) {
    GpuProgramData data;
    std::vector<int> values{1, 2, 3};
    data.set_uniform_1iv("u", values.data(), 3);
    values.assign(3, 0);
    EXPECT_EQ(data.find_uniform("u")->iv, (std::vector<int>{1, 2, 3}));
}

TEST(UniformArray, may_be_set_from_its_own_storage) {
    GpuProgramData data;
    data.set_uniform_1iv("u", INTS, 4);
    const GpuProgramUniform* const uniform = data.find_uniform("u");
    data.set_uniform_1iv("u", uniform->iv.data(), 4);
    EXPECT_TRUE(is_first(uniform->iv, INTS, 4));
    data.set_uniform_1iv("u", uniform->iv.data(), 2);
    EXPECT_TRUE(is_first(uniform->iv, INTS, 2));
}

TEST(UniformArray, grows_for_wider_elements_of_the_same_count) {
    GpuProgramData data;
    data.set_uniform_1iv("u", INTS, 2);
    data.set_uniform_4iv("u", INTS, 2);
    const GpuProgramUniform* const uniform = data.find_uniform("u");
    EXPECT_EQ(uniform->type, 4);
    EXPECT_EQ(uniform->count, 2);
    EXPECT_TRUE(is_first(uniform->iv, INTS, 8));
}

TEST(UniformArray, of_another_kind_has_its_own_storage) {
    GpuProgramData data;
    data.set_uniform_1iv("u", INTS, 3);
    data.set_uniform_1fv("u", FLOATS, 3);
    data.set_uniform_1ui64v("u", LONGS, 3);
    const GpuProgramUniform* const uniform = data.find_uniform("u");
    EXPECT_TRUE(is_first(uniform->iv, INTS, 3));
    EXPECT_TRUE(is_first(uniform->fv, FLOATS, 3));
    EXPECT_TRUE(is_first(uniform->ui64v, LONGS, 3));
}

TEST(UniformArray, of_doubles_takes_the_place_of_floats_when_the_count_differs) {
    GpuProgramData data;
    data.set_uniform_1fv("u", FLOATS, 3);
    data.set_uniform_1dv("u", DOUBLES, 3);
    const GpuProgramUniform* const uniform = data.find_uniform("u");
    EXPECT_TRUE(is_first(uniform->fv, FLOATS, 3));
    data.set_uniform_1dv("u", DOUBLES, 4);
    EXPECT_TRUE(uniform->fv.empty());
    EXPECT_TRUE(is_first(uniform->dv, DOUBLES, 4));
}

TEST(UniformArray, may_be_empty) {
    GpuProgramData data;
    EXPECT_TRUE(data.set_uniform_1fv("u", FLOATS, 0));
    EXPECT_EQ(data.find_uniform("u")->count, 0);
    EXPECT_TRUE(data.find_uniform("u")->fv.empty());
}

} // namespace

} // namespace orvex_test
