// What the importer answers is read as any file is.

#include <algorithm>
#include <cstring>
#include <functional>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>

#include "orvex_formats/import/private/answer_reader.h"
#include "orvex_formats/private/importer_protocol.h"
#include "orvex_formats/private/refusal.h"
#include "tests/orvex_formats/answers.h"
#include "tests/orvex_formats/bytes.h"
#include "tests/orvex_formats/check_draft.h"
#include "tests/orvex_formats/mutants.h"

namespace orvex_test {

namespace {

using namespace orvex::formats;

TEST(ImportAnswer, comes_back_as_it_was_written) {
    const Draft draft = read_answer(InputFile(answer_with(small_draft())));
    EXPECT_TRUE(holds_together(draft));
    EXPECT_EQ(draft.notes, small_draft().notes);
    ASSERT_EQ(draft.pictures.size(), 1u);
    EXPECT_EQ(draft.pictures[0].bytes, (std::vector<unsigned char>{1, 2, 3}));
    ASSERT_EQ(draft.materials.size(), 2u);
    EXPECT_EQ(draft.materials[0].name, "wood");
    EXPECT_EQ(draft.materials[0].physical->base_color_texture.image, "picture");
    EXPECT_FALSE(draft.materials[1].physical);
    ASSERT_EQ(draft.surfaces.size(), 1u);
    EXPECT_EQ(draft.surfaces[0].positions[2].y, 1.0f);
    EXPECT_EQ(draft.surfaces[0].uvs[0][1].x, 1.0f);
    EXPECT_EQ(draft.surfaces[0].triangle_materials[0], 1u);
    ASSERT_EQ(draft.clouds.size(), 1u);
    EXPECT_EQ(draft.clouds[0].positions[0].z, 3.0f);
    ASSERT_EQ(draft.lines.size(), 1u);
    EXPECT_EQ(draft.lines[0].colors[1].y, 1.0f);
    ASSERT_EQ(draft.cameras.size(), 2u);
    const Viewpoint& front = draft.cameras[0];
    EXPECT_EQ(front.name, "front");
    EXPECT_EQ(front.eye.z, 5.0f);
    EXPECT_EQ(front.forward.z, -1.0f);
    EXPECT_EQ(front.up.y, 1.0f);
    EXPECT_EQ(front.opening, 40.0f);
    EXPECT_EQ(front.aspect, 1.5f);
    EXPECT_EQ(front.near, 0.1f);
    EXPECT_EQ(front.far, 100.0f);
    EXPECT_EQ(draft.cameras[1].height, 4.0f);
}

TEST(ImportAnswer, is_refused_where_it_lies) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    const struct {
        const char* reason;
        std::function<void(Draft&)> change;
    } lies[] = {
        {"a corner beyond the vertices",
         [](Draft& draft) { draft.surfaces[0].triangles[0][1] = 3; }},
        {"a corner beyond the vertices",
         [](Draft& draft) { draft.surfaces[0].triangles[0][2] = UINT32_MAX; }},
        {"a material beyond their list",
         [](Draft& draft) { draft.surfaces[0].triangle_materials[0] = 2; }},
        {"a list that doesn't fit that of the vertices",
         [](Draft& draft) { draft.surfaces[0].normals.pop_back(); }},
        {"a list that doesn't fit that of the vertices",
         [](Draft& draft) { draft.surfaces[0].uvs[1].resize(4); }},
        {"a list that doesn't fit that of the vertices",
         [](Draft& draft) { draft.clouds[0].colors.resize(2); }},
        {"a number that isn't finite",
         [](Draft& draft) { draft.surfaces[0].positions[1].y = infinity; }},
        {"a number that isn't finite",
         [](Draft& draft) {
             draft.lines[0].positions[1].z = std::numeric_limits<float>::quiet_NaN();
         }},
        {"a number beyond its range", [](Draft& draft) { draft.surfaces[0].normals[0].x = 2.0f; }},
        {"a number beyond its range", [](Draft& draft) { draft.surfaces[0].colors[0].w = -1.0f; }},
        {"a line without an end",
         [](Draft& draft) {
             draft.lines[0].positions.pop_back();
             draft.lines[0].colors.pop_back();
         }},
        {"no vertices, or more than any that are read",
         [](Draft& draft) { draft.clouds[0].positions.clear(); }},
        {"no triangles, or more than any that are read",
         [](Draft& draft) { draft.surfaces[0].triangles.clear(); }},
        {"a camera that sees nothing", [](Draft& draft) { draft.cameras[0].opening = 180.0f; }},
        {"a camera that sees nothing", [](Draft& draft) { draft.cameras[0].near = 0.0f; }},
        {"a camera that sees nothing", [](Draft& draft) { draft.cameras[0].far = 0.05f; }},
        {"a camera that sees nothing",
         [](Draft& draft) {
             draft.cameras[0].forward = {0, 0, 0};
         }},
        {"a camera that sees nothing",
         [](Draft& draft) {
             draft.cameras[0].up = {0, 0, 1};
         }},
        {"a camera that sees nothing", [](Draft& draft) { draft.cameras[1].aspect = 0.0f; }},
        {"a camera that sees nothing", [](Draft& draft) { draft.cameras[1].far = 0.0f; }},
    };
    for (const auto& lie : lies) {
        Draft draft = small_draft();
        lie.change(draft);
        const std::string reason = refusal_of(read_answer, answer_with(draft));
        EXPECT_EQ(reason.rfind("the importer's answer can't be right: byte ", 0), 0u) << reason;
        EXPECT_NE(reason.find(lie.reason), reason.npos) << reason << ", not " << lie.reason;
    }
}

TEST(ImportAnswer, is_refused_where_a_name_is_none) {
    Draft draft = small_draft();
    draft.pictures[0].bytes.resize(5000); // so that it isn't cut off
    draft.surfaces[0].name.assign(4096, 'n');
    const std::vector<unsigned char> whole = answer_with(draft);
    EXPECT_EQ(read_answer(InputFile(whole)).surfaces.at(0).name.size(), 4096u);
    const std::string notes = "lights were left out";
    const auto begin = std::search(whole.begin(), whole.end(), notes.begin(), notes.end());
    ASSERT_NE(begin, whole.end());
    const std::string place =
        "the importer's answer can't be right: byte " + std::to_string(begin - whole.begin());
    std::vector<unsigned char> longer = whole;
    const std::uint64_t too_much = 4097;
    std::memcpy(longer.data() + (begin - whole.begin()) - 8, &too_much, sizeof too_much);
    EXPECT_EQ(refusal_of(read_answer, longer), place + ": a name that is longer than any");
    std::vector<unsigned char> with_zero = whole;
    with_zero[static_cast<std::size_t>(begin - whole.begin()) + 3] = 0;
    EXPECT_EQ(refusal_of(read_answer, with_zero), "the importer's answer can't be right: byte " +
                                                      std::to_string(begin - whole.begin() + 20) +
                                                      ": a name with a zero in it");
}

TEST(ImportAnswer, that_has_no_room_or_cant_be_written_is_a_reason) {
    const auto reason_of = [](int file, std::uint64_t size, std::size_t num_bytes) -> std::string {
        try {
            Draft draft = small_draft();
            draft.pictures[0].bytes.resize(num_bytes);
            AnswerRoom room(file, size);
            write_answer(draft, room);
            room.finish();
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "";
    };
    const int file = memfd_create("answer", MFD_CLOEXEC);
    const std::string too_large = "the model would be far larger than its file: more than 2 MB";
    EXPECT_EQ(reason_of(file, 2u << 20, 1u << 20), "");
    EXPECT_EQ(reason_of(file, 2u << 20, 2u << 20), too_large);
    EXPECT_EQ(reason_of(file, (2u << 20) + 1, 10u << 20), too_large);
    close(file);
    const int unwritable = open("/dev/null", O_RDONLY | O_CLOEXEC);
    EXPECT_EQ(reason_of(unwritable, 2u << 20, 3), "the answer can't be written");
    close(unwritable);
}

TEST(ImportAnswer, is_refused_where_it_is_cut_off_or_goes_on) {
    const std::vector<unsigned char> whole = answer_with(small_draft());
    for (std::size_t size = sizeof(AnswerHead); size < whole.size(); ++size) {
        const std::vector<unsigned char> part(whole.begin(),
                                              whole.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_NE(refusal_of(read_answer, part), "") << size << " bytes";
    }
    std::vector<unsigned char> longer = whole;
    longer.push_back(0);
    EXPECT_NE(refusal_of(read_answer, longer).find("more than was asked for"), std::string::npos);
}

TEST(ImportAnswer, takes_no_memory_for_counts_that_lie) {
    const std::vector<unsigned char> whole = answer_with(small_draft());
    // Every place of a count, and many that are none.
    for (std::size_t place = sizeof(AnswerHead); place + 8 <= whole.size(); ++place) {
        std::vector<unsigned char> bytes = whole;
        std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(place), 8, 0x7f);
        try {
            EXPECT_TRUE(holds_together(read_answer(InputFile(bytes))));
        } catch (const Refusal& refusal) {
            EXPECT_STRNE(refusal.what(), "");
        }
    }
}

TEST(ImportAnswer, holds_together_or_is_refused_whatever_is_changed) {
    read_mutants(read_answer, {answer_with(small_draft())});
}

} // namespace

} // namespace orvex_test
