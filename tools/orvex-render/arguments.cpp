// The command line, word by word: short and long options, values behind them or glued to them.

#include "arguments.h"

#include <algorithm>
#include <numeric>
#include <utility>

void Arguments::begin_group(std::string title) {
    groups.push_back({std::move(title), {}});
}

void Arguments::add(Rule rule) {
    if (groups.empty())
        begin_group("Options");
    groups.back().rules.push_back(std::move(rule));
}

void Arguments::add_flag(std::string name, char letter, std::string help, bool& target) {
    Taker take = [&target](const std::string&) {
        target = true;
        return std::string();
    };
    add({std::move(name), letter, "", std::move(help), std::move(take)});
}

void Arguments::add_value(std::string name, char letter, std::string value, std::string help,
                          Taker take) {
    add({std::move(name), letter, std::move(value), std::move(help), std::move(take)});
}

void Arguments::set_operand(Taker take) {
    operand = std::move(take);
}

const Arguments::Rule* Arguments::find(const std::string& name) const {
    for (const Group& group : groups)
        for (const Rule& rule : group.rules)
            if (rule.name == name)
                return &rule;
    return nullptr;
}

const Arguments::Rule* Arguments::find(char letter) const {
    for (const Group& group : groups)
        for (const Rule& rule : group.rules)
            if (rule.letter != 0 && rule.letter == letter)
                return &rule;
    return nullptr;
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

/// The known name that differs in at most two letters; empty if there is none.
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

/// One walk over the words.
class Arguments::Reader {
public:
    Reader(const Arguments& arguments, const std::vector<std::string>& words)
        : arguments(arguments)
        , words(words) {}

    std::string read() {
        bool only_operands = false;
        for (; at < words.size() && mistake.empty(); ++at) {
            const std::string& word = words[at];
            if (only_operands || word.size() < 2 || word[0] != '-')
                take_operand(word);
            else if (word == "--")
                only_operands = true;
            else if (word[1] == '-')
                take_long(word);
            else
                take_letters(word);
        }
        return mistake;
    }

private:
    const Arguments& arguments;
    const std::vector<std::string>& words;
    std::size_t at = 0;
    std::string mistake;

    void take_operand(const std::string& word) {
        const std::string wanted = arguments.operand ? arguments.operand(word) : "no operand";
        if (!wanted.empty())
            mistake = "unexpected argument '" + word + "': " + wanted + " is wanted";
    }

    void take_long(const std::string& word) {
        const std::size_t sign = word.find('=');
        const std::string name = word.substr(0, sign);
        const Rule* const rule = arguments.find(name);
        if (!rule)
            refuse(name, arguments.nearest_name(name));
        else if (rule->value.empty() && sign != word.npos)
            mistake = name + " takes no value";
        else if (sign != word.npos)
            take(*rule, name, word.substr(sign + 1));
        else
            take_with_next(*rule, name);
    }

    /// Letters without a value, and at the end one with a value, which may follow in the word.
    void take_letters(const std::string& word) {
        for (std::size_t i = 1; i < word.size() && mistake.empty(); ++i) {
            const std::string name = {'-', word[i]};
            const Rule* const rule = arguments.find(word[i]);
            if (!rule) {
                refuse(name, "");
            } else if (!rule->value.empty() && i + 1 < word.size()) {
                take(*rule, name, word.substr(i + 1));
                return;
            } else {
                take_with_next(*rule, name);
            }
        }
    }

    void refuse(const std::string& name, const std::string& nearest) {
        mistake = "unknown option '" + name + "'";
        if (!nearest.empty())
            mistake += "; did you mean '" + nearest + "'?";
    }

    void take_with_next(const Rule& rule, const std::string& name) {
        if (rule.value.empty())
            take(rule, name, "");
        else if (at + 1 < words.size())
            take(rule, name, words[++at]);
        else
            mistake = name + " needs a value, " + rule.value;
    }

    void take(const Rule& rule, const std::string& name, const std::string& value) {
        const std::string wanted = rule.take(value);
        if (!wanted.empty())
            mistake = name + " can't be '" + value + "': " + wanted + " is wanted";
    }
};

std::string Arguments::read(const std::vector<std::string>& words) const {
    return Reader(*this, words).read();
}

namespace {

constexpr std::size_t help_column = 26;
constexpr std::size_t help_width = 80;

/// Breaks a text into lines that begin at the help's column.
std::string broken(const std::string& text) {
    std::string result;
    std::size_t column = help_column;
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t end = std::min(text.find(' ', at), text.size());
        if (column > help_column && column + 1 + (end - at) > help_width) {
            result += "\n" + std::string(help_column, ' ');
            column = help_column;
        } else if (column > help_column) {
            result += ' ';
            ++column;
        }
        result.append(text, at, end - at);
        column += end - at;
        at = end + 1;
    }
    return result;
}

} // namespace

std::string Arguments::help() const {
    std::string text;
    for (const Group& group : groups) {
        text += (text.empty() ? "" : "\n") + group.title + ":\n";
        for (const Rule& rule : group.rules) {
            std::string head = rule.letter ? std::string("  -") + rule.letter + ", " : "      ";
            head += rule.name + (rule.value.empty() ? "" : " " + rule.value);
            if (head.size() + 2 > help_column)
                head += "\n" + std::string(help_column, ' ');
            else
                head.resize(help_column, ' ');
            text += head + broken(rule.help) + "\n";
        }
    }
    return text;
}

std::vector<std::string> Arguments::names() const {
    std::vector<std::string> result;
    for (const Group& group : groups)
        for (const Rule& rule : group.rules)
            result.push_back(rule.name);
    return result;
}
