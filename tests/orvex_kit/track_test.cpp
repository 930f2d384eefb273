#include "orvex_kit/track.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/heap.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using namespace orvex::kit;
using orvex::vec4;

constexpr Screen screen{640, 480};

Track track_of(const std::string& text) {
    return Track::from_text(text, "film.json");
}

/// A track of keys, by what stands between the brackets.
Track track_of_keys(const std::string& keys) {
    return track_of("{\"keys\": [" + keys + "]}");
}

/// The pose of a camera at the origin that was turned about y, as JSON.
std::string turned_about_y(double degrees) {
    const double c = std::cos(degrees * 3.14159265358979 / 180);
    const double s = std::sin(degrees * 3.14159265358979 / 180);
    return "[[" + std::to_string(c) + ", 0, " + std::to_string(-s) + ", 0], [0, 1, 0, 0], [" +
           std::to_string(s) + ", 0, " + std::to_string(c) + ", 0], [0, 0, 0, 1]]";
}

const std::string front_pose = "[[1,0,0,1], [0,1,0,2], [0,0,1,3], [0,0,0,1]]";

/// How far a camera was turned about y, in degrees.
double turn_of(const Camera& camera) {
    const Pose pose = camera.pose();
    return std::atan2(pose[2][0], pose[2][2]) * 180 / 3.14159265358979;
}

double opening_of(const Camera& camera) {
    return 2 * std::atan(240.0 / (*camera.intrinsics(640, 480))[1][1]) * 180 / 3.14159265358979;
}

void expect_near(const vec4& actual, const vec4& expected) {
    EXPECT_NEAR(actual.x, expected.x, 1e-5f);
    EXPECT_NEAR(actual.y, expected.y, 1e-5f);
    EXPECT_NEAR(actual.z, expected.z, 1e-5f);
}

TEST(Track, is_where_its_keys_are_at_their_times) {
    const Track track = track_of_keys(
        R"({"time": 1, "eye": [4, 2, 8], "target": [0, 1, 0]},
           {"time": 2.5, "eye": [-4, 2, 8], "target": [0, 1, 0], "opening": 50},
           {"time": 4, "eye": [-9, 5, 0], "target": [0, 2, 0], "up": [0, 0, 4]})");
    ASSERT_TRUE(track) << track.reason();
    EXPECT_EQ(track.reason(), "");
    EXPECT_EQ(track.size(), 3u);
    EXPECT_EQ(track.begin(), 1.0);
    EXPECT_EQ(track.end(), 4.0);
    expect_near(track.at(1).eye(), vec4(4, 2, 8, 1));
    expect_near(track.at(2.5).eye(), vec4(-4, 2, 8, 1));
    expect_near(track.at(4).eye(), vec4(-9, 5, 0, 1));
    const auto middle = track.at(2.5).project(vec4(0, 1, 0, 1), screen);
    EXPECT_NEAR(middle->x, 320.0, 1e-3);
    EXPECT_NEAR(middle->y, 240.0, 1e-3);
    const auto above = track.at(4).project(vec4(0, 2, 1, 1), screen);
    EXPECT_NEAR(above->x, 320.0, 1e-3) << "z is up at the last key";
    EXPECT_LT(above->y, 240.0);
    EXPECT_NEAR(opening_of(track.at(1)), 35.0, 1e-4);
    EXPECT_NEAR(opening_of(track.at(2.5)), 50.0, 1e-4);
    EXPECT_NEAR(opening_of(track.at(4)), 50.0, 1e-4) << "that of the key before";
}

TEST(Track, turns_its_up_evenly_however_long_the_vectors_of_its_keys_are) {
    const Track track = track_of_keys(
        R"({"time": 0, "eye": [-9, 0, 0], "target": [0, 0, 0], "up": [0, 1, 0]},
           {"time": 1, "eye": [-9, 0, 0], "target": [0, 0, 0], "up": [0, 0, 8]})");
    ASSERT_TRUE(track) << track.reason();
    const auto above = track.at(0.5).project(vec4(0, 1, 1, 1), screen);
    EXPECT_NEAR(above->x, 320.0, 1e-3) << "half way between both";
    EXPECT_LT(above->y, 240.0);
}

