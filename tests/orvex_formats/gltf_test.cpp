// Files of glTF: their containers, their JSON, their bytes.

#include "orvex_formats/gltf/private/gltf_reader.h"

#include <random>

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "orvex_formats/gltf/private/base64.h"
#include "orvex_formats/private/model_file.h"
#include "tests/orvex_formats/archives.h"
#include "tests/orvex_formats/check_draft.h"
#include "tests/orvex_formats/gltf_file.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using namespace orvex;
using namespace orvex::formats;

std::string text_of(const std::vector<unsigned char>& bytes) {
    return std::string(bytes.begin(), bytes.end());
}

/// Why a file is refused; empty for one that is read.
std::string file_refusal(const std::string& path) {
    try {
        read_gltf(InputFile(path));
    } catch (const Refusal& refusal) {
        return std::string(refusal.is_format_known() ? "" : "other format: ") + refusal.what();
    }
    return "";
}

// ------------------------------------------------------------------------------ containers

TEST(Gltf, of_text_and_of_bytes_gives_the_same_triangle) {
    for (const auto& bytes : {triangle().as_text(), triangle().as_binary()}) {
        const Draft draft = read_gltf_bytes(bytes);
        ASSERT_EQ(draft.surfaces.size(), 1u);
        const Surface& surface = draft.surfaces[0];
        EXPECT_EQ(surface.name, "tile");
        ASSERT_EQ(surface.triangles.size(), 1u);
        EXPECT_EQ(surface.triangles[0], (Triangle{0, 1, 2}));
        ASSERT_EQ(surface.positions.size(), 3u);
        EXPECT_EQ(surface.positions[1].x, 1.0f);
        EXPECT_EQ(surface.positions[1].y, 1.0f);
        ASSERT_EQ(surface.uvs[0].size(), 3u);
        EXPECT_EQ(surface.uvs[0][0].y, 0.0f) << "the file's v goes downward";
        EXPECT_EQ(surface.uvs[0][2].y, 1.0f);
        EXPECT_TRUE(surface.triangle_materials.empty());
        EXPECT_TRUE(draft.notes.empty());
    }
}

TEST(Gltf, with_a_buffer_of_its_own_folder_tells_the_file) {
    const TempDir folder;
    const GltfFile file = triangle();
    folder.write("a tile.bin", text_of(file.bytes));
    const Draft draft = read_gltf(InputFile(folder.write("tile.gltf", file.text("a%20tile.bin"))));
    EXPECT_EQ(draft.surfaces.at(0).positions.size(), 3u);
    ASSERT_EQ(draft.files.size(), 1u);
    EXPECT_EQ(draft.files[0], folder.file("a tile.bin"));
}

TEST(Gltf, with_two_buffers_of_one_file_reads_it_once_for_both) {
    const TempDir folder;
    GltfFile file = triangle();
    file.bytes.resize(9u << 20); // twice as much would be too much of a small archive
    folder.write("tile.bin", text_of(file.bytes));
    file.views.replace(file.views.rfind("'buffer':0"), 10, "'buffer':1");
    std::string text = file.text("tile.bin");
    const std::size_t begin = text.find("\"buffers\":[") + 11;
    const std::string buffer = text.substr(begin, text.find(']', begin) - begin);
    text.insert(begin, buffer + ",");
    const std::string packed =
        Zip().add("tile.gltf", text).add("tile.bin", text_of(file.bytes)).text();
    const Draft drafts[] = {
        read_gltf(InputFile(folder.write("tile.gltf", text))),
        read_gltf(open_model_file(folder.write("tile.zip", packed), "glTF").file)};
    for (const Draft& draft : drafts) {
        const Surface& surface = draft.surfaces.at(0);
        EXPECT_EQ(surface.positions.at(1).y, 1.0f);
        ASSERT_EQ(surface.uvs[0].size(), 3u);
        EXPECT_EQ(surface.uvs[0][2].y, 1.0f);
    }
    EXPECT_EQ(drafts[0].files, std::vector<std::string>{folder.file("tile.bin")});
    EXPECT_EQ(drafts[1].files, std::vector<std::string>()) << "none on the disk";
}

