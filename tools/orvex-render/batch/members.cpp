// Objects of JSON, read by the JSON library event by event: no tree is made of what may be long.

#include "batch/members.h"

#include <algorithm>
#include <utility>

#include <nlohmann/json.hpp>

#include <orvex_kit/files.h>

namespace batch {

namespace {

using nlohmann::json;

} // namespace

class Members::Notation : public nlohmann::json_sax<json> {
public:
    Notation(Members& members, std::string_view text)
        : members(members)
        , text(text) {}

    std::string mistake;

    bool null() override { return put(Member::Kind::other, ""); }
    bool boolean(bool truth) override {
        const bool is_put = put(depth == 1 ? Member::Kind::truth : Member::Kind::other, "");
        if (is_put && depth == 1)
            last().truth = truth;
        return is_put;
    }
    bool number_integer(number_integer_t number) override {
        return put(Member::Kind::number, std::to_string(number));
    }
    bool number_unsigned(number_unsigned_t number) override {
        return put(Member::Kind::number, std::to_string(number));
    }
    bool number_float(number_float_t, const string_t& word) override {
        return put(Member::Kind::number, word);
    }
    bool string(string_t& word) override { return put(Member::Kind::text, word); }
    bool binary(binary_t&) override { return put(Member::Kind::other, ""); }
    bool start_array(std::size_t) override {
        const bool is_put = put(depth == 1 ? Member::Kind::list : Member::Kind::other, "");
        is_first_of_list = true;
        ++depth;
        return is_put;
    }
    bool end_array() override { return leave(); }
    bool start_object(std::size_t) override {
        const bool is_put = depth == 0 || put(Member::Kind::other, "");
        ++depth;
        return is_put;
    }
    bool end_object() override { return leave(); }
    bool key(string_t& name) override {
        if (depth > 1)
            return true;
        constexpr std::size_t most = 100;
        if (std::any_of(members.begin(), members.end(),
                        [&](const Member& member) { return member.name == name; }))
            return fail("'" + orvex::kit::quotable(name) + "' stands twice");
        if (members.count == most)
            return fail("there are more keys than options");
        members.add().name.swap(name);
        return true;
    }
    bool parse_error(std::size_t position, const std::string&,
                     const json::exception& error) override {
        constexpr int id_of_overflow = 406;
        if (error.id == id_of_overflow)
            return fail("the number that ends at column " + std::to_string(position) +
                        " is too large");
        if (position == 0 || position > text.size())
            return fail("the line ends within an object");
        return fail("column " + std::to_string(position) + ": '" +
                    orvex::kit::quotable(text.substr(position - 1, 1)) + "' is no JSON here");
    }

private:
    Members& members;
    std::string_view text;
    int depth = 0;
    bool is_first_of_list = false;

    Member& last() { return members.row[members.count - 1]; }
    bool fail(std::string what) {
        mistake = std::move(what);
        return false;
    }
    bool leave() {
        --depth;
        return true;
    }
    /// A value of a member, or of the list that one is.
    bool put(Member::Kind kind, const std::string& value) {
        if (depth == 0)
            return fail("an object is wanted, such as {\"model\": \"a.obj\"}");
        Member& member = last();
        if (depth == 1) {
            member.kind = kind;
            member.value = value;
        } else if (depth == 2 && member.kind == Member::Kind::list &&
                   (kind == Member::Kind::text || kind == Member::Kind::number)) {
            if (!std::exchange(is_first_of_list, false))
                member.value += ',';
            member.value += value;
        } else {
            member.kind = Member::Kind::other;
        }
        return true;
    }
};

Member& Members::add() {
    if (count == row.size())
        row.emplace_back();
    Member& member = row[count++];
    member.kind = Member::Kind::other;
    member.value.clear();
    member.truth = false;
    return member;
}

std::string Members::read(std::string_view text) {
    count = 0;
    Notation notation(*this, text);
    return json::sax_parse(text.begin(), text.end(), &notation) ? "" : notation.mistake;
}

} // namespace batch
