#include <cmath>
#include <cstring>
#include <filesystem>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "orvex_kit/picture_file.h"
#include "tests/orvex_kit/sample_pictures.h"
#include "tests/support/temp_dir.h"

#ifdef ORVEX_KIT_OPENEXR
#include <sys/resource.h>

#include <OpenEXR/ImfChannelList.h>
#include <OpenEXR/ImfFrameBuffer.h>
#include <OpenEXR/ImfHeader.h>
#include <OpenEXR/ImfInputFile.h>

#include "tests/orvex_kit/child_process.h"
#endif

namespace orvex_test {

namespace {

using namespace orvex::kit;

#ifdef ORVEX_KIT_OPENEXR

template<class T>
constexpr Imf::PixelType type_of = Imf::FLOAT;
template<>
constexpr Imf::PixelType type_of<half> = Imf::HALF;
template<>
constexpr Imf::PixelType type_of<std::uint32_t> = Imf::UINT;

/// All samples of a channel, which has to be of that type.
template<class T>
std::vector<T> read_channel(const std::string& path, const std::string& name) {
    Imf::InputFile file(path.c_str());
    const Imath::Box2i box = file.header().dataWindow();
    const int width = box.max.x - box.min.x + 1, height = box.max.y - box.min.y + 1;
    std::vector<T> samples(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    const Imf::Channel* const channel = file.header().channels().findChannel(name);
    if (!channel || channel->type != type_of<T>) {
        ADD_FAILURE() << "no such channel of that type: " << name;
        return samples;
    }
    Imf::FrameBuffer frame;
    frame.insert(name, Imf::Slice(type_of<T>, reinterpret_cast<char*>(samples.data()), sizeof(T),
                                  sizeof(T) * static_cast<std::size_t>(width)));
    file.setFrameBuffer(frame);
    file.readPixels(box.min.y, box.max.y);
    return samples;
}

std::vector<std::string> channels_of(const std::string& path) {
    const Imf::InputFile file(path.c_str());
    std::vector<std::string> names;
    const Imf::ChannelList& channels = file.header().channels();
    for (auto channel = channels.begin(); channel != channels.end(); ++channel)
        names.emplace_back(channel.name());
    return names;
}

TEST(Exr, can_be_written) {
    EXPECT_TRUE(can_write_format(PictureFormat::exr));
}

TEST(Exr, has_the_usual_letters) {
    const TempDir folder;
    const std::string name = folder.file("x.exr");
    const std::vector<std::string> expected[] = {
        {"Y"}, {"A", "Y"}, {"B", "G", "R"}, {"A", "B", "G", "R"}};
    for (int channels = 1; channels <= 4; ++channels) {
        ASSERT_EQ(write_picture(make_picture(2, 2, channels, Sample::f32), name).reason(), "");
        EXPECT_EQ(channels_of(name), expected[channels - 1]);
    }
}

TEST(Exr, keeps_floats_as_they_are) {
    const TempDir folder;
    const std::string name = folder.file("x.exr");
    Picture picture = make_picture(3, 2, 2, Sample::f32);
    const float values[] = {0.1f,
                            -1e30f,
                            std::numeric_limits<float>::infinity(),
                            std::numeric_limits<float>::quiet_NaN(),
                            -0.0f,
                            1e-40f};
    for (int i = 0; i < 6; ++i)
        picture.row<float>(i / 3)[i % 3 * 2 + 1] = values[i];
    ASSERT_EQ(write_picture(picture, name).reason(), "");
    const std::vector<float> read = read_channel<float>(name, "A");
    EXPECT_EQ(std::memcmp(read.data(), values, sizeof values), 0);
    EXPECT_EQ(read_channel<float>(name, "Y"), std::vector<float>(6));
}

TEST(Exr, has_integers_as_parts_of_the_largest) {
    const TempDir folder;
    const std::string name = folder.file("x.exr");
    Picture bytes = make_picture(16, 16, 1, Sample::u8);
    for (int i = 0; i < 256; ++i)
        bytes.row<std::uint8_t>(i / 16)[i % 16] = static_cast<std::uint8_t>(i);
    ASSERT_EQ(write_picture(bytes, name).reason(), "");
    const std::vector<half> halves = read_channel<half>(name, "Y");
    for (int i = 0; i < 256; ++i)
        EXPECT_EQ(std::lround(255.0f * static_cast<float>(halves[static_cast<std::size_t>(i)])), i);
    EXPECT_EQ(halves[255], half(1.0f));
    Picture wide = make_picture(2, 1, 1, Sample::u16);
    wide.row<std::uint16_t>(0)[0] = 65535;
    wide.row<std::uint16_t>(0)[1] = 1;
    ASSERT_EQ(write_picture(wide, name).reason(), "");
    EXPECT_EQ(read_channel<float>(name, "Y"), (std::vector<float>{1.0f, 1.0f / 65535.0f}));
}

TEST(Exr, has_ids_of_the_same_bits) {
    const TempDir folder;
    const std::string name = folder.file("x.exr");
    Picture ids = make_picture(2, 1, 1, Sample::i32);
    ids.row<std::int32_t>(0)[0] = -1;
    ids.row<std::int32_t>(0)[1] = 7;
    ASSERT_EQ(write_picture(ids, name).reason(), "");
    EXPECT_EQ(read_channel<std::uint32_t>(name, "Y"), (std::vector<std::uint32_t>{4294967295u, 7}));
}

TEST(Exr, holds_layers_of_several_kinds) {
    const TempDir folder;
    const std::string name = folder.file("x.exr");
    Picture color = make_picture(2, 1, 4, Sample::u8), depth = make_picture(2, 1, 1, Sample::f32);
    Picture normal = make_picture(2, 1, 3, Sample::f32), ids = make_picture(2, 1, 1, Sample::i32);
    color.row<std::uint8_t>(0)[6] = 255;
    depth.row<float>(0)[1] = 2.5f;
    normal.row<float>(0)[5] = -1.0f;
    ids.row<std::int32_t>(0)[0] = 3;
    ASSERT_EQ(write_layers({{"", &color, ""},
                            {"depth", &depth, "Z"},
                            {"normal", &normal, "XYZ"},
                            {"object", &ids, ""}},
                           name)
                  .reason(),
              "");
    EXPECT_EQ(channels_of(name),
              (std::vector<std::string>{"A", "B", "G", "R", "depth.Z", "normal.X", "normal.Y",
                                        "normal.Z", "object.Y"}));
    EXPECT_EQ(read_channel<half>(name, "B")[1], half(1.0f));
    EXPECT_EQ(read_channel<float>(name, "depth.Z")[1], 2.5f);
    EXPECT_EQ(read_channel<float>(name, "normal.Z")[1], -1.0f);
    EXPECT_EQ(read_channel<std::uint32_t>(name, "object.Y")[0], 3u);
}

TEST(Exr, has_layers_of_long_names) {
    const TempDir folder;
    const std::string name = folder.file("x.exr"), layer(253, 'a');
    const Picture picture = make_picture(1, 1, 1, Sample::f32);
    ASSERT_EQ(write_layers({{layer, &picture, ""}}, name).reason(), "");
    EXPECT_EQ(channels_of(name), std::vector<std::string>{layer + ".Y"});
}

TEST(Exr, refuses_layers_that_dont_fit) {
    const TempDir folder;
    const std::string name = folder.file("x.exr"), begin = "can't write " + name + ": ";
    const Picture one = make_picture(2, 2, 1, Sample::f32),
                  three = make_picture(2, 2, 3, Sample::u8);
    const Picture small = make_picture(1, 2, 1, Sample::f32), empty;
    EXPECT_EQ(write_layers({}, name).reason(), begin + "there is no layer");
    EXPECT_EQ(write_layers({{"a", nullptr, ""}}, name).reason(),
              begin + "the layer 'a' has no picture");
    EXPECT_EQ(write_layers({{"", &empty, ""}}, name).reason(),
              begin + "the layer without a name has no picture");
    EXPECT_EQ(write_layers({{"", &one, ""}, {"b", &small, ""}}, name).reason(),
              begin + "the layer 'b' has 1x2 pixels, the first one 2x2");
    EXPECT_EQ(write_layers({{"c", &three, "XY"}}, name).reason(),
              begin + "the layer 'c' has 3 channels, not 2");
    EXPECT_EQ(write_layers({{"d", &one, ""}, {"d", &one, ""}}, name).reason(),
              begin + "the channel 'd.Y' comes twice");
    EXPECT_EQ(write_layers({{"e", &three, "XYX"}}, name).reason(),
              begin + "the channel 'e.X' comes twice");
    const std::string bad_name =
        begin + "the name of a layer has more than 253 letters, or a zero among them";
    EXPECT_EQ(write_layers({{std::string(254, 'f'), &one, ""}}, name).reason(), bad_name);
    EXPECT_EQ(write_layers({{std::string("f\0g", 3), &one, ""}}, name).reason(), bad_name);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(Exr, comes_whole_or_not_at_all) {
    const TempDir folder;
    const std::string name = folder.write("x.exr", "old"), full = folder.file("full.exr");
    const Picture picture = noise_picture(64, 64, 3, Sample::u8);
    const int status = status_of([&] {
        const rlimit limit{1000, 1000};
        setrlimit(RLIMIT_FSIZE, &limit);
        const Outcome outcome = write_picture(picture, name);
        _exit(outcome.reason() == "can't write " + name + ": File too large" ? 0 : 1);
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(content_of(name), "old");
    std::filesystem::create_symlink("/dev/full", full);
    EXPECT_EQ(write_picture(picture, full).reason(),
              "can't write " + full + ": No space left on device");
}

#else

TEST(Exr, says_that_the_build_cant_write_it) {
    const TempDir folder;
    const std::string name = folder.file("x.exr");
    const Picture picture = make_picture(1, 1, 1, Sample::f32);
    const std::string reason = "can't write " + name + ": this build of the kit has no OpenEXR";
    EXPECT_FALSE(can_write_format(PictureFormat::exr));
    EXPECT_EQ(write_picture(picture, name).reason(), reason);
    EXPECT_EQ(write_layers({{"", &picture, ""}}, name).reason(), reason);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

#endif

} // namespace

} // namespace orvex_test
