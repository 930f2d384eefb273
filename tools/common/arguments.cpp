// The command line. CLI11 reads it; what is wrong with it is told in the program's own words.

#include "arguments.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include <CLI/CLI.hpp>

namespace {

constexpr std::size_t help_column = 26;
constexpr std::size_t help_width = 80;

/// Breaks a text into lines that begin at the help's column.
std::string broken(const std::string& text) {
    std::string result;
    std::size_t column = help_column;
    std::istringstream words(text);
    for (std::string word; words >> word; column += word.size()) {
        if (column > help_column && column + 1 + word.size() > help_width) {
            result += "\n" + std::string(help_column, ' ');
            column = help_column;
        } else if (column > help_column) {
            result += ' ';
            ++column;
        }
        result += word;
    }
    return result;
}

/// "  -s, --size WxH            its size in pixels (1280x960)".
std::string explained(const CLI::Option& option) {
    const std::string letter =
        option.get_snames().empty() ? "    " : "-" + option.get_snames().front() + ", ";
    const std::string value = option.get_type_name();
    std::string head = "  " + letter + option.get_name() + (value.empty() ? "" : " " + value);
    if (head.size() + 2 > help_column)
        head += "\n" + std::string(help_column, ' ');
    else
        head.resize(help_column, ' ');
    return head + broken(option.get_description()) + "\n";
}

std::string names_of(const std::string& name, char letter) {
    return letter ? std::string("-") + letter + "," + name : name;
}

} // namespace

Arguments::Arguments()
    : app(std::make_unique<CLI::App>()) {
    app->set_help_flag();
    app->allow_extras(); // which `read` tells of, with the name that may be meant
    app->add_option("operands", operands)->group("");
}

Arguments::~Arguments() = default;

void Arguments::begin_group(std::string title) {
    group = std::move(title);
}

void Arguments::add_flag(const std::string& name, char letter, const std::string& help,
                         bool& target) {
    app->add_flag(names_of(name, letter), target, help)
        ->group(group)
        ->type_name("")
        ->disable_flag_override();
    rules[name.substr(2)] = {nullptr, "", &target};
}

void Arguments::add_value(const std::string& name, char letter, const std::string& value,
                          const std::string& help, Taker take) {
    const auto mistake_in = [name, take = std::move(take)](const std::string& word) {
        const std::string wanted = take(word);
        return wanted.empty() ? wanted
                              : name + " can't be '" + word + "': " + wanted + " is wanted";
    };
    const auto check = [mistake_in](const std::string& word) {
        if (const std::string mistake = mistake_in(word); !mistake.empty())
            throw CLI::ValidationError(mistake);
    };
    app->add_option_function<std::string>(names_of(name, letter), check, help)
        ->group(group)
        ->type_name(value)
        ->take_last();
    rules[name.substr(2)] = {mistake_in, value, nullptr};
}

void Arguments::set_operand(Taker take) {
    take_operand = std::move(take);
}

namespace {

/// How many letters have to be put in, taken out or changed to make one word of the other.
std::size_t edits_between(const std::string& a, const std::string& b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0]++;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t changed = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, changed});
        }
    }
    return row[b.size()];
}

} // namespace

std::string Arguments::nearest_name(const std::string& name) const {
    std::string nearest;
    std::size_t fewest = 3;
    for (const std::string& known : names()) {
        const std::size_t edits = edits_between(name, known);
        if (edits < fewest) {
            fewest = edits;
            nearest = known;
        }
    }
    return nearest;
}

/// The sentence of what CLI11 refuses. It begins with the option's name, of a flag without dashes.
std::string Arguments::mistake_of(const CLI::Error& error) const {
    std::string text = error.what();
    const std::string name = text.substr(0, text.find_first_of(": "));
    if (error.get_name() != "ArgumentMismatch")
        return text;
    if (const CLI::Option* const option = app->get_option_no_throw(name))
        return name + " needs a value, " + option->get_type_name();
    return "--" + name + " takes no value";
}

/// The words from the last to the first, as CLI11 takes them. "--name=" becomes two of them: with
/// nothing behind the sign the next word would be the value.
std::vector<std::string> Arguments::reversed(const std::vector<std::string>& words) const {
    std::vector<std::string> result;
    const auto end = std::find(words.begin(), words.end(), "--");
    for (auto word = words.begin(); word != words.end(); ++word) {
        const std::string name = word->substr(0, word->find('='));
        const CLI::Option* const option = word < end ? app->get_option_no_throw(name) : nullptr;
        if (option && *word == name + "=" && !option->get_type_name().empty()) {
            result.push_back(name);
            result.emplace_back();
        } else {
            result.push_back(*word);
        }
    }
    std::reverse(result.begin(), result.end());
    return result;
}

namespace {

std::string unexpected(const std::string& word, const std::string& wanted) {
    return "unexpected argument '" + word + "': " + wanted + " is wanted";
}

} // namespace

std::string Arguments::read(const std::vector<std::string>& words) {
    try {
        app->parse(reversed(words));
    } catch (const CLI::Error& error) {
        return mistake_of(error);
    }
    for (const std::string& word : app->remaining()) {
        if (word == "--")
            continue;
        const std::string name = word.substr(0, word.find('='));
        const std::string nearest = nearest_name(name);
        return "unknown option '" + name + "'" +
               (nearest.empty() ? "" : "; did you mean '" + nearest + "'?");
    }
    for (const std::string& word : operands)
        if (const std::string wanted = take_operand ? take_operand(word) : "no operand";
            !wanted.empty())
            return unexpected(word, wanted);
    return "";
}

std::string Arguments::set(const std::string& name, const std::string& value) const {
    return rules.at(name).take(value);
}

void Arguments::set(const std::string& name, bool value) const {
    *rules.at(name).flag = value;
}

Arguments::Kind Arguments::kind_of(const std::string& name) const {
    const auto found = rules.find(name);
    if (found == rules.end())
        return Kind::unknown;
    return found->second.flag ? Kind::flag : Kind::value;
}

std::string Arguments::value_of(const std::string& name) const {
    const auto found = rules.find(name);
    return found == rules.end() ? "" : found->second.value;
}

std::string Arguments::help() const {
    std::string text;
    std::string title;
    for (const CLI::Option* option : app->get_options()) {
        if (option->get_group().empty())
            continue;
        if (option->get_group() != title) {
            title = option->get_group();
            text += (text.empty() ? "" : "\n") + title + ":\n";
        }
        text += explained(*option);
    }
    return text;
}

std::vector<std::string> Arguments::names() const {
    std::vector<std::string> result;
    for (const CLI::Option* option : app->get_options())
        if (!option->get_lnames().empty())
            result.push_back(option->get_name());
    return result;
}
