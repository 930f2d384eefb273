#include "orvex/assets/models/3ds/private/lib3ds_check.h"

#include <cfloat>
#include <cmath>
#include <filesystem>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "chunks_3ds.h"
#include "orvex/assets/materials/material_mgr.h"
#include "orvex/assets/models/3ds/loader_3d_lib3ds.h"
#include "orvex/assets/models/3ds/private/lib3ds_chunk_reader.h"
#include "orvex/assets/models/3ds/private/lib3ds_open.h"
#include "orvex/geometry/mesh/model.h"
#include "orvex/platform/private/byte_window.h"
#include "tests/support/closed_input.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

using namespace orvex;
namespace {

bool can_read(const std::string& bytes) {
    ByteWindow window(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
    return lib3ds_can_read(window);
}

/// The same, of a file of which only a window is held.
bool can_read_file(const std::string& path) {
    ByteWindow window;
    return window.open(path.c_str()) && lib3ds_can_read(window);
}

/// Loads the whole file as a host does; a refusal must leave nothing behind.
bool load(const std::string& bytes) {
    static const TempDir dir;
    Loader3D_Lib3ds loader;
    auto* const model = new Model;
    model->add_ref();
    const bool loaded = loader.load_from_file(model, dir.write("model.3ds", bytes).c_str());
    if (!loaded) {
        EXPECT_EQ(model->get_num_children(), 0u);
        EXPECT_EQ(model->get_num_materials(), 0u);
        EXPECT_EQ(MaterialMgr::get()->get_num_resources(), 0u);
    }
    model->kill(nullptr, nullptr);
    MaterialMgr::get()->release_all_resources(nullptr, nullptr);
    return loaded;
}

std::string repeat(const std::string& part, unsigned times) {
    std::string all;
    all.reserve(part.size() * times);
    for (unsigned i = 0; i < times; ++i)
        all += part;
    return all;
}

// --- Broken files ----------------------------------------------------------------------------

struct Row {
    const char* name;
    std::string bytes;
};

std::string from_hex(const std::string& hex) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
    return bytes;
}

std::string with_mesh(const std::string& arrays) {
    return file_3ds(mesh("m", arrays));
}

std::string with_nodes(const std::string& nodes) {
    return file_3ds(mesh("m", triangle()), nodes);
}

/// A node whose track of positions has this content.
std::string with_track(const std::string& content) {
    return with_nodes(mesh_node("m", chunk(0xB020, content)));
}

const std::string three_points = points({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
const std::string track_head = word(0) + dword(0) + dword(0);

class BrokenFile : public testing::TestWithParam<Row> {};

TEST_P(BrokenFile, is_refused) {
    EXPECT_FALSE(can_read(GetParam().bytes));
    EXPECT_FALSE(load(GetParam().bytes));
    const TempDir dir;
    EXPECT_FALSE(can_read_file(dir.write("model.3ds", GetParam().bytes)));
}

std::string name_of(const testing::TestParamInfo<Row>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(
    OfSizes, BrokenFile,
    testing::Values(
        Row{"empty", ""}, Row{"half_a_header", std::string("\x4D\x4D\x06\x00", 4)},
        Row{"keeps_lib3ds_busy_for_ever",
            from_hex("4d4d000009803f1000000000000000090000000000803f000000000000000000000011000900"
                     "0000ff80be00ed00000000000000000000")},
        Row{"root_of_another_kind", chunk(0x4D4C, "")}, Row{"root_of_kind_0", chunk(0, "")},
        Row{"root_is_longer_than_the_file", lying_chunk(0x4D4D, 7, "")},
        Row{"root_is_shorter_than_its_header", lying_chunk(0x4D4D, 5, "")},
        Row{"root_of_size_0", lying_chunk(0x4D4D, 0, "")},
        Row{"root_of_the_largest_size", lying_chunk(0x4D4D, 0xFFFFFFFF, "")},
        Row{"child_of_size_0", chunk(0x4D4D, lying_chunk(0x3D3D, 0, ""))},
        Row{"child_shorter_than_its_header", chunk(0x4D4D, lying_chunk(0x1234, 5, ""))},
        Row{"child_longer_than_its_parent", chunk(0x4D4D, lying_chunk(0x3D3D, 7, "")) + "more"},
        Row{"child_of_the_largest_size", chunk(0x4D4D, lying_chunk(0x3D3D, 0xFFFFFFFF, ""))},
        Row{"half_a_header_in_a_list", chunk(0x4D4D, chunk(0x3D3D, "") + "abc") + "def"},
        Row{"grandchild_longer_than_its_parent",
            file_3ds(chunk(0xAFFF, lying_chunk(0xA010, 60, "")) + chunk(0x1201, repeat("x", 90)))},
        Row{"unknown_chunk_longer_than_its_parent",
            file_3ds(named_object("o", lying_chunk(0x4321, 100, ""))) + repeat("x", 200)}),
    name_of);

INSTANTIATE_TEST_SUITE_P(
    OfTexts, BrokenFile,
    testing::Values(
        Row{"object_name_too_long", file_3ds(named_object(std::string(64, 'n'), ""))},
        Row{"object_name_without_end", file_3ds(chunk(0x4000, "name"))},
        Row{"object_without_name", file_3ds(chunk(0x4000, ""))},
        Row{"material_name_too_long", file_3ds(material(std::string(64, 'n')))},
        Row{"material_name_without_end", file_3ds(chunk(0xAFFF, chunk(0xA000, "name")))},
        Row{"map_name_too_long",
            file_3ds(material("m", texture_map(0xA200, std::string(64, 'n'))))},
        Row{"map_name_without_end", file_3ds(material("m", chunk(0xA34C, chunk(0xA300, "name"))))},
        Row{"background_name_too_long", file_3ds(chunk(0x1100, text(std::string(64, 'n'))))},
        Row{"node_name_too_long", with_nodes(mesh_node(std::string(64, 'n')))},
        Row{"node_name_without_end", with_nodes(chunk(0xB002, chunk(0xB010, repeat("n", 20))))},
        Row{"instance_name_too_long",
            with_nodes(mesh_node("m", instance_name(std::string(64, 'n'))))},
        Row{"scene_name_too_long",
            with_nodes(chunk(0xB00A, word(5) + text(std::string(13, 'n')) + dword(0)))},
        Row{"group_name_too_long",
            with_mesh(three_points + faces({{0, 1, 2}}, face_material(std::string(64, 'n'), {0})))},
        Row{"five_sides_of_six",
            with_mesh(three_points + faces({{0, 1, 2}}, chunk(0x4190, repeat(text("side"), 5))))},
        Row{"projected_picture_without_end",
            file_3ds(named_object("l", chunk(0x4600,
                                             reals({0, 0, 0}) +
                                                 chunk(0x4610, reals({0, 0, 0, 0, 0}) +
                                                                   chunk(0x4653, "picture")))))}),
    name_of);

INSTANTIATE_TEST_SUITE_P(
    OfMeshes, BrokenFile,
    testing::Values(
        Row{"points_without_count", with_mesh(chunk(0x4110, "1"))},
        Row{"fewer_points_than_said", with_mesh(chunk(0x4110, word(2) + reals({1, 2, 3})))},
        Row{"most_points_and_none_there", with_mesh(chunk(0x4110, word(65535)))},
        Row{"fewer_flags_than_said", with_mesh(three_points + chunk(0x4111, word(3) + word(0)))},
        Row{"fewer_texture_coordinates_than_said",
            with_mesh(three_points + chunk(0x4140, word(3) + reals({1, 2})))},
        Row{"fewer_faces_than_said",
            with_mesh(three_points + chunk(0x4120, word(2) + repeat(word(0), 7)))},
        Row{"group_of_more_faces_than_said",
            with_mesh(three_points +
                      faces({{0, 1, 2}}, chunk(0x4130, text("m") + word(4) + word(0))))},
        Row{"group_without_count",
            with_mesh(three_points + faces({{0, 1, 2}}, chunk(0x4130, text("m"))))},
        Row{"fewer_smoothing_groups_than_faces",
            with_mesh(three_points + faces({{0, 1, 2}, {0, 1, 2}}, smooth_groups({1})))},
        Row{"points_twice", with_mesh(three_points + three_points)},
        Row{"flags_twice", with_mesh(repeat(chunk(0x4111, word(0)), 2))},
        Row{"texture_coordinates_twice",
            with_mesh(three_points + texcoords({{0, 0}}) + texcoords({{0, 0}, {1, 1}}))},
        Row{"faces_twice", with_mesh(three_points + faces({}) + faces({{0, 1, 2}}))},
        Row{"face_index_at_the_end", with_mesh(three_points + faces({{0, 1, 3}}))},
        Row{"face_index_far_beyond", with_mesh(three_points + faces({{65535, 1, 2}}))},
        Row{"face_index_before_the_points_come", with_mesh(faces({{0, 4, 2}}) + three_points)},
        Row{"face_index_of_points_that_are_cut_off",
            with_mesh(texcoords({{0, 0}, {0, 0}, {0, 0}, {0, 0}}) + three_points +
                      faces({{0, 1, 3}}))},
        Row{"camera_cut_off", file_3ds(named_object("c", chunk(0x4700, reals({0, 0, 0}))))},
        Row{"light_cut_off", file_3ds(named_object("l", chunk(0x4600, reals({0, 0}))))},
        Row{"spotlight_cut_off",
            file_3ds(named_object("l", chunk(0x4600, reals({0, 0, 0}) + chunk(0x4610, ""))))},
        Row{"fourth_colour_of_a_gradient",
            file_3ds(chunk(0x1300, real(0) + repeat(chunk(0x0010, reals({0, 0, 0})), 4)))},
        Row{"fourth_linear_colour_of_a_gradient",
            file_3ds(chunk(0x1300, real(0) + repeat(chunk(0x0013, reals({0, 0, 0})), 4)))}),
    name_of);

INSTANTIATE_TEST_SUITE_P(
    OfNodes, BrokenFile,
    testing::Values(
        Row{"header_without_parent", with_nodes(chunk(0xB002, chunk(0xB010, text("m") + word(0))))},
        Row{"half_an_id", with_nodes(mesh_node("m", chunk(0xB030, "1")))},
        Row{"first_has_a_parent", with_nodes(mesh_node("m", node_id(0), 1) + mesh_node("m"))},
        Row{"unknown_parent", with_nodes(mesh_node("m") + mesh_node("m", "", 7))},
        Row{"unknown_parent_between_those_there_are",
            with_nodes(mesh_node("m", node_id(0)) + mesh_node("m", node_id(9)) +
                       mesh_node("m", node_id(1), 7))},
        Row{"parent_that_is_two_nodes",
            with_nodes(mesh_node("m", node_id(5)) + mesh_node("m", node_id(5)) +
                       mesh_node("m", "", 5))},
        Row{"own_parent", with_nodes(mesh_node("m") + mesh_node("m", node_id(1), 1))},
        Row{"circle_of_two", with_nodes(mesh_node("m") + mesh_node("m", node_id(1), 2) +
                                        mesh_node("m", node_id(2), 1))},
        Row{"two_keyframers",
            chunk(0x4D4D, chunk(0x3D3D, mesh("m", triangle())) + chunk(0xB000, mesh_node("m")) +
                              chunk(0xB000, mesh_node("m")))},
        Row{"track_without_count", with_track(word(0) + dword(0) + dword(0) + word(1))},
        Row{"fewer_keys_than_said", with_track(track_head + dword(2) + key(0, {1, 2, 3}))},
        Row{"most_keys_and_none_there", with_track(track_head + dword(0xFFFFFFFF))},
        Row{"as_many_keys_as_make_no_memory", with_track(track_head + dword(0x05D1745E))},
        Row{"key_without_value", with_track(track_head + dword(1) + key(0, {1, 2}))},
        Row{"key_without_its_options", with_track(track_head + dword(1) + dword(0) + word(0x1F) +
                                                  reals({1, 2, 3, 4, 5, 6, 7}))},
        Row{"frame_far_away", with_track(track_head + dword(1) + key(1 << 30, {1, 2, 3}))},
        Row{"frame_far_before", with_track(track_head + dword(1) + key(-(1 << 30), {1, 2, 3}))},
        Row{"repetition_of_no_length",
            with_nodes(mesh_node("m", track(0xB020, {key(3, {1, 2, 3}), key(3, {1, 2, 3})}, 1)))},
        Row{"viewports_cut_off", with_nodes(chunk(0x7001, word(0)))}),
    name_of);

// --- Files in good order ---------------------------------------------------------------------

class GoodFile : public testing::TestWithParam<Row> {};

TEST_P(GoodFile, is_loaded) {
    EXPECT_TRUE(can_read(GetParam().bytes));
    EXPECT_TRUE(load(GetParam().bytes));
    const TempDir dir;
    EXPECT_TRUE(can_read_file(dir.write("model.3ds", GetParam().bytes)));
}

INSTANTIATE_TEST_SUITE_P(
    , GoodFile,
    testing::Values(
        Row{"with_everything", full_file()}, Row{"with_nothing", chunk(0x4D4D, "")},
        Row{"of_a_library", chunk(0x3DAA, chunk(0x3D3D, mesh("m", triangle())))},
        Row{"of_a_project", chunk(0xC23D, chunk(0x3D3D, mesh("m", triangle())))},
        Row{"with_more_behind_it", file_3ds(mesh("m", triangle())) + "more"},
        Row{"with_unknown_chunks",
            chunk(0x4D4D, chunk(0x1234, "x") + chunk(0x3D3D, chunk(0x4321, "y")))},
        Row{"with_a_list_that_a_chunk_of_kind_0_ends",
            file_3ds(mesh("m", triangle()) + word(0) + "anything")},
        Row{"with_a_matrix_that_has_no_inverse",
            with_mesh(mesh_matrix({{{0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}}}) + triangle())},
        Row{"with_a_matrix_that_mirrors",
            with_mesh(mesh_matrix({{{-1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 0, 0}}}) + triangle())},
        Row{"with_points_that_are_no_numbers",
            with_mesh(points({{NAN, 0, 0}, {INFINITY, 0, 0}, {0, -INFINITY, FLT_MAX}}) +
                      faces({{0, 1, 2}}, smooth_groups({1})))},
        Row{"with_faces_before_their_points", with_mesh(faces({{0, 1, 2}}) + three_points)},
        Row{"with_faces_and_no_points", with_mesh(faces({{7, 8, 9}}))},
        Row{"with_points_that_their_flags_make",
            with_mesh(three_points + chunk(0x4111, word(4) + repeat(word(0), 4)) +
                      faces({{0, 1, 3}}))},
        Row{"with_chunks_behind_no_faces",
            with_mesh(three_points + chunk(0x4120, word(0) + "not a chunk"))},
        Row{"with_short_numbers",
            file_3ds(chunk(0x0100, "") + material("m", chunk(0xA010, chunk(0x0011, ""))))},
        Row{"with_a_number_cut_off_by_its_end", chunk(0x3D3D, chunk(0x0100, "\1"))},
        Row{"with_group_of_faces_that_are_not_there",
            file_3ds(material("a") +
                     mesh("m",
                          three_points + faces({{0, 1, 2}}, face_material("a", {0, 9, 65535}))))},
        Row{"with_nodes_without_ids_or_headers",
            with_nodes(chunk(0xB002, "") + chunk(0xB002, "") + mesh_node("m", "", 1))},
        Row{"with_two_nodes_of_an_id_that_is_no_parent",
            with_nodes(mesh_node("m", node_id(5)) + mesh_node("m", node_id(5)))},
        Row{"with_a_parent_behind_its_child",
            with_nodes(mesh_node("m") + mesh_node("m", node_id(1), 2) +
                       mesh_node("m", node_id(2)))},
        Row{"with_a_track_of_a_lens_and_keys_with_options",
            with_nodes(chunk(0xB003,
                             node_header("c") +
                                 chunk(0xB023, track_head + dword(1) + dword(0) + word(0x1F) +
                                                   reals({1, 2, 3, 4, 5, 6}))))},
        Row{"with_keys_out_of_order",
            with_nodes(mesh_node(
                "m",
                track(0xB020, {key(9, {1, 2, 3}), key(-4, {4, 5, 6}), key(3, {7, 8, 9})}, 3)))},
        Row{"with_an_unread_morph_track", with_nodes(mesh_node("m", chunk(0xB026, "anything")))}),
    name_of);

// --- Every byte ------------------------------------------------------------------------------

TEST(Lib3dsCheck, refuses_a_file_cut_off_at_any_byte) {
    const std::string whole = full_file();
    ASSERT_TRUE(load(whole));
    for (std::size_t size = 0; size < whole.size(); ++size)
        ASSERT_FALSE(load(whole.substr(0, size))) << size;
}

/// Whatever comes out of it, the host goes on.
TEST(Lib3dsCheck, survives_any_byte_that_is_another) {
    const std::string whole = full_file();
    unsigned refused = 0;
    for (std::size_t i = 0; i < whole.size(); ++i) {
        for (const int value : {0x00, 0xFF}) {
            std::string broken = whole;
            broken[i] = static_cast<char>(value);
            refused += !load(broken);
        }
    }
    EXPECT_GT(refused, 0u);
}

// --- Costs -----------------------------------------------------------------------------------

TEST(Lib3dsCheck, bounds_the_number_of_chunks) {
    EXPECT_TRUE(can_read(chunk(0x4D4D, repeat(chunk(0x1234, ""), 1 << 20))));
    EXPECT_FALSE(can_read(chunk(0x4D4D, repeat(chunk(0x1234, ""), (1 << 20) + 1))));
}

TEST(Lib3dsCheck, bounds_what_lib3ds_makes_of_chunks) {
    EXPECT_TRUE(can_read(file_3ds(repeat(chunk(0xAFFF, ""), 8000))));
    EXPECT_FALSE(can_read(file_3ds(repeat(chunk(0xAFFF, ""), 70000))));
    EXPECT_FALSE(
        can_read(file_3ds(named_object("o", repeat(chunk(0x4600, reals({0, 0, 0})), 70000)))));
    EXPECT_TRUE(can_read(file_3ds("", repeat(chunk(0xB002, ""), 1 << 16))));
    EXPECT_FALSE(can_read(file_3ds("", repeat(chunk(0xB002, ""), (1 << 16) + 1))));
}

TEST(Lib3dsCheck, bounds_the_searches_for_names) {
    EXPECT_TRUE(can_read(file_3ds(repeat(chunk(0xAFFF, ""), 8192)))) << "materials for materials";
    EXPECT_FALSE(can_read(file_3ds(repeat(chunk(0xAFFF, ""), 8193)))) << "materials for materials";
    EXPECT_FALSE(can_read(file_3ds(repeat(mesh("m", ""), 9000)))) << "meshes for their own nodes";
    EXPECT_FALSE(can_read(file_3ds(repeat(mesh("m", ""), 2000), repeat(chunk(0xB002, ""), 40000))));
    EXPECT_TRUE(can_read(file_3ds(repeat(mesh("m", ""), 1000), repeat(chunk(0xB002, ""), 40000))));
    const std::string groups = repeat(face_material("m", {}), 20000);
    EXPECT_FALSE(can_read(file_3ds(repeat(chunk(0xAFFF, ""), 5000) +
                                   mesh("m", three_points + faces({{0, 1, 2}}, groups)))));
}

TEST(Lib3dsCheck, bounds_how_often_a_mesh_is_shown) {
    const std::string arrays =
        points(std::vector<Float3>(50000)) + faces(std::vector<Index3>(50000));
    const auto shown = [&](unsigned times) {
        return file_3ds(mesh("m", arrays), repeat(mesh_node("m"), times));
    };
    EXPECT_TRUE(can_read(shown(40)));
    EXPECT_FALSE(can_read(shown(50)));
    // Those of other names are not, and a mesh that stands in the file as often may be.
    EXPECT_TRUE(can_read(file_3ds(mesh("m", arrays), repeat(mesh_node("other"), 50))));
    EXPECT_TRUE(can_read(file_3ds(repeat(mesh("m", arrays), 10), repeat(mesh_node("m"), 50))));
}

TEST(Lib3dsCheck, bounds_the_faces_that_meet_at_a_vertex) {
    const auto fan = [](unsigned count, const std::string& more) {
        return mesh("m", three_points + faces(std::vector<Index3>(count, {0, 1, 2}), more));
    };
    const auto smooth = [](unsigned count) {
        return smooth_groups(std::vector<std::uint32_t>(count, 1));
    };
    EXPECT_TRUE(can_read(file_3ds(fan(9000, smooth(9000)))));
    EXPECT_FALSE(can_read(file_3ds(fan(10000, smooth(10000)))));
    const TempDir dir;
    EXPECT_TRUE(can_read_file(dir.write("good.3ds", file_3ds(fan(9000, smooth(9000))))));
    EXPECT_FALSE(can_read_file(dir.write("bad.3ds", file_3ds(fan(10000, smooth(10000))))));
    EXPECT_TRUE(can_read(file_3ds(fan(9000, smooth(9000) + smooth(9000))))) << "groups given twice";
    EXPECT_FALSE(can_read(file_3ds(fan(7000, smooth(7000)) + fan(7000, smooth(7000)))))
        << "two meshes";
    EXPECT_TRUE(can_read(file_3ds(fan(65535, "")))) << "nobody looks around";
    EXPECT_FALSE(can_read(file_3ds(fan(7000, smooth(7000)), repeat(mesh_node("m"), 2)))) << "twice";
}

TEST(Lib3dsCheck, bounds_the_depth_of_nodes) {
    const auto chain = [](unsigned count) {
        std::string nodes = mesh_node("m", node_id(0));
        for (unsigned i = 1; i < count; ++i)
            nodes += mesh_node("", node_id(i), i - 1);
        return with_nodes(nodes);
    };
    EXPECT_TRUE(load(chain(1000)));
    EXPECT_FALSE(load(chain(1001)));
}

/// The child comes first here, so that no depth is known before it is asked for.
TEST(Lib3dsCheck, bounds_the_depth_of_nodes_in_any_order) {
    const auto chain = [](unsigned count) {
        std::string nodes = mesh_node("m", node_id(count));
        for (unsigned i = 1; i < count; ++i)
            nodes += mesh_node("", node_id(i), i + 1);
        return with_nodes(nodes);
    };
    EXPECT_TRUE(load(chain(1000)));
    EXPECT_FALSE(load(chain(1001)));
}

TEST(Lib3dsCheck, refuses_a_file_of_more_than_512_megabytes) {
    const TempDir dir;
    const std::string path = dir.write("model.3ds", file_3ds(mesh("m", triangle())));
    EXPECT_TRUE(can_read_file(path));
    std::filesystem::resize_file(path, 512u << 20);
    EXPECT_TRUE(can_read_file(path)) << "what lies behind the model is nobody's";
    std::filesystem::resize_file(path, (512u << 20) + 1);
    EXPECT_FALSE(can_read_file(path));
}

// --- Large files -----------------------------------------------------------------------------

/// More bytes than are read into memory unseen.
std::string large_file(const std::string& last_mesh) {
    const std::string arrays = points(std::vector<Float3>(60000)) + faces({{0, 1, 2}});
    std::string meshes;
    for (int i = 0; i < 25; ++i)
        meshes += mesh("m" + std::to_string(i), arrays);
    return file_3ds(meshes + last_mesh);
}

TEST(Lib3dsCheck, looks_through_a_large_file_before_it_is_read) {
    EXPECT_TRUE(load(large_file(mesh("last", triangle()))));
    EXPECT_FALSE(load(large_file(mesh("last", three_points + faces({{0, 1, 3}})))));
}

// --- The window ------------------------------------------------------------------------------

TEST(ByteWindow, gives_what_lies_within) {
    const TempDir dir;
    std::string bytes;
    for (unsigned i = 0; i < 40000; ++i)
        bytes += byte(i * 7 / 3);
    ByteWindow in_memory(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
    ByteWindow in_file;
    ASSERT_TRUE(in_file.open(dir.write("bytes", bytes).c_str()));
    for (ByteWindow* window : {&in_memory, &in_file}) {
        EXPECT_EQ(window->size(), bytes.size());
        for (const std::size_t offset : {0u, 39990u, 5u, 16380u, 20000u, 20010u, 1u}) {
            const unsigned char* const at = window->at(offset, 10);
            ASSERT_NE(at, nullptr) << offset;
            EXPECT_EQ(std::string(reinterpret_cast<const char*>(at), 10), bytes.substr(offset, 10));
        }
        EXPECT_NE(window->at(0, ByteWindow::largest_view), nullptr);
        EXPECT_NE(window->at(40000, 0), nullptr);
        EXPECT_EQ(window->at(39991, 10), nullptr);
        EXPECT_EQ(window->at(40001, 0), nullptr);
        EXPECT_EQ(window->at(~std::uint64_t{0}, 1), nullptr);
    }
}

TEST(ByteWindow, opens_regular_files_only) {
    const TempDir dir;
    for (const std::string& path : {dir.file("missing"), dir.path(), std::string("/dev/zero")}) {
        ByteWindow window;
        EXPECT_FALSE(window.open(path.c_str())) << path;
        EXPECT_EQ(window.at(0, 1), nullptr);
    }
    ByteWindow nothing;
    EXPECT_EQ(nothing.at(0, 1), nullptr);
}

// A host may have closed its standard input, whose number the next file gets.
TEST(ByteWindow, closes_its_file_whatever_its_number) {
    const TempDir dir;
    const std::string path = dir.write("bytes", "x");
    const ClosedInput closed;
    {
        ByteWindow window;
        EXPECT_TRUE(window.open(path.c_str()));
        EXPECT_NE(::fcntl(STDIN_FILENO, F_GETFD), -1);
    }
    EXPECT_EQ(::fcntl(STDIN_FILENO, F_GETFD), -1);
}

TEST(ByteWindow, gives_nothing_that_was_cut_off_meanwhile) {
    const TempDir dir;
    const std::string path = dir.write("bytes", std::string(40000, 'x'));
    ByteWindow window;
    ASSERT_TRUE(window.open(path.c_str()));
    std::filesystem::resize_file(path, 30000);
    EXPECT_NE(window.at(29000, 1000), nullptr);
    EXPECT_EQ(window.at(29000, 1001), nullptr);
}

TEST(Lib3dsOpen, refuses_null_and_what_is_no_file) {
    EXPECT_EQ(open_3ds_file(nullptr), nullptr);
    EXPECT_EQ(open_3ds_file("/nonexistent.3ds"), nullptr);
    EXPECT_EQ(read_3ds_bytes(nullptr, 0), nullptr);
}

TEST(Lib3dsFault, tells_the_place_and_the_cause) {
    const auto fault_of = [](const std::string& bytes) {
        ByteWindow window(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
        Lib3dsFault fault;
        EXPECT_FALSE(lib3ds_can_read(window, &fault));
        return fault;
    };
    const std::string whole = file_3ds(mesh("m", triangle()));
    const Lib3dsFault cut = fault_of(whole.substr(0, whole.size() - 3));
    EXPECT_STREQ(cut.what, "the file is cut off");
    EXPECT_EQ(cut.offset, whole.size() - 3);
    EXPECT_TRUE(cut.is_3ds);

    const Lib3dsFault other = fault_of("Buy milk.");
    EXPECT_STREQ(other.what, "byte 0 begins another format");
    EXPECT_FALSE(other.is_3ds);

    std::string torn = whole;
    torn[9] = '\x7f'; // the size of the second chunk, beyond the first
    const Lib3dsFault inner = fault_of(torn);
    EXPECT_STREQ(inner.what, "a chunk doesn't fit into the one around it");
    EXPECT_EQ(inner.offset, 6u);
    EXPECT_TRUE(inner.is_3ds);
}

} // namespace
} // namespace orvex_test