TEST(Track, stands_still_before_its_first_key_and_behind_its_last) {
    const Track track = track_of_keys(R"({"time": 1, "eye": [0, 0, 8], "target": [0, 0, 0]},
                                         {"time": 2, "eye": [8, 0, 0], "target": [0, 0, 0]})");
    for (const double early : {-1e300, 0.0, 1.0, std::nan("")})
        EXPECT_EQ(track.at(early).pose(), track.at(1).pose());
    EXPECT_EQ(track.at(1e300).pose(), track.at(2).pose());
    EXPECT_EQ(track.at(std::numeric_limits<double>::infinity()).pose(), track.at(2).pose());
    const Track still = track_of_keys(R"({"time": 3, "eye": [0, 0, 8], "target": [0, 0, 0]})");
    EXPECT_EQ(still.size(), 1u);
    EXPECT_EQ(still.begin(), still.end());
    expect_near(still.at(17).eye(), vec4(0, 0, 8, 1));
}

TEST(Track, goes_straight_and_evenly_between_two_keys) {
    const Track track = track_of_keys(R"({"time": 0, "eye": [0, 0, 8], "target": [0, 0, 0]},
                                         {"time": 4, "eye": [8, 4, 8], "target": [8, 4, 0]})");
    for (const double time : {0.5, 1.0, 2.0, 3.25})
        expect_near(track.at(time).eye(),
                    vec4(static_cast<float>(2 * time), static_cast<float>(time), 8, 1));
}

/// Speeds right before and behind a time, by small steps.
template<class Value>
void expect_no_jerk(double time, const Value& value) {
    constexpr double step = 1e-4;
    const double before = (value(time) - value(time - step)) / step;
    const double behind = (value(time + step) - value(time)) / step;
    EXPECT_NEAR(before, behind, 0.05 * std::max(1.0, std::abs(before))) << time;
}

TEST(Track, has_no_jerk_at_its_keys) {
    const Track track = track_of_keys(
        R"({"time": 0, "eye": [0, 0, 8], "target": [0, 0, 0], "opening": 20},
           {"time": 1, "eye": [8, 0, 8], "target": [1, 0, 0], "opening": 60},
           {"time": 4, "eye": [8, 9, 8], "target": [1, 2, 0], "opening": 30},
           {"time": 4.5, "eye": [8, 9, 20], "target": [1, 2, 5], "opening": 30})");
    for (const double time : {1.0, 4.0}) {
        expect_no_jerk(
            time, [&](double at) { return track.at(at).pose()[0][3] + track.at(at).pose()[2][3]; });
        expect_no_jerk(time, [&](double at) { return opening_of(track.at(at)); });
    }
}

TEST(Track, takes_poses_and_turns_the_shorter_way_with_even_speed) {
    const Track track = track_of_keys("{\"time\": 0, \"pose\": " + turned_about_y(170) +
                                      "}, {\"time\": 2, \"pose\": " + turned_about_y(-110) + "}");
    ASSERT_TRUE(track) << track.reason();
    EXPECT_NEAR(turn_of(track.at(0)), 170.0, 1e-3);
    EXPECT_NEAR(turn_of(track.at(0.2)), 178.0, 1e-3);
    EXPECT_NEAR(turn_of(track.at(1)), -150.0, 1e-3);
    EXPECT_NEAR(turn_of(track.at(1.5)), -130.0, 1e-3);
    EXPECT_NEAR(turn_of(track.at(2)), -110.0, 1e-3);
}

