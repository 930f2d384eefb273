#include "batch/verdict.h"

#include <array>
#include <cmath>
#include <utility>

#include <nlohmann/json.hpp>

#include "batch/key.h"
#include "json_text.h"

namespace batch {

namespace {

using nlohmann::json;

constexpr std::array words{
    std::pair{Fate::ok, "ok"},
    std::pair{Fate::refused, "refused"},
    std::pair{Fate::over_limit, "over-limit"},
    std::pair{Fate::crashed, "crashed"},
    std::pair{Fate::driver, "driver"},
    std::pair{Fate::io, "io"},
};

} // namespace

const char* word_of(Fate fate) {
    for (const auto& [value, word] : words)
        if (value == fate)
            return word;
    return "";
}

std::optional<Fate> fate_of(std::string_view word) {
    for (const auto& [value, known] : words)
        if (word == known)
            return value;
    return std::nullopt;
}

Verdict verdict_on(const Entry& entry) {
    Verdict verdict;
    verdict.id = entry.id;
    verdict.model = entry.options.model;
    verdict.output = entry.output;
    verdict.engine = engine_version();
    return verdict;
}

namespace {

/// Writes the members of an object on one line.
class Members {
public:
    explicit Members(std::string& out)
        : out(out) {
        out += '{';
    }
    std::string& key(const char* name) {
        out += std::exchange(separator, ",");
        return out += '"' + std::string(name) + "\":";
    }
    void text(const char* name, std::string_view value) { key(name) += json_text_of(value); }
    void whole(const char* name, std::uint64_t value) { key(name) += std::to_string(value); }
    /// In microseconds.
    void seconds(const char* name, double value) {
        key(name) += number_text(std::round(value * 1e6) / 1e6);
    }

private:
    std::string& out;
    const char* separator = "";
};

void put_outputs(const std::vector<Output>& outputs, std::string& out) {
    out += '[';
    for (const Output& output : outputs) {
        out += &output == outputs.data() ? "" : ",";
        Members members(out);
        members.text("path", output.path);
        members.text("kind", output.kind);
        members.whole("width", static_cast<std::uint64_t>(output.width));
        members.whole("height", static_cast<std::uint64_t>(output.height));
        members.whole("bytes", output.bytes);
        members.text("sha256", output.sha256);
        out += '}';
    }
    out += ']';
}

void put_texts(const std::vector<std::string>& texts, std::string& out) {
    out += '[';
    for (const std::string& text : texts)
        out += (&text == texts.data() ? "" : ",") + json_text_of(text);
    out += ']';
}

void put_seconds(const Seconds& seconds, std::string& out) {
    Members members(out);
    members.seconds("load", seconds.load);
    members.seconds("draw", seconds.draw);
    members.seconds("write", seconds.write);
    members.seconds("total", seconds.total);
    out += '}';
}

} // namespace

std::string line_of(const Verdict& verdict) {
    std::string line;
    Members members(line);
    if (verdict.line > 0)
        members.whole("line", verdict.line);
    members.text("id", verdict.id);
    members.text("model", verdict.model);
    members.text("output", verdict.output);
    members.text("verdict", word_of(verdict.fate));
    members.text("reason", verdict.reason);
    put_outputs(verdict.outputs, members.key("outputs"));
    put_texts(verdict.files, members.key("files"));
    put_seconds(verdict.seconds, members.key("seconds"));
    members.whole("peak_bytes", verdict.peak_bytes);
    members.whole("tries", static_cast<std::uint64_t>(verdict.tries));
    members.text("key", verdict.key);
    members.text("engine", verdict.engine);
    members.text("driver", verdict.driver);
    return line + "}\n";
}

namespace {

/// Takes members of the right types, each of which has to be there.
class Taker {
public:
    explicit Taker(const json& object)
        : object(object)
        , good(object.is_object()) {}

    bool is_good() const { return good; }
    const json* list(const char* name) {
        const json* const value = find(name);
        return check(value && value->is_array()) ? value : nullptr;
    }
    void text(const char* name, std::string& target) {
        const json* const value = find(name);
        if (check(value && value->is_string()))
            target = value->get_ref<const std::string&>();
    }
    template<class Number>
    void whole(const char* name, Number& target) {
        const json* const value = find(name);
        if (!check(value && value->is_number_unsigned()))
            return;
        const auto number = value->get<std::uint64_t>();
        target = static_cast<Number>(number);
        check(static_cast<std::uint64_t>(target) == number && target >= Number{});
    }
    void number(const char* name, double& target) {
        const json* const value = find(name);
        if (check(value && value->is_number()))
            target = value->get<double>();
    }
    Taker object_of(const char* name) {
        static const json nothing;
        const json* const value = find(name);
        check(value && value->is_object());
        return Taker(value ? *value : nothing);
    }
    bool check(bool is_right) { return good = good && is_right; }

private:
    const json& object;
    bool good;

    const json* find(const char* name) const {
        if (!good)
            return nullptr;
        const auto found = object.find(name);
        return found == object.end() ? nullptr : &*found;
    }
};

void take_outputs(Taker& taker, std::vector<Output>& outputs) {
    const json* const list = taker.list("outputs");
    for (std::size_t i = 0; list && i < list->size(); ++i) {
        Output& output = outputs.emplace_back();
        Taker members((*list)[i]);
        members.text("path", output.path);
        members.text("kind", output.kind);
        members.whole("width", output.width);
        members.whole("height", output.height);
        members.whole("bytes", output.bytes);
        members.text("sha256", output.sha256);
        taker.check(members.is_good());
    }
}

void take_files(Taker& taker, std::vector<std::string>& files) {
    const json* const list = taker.list("files");
    for (std::size_t i = 0; list && i < list->size(); ++i)
        if (taker.check((*list)[i].is_string()))
            files.push_back((*list)[i].get_ref<const std::string&>());
}

void take_seconds(Taker& taker, Seconds& seconds) {
    Taker members = taker.object_of("seconds");
    members.number("load", seconds.load);
    members.number("draw", seconds.draw);
    members.number("write", seconds.write);
    members.number("total", seconds.total);
    taker.check(members.is_good());
}

} // namespace

std::optional<Verdict> verdict_of_line(std::string_view line) {
    const json object = json::parse(line.begin(), line.end(), nullptr, false);
    Verdict verdict;
    Taker taker(object);
    std::string word;
    if (taker.is_good() && object.contains("line"))
        taker.whole("line", verdict.line);
    taker.text("id", verdict.id);
    taker.text("model", verdict.model);
    taker.text("output", verdict.output);
    taker.text("verdict", word);
    taker.text("reason", verdict.reason);
    take_outputs(taker, verdict.outputs);
    take_files(taker, verdict.files);
    take_seconds(taker, verdict.seconds);
    taker.whole("peak_bytes", verdict.peak_bytes);
    taker.whole("tries", verdict.tries);
    taker.text("key", verdict.key);
    taker.text("engine", verdict.engine);
    taker.text("driver", verdict.driver);
    const std::optional<Fate> fate = fate_of(word);
    if (!taker.is_good() || !fate)
        return std::nullopt;
    verdict.fate = *fate;
    return verdict;
}

} // namespace batch
