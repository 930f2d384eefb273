// Packed meshes of glTF: unpacked by the importer, and never believed.

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include <draco/compression/encode.h>
#include <draco/mesh/triangle_soup_mesh_builder.h>
#include <gtest/gtest.h>

#include <orvex/geometry/mesh/mesh.h>
#include <orvex/geometry/mesh/model.h>
#include <orvex_kit/engine.h>
#include <orvex_kit/model.h>

#include "orvex_formats/gltf/private/draco_meshes.h"
#include "orvex_formats/private/importer_protocol.h"
#include "tests/orvex_formats/gltf_file.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using namespace orvex::formats;

/// A strip of triangles along x with normals and colours; more of them make a longer strip.
std::vector<unsigned char> packed_strip(int num_triangles) {
    draco::TriangleSoupMeshBuilder builder;
    builder.Start(num_triangles);
    const int position =
        builder.AddAttribute(draco::GeometryAttribute::POSITION, 3, draco::DT_FLOAT32);
    const int color =
        builder.AddAttribute(draco::GeometryAttribute::COLOR, 4, draco::DT_UINT8, true);
    const std::uint8_t red[] = {255, 0, 0, 255};
    for (int i = 0; i < num_triangles; ++i) {
        const auto x = static_cast<float>(i);
        const float a[] = {x, 0, 0}, b[] = {x + 1, 0, 0}, c[] = {x, 1, 0};
        builder.SetAttributeValuesForFace(position, draco::FaceIndex(std::uint32_t(i)), a, b, c);
        builder.SetAttributeValuesForFace(color, draco::FaceIndex(std::uint32_t(i)), red, red, red);
    }
    draco::Encoder encoder;
    encoder.SetEncodingMethod(draco::MESH_SEQUENTIAL_ENCODING);
    draco::EncoderBuffer buffer;
    EXPECT_TRUE(encoder.EncodeMeshToBuffer(*builder.Finalize(), &buffer).ok());
    return {buffer.data(), buffer.data() + buffer.size()};
}

/// Three triangles, which have seven vertices: (1, 0) and (2, 0) belong to two.
class DracoTest : public testing::Test {
protected:
    DracoTest() {
        file.add_accessor("VEC3", 5126, 7);
        file.add_accessor("VEC4", 5121, 7, ",'normalized':true");
        file.add_accessor("SCALAR", 5123, 9);
    }

    std::string write(const std::vector<unsigned char>& packed) {
        const std::string view = std::to_string(file.add_view(packed));
        file.rest = "'extensionsUsed':['KHR_draco_mesh_compression'],"
                    "'extensionsRequired':['KHR_draco_mesh_compression'],'meshes':[{'name':'strip',"
                    "'primitives':[" +
                    before + "{'attributes':{'POSITION':0,'COLOR_0':1}," + indices + mode +
                    "'extensions':{'KHR_draco_mesh_compression':{'bufferView':" + view +
                    ",'attributes':{'POSITION':0,'COLOR_0':" + color_id +
                    "}}}}]}],'nodes':[{'mesh':0},{'mesh':0,'translation':[0,5,0]}]";
        const std::vector<unsigned char> bytes = file.as_binary();
        return folder.write("strip.glb", std::string(bytes.begin(), bytes.end()));
    }

    std::string reason_of(const std::vector<unsigned char>& packed) {
        const orvex::kit::Model model(write(packed));
        EXPECT_FALSE(model);
        const std::string start = "meshes[0].primitives[0]";
        const std::string reason = model.reason();
        return reason.find(start) == reason.npos ? reason
                                                 : reason.substr(reason.find(start) + start.size());
    }

    orvex::kit::Engine engine;
    TempDir folder;
    GltfFile file;
    std::string before, indices = "'indices':2,", mode, color_id = "1";
};

TEST_F(DracoTest, are_unpacked_once_for_all_places_of_a_mesh) {
    const orvex::kit::Model model(write(packed_strip(3)));
    ASSERT_TRUE(model) << model.reason();
    EXPECT_EQ(model.num_faces(), 6u);
    EXPECT_EQ(model.num_vertices(), 14u);
    EXPECT_EQ(model.bounds().max.y, 6.0f);
    EXPECT_NEAR(model.bounds().max.x, 3.0f, 0.001f) << "as exactly as it was packed";
    EXPECT_TRUE(model.notes().empty()) << model.notes()[0];
    auto* const mesh = dynamic_cast<orvex::Mesh*>(model.node()->get_child(0));
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->get_vertex_color(0).x, 1.0f);
    EXPECT_EQ(mesh->get_vertex_color(0).y, 0.0f);
}

TEST_F(DracoTest, are_refused_where_they_dont_fit_the_accessors) {
    const std::string extension = ".extensions.KHR_draco_mesh_compression";
    EXPECT_EQ(reason_of(packed_strip(2)),
              extension + ": accessor 2 has 9 indices, and the packed mesh 6");
    color_id = "7";
    EXPECT_EQ(reason_of(packed_strip(3)),
              extension + ".attributes.COLOR_0: the packed mesh or the primitive has no such "
                          "attribute");
    color_id = "0";
    EXPECT_EQ(reason_of(packed_strip(3)),
              extension + ".attributes.COLOR_0: accessor 1 has 7 elements of 4, and the packed "
                          "mesh 7 of 3");
    mode = "'mode':5,";
    EXPECT_EQ(reason_of(packed_strip(3)), ": a packed mesh that isn't one of triangles");
    mode.clear();
    indices.clear();
    EXPECT_EQ(reason_of(packed_strip(3)), ": a packed mesh without \"indices\"");
}

