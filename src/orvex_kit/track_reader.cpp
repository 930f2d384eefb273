// Reads tracks by the JSON library, which no other source knows. A first walk makes a tree, and
// finds mistakes of the notation, which have a line and a column, names that stand twice, and more
// than any track has. A second one takes the keys from the tree; its mistakes have a path.

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "orvex_kit/camera.h"
#include "orvex_kit/files.h"
#include "orvex_kit/private/track_key.h"

namespace orvex::kit {

namespace {

using nlohmann::json;

constexpr std::size_t most_keys = 100000;
constexpr double farthest = 1e15;
constexpr double nearest = 1e-15;

/// "3:14", counted from 1, in bytes.
std::string line_and_column(const std::string& text, std::size_t bytes) {
    std::size_t line = 1;
    std::size_t begin = 0;
    const std::size_t at = std::min(bytes > 0 ? bytes - 1 : 0, text.size());
    for (std::size_t i = 0; i < at; ++i)
        if (text[i] == '\n') {
            ++line;
            begin = i + 1;
        }
    return std::to_string(line) + ":" + std::to_string(at - begin + 1);
}

/// A value of the file. It ends without asking for memory, as the library's own wouldn't.
struct Value {
    struct Parts;

    enum class Kind { other, number, list, object };
    Kind kind = Kind::other;
    double number = 0.0;
    std::unique_ptr<Parts> parts; ///< of a list or an object

    bool is(Kind wanted) const { return kind == wanted; }
    std::size_t size() const;
    const Value& operator[](std::size_t i) const;
    /// Null if an object has no part of that name.
    const Value* find(const std::string& name) const;
};

struct Value::Parts {
    std::vector<Value> values;
    std::vector<std::string> names; ///< of an object's
};

std::size_t Value::size() const {
    return parts ? parts->values.size() : 0;
}

const Value& Value::operator[](std::size_t i) const {
    return parts->values[i];
}

const Value* Value::find(const std::string& name) const {
    if (!is(Kind::object))
        return nullptr;
    const auto at = std::find(parts->names.begin(), parts->names.end(), name);
    return at == parts->names.end()
               ? nullptr
               : &parts->values[static_cast<std::size_t>(at - parts->names.begin())];
}

/// The first walk, which makes the tree.
class Notation : public nlohmann::json_sax<json> {
public:
    explicit Notation(const std::string& text)
        : text(text) {}

    Value root;
    /// Where and what; empty if there is no mistake.
    std::string mistake;

    bool null() override { return add({}) != nullptr; }
    bool boolean(bool) override { return add({}) != nullptr; }
    bool string(string_t&) override { return add({}) != nullptr; }
    bool binary(binary_t&) override { return add({}) != nullptr; }
    bool number_integer(number_integer_t number) override {
        return add_number(static_cast<double>(number));
    }
    bool number_unsigned(number_unsigned_t number) override {
        return add_number(static_cast<double>(number));
    }
    bool number_float(number_float_t number, const string_t&) override {
        return add_number(number);
    }
    bool start_array(std::size_t) override { return enter(Value::Kind::list); }
    bool start_object(std::size_t) override { return enter(Value::Kind::object); }
    bool end_array() override { return leave(); }
    bool end_object() override { return leave(); }
    bool key(string_t& name) override {
        constexpr std::size_t most_names = 16; // an object of a track has six
        std::vector<std::string>& names = open.back()->parts->names;
        if (std::find(names.begin(), names.end(), name) != names.end())
            return fail(" '" + quotable(name) + "' stands twice in one object");
        names.push_back(name);
        return names.size() <= most_names || fail(" an object has more names than any of a track");
    }
    bool parse_error(std::size_t position, const std::string&,
                     const json::exception& error) override {
        constexpr int id_of_overflow = 406;
        std::string what = "the text ends too early";
        if (error.id == id_of_overflow)
            what = "the number that ends here is too large";
        else if (position > 0 && position <= text.size())
            what = "'" + quotable(text.substr(position - 1, 1)) + "' is no JSON here";
        return fail(line_and_column(text, position) + ": " + what);
    }

private:
    const std::string& text;
    std::vector<Value*> open; ///< the lists and objects around what comes next
    std::size_t count = 0;