TEST(Track, turns_without_a_jerk_through_poses) {
    std::string keys;
    const double degrees[] = {0, 30, 150, 160, -120};
    for (int i = 0; i < 5; ++i)
        keys += std::string(i ? ", " : "") + "{\"time\": " + std::to_string(i * (1 + i) / 2.0) +
                ", \"pose\": " + turned_about_y(degrees[i]) + "}";
    const Track track = track_of_keys(keys);
    ASSERT_TRUE(track) << track.reason();
    for (const int i : {1, 2, 3})
        expect_no_jerk(i * (1 + i) / 2.0, [&](double at) { return turn_of(track.at(at)); });
    // A steady turn stays one.
    std::string steady;
    for (int i = 0; i < 8; ++i)
        steady += std::string(i ? ", " : "") + "{\"time\": " + std::to_string(i) +
                  ", \"pose\": " + turned_about_y(20 * i) + "}";
    for (double time = 0.0; time < 7.0; time += 0.13)
        EXPECT_NEAR(turn_of(track_of_keys(steady).at(time)), 20 * time, 1e-2);
}

TEST(Track, moves_the_eye_of_poses_and_keeps_them_rotations) {
    const Track track = track_of_keys("{\"time\": 0, \"pose\": " + front_pose +
                                      "}, {\"time\": 1, \"pose\": [[0,0,-1,0], [0,1,0,0], "
                                      "[1,0,0,-10], [0,0,0,1]]}");
    expect_near(track.at(0).eye(), vec4(-1, -2, -3, 1));
    expect_near(track.at(1).eye(), vec4(10, 0, 0, 1));
    expect_near(track.at(0.5).eye(), vec4(4.5f, -1, -1.5f, 1));
    const Pose pose = track.at(0.3).pose();
    for (std::size_t a = 0; a < 3; ++a)
        for (std::size_t b = 0; b < 3; ++b)
            EXPECT_NEAR(pose[a][0] * pose[b][0] + pose[a][1] * pose[b][1] + pose[a][2] * pose[b][2],
                        a == b ? 1.0 : 0.0, 1e-12);
}

TEST(Track, is_read_from_a_file_and_copied_as_a_value) {
    const TempDir folder;
    const std::string path = folder.write(
        "film.json", R"({"keys": [{"time": 0, "eye": [0, 0, 8], "target": [0, 0, 0]}]})");
    Track track(path);
    ASSERT_TRUE(track) << track.reason();
    const Track copy = track;
    track = Track();
    EXPECT_FALSE(track);
    EXPECT_EQ(track.reason(), "there is no track");
    EXPECT_EQ(track.at(1).pose(), Camera().pose());
    EXPECT_EQ(track.size(), 0u);
    EXPECT_EQ(track.begin(), 0.0);
    EXPECT_EQ(track.end(), 0.0);
    EXPECT_EQ(copy.size(), 1u);
}

TEST(Track, tells_why_a_file_cant_be_read) {
    const TempDir folder;
    EXPECT_EQ(Track("/none.json").reason(), "/none.json: No such file or directory");
    EXPECT_EQ(Track("/").reason(), "/: is a folder");
    const std::string empty = folder.write("empty.json", "");
    EXPECT_EQ(Track(empty).reason(), empty + ": the file is empty");
    const std::string large = folder.write("large.json", std::string((16u << 20) + 1, ' '));
    EXPECT_EQ(Track(large).reason(), large + ": more than 16 MiB");
    const std::string broken = folder.write("broken.json", "{\n  \"keys\": [\n  }");
    EXPECT_EQ(Track(broken).reason(), broken + ":3:3: '}' is no JSON here");
}

struct Refusal {
    const char* name;
    std::string text;
    std::string reason; ///< behind the file's name
};

void PrintTo(const Refusal& row, std::ostream* out) {
    *out << row.name;
}

class TrackRefusal : public testing::TestWithParam<Refusal> {};

