#include "orvex/renderer/records/vertex.h"

#include <cstdint>

#include <gtest/gtest.h>

#include "orvex/renderer/records/vertex_attrib_array.h"
#include "tests/orvex/geometry/printers.h"

namespace orvex_test {

using namespace orvex;

namespace {

TEST(Vertex, is_made_of_default_vectors) {
    const Vertex vertex;
    for (const vec4& attribute :
         {vertex.position, vertex.color, vertex.normal, vertex.uv0, vertex.uv1, vertex.tangent})
        EXPECT_EQ(attribute, vec4(0.0f, 0.0f, 0.0f, 1.0f));
}

TEST(Vertex, has_zero_vectors_where_a_packed_record_is_narrow) {
    const Vertex_64 vertex_64;
    EXPECT_EQ(vertex_64.position, vec3());
    EXPECT_EQ(vertex_64.color, vec4());
    EXPECT_EQ(vertex_64.normal, vec3());
    EXPECT_EQ(vertex_64.uv0, vec2());
    EXPECT_EQ(vertex_64.tangent, vec4());
    const Vertex_32 vertex_32;
    EXPECT_EQ(vertex_32.position, vec3());
    EXPECT_EQ(vertex_32.normal, vec3());
    EXPECT_EQ(vertex_32.uv0, vec2());
    const Vertex_PhysXCloth cloth;
    EXPECT_EQ(cloth.position, vec4());
    EXPECT_EQ(cloth.color, vec4());
    EXPECT_EQ(cloth.normal, vec3());
    EXPECT_EQ(cloth.uv0, vec2());
    EXPECT_EQ(cloth.tangent, vec3());
}

TEST(Face, starts_at_vertex_zero) {
    const FaceU16 narrow;
    EXPECT_EQ(narrow.a + narrow.b + narrow.c, 0);
    const FaceU32 wide;
    EXPECT_EQ(wide.a + wide.b + wide.c, 0u);
}

template<class Record>
void expect_aligned_block(Record* (*make)(unsigned long, int, unsigned char**),
                          void (*end)(Record**, unsigned long, unsigned char**)) {
    unsigned char* raw = nullptr;
    Record* block = make(3, 256, &raw);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 256, 0u);
    EXPECT_GE(reinterpret_cast<unsigned char*>(block), raw);
    EXPECT_LE(reinterpret_cast<unsigned char*>(block), raw + 255);
    block[2] = Record();
    end(&block, 3, &raw);
    EXPECT_EQ(block, nullptr);
    EXPECT_EQ(raw, nullptr);
}

TEST(AlignedNew, aligns_arrays_of_every_record) {
    expect_aligned_block(AlignedNew_Vertex, AlignedDelete_Vertex);
    expect_aligned_block(AlignedNew_Vertex_64, AlignedDelete_Vertex_64);
    expect_aligned_block(AlignedNew_Vertex_32, AlignedDelete_Vertex_32);
    expect_aligned_block(AlignedNew_Vertex_PhysXCloth, AlignedDelete_Vertex_PhysXCloth);
}

template<class Record>
void expect_no_block(Record* (*make)(unsigned long, int, unsigned char**), unsigned long count) {
    unsigned char byte = 0;
    unsigned char* raw = &byte;
    EXPECT_EQ(make(count, 16, &raw), nullptr);
    EXPECT_EQ(raw, nullptr);
}

TEST(AlignedNew, gives_null_where_the_size_overflows) {
    const unsigned long count = 1ul << 60;
    expect_no_block(AlignedNew_Vertex, count);
    expect_no_block(AlignedNew_Vertex_64, count);
    expect_no_block(AlignedNew_Vertex_32, count);
    expect_no_block(AlignedNew_Vertex_PhysXCloth, count);
}

TEST(AlignedDelete, passes_null_arguments_over) {
    AlignedDelete_Vertex(nullptr, 0, nullptr);
    Vertex vertex;
    Vertex* block = &vertex;
    AlignedDelete_Vertex(&block, 1, nullptr);
    EXPECT_EQ(block, nullptr);
}

TEST(VertexAttribArray, knows_its_element_size_and_dimension) {
    EXPECT_EQ(VertexAttribArray().get_element_size(), 16u);
    EXPECT_EQ(VertexAttribArray_3f().get_element_size(), 12u);
    EXPECT_EQ(VertexAttribArray_2f().get_element_size(), 8u);
    EXPECT_EQ(VertexAttribArray().get_vector_dim(), 4u);
    EXPECT_EQ(VertexAttribArray_3f().get_vector_dim(), 3u);
    EXPECT_EQ(VertexAttribArray_2f().get_vector_dim(), 2u);
}

TEST(VertexAttribArray, starts_empty_and_without_a_location) {
    const VertexAttribArray array;
    EXPECT_EQ(array.num_elements, 0u);
    EXPECT_EQ(array.raw_ptr, nullptr);
    EXPECT_EQ(array.data, nullptr);
    EXPECT_EQ(array.attrib_location, -1);
    EXPECT_FALSE(array.need_update);
}

TEST(VertexAttribArray, cuts_its_size_to_32_bits) {
    VertexAttribArray array;
    array.num_elements = 3;
    EXPECT_EQ(array.get_size(), 48u);
    array.num_elements = (1ul << 28) + 2;
    EXPECT_EQ(array.get_size(), 32u);
}

template<class Array, class Element>
Array filled_array(Element* data, unsigned char* raw) {
    Array array;
    array.num_elements = 1;
    array.raw_ptr = raw;
    array.data = data;
    array.attrib_location = 7;
    array.need_update = true;
    return array;
}

TEST(VertexAttribArray, keeps_its_location_when_reset) {
    unsigned char raw = 0;
    vec4 value;
    auto array = filled_array<VertexAttribArray>(&value, &raw);
    array.reset();
    EXPECT_EQ(array.num_elements, 0u);
    EXPECT_EQ(array.raw_ptr, nullptr);
    EXPECT_EQ(array.data, nullptr);
    EXPECT_EQ(array.attrib_location, 7);
    EXPECT_FALSE(array.need_update);
}

TEST(VertexAttribArray, lowers_need_update_at_a_reset_only_in_the_widest_kind) {
    unsigned char raw = 0;
    vec3 three;
    auto array_3f = filled_array<VertexAttribArray_3f>(&three, &raw);
    array_3f.reset();
    EXPECT_TRUE(array_3f.need_update);
    EXPECT_EQ(array_3f.data, nullptr);
    vec2 two;
    auto array_2f = filled_array<VertexAttribArray_2f>(&two, &raw);
    array_2f.reset();
    EXPECT_TRUE(array_2f.need_update);
    EXPECT_EQ(array_2f.num_elements, 0u);
}

} // namespace

} // namespace orvex_test