    bool fail(std::string what) {
        mistake = std::move(what);
        return false;
    }
    /// Null, with the mistake, if there are too many.
    Value* add(Value value) {
        constexpr std::size_t most = 32 * most_keys; // a key with a pose has 23
        if (++count > most) {
            fail(" there are more values than in a track");
            return nullptr;
        }
        if (open.empty()) {
            root = std::move(value);
            return &root;
        }
        std::vector<Value>& values = open.back()->parts->values;
        values.push_back(std::move(value));
        return &values.back();
    }
    bool add_number(double number) {
        return add({Value::Kind::number, number, nullptr}) != nullptr;
    }
    bool enter(Value::Kind kind) {
        constexpr std::size_t deepest = 5; // a number of a pose stands in five
        if (open.size() == deepest)
            return fail(" brackets stand deeper in each other than in a track");
        Value* const entered = add({kind, 0.0, std::make_unique<Value::Parts>()});
        if (entered)
            open.push_back(entered);
        return entered != nullptr;
    } // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks): the tree has what was entered.
    bool leave() {
        open.pop_back();
        return true;
    }
};

/// The second walk: takes the keys, up to the first mistake.
class Reader {
public:
    explicit Reader(TrackKeys& track)
        : track(track) {}

    /// @return the place and what is wrong; empty if nothing is
    std::string read(const Value& root) {
        if (!root.is(Value::Kind::object))
            return "an object with \"keys\" is wanted";
        if (!only_knows(root, "", {"keys"}))
            return mistake;
        const Value* const keys = root.find("keys");
        if (!keys || !keys->is(Value::Kind::list) || keys->size() == 0)
            return "keys: a list of at least one key is wanted";
        if (keys->size() > most_keys)
            return "keys: there are more than " + std::to_string(most_keys);
        track.are_posed = (*keys)[0].find("pose") != nullptr;
        for (std::size_t i = 0; i < keys->size(); ++i)
            if (!take_key((*keys)[i], "keys[" + std::to_string(i) + "]"))
                return mistake;
        return "";
    }

private:
    TrackKeys& track;
    std::string mistake;

    bool fail(const std::string& place, const std::string& what) {
        mistake = place + (place.empty() ? "" : ": ") + what;
        return false;
    }

    bool only_knows(const Value& object, const std::string& place,
                    const std::vector<std::string>& known) {
        for (const std::string& name : object.parts->names) {
            if (std::find(known.begin(), known.end(), name) != known.end())
                continue;
            std::string names;
            for (const std::string& one : known)
                names += (names.empty() ? "" : ", ") + one;
            return fail(place, "'" + quotable(name) + "' is unknown; known: " + names);
        }
        return true;
    }

    bool take_key(const Value& value, const std::string& place) {
        if (!value.is(Value::Kind::object))
            return fail(place, "an object is wanted");
        if (!only_knows(value, place, {"time", "eye", "target", "up", "pose", "opening"}))
            return false;
        TrackKey key;
        if (!track.keys.empty())
            key.opening = track.keys.back().opening;
        if (!take_time(value, place, key) || !take_opening(value, place, key))
            return false;
        if (track.are_posed ? !take_pose(value, place, key) : !take_look(value, place, key))
            return false;
        track.keys.push_back(key);
        return true;
    }

    bool take_number(const Value& value, const std::string& place, double& number) {
        if (!value.is(Value::Kind::number))
            return fail(place, "a number is wanted");
        number = value.number;
        return std::abs(number) <= farthest || fail(place, "a number from -1e15 to 1e15 is wanted");
    }

    bool take_time(const Value& value, const std::string& place, TrackKey& key) {
        const Value* const time = value.find("time");
        if (!time)
            return fail(place, "'time' is missing");
        if (!take_number(*time, place + ".time", key.time))
            return false;
        // The ways between keys are divided by their times.
        const bool grows = track.keys.empty() || key.time - track.keys.back().time >= 1e-9;
        return grows || fail(place + ".time", "it isn't later than the key before");
    }