TEST(Gltf, reads_nothing_outside_its_folder) {
    const TempDir outside;
    const TempDir folder;
    const GltfFile file = triangle();
    const std::string secret = outside.write("secret.bin", text_of(file.bytes));
    folder.write("right.bin", text_of(file.bytes));
    ASSERT_EQ(symlink(secret.c_str(), folder.file("link.bin").c_str()), 0);
    ASSERT_EQ(mkfifo(folder.file("fifo.bin").c_str(), 0600), 0);
    struct Row {
        std::string uri;
        const char* reason;
    };
    const Row rows[] = {
        {"right.bin", ""},
        {"./right.bin", ""},
        {"missing.bin", "\"missing.bin\": it can't be opened: No such file or directory"},
        {"link.bin", "\"link.bin\": a link leads out of the model's folder, where nothing is read"},
        {"../secret.bin",
         "\"../secret.bin\": it lies outside the model's folder, where nothing is read"},
        {"x/../right.bin",
         "\"x/../right.bin\": it lies outside the model's folder, where nothing is read"},
        {"%2e%2e/secret.bin",
         "\"../secret.bin\": it lies outside the model's folder, where nothing is read"},
        {"/etc/passwd",
         "\"/etc/passwd\": it lies outside the model's folder, where nothing is read"},
        {"file:///etc/passwd",
         "\"file:///etc/passwd\": a drive or a scheme in its name leads out of "
         "the model's folder"},
        {"http://localhost/a",
         "\"http://localhost/a\": a drive or a scheme in its name leads out of "
         "the model's folder"},
        {"C:/a.bin",
         "\"C:/a.bin\": a drive or a scheme in its name leads out of the model's folder"},
        {"..\\\\secret.bin", "\"..\\secret.bin\": its name has a backslash"},
        {"right.bin%00.png", "\"right.bin?.png\": its name has control characters"},
        {"right%2", "a percent sign without two digits"},
        {"", "\"\": it is named by nothing"},
        {"fifo.bin", "\"fifo.bin\": no regular file"},
        {".", "\".\": a link leads out of the model's folder, where nothing is read"},
        {"|touch pwned", "\"|touch pwned\": it can't be opened: No such file or directory"},
        {"`touch pwned`", "\"`touch pwned`\": it can't be opened: No such file or directory"},
    };
    for (const Row& row : rows) {
        std::string text = file.text("U");
        text.replace(text.find("\"U\""), 3, "\"" + row.uri + "\"");
        EXPECT_EQ(file_refusal(folder.write("tile.gltf", text)),
                  *row.reason ? std::string("buffers[0].uri: ") + row.reason : "")
            << row.uri;
    }
    EXPECT_EQ(access(folder.file("pwned").c_str(), F_OK), -1);
}

TEST(Gltf, in_memory_opens_no_file) {
    EXPECT_EQ(refusal_of(read_gltf, Bytes(triangle().text("a.bin")).bytes),
              "buffers[0].uri: \"a.bin\": a model in memory has no folder where it could lie");
}

TEST(Gltf, of_bytes_that_lies_is_refused_with_the_byte) {
    const std::vector<unsigned char> whole = triangle().as_binary();
    const auto changed = [&](std::size_t place, std::uint32_t number) {
        std::vector<unsigned char> bytes = whole;
        std::memcpy(bytes.data() + place, &number, sizeof number);
        return refusal_of(read_gltf, bytes);
    };
    const auto cut = [&](std::size_t size) {
        return refusal_of(read_gltf, {whole.begin(), whole.begin() + static_cast<long>(size)});
    };
    const std::string size = std::to_string(whole.size());
    std::uint32_t json_size = 0;
    std::memcpy(&json_size, whole.data() + 12, sizeof json_size);
    const std::size_t second = 20 + json_size;
    EXPECT_EQ(changed(4, 1), "byte 4: version 1 of GLB; version 2 is read");
    EXPECT_EQ(changed(8, 0xffffffff),
              "byte 8: the file says that it has 4294967295 bytes, and has " + size);
    EXPECT_EQ(changed(8, 11), "byte 8: the file says that it has 11 bytes, and has " + size);
    EXPECT_EQ(changed(8, 12), "byte 12: there is no chunk of JSON");
    EXPECT_EQ(changed(8, 19), "byte 12: the head of a chunk is cut off");
    EXPECT_EQ(changed(12, 0xffffffff), "byte 12: a chunk says that it has 4294967295 bytes, and " +
                                           std::to_string(whole.size() - 20) + " are left");
    EXPECT_EQ(changed(16, 7), "byte 12: the first chunk isn't JSON");
    EXPECT_EQ(changed(second + 4, 0x4e4f534a),
              "byte " + std::to_string(second) + ": a second chunk of JSON");
    EXPECT_EQ(cut(4), "byte 4: the file's head is cut off");
    EXPECT_EQ(cut(3), "other format: no glTF file: it begins neither with \"glTF\" nor with {");
    EXPECT_EQ(changed(second + 4, 0x4b4e554a),
              "buffers[0]: it has neither a URI nor a chunk of the file")
        << "a chunk of another kind is none";
    std::vector<unsigned char> longer = whole;
    longer.push_back(0);
    EXPECT_EQ(read_gltf_bytes(longer).notes.at(0),
              "byte " + size + ": 1 bytes behind the end were left out");
    std::vector<unsigned char> twice = whole;
    twice.insert(twice.end(), whole.begin() + static_cast<long>(second), whole.end());
    const auto size_of_both = static_cast<std::uint32_t>(twice.size());
    std::memcpy(twice.data() + 8, &size_of_both, sizeof size_of_both);
    EXPECT_EQ(refusal_of(read_gltf, twice), "byte " + size + ": a second chunk of bytes");
}