TEST_P(TrackRefusal, has_its_place_and_what_is_wrong) {
    const Track track = track_of(GetParam().text);
    EXPECT_FALSE(track);
    EXPECT_EQ(track.reason(), "film.json:" + GetParam().reason);
}

INSTANTIATE_TEST_SUITE_P(
    of_the_notation, TrackRefusal,
    testing::Values(Refusal{"nothing", "", "1:1: the text ends too early"},
                    Refusal{"an end too early", "{\"keys\": [", "1:11: the text ends too early"},
                    Refusal{"a comma too many", "{\"keys\":\n [1,]}", "2:5: ']' is no JSON here"},
                    Refusal{"a word", "{\"keys\": nul}", "1:13: '}' is no JSON here"},
                    Refusal{"a bad byte", "{\"k\xff\": 1}", "1:4: '?' is no JSON here"},
                    Refusal{"more behind", "{} {}", "1:4: '{' is no JSON here"},
                    Refusal{"a number too large", "{\"keys\": [1e999]}",
                            "1:15: the number that ends here is too large"},
                    Refusal{"a name twice", "{\"keys\": [], \"keys\": []}",
                            " 'keys' stands twice in one object"},
                    Refusal{"a long word", std::string(60, 'x'), "1:1: 'x' is no JSON here"},
                    Refusal{"depth", "{\"keys\": [[[[[[1]]]]]]}",
                            " brackets stand deeper in each other than in a track"},
                    Refusal{
                        "names",
                        R"({"a":1,"b":1,"c":1,"d":1,"e":1,"f":1,"g":1,"h":1,"i":1,"j":1,"k":1,"l":1,
                    "m":1,"n":1,"o":1,"p":1,"q":1})",
                        " an object has more names than any of a track"}));

const std::string eye = R"("eye": [0, 0, 8])";
const std::string target = R"("target": [0, 0, 0])";
const std::string good = "{\"time\": 0, " + eye + ", " + target + "}";

Refusal refused_keys(const char* name, const std::string& keys, const std::string& reason) {
    return {name, "{\"keys\": [" + keys + "]}", " " + reason};
}

Refusal refused_key(const char* name, const std::string& key, const std::string& reason) {
    return refused_keys(name, good + ", {" + key + "}", "keys[1]" + reason);
}

Refusal refused_pose(const char* name, const std::string& pose, const std::string& reason) {
    return refused_keys(name, "{\"time\": 0, \"pose\": " + pose + "}", "keys[0].pose" + reason);
}

