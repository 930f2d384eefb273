#pragma once

#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace CLI {
class App;
class Error;
} // namespace CLI

/// Reads the words of a command line by rules.
///
/// A rule is a long option (`--size`), with a letter of its own (`-s`) or none, that takes a value
/// or none. Values stand in the next word or behind a sign (`--size=8x6`, `-s 8x6`, `-s8x6`);
/// letters without a value may share a word (`-qw`). What begins with no dash is an operand, a lone
/// dash too, and so is everything behind `--`. The last of two equal options counts.
///
/// @code
/// Arguments arguments;
/// bool quiet = false;
/// arguments.add_flag("--quiet", 'q', "says nothing", quiet);
/// const std::string mistake = arguments.read({"-q"});
/// @endcode
class Arguments {
public:
    /// Takes a value. @return what is wanted instead, as "a whole number"; empty if it is good
    using Taker = std::function<std::string(const std::string& value)>;

    Arguments();
    ~Arguments();
    Arguments(const Arguments&) = delete;
    Arguments& operator=(const Arguments&) = delete;

    /// Begins a group of the help, which a line of text heads.
    void begin_group(std::string title);
    /// An option without a value, that sets `target`.
    void add_flag(const std::string& name, char letter, const std::string& help, bool& target);
    /// An option with a value.
    /// @param letter  0 for none
    /// @param value   the value's name in the help
    void add_value(const std::string& name, char letter, const std::string& value,
                   const std::string& help, Taker take);
    /// Who takes the operands; without one they are mistakes.
    void set_operand(Taker take);

    /// Reads the words.
    /// @return a mistake as a sentence without a stop; empty if there is none
    std::string read(const std::vector<std::string>& words);
    /// Sets one option that takes a value, as `--name=value` would.
    /// @param name  known, long, without its dashes
    /// @return as `read`
    std::string set(const std::string& name, const std::string& value) const;
    /// Sets one that takes none, or takes that back.
    void set(const std::string& name, bool value) const;
    enum class Kind { unknown, flag, value };
    /// What an option takes.
    /// @param name  long, without its dashes
    Kind kind_of(const std::string& name) const;
    /// The value's name in the help; empty for a flag.
    std::string value_of(const std::string& name) const;
    /// The known long name that differs from one in at most two letters, both with their dashes;
    /// empty if there is none.
    std::string nearest_name(const std::string& name) const;

    /// The options with their explanations, group by group, at most 80 characters wide.
    std::string help() const;
    /// The long names, in their order.
    std::vector<std::string> names() const;

private:
    struct Rule {
        Taker take; ///< of a value; says the whole mistake
        std::string value;
        bool* flag = nullptr;
    };

    std::unique_ptr<CLI::App> app;
    std::unordered_map<std::string, Rule> rules; ///< by the name without its dashes
    std::string group = "Options";
    std::vector<std::string> operands;
    Taker take_operand;

    std::vector<std::string> reversed(const std::vector<std::string>& words) const;
    std::string mistake_of(const CLI::Error& error) const;
};
