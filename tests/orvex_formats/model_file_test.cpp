#include "orvex_formats/private/model_file.h"

#include <cstring>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "orvex_formats/private/archived_files.h"
#include "orvex_formats/private/refusal.h"
#include "tests/orvex_formats/archives.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using orvex::formats::ModelFile;
using orvex::formats::open_model_file;

const std::string text = "solid tile\nfacet\nvertex 0 0 0\nvertex 1 0 0\nvertex 1 1 0\nendfacet\n";

class ModelFileTest : public testing::Test {
protected:
    static std::string bytes_of(const ModelFile& opened) {
        std::string bytes(static_cast<std::size_t>(opened.file.size()), ' ');
        opened.file.read(0, bytes.data(), bytes.size());
        return bytes;
    }

    /// Why a file isn't opened.
    std::string refusal(const std::string& name, const std::string& content,
                        const std::string& format = "STL") {
        try {
            open_model_file(folder.write(name, content), format);
        } catch (const orvex::formats::Refusal& refused) {
            return std::string(refused.is_format_known() ? "" : "other: ") + refused.what();
        }
        return "";
    }

    TempDir folder;
};

TEST_F(ModelFileTest, that_is_not_compressed_stays_as_it_is) {
    const ModelFile opened = open_model_file(folder.write("tile.stl", text), "STL");
    EXPECT_EQ(bytes_of(opened), text);
    EXPECT_EQ(opened.stored_size, text.size());
}

TEST_F(ModelFileTest, of_gzip_is_inflated_with_all_its_members) {
    const std::string packed = gzip(text.substr(0, 20)) + gzip("") + gzip(text.substr(20));
    const ModelFile opened = open_model_file(folder.write("tile.stl.GZ", packed), "STL");
    EXPECT_EQ(bytes_of(opened), text);
    EXPECT_EQ(opened.file.path(), folder.file("tile.stl"));
    EXPECT_EQ(opened.stored_size, packed.size());
    EXPECT_TRUE(opened.notes.empty());
}

TEST_F(ModelFileTest, of_gzip_may_have_more_behind_it) {
    const ModelFile opened = open_model_file(folder.write("t.gz", gzip(text) + "more"), "STL");
    EXPECT_EQ(bytes_of(opened), text);
    ASSERT_EQ(opened.notes.size(), 1u);
    EXPECT_EQ(opened.notes[0], "4 bytes behind the compressed data were left out");
}

TEST_F(ModelFileTest, is_inflated_for_the_loader_of_its_format_alone) {
    EXPECT_EQ(refusal("a.ply.gz", gzip("ply\n")),
              "other: a compressed file whose name says that it is of another format");
    EXPECT_EQ(refusal("a.ply.gz", gzip("ply\n"), "PLY"), "");
    EXPECT_EQ(refusal("a.gz", gzip("ply\n")), "") << "a name that says nothing may be any";
    EXPECT_EQ(refusal("a.zip", Zip().add("a.ply", "ply\n").text()),
              "other: a compressed file whose name says that it is of another format");
}

TEST_F(ModelFileTest, of_gzip_that_is_broken_is_refused_with_its_place) {
    const std::string packed = gzip(text);
    EXPECT_EQ(refusal("a.gz", packed.substr(0, 30)), "byte 30: the compressed data is cut off");
    std::string changed = packed;
    changed[changed.size() - 6] = static_cast<char>(changed[changed.size() - 6] ^ 1); // of the sum
    EXPECT_NE(refusal("a.gz", changed).find("the compressed data is broken"), std::string::npos);
}

