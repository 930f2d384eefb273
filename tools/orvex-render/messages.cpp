#include "messages.h"

#include <cstdio>

namespace {

Wordiness wanted = Wordiness::normal;

void write_line(std::string const& line) {
    std::fprintf(stderr, "%s\n", line.c_str());
}

} // namespace

void set_wordiness(Wordiness wordiness) {
    wanted = wordiness;
}

Wordiness get_wordiness() {
    return wanted;
}

void tell_error(std::string const& message) {
    write_line("orvex-render: " + message);
}

void tell_warning(std::string const& message) {
    if (wanted != Wordiness::quiet)
        write_line("orvex-render: warning: " + message);
}

void tell(std::string const& message) {
    if (wanted != Wordiness::quiet)
        write_line(message);
}

std::string shown_log_line(std::string const& line, Wordiness wordiness) {
    if (wordiness == Wordiness::quiet)
        return "";
    if (wordiness == Wordiness::verbose)
        return line;
    struct Level {
        char const* marker;
        char const* word;
    };
    for (Level const& level : {Level{" <*> ", "error: "}, Level{" <!> ", "warning: "}}) {
        const std::size_t found = line.find(level.marker);
        if (found != line.npos)
            return std::string("orvex-render: ") + level.word + line.substr(found + 5);
    }
    return "";
}

void take_log_line(char const* line, void*) {
    const std::string shown = shown_log_line(line, wanted);
    if (!shown.empty())
        write_line(shown);
}
