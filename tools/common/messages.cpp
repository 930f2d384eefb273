#include "messages.h"

#include <cstdio>

namespace {

Wordiness wanted = Wordiness::normal;
std::string name_of_program;

void write_line(const std::string& line) {
    std::fprintf(stderr, "%s\n", line.c_str());
}

} // namespace

void set_program_name(const std::string& name) {
    name_of_program = name;
}

const std::string& program_name() {
    return name_of_program;
}

void set_wordiness(Wordiness wordiness) {
    wanted = wordiness;
}

Wordiness get_wordiness() {
    return wanted;
}

void tell_error(const std::string& message) {
    write_line(name_of_program + ": " + message);
}

void tell_warning(const std::string& message) {
    if (wanted != Wordiness::quiet)
        write_line(name_of_program + ": warning: " + message);
}

void tell(const std::string& message) {
    if (wanted != Wordiness::quiet)
        write_line(message);
}

std::string shown_log_line(const std::string& line, Wordiness wordiness) {
    if (wordiness == Wordiness::quiet)
        return "";
    if (wordiness == Wordiness::verbose)
        return line;
    struct Level {
        const char* marker;
        const char* word;
    };
    for (const Level& level : {Level{" <*> ", "error: "}, Level{" <!> ", "warning: "}}) {
        const std::size_t found = line.find(level.marker);
        if (found != line.npos)
            return name_of_program + ": " + level.word + line.substr(found + 5);
    }
    return "";
}

void take_log_line(const std::string& line) {
    const std::string shown = shown_log_line(line, wanted);
    if (!shown.empty())
        write_line(shown);
}