TEST(Gltf, is_not_what_other_files_are) {
    for (const char* text : {"", "solid a", "ply\n", "v 0 0 0\n", "[1]"})
        EXPECT_EQ(gltf_refusal(text),
                  "other format: no glTF file: it begins neither with \"glTF\" nor with {")
            << text;
    EXPECT_EQ(gltf_refusal("{'a':1}"),
              "other format: no glTF file: the JSON: \"asset\" is missing");
    EXPECT_EQ(gltf_refusal("{'a':1"),
              "other format: no glTF file: the JSON breaks the rules of JSON: " +
                  gltf_refusal("{'a':1").substr(63));
    const TempDir folder;
    EXPECT_EQ(file_refusal(folder.write("a.gltf", "{}")), "the JSON: \"asset\" is missing");
    EXPECT_EQ(file_refusal(folder.write("a.glb", "x")),
              "byte 0: the file doesn't begin with \"glTF\"");
    EXPECT_EQ(file_refusal(folder.write("b.gltf", "")), "the JSON is empty");
}

// ------------------------------------------------------------------------------ JSON

TEST(Gltf, whose_json_is_broken_says_how) {
    const TempDir folder;
    struct Row {
        std::string text;
        const char* reason;
    };
    const Row rows[] = {
        {"{'a':1e999}", "the JSON has a number that is none, or none that fits"},
        {"{'a':-}", "the JSON has a number that is none, or none that fits"},
        {"{'a':'\xff'}", "the JSON isn't UTF-8"},
        {"{'a':'\x01'}", "the JSON has a control character within a text"},
        {"{'a':'\\q'}", "the JSON has a text with an escape that is none"},
        {"{'a':'\\ud800'}", "the JSON has a text with an escape that is none"},
        {"{'a':'b", "the JSON ends within a text"},
        {"{'a':" + std::string(3000, '[') + std::string(3000, ']') + "}",
         "the JSON is nested too deep"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(file_refusal(folder.write("a.gltf", json(row.text))), row.reason) << row.text;
}

TEST(Gltf, says_where_a_value_is_wrong) {
    struct Row {
        const char* text;
        const char* reason;
    };
    const Row rows[] = {
        {"'buffers':5", "buffers: no list"},
        {"'buffers':[{'byteLength':'x'}]", "buffers[0].byteLength: no number"},
        {"'buffers':[{}]", "buffers[0]: \"byteLength\" is missing"},
        {"'buffers':[7]", "buffers[0]: \"byteLength\" is missing"},
        {"'buffers':[{'byteLength':-1}]",
         "buffers[0].byteLength: -1 is no whole number from 0 to 9007199254740991"},
        {"'buffers':[{'byteLength':1.5}]",
         "buffers[0].byteLength: 1.5 is no whole number from 0 to 9007199254740991"},
        {"'buffers':[{'byteLength':1e300}]", "buffers[0].byteLength: 1.0000000000000001e+300 is no "
                                             "whole number from 0 to 9007199254740991"},
        {"'buffers':[{'byteLength':9007199254740993}]",
         "buffers[0].byteLength: 9007199254740992 is no whole number from 0 to 9007199254740991"},
        {"'buffers':[{'byteLength':18446744073709551615}]",
         "buffers[0].byteLength: 1.8446744073709552e+19 is no whole number from 0 to "
         "9007199254740991"},
        {"'bufferViews':[{'buffer':0,'byteLength':1}]",
         "bufferViews[0].buffer: 0 is beyond the 0 buffers"},
        {"'nodes':[{'translation':[1,2]}]", "nodes[0].translation: not 3 values, but 2"},
        {"'nodes':[{'translation':[1,2,null]}]", "nodes[0].translation[2]: no number"},
        {"'nodes':[{'mesh':0}]", "nodes[0].mesh: 0 is beyond the 0 meshes"},
        {"'materials':[{'doubleSided':1}]", "materials[0].doubleSided: neither true nor false"},
        {"'materials':[{'pbrMetallicRoughness':[]}]",
         "materials[0].pbrMetallicRoughness: no object"},
        {"'materials':[{'name':{}}]", "materials[0].name: no text"},
        {"'materials':[3]", "materials[0]: no object"},
        {"'extensionsRequired':['KHR_draco_mesh_compression']",
         "extensionsRequired[0]: the file can't be read without \"KHR_draco_mesh_compression\", "
         "whose packed meshes aren't unpacked here"},
        {"'extensionsRequired':['X_y']",
         "extensionsRequired[0]: the file can't be read without \"X_y\", which isn't known"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(gltf_refusal(std::string("{'asset':{'version':'2.0'},") + row.text + "}"),
                  row.reason)
            << row.text;
    EXPECT_EQ(gltf_refusal("{'asset':{}}"), "asset: \"version\" is missing");
    EXPECT_EQ(gltf_refusal("{'asset':{'version':'1.0'}}"),
              "asset.version: version 1.0; version 2 is read");
    EXPECT_EQ(gltf_refusal("{'asset':{'version':'2.0','minVersion':'2.1'}}"),
              "asset.minVersion: the file needs version 2.1; version 2.0 is read");
}

TEST(Gltf, that_says_next_to_nothing_is_an_empty_model) {
    const Draft draft = read_gltf_bytes(Bytes(json("{'asset':{'version':'2.0'}}")).bytes);
    EXPECT_TRUE(draft.surfaces.empty());
    EXPECT_TRUE(draft.notes.empty());
}

TEST(Gltf, notes_what_it_left_out_each_kind_once) {
    const Draft draft = read_gltf_bytes(
        Bytes(json("{'asset':{'version':'2.0'},'extensionsUsed':['KHR_materials_unlit','A_b',"
                   "'KHR_draco_mesh_compression'],'animations':[{},{}],'cameras':[{}],"
                   "'nodes':[{'camera':0},{'camera':0}]}"))
            .bytes);
    const std::vector<std::string> expected = {
        "extensionsUsed[1]: \"A_b\" isn't known, and was left out",
        "animations: animations were left out, as no time was asked for",
        "cameras[0]: a camera that sees nothing was left out"};
    EXPECT_EQ(draft.notes, expected);
}

// ------------------------------------------------------------------------------ base64

TEST(Base64, gives_the_bytes_back_whatever_their_number) {
    std::mt19937 random(5);
    for (std::size_t size = 0; size < 400; ++size) {
        std::vector<unsigned char> bytes(size);
        for (unsigned char& byte : bytes)
            byte = static_cast<unsigned char>(random());
        const std::string text = base64(bytes);
        std::vector<unsigned char> found;
        EXPECT_EQ(decode_base64(text, found), text.size());
        EXPECT_EQ(found, bytes) << size;
        const std::string bare = text.substr(0, text.find('='));
        found.clear();
        EXPECT_EQ(decode_base64(bare, found), bare.size());
        EXPECT_EQ(found, bytes) << "without its padding, " << size;
    }
}

TEST(Base64, finds_each_letter_that_is_none) {
    const std::string right = base64(std::vector<unsigned char>(150, 0xa5));
    for (std::size_t place = 0; place < right.size(); ++place)
        for (const char letter : {'=', '-', '_', ' ', '@', '[', '`', '{', ':', '.', '\0', '\xc3'}) {
            if (letter == '=' && place + 1 == right.size())
                continue;
            std::string wrong = right;
            wrong[place] = letter;
            std::vector<unsigned char> bytes;
            const std::size_t found = decode_base64(wrong, bytes);
            EXPECT_LE(found, place) << place << letter;
            EXPECT_LT(place - found, 4u) << place << letter;
        }
    std::vector<unsigned char> bytes;
    EXPECT_EQ(decode_base64("AAAAA", bytes), 4u) << "a letter too many";
}

TEST(Gltf, whose_data_uri_is_broken_says_how) {
    struct Row {
        const char* uri;
        const char* reason;
    };
    const Row rows[] = {
        {"data:", "a data URI without a comma"},
        {"data:application/octet-stream;base64", "a data URI without a comma"},
        {"data:text/plain,abcd", "a data URI that isn't base64"},
        {"data:;base64,AA-A", "no base64 around letter 0"},
        {"data:;base64,AAAAA-", "no base64 around letter 4"},
        {"data:;base64,AAAAAA-", "no base64 around letter 4"},
        {"data:;base64,", "it has 0 bytes, and byteLength is 60"},
        {"data:;base64,AAAA", "it has 3 bytes, and byteLength is 60"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(gltf_refusal(triangle().text(row.uri)),
                  std::string("buffers[0].uri: ") + row.reason)
            << row.uri;
}

} // namespace

} // namespace orvex_test
