// Compressed files that were made to hurt.

#include "orvex_formats/private/archive.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex_formats/private/archived_files.h"
#include "tests/orvex_formats/archives.h"
#include "tests/orvex_formats/costs.h"
#include "tests/orvex_formats/mutants.h"

namespace orvex_test {

namespace {

using namespace orvex::formats;

Draft inflate_gzip(const InputFile& file) {
    std::uint64_t num_behind = 0;
    gunzip(file, num_behind);
    return {};
}

Draft inflate_zip(const InputFile& file) {
    const ZipArchive archive(file);
    for (const ZipArchive::Entry& entry : archive.entries())
        archive.read(entry);
    return {};
}

TEST(HostileArchive, of_gzip_grows_a_thousandfold) {
    const std::string bomb = gzip(std::string(std::size_t{64} << 20, '\0'));
    ASSERT_LT(bomb.size(), 70000u);
    const std::string reason = cheap_refusal_of(inflate_gzip, Bytes(bomb).bytes);
    EXPECT_NE(reason.find("the compressed data grows beyond"), std::string::npos) << reason;
}

TEST(HostileArchive, of_zip_grows_a_thousandfold_whatever_it_says) {
    Zip::File file;
    file.name = "a.stl";
    file.text.assign(std::size_t{64} << 20, '\0');
    EXPECT_NE(
        cheap_refusal_of(inflate_zip, Bytes(Zip().add(file).text()).bytes).find("grows beyond"),
        std::string::npos);
    file.size_lie = -(std::int64_t{64} << 20) + 10;
    EXPECT_NE(cheap_refusal_of(inflate_zip, Bytes(Zip().add(file).text()).bytes)
                  .find("grows beyond 10 bytes"),
              std::string::npos);
}

Draft read_all_beside(const InputFile& file) {
    std::vector<unsigned char> bytes(static_cast<std::size_t>(file.size()));
    file.read(0, bytes.data(), bytes.size());
    ArchivedFiles files{InputFile(std::move(bytes))};
    for (const ZipArchive::Entry& entry : files.archive().entries())
        files.read(files.find(entry.name));
    return {};
}

TEST(HostileArchive, of_zip_grows_by_many_files_that_a_model_names) {
    Zip zip;
    for (const char* name : {"a.mtl", "b.mtl", "c.mtl", "d.mtl"})
        zip.add(name, std::string(10000000, ' '));
    const std::string reason = cheap_refusal_of(read_all_beside, Bytes(zip.text()).bytes);
    EXPECT_NE(reason.find("the files of the archive grow beyond"), std::string::npos) << reason;
}

TEST(HostileArchive, of_many_small_members_takes_its_time_in_proportion) {
    std::string members;
    while (members.size() < 1u << 18)
        members += gzip("");
    EXPECT_EQ(cheap_refusal_of(inflate_gzip, Bytes(members).bytes), "");
}

TEST(HostileArchive, announces_more_files_than_it_has) {
    std::string packed = Zip().add("a", "b").text();
    packed[packed.size() - 12] = packed[packed.size() - 11] = '\x7f';
    EXPECT_NE(cheap_refusal_of(inflate_zip, Bytes(packed).bytes).find("too short for them"),
              std::string::npos);
    std::string far = Zip().add("a", "b").text();
    far[far.size() - 3] = '\x7f'; // where the directory is
    EXPECT_NE(cheap_refusal_of(inflate_zip, Bytes(far).bytes).find("beyond its end"),
              std::string::npos);
}

TEST(HostileArchive, mutants_do_no_harm) {
    const std::string text = "solid tile\nfacet\nvertex 0 0 0\nvertex 1 0 0\n";
    read_mutants(inflate_gzip, {Bytes(gzip(text) + gzip(text)).bytes});
    Zip::File wide;
    wide.name = "b.stl";
    wide.text = text;
    wide.is_wide = true;
    for (const Zip& zip : {Zip().add("a.stl", text).add(wide), Zip().add("a.stl", text).widen()})
        read_mutants(inflate_zip, {Bytes(zip.text()).bytes});
}

} // namespace

} // namespace orvex_test