INSTANTIATE_TEST_SUITE_P(
    of_what_it_says, TrackRefusal,
    testing::Values(
        Refusal{"a list", "[]", " an object with \"keys\" is wanted"},
        Refusal{"no keys", "{}", " keys: a list of at least one key is wanted"},
        Refusal{"keys that are none", "{\"keys\": 3}",
                " keys: a list of at least one key is wanted"},
        Refusal{"an empty list", "{\"keys\": []}", " keys: a list of at least one key is wanted"},
        Refusal{"an unknown name", "{\"frames\": []}", " 'frames' is unknown; known: keys"},
        refused_keys("a number for a key", "3", "keys[0]: an object is wanted"),
        refused_key("a misspelt name", "\"time\": 1, \"tagret\": 3",
                    ": 'tagret' is unknown; known: time, eye, target, up, pose, opening"),
        refused_key("no time", eye + ", " + target, ": 'time' is missing"),
        refused_key("a time in words", "\"time\": \"1\"", ".time: a number is wanted"),
        refused_key("the same time", "\"time\": 0", ".time: it isn't later than the key before"),
        refused_key("an earlier time", "\"time\": -1", ".time: it isn't later than the key before"),
        refused_key("a time too large", "\"time\": 1e16",
                    ".time: a number from -1e15 to 1e15 is wanted"),
        refused_key("no eye", "\"time\": 1, " + target, ": 'eye' is missing"),
        refused_key("no target", "\"time\": 1, " + eye, ": 'target' is missing"),
        refused_key("two numbers", "\"time\": 1, \"eye\": [0, 0], " + target,
                    ".eye: three numbers are wanted"),
        refused_key("a word among numbers", "\"time\": 1, \"target\": [0, 0, null], " + eye,
                    ".target[2]: a number is wanted"),
        refused_key("an eye at the target", "\"time\": 1, \"target\": [0, 0, 8.00000001], " + eye,
                    ".target: it is where the eye is"),
        refused_key("up of no length", "\"time\": 1, \"up\": [0, 0, 0], " + eye + ", " + target,
                    ".up: it has no length"),
        refused_key("up of one number", "\"time\": 1, \"up\": 1, " + eye + ", " + target,
                    ".up: three numbers are wanted"),
        refused_key("an opening too wide", "\"time\": 1, \"opening\": 180",
                    ".opening: degrees from 0.01 to 179.9 are wanted"),
        refused_key("an opening in words", "\"time\": 1, \"opening\": true",
                    ".opening: a number is wanted"),
        refused_key("a pose among others", "\"time\": 1, \"pose\": " + front_pose,
                    ".pose: the keys before have none"),
        refused_pose("a pose of three rows", "[[1,0,0,0],[0,1,0,0],[0,0,1,0]]",
                     ": four rows are wanted"),
        refused_pose("a short row", "[[1,0,0,0],[0,1,0],[0,0,1,0],[0,0,0,1]]",
                     "[1]: four numbers are wanted"),
        refused_pose("a word in a pose", "[[1,0,0,0],[0,1,0,\"\"],[0,0,1,0],[0,0,0,1]]",
                     "[1][3]: a number is wanted"),
        refused_pose("a pose that scales", "[[2,0,0,0],[0,2,0,0],[0,0,2,0],[0,0,0,1]]",
                     ": the left three columns of a pose are no rotation: its rows have length 1 "
                     "and stand at right angles, and it mirrors nothing"),
        refused_keys("a key without a pose",
                     "{\"time\": 0, \"pose\": " + front_pose + "}, {\"time\": 1}",
                     "keys[1]: 'pose' is missing"),
        refused_keys("an eye among poses",
                     "{\"time\": 0, " + eye + ", \"pose\": " + front_pose + "}",
                     "keys[0].eye: the track is one of poses")));

/// Refuses each block once, until a file is read. @return how many there were
unsigned long refusals_of_a_track(const std::string& path) {
    for (unsigned long n = 0; n < 5000; ++n) {
        const long before = living_blocks();
        try {
            const RefuseArrays refusal({.granted = n, .refused = 1, .single = true});
            const Track track(path);
            if (track)
                return n;
            EXPECT_NE(track.reason(), "");
        } catch (const std::bad_alloc&) { // NOLINT(bugprone-empty-catch): a small block
        }
        EXPECT_EQ(living_blocks(), before) << "after block " << n;
    }
    ADD_FAILURE() << "it never got all";
    return 0;
}

TEST(Track, leaves_nothing_behind_when_memory_runs_out) {
    const TempDir folder;
    const std::string path =
        folder.write("film.json", "{\"keys\": [" + good +
                                      ", {\"time\": 1, \"opening\": 20, \"up\": [0, 1, 0], " + eye +
                                      ", " + target + "}]}");
    EXPECT_GT(refusals_of_a_track(path), 10u);
}

TEST(Track, refuses_more_keys_than_it_holds) {
    std::string keys = "0";
    for (int i = 0; i < 100000; ++i)
        keys += ",0";
    EXPECT_EQ(track_of_keys(keys).reason(), "film.json: keys: there are more than 100000");
    std::string values = "0";
    for (int i = 0; i < 3200000; ++i)
        values += ",0";
    EXPECT_EQ(track_of_keys(values).reason(), "film.json: there are more values than in a track");
}

} // namespace

} // namespace orvex_test