    bool take_opening(const Value& value, const std::string& place, TrackKey& key) {
        const Value* const opening = value.find("opening");
        if (!opening)
            return true;
        if (!take_number(*opening, place + ".opening", key.opening))
            return false;
        return (key.opening >= 0.01 && key.opening <= 179.9) ||
               fail(place + ".opening", "degrees from 0.01 to 179.9 are wanted");
    }

    bool take_vector(const Value& value, const std::string& place, Vector3& vector) {
        if (!value.is(Value::Kind::list) || value.size() != 3)
            return fail(place, "three numbers are wanted");
        double* const parts[] = {&vector.x, &vector.y, &vector.z};
        for (std::size_t i = 0; i < 3; ++i)
            if (!take_number(value[i], place + "[" + std::to_string(i) + "]", *parts[i]))
                return false;
        return true;
    }

    bool take_look(const Value& value, const std::string& place, TrackKey& key) {
        if (value.find("pose"))
            return fail(place + ".pose", "the keys before have none");
        for (const char* const name : {"eye", "target"})
            if (!value.find(name))
                return fail(place, std::string("'") + name + "' is missing");
        if (!take_vector(*value.find("eye"), place + ".eye", key.eye) ||
            !take_vector(*value.find("target"), place + ".target", key.target))
            return false;
        // As far apart as the camera's own numbers can tell.
        const Vector3 eye = vector3_of(vec4_of(key.eye, 1.0f));
        if (!(length(vector3_of(vec4_of(key.target, 1.0f)) - eye) > nearest))
            return fail(place + ".target", "it is where the eye is");
        if (!value.find("up"))
            return true;
        if (!take_vector(*value.find("up"), place + ".up", key.up))
            return false;
        if (!(length(key.up) > nearest))
            return fail(place + ".up", "it has no length");
        key.up = normalized(key.up);
        return true;
    }

    bool take_pose(const Value& value, const std::string& place, TrackKey& key) {
        for (const char* const name : {"eye", "target", "up"})
            if (value.find(name))
                return fail(place + "." + name, "the track is one of poses");
        if (!value.find("pose"))
            return fail(place, "'pose' is missing");
        Pose pose{};
        if (!take_matrix(*value.find("pose"), place + ".pose", pose))
            return false;
        Camera camera;
        if (const Outcome outcome = camera.set_pose(pose); !outcome)
            return fail(place + ".pose", outcome.reason());
        const Pose straight = camera.pose();
        Rotation axes;
        for (std::size_t row = 0; row < 3; ++row) {
            axes[row] = {straight[row][0], straight[row][1], straight[row][2]};
            key.eye = key.eye - axes[row] * straight[row][3];
        }
        key.turn = quaternion_of(axes);
        return true;
    }

    bool take_matrix(const Value& value, const std::string& place, Pose& pose) {
        if (!value.is(Value::Kind::list) || value.size() != 4)
            return fail(place, "four rows are wanted");
        for (std::size_t row = 0; row < 4; ++row) {
            const std::string line = place + "[" + std::to_string(row) + "]";
            if (!value[row].is(Value::Kind::list) || value[row].size() != 4)
                return fail(line, "four numbers are wanted");
            for (std::size_t column = 0; column < 4; ++column)
                if (!take_number(value[row][column], line + "[" + std::to_string(column) + "]",
                                 pose[row][column]))
                    return false;
        }
        return true;
    }
};

} // namespace

std::string read_track(const std::string& text, const std::string& name, TrackKeys& track) {
    if (text.size() > most_track_bytes)
        return name + ": more than 16 MiB";
    Notation notation(text);
    if (!json::sax_parse(text, &notation))
        return name + ":" + notation.mistake;
    const std::string mistake = Reader(track).read(notation.root);
    return mistake.empty() ? "" : name + ": " + mistake;
}

} // namespace orvex::kit