TEST_F(DracoTest, may_lie_beside_others_or_be_none) {
    const std::string places =
        std::to_string(file.add_floats("VEC3", 3, {0, 0, 9, 1, 0, 9, 0, 1, 9}));
    before = "{'attributes':{'POSITION':" + places + "}},";
    const orvex::kit::Model both(write(packed_strip(3)));
    ASSERT_TRUE(both) << both.reason();
    EXPECT_EQ(both.num_faces(), 8u) << "in two places";
    EXPECT_EQ(both.bounds().max.z, 9.0f);
    EXPECT_TRUE(both.notes().empty()) << both.notes()[0];

    GltfFile bare = triangle();
    bare.rest += ",'extensionsUsed':['KHR_draco_mesh_compression'],"
                 "'extensionsRequired':['KHR_draco_mesh_compression']";
    const std::vector<unsigned char> bytes = bare.as_binary();
    const orvex::kit::Model none(folder.write("bare.glb", std::string(bytes.begin(), bytes.end())));
    ASSERT_TRUE(none) << none.reason();
    EXPECT_EQ(none.num_faces(), 1u);
    EXPECT_TRUE(none.notes().empty()) << none.notes()[0];
}

TEST_F(DracoTest, are_refused_with_the_reason_of_their_library) {
    std::vector<unsigned char> packed = packed_strip(3);
    packed.resize(packed.size() / 2);
    const std::string reason = reason_of(packed);
    EXPECT_EQ(reason.rfind(".extensions.KHR_draco_mesh_compression: packed mesh 0: ", 0), 0u)
        << reason;
}

TEST_F(DracoTest, are_unpacked_or_refused_whatever_is_changed) {
    const std::vector<unsigned char> whole = packed_strip(3);
    for (const std::size_t place : {5u, 11u, 12u, 17u, 25u, 40u}) {
        std::vector<unsigned char> packed = whole;
        ASSERT_LT(place, packed.size());
        packed[place] ^= 0xff;
        const orvex::kit::Model model(write(packed));
        EXPECT_TRUE(model ? model.num_faces() == 6 : !model.reason().empty());
    }
}

// ------------------------------------------------------------------------------------ answers

/// An answer with one mesh: a triangle with one attribute.
Bytes small_answer(std::uint64_t num_corners, std::uint32_t last_corner, std::uint32_t width,
                   std::uint64_t num_numbers, float number, std::uint32_t num_attributes = 1) {
    Bytes bytes;
    bytes.add_number(answer_mark).add_number(std::uint64_t{0}).add_number(std::uint32_t{3});
    bytes.add_number(num_corners).add_number(0u).add_number(1u).add_number(last_corner);
    bytes.add_number(num_attributes).add_number(5u).add_number(width).add_number(num_numbers);
    for (int i = 0; i < 6; ++i)
        bytes.add_number(number);
    return bytes;
}

std::string draco_refusal(const Bytes& answer) {
    return refusal_of<std::vector<DracoMesh>>(
        [](const InputFile& file) { return read_draco_answer(file, 1); }, answer.bytes);
}

TEST(DracoAnswer, is_read_where_all_fits) {
    const std::vector<DracoMesh> meshes =
        read_draco_answer(InputFile(small_answer(3, 2, 2, 6, 0.5f).bytes), 1);
    ASSERT_EQ(meshes.size(), 1u);
    EXPECT_EQ(meshes[0].num_vertices, 3u);
    EXPECT_EQ(meshes[0].corners, (std::vector<std::uint32_t>{0, 1, 2}));
    EXPECT_EQ(meshes[0].attributes.at(5).width, 2u);
    EXPECT_EQ(meshes[0].attributes.at(5).numbers, std::vector<float>(6, 0.5f));
}

TEST(DracoAnswer, is_refused_where_it_lies) {
    const float nothing = std::numeric_limits<float>::quiet_NaN();
    const struct {
        Bytes answer;
        const char* reason;
    } lies[] = {{small_answer(3, 3, 2, 6, 0), "a corner beyond the vertices"},
                {small_answer(2, 2, 2, 6, 0), "a triangle without three corners"},
                {small_answer(UINT64_MAX / 2, 2, 2, 6, 0), "it is cut off"},
                {small_answer(3, 2, 3, 6, 0), "a list that doesn't fit that of the vertices"},
                {small_answer(3, 2, 0, 6, 0), "elements of a width that none has"},
                {small_answer(3, 2, UINT32_MAX, 6, 0), "elements of a width that none has"},
                {small_answer(3, 2, 2, UINT64_MAX, 0), "it is cut off"},
                {small_answer(3, 2, 2, 6, nothing), "a number that isn't finite"},
                {small_answer(3, 2, 2, 6, 0, 65), "more attributes than any mesh has"},
                {small_answer(3, 2, 2, 6, 0, 64), "it is cut off"},
                {small_answer(3, 2, 1, 3, 0), "more than was asked for"}};
    for (const auto& lie : lies) {
        const std::string reason = draco_refusal(lie.answer);
        EXPECT_NE(reason.find(lie.reason), reason.npos) << reason << ", not " << lie.reason;
    }
}

} // namespace

} // namespace orvex_test