TEST_F(ModelFileTest, of_an_archive_is_its_only_model) {
    for (const bool is_deflated : {true, false})
        for (const bool is_wide : {true, false}) {
            Zip::File file;
            file.name = "things/../../tile.STL";
            file.text = text;
            file.is_deflated = is_deflated;
            file.is_wide = is_wide;
            const std::string packed = Zip()
                                           .add("things/", "")
                                           .add("wood.png", "?")
                                           .add(file)
                                           .add("__MACOSX/._tile.stl", "?")
                                           .add("things/._other.stl", "?")
                                           .text();
            const ModelFile opened = open_model_file(folder.write("tile.zip", packed), "STL");
            EXPECT_EQ(bytes_of(opened), text);
            EXPECT_EQ(opened.file.path(), folder.file("tile.STL")) << "beside the archive";
            ASSERT_NE(opened.file.archive(), nullptr);
            EXPECT_EQ(opened.file.archive()->num_left_out(), 1u);
        }
}

TEST_F(ModelFileTest, of_an_archive_with_a_comment_is_found) {
    std::string packed = Zip().add("a.stl", text).text();
    packed[packed.size() - 2] = 7;
    EXPECT_EQ(bytes_of(open_model_file(folder.write("a.zip", packed + "comment"), "STL")), text);
}

TEST_F(ModelFileTest, of_an_archive_with_a_wide_end_is_found) {
    const std::string packed = Zip().add("a.stl", text).widen().text();
    EXPECT_EQ(bytes_of(open_model_file(folder.write("a.zip", packed), "STL")), text);
    const std::size_t end = packed.size() - 22;
    const auto with = [&](std::size_t at, std::uint64_t number) {
        std::string changed = packed;
        std::memcpy(changed.data() + at, &number, sizeof number);
        return refusal("a.zip", changed);
    };
    const auto led_to = [&](std::uint64_t place) {
        return with(packed.size() - Zip::wide_place, place);
    };
    EXPECT_EQ(led_to(3), "byte 3: the archive has no directory");
    EXPECT_EQ(led_to(end - 1),
              "byte " + std::to_string(end - 1) + ": the archive's directory leads beyond its end");
    EXPECT_EQ(led_to(UINT64_MAX),
              "byte 18446744073709551615: the archive's directory leads beyond its end");
    const std::size_t wide_end = packed.find("PK\x06\x06");
    const std::string begin = std::to_string(packed.find("PK\x01\x02"));
    EXPECT_EQ(with(wide_end + 32, UINT64_MAX), "byte " + begin +
                                                   ": the archive says that it has "
                                                   "18446744073709551615 files, and is too short "
                                                   "for them");
    EXPECT_EQ(with(wide_end + 40, UINT64_MAX),
              "byte " + begin + ": the archive's directory leads beyond its end");
    EXPECT_EQ(with(wide_end + 48, UINT64_MAX),
              "byte 18446744073709551615: the archive's directory leads beyond its end");
    std::string lost = packed;
    lost[end - 20] = 'X'; // the mark of what leads there
    EXPECT_EQ(refusal("a.zip", lost),
              "byte " + std::to_string(end) + ": the archive has no directory");
}

TEST_F(ModelFileTest, of_an_archive_is_told_what_the_archive_does_not_have) {
    const std::string name(5000, 'a');
    const ModelFile opened = open_model_file(
        folder.write("a.zip", Zip().add("a.stl", text).add(name, "?").text()), "STL");
    orvex::formats::ArchivedFiles& files = *opened.file.archive();
    EXPECT_EQ(files.find("b.png"), "");
    EXPECT_EQ(files.find(name), "") << "names of this length aren't looked for";
    try {
        files.read("b.png");
        ADD_FAILURE() << "it was read";
    } catch (const orvex::formats::Refusal& refused) {
        EXPECT_STREQ(refused.what(), "the archive has no b.png");
    }
}

TEST_F(ModelFileTest, that_cant_be_read_is_refused_with_the_byte) {
    using orvex::formats::InputFile;
    const auto refusal_of_reading = [](const InputFile& file, std::uint64_t place) -> std::string {
        char bytes[8];
        try {
            file.read(place, bytes, sizeof bytes);
        } catch (const orvex::formats::Refusal& refused) {
            return refused.what();
        }
        return "";
    };
    const std::string path = folder.write("tile.stl", text);
    const InputFile file(path);
    EXPECT_EQ(refusal_of_reading(file, text.size() - 8), "");
    const std::string cut_off = "byte " + std::to_string(text.size()) + ": the file is cut off";
    EXPECT_EQ(refusal_of_reading(file, text.size() - 7), cut_off);
    EXPECT_EQ(refusal_of_reading(file, UINT64_MAX), cut_off);
    ASSERT_EQ(truncate(path.c_str(), 20), 0);
    EXPECT_EQ(refusal_of_reading(file, 12), "");
    EXPECT_EQ(refusal_of_reading(file, 15), "byte 20: the file became shorter while it was read");
    EXPECT_EQ(refusal_of_reading(file, 30), "byte 30: the file became shorter while it was read");
    const InputFile written(open(path.c_str(), O_WRONLY | O_CLOEXEC), 20);
    EXPECT_EQ(refusal_of_reading(written, 2), "byte 2 can't be read: Bad file descriptor");
}

TEST_F(ModelFileTest, that_is_an_archive_itself_stays_as_it_is) {
    const std::string packed =
        Zip().add("[Content_Types].xml", "<Types/>").add("3D/a.model", "<model/>").text();
    EXPECT_EQ(bytes_of(open_model_file(folder.write("a.3mf", packed), "STL")), packed);
}

TEST_F(ModelFileTest, of_no_archive_of_one_model_is_refused) {
    EXPECT_EQ(refusal("a.zip", Zip().add("a.txt", "?").text()),
              "other: an archive without a model");
    EXPECT_EQ(refusal("a.zip", Zip().add("a.stl", text).add("b.obj", "?").text()),
              "an archive of 2 models; such of one are read");
}

TEST_F(ModelFileTest, of_an_archive_that_lies_is_refused_with_its_place) {
    const auto refusal_of_file = [&](auto change) {
        Zip::File file;
        file.name = "a.stl";
        file.text = text;
        change(file);
        return refusal("a.zip", Zip().add("b.txt", "text").add(file).text());
    };
    using File = Zip::File;
    const std::string not_so = "byte 41: a.stl isn't what the archive says";
    EXPECT_EQ(refusal_of_file([](File& file) { file.sum_lie = 1; }), not_so);
    EXPECT_EQ(refusal_of_file([](File& file) { file.size_lie = 1; }), not_so);
    EXPECT_NE(refusal_of_file([](File& file) { file.size_lie = -1; }).find("grows beyond"),
              std::string::npos);
    EXPECT_NE(refusal_of_file([](File& file) {
                  file.size_lie = 1000000000;
              }).find("bytes, more than any model"),
              std::string::npos);
    EXPECT_EQ(refusal_of_file([](File& file) { file.flags = 1; }), "byte 41: a.stl is encrypted");
    EXPECT_EQ(refusal_of_file([](File& file) { file.method_lie = 14; }),
              "byte 41: a.stl is compressed by a method that isn't read: 14");
    std::string moved = Zip().add("b.txt", "text").add("a.stl", text).text();
    moved[41] = 'X';
    EXPECT_EQ(refusal("a.zip", moved),
              "byte 41: no file of the archive begins where its directory says");
    EXPECT_EQ(refusal_of_file([](File& file) { file.offset_lie = -10; }),
              "byte 0: files of the archive overlap");
    EXPECT_EQ(refusal_of_file([](File& file) { file.offset_lie = 1 << 30; }),
              "byte 1073741865: files of the archive overlap");
    const std::string packed = Zip().add("a.stl", text).text();
    EXPECT_NE(refusal("a.zip", packed.substr(0, packed.size() - 1)).find("no directory"),
              std::string::npos);
}

} // namespace

} // namespace orvex_test
