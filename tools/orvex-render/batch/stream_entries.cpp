#include "batch/stream_entries.h"

#include <utility>

namespace batch {

StreamEntries::StreamEntries(int descriptor, const Options& defaults, const std::string& folder)
    : input(descriptor)
    , lines(descriptor, longest_line_of_service, '\n', false)
    , reader(defaults, folder) {}

NextEntry StreamEntries::next() {
    for (;;) {
        switch (lines.next()) {
        case LineReader::State::nothing_yet:
            return NothingYet{};
        case LineReader::State::end:
            return EndOfEntries{};
        case LineReader::State::failed:
            return BrokenSource{"can't read standard input: " + lines.reason()};
        case LineReader::State::too_long:
            return RefusedLine{lines.number(), reason_for_long_line(), ""};
        case LineReader::State::line:
            break;
        }
        if (is_blank(lines.line()))
            continue;
        Entry entry;
        std::string mistake = reader.read(lines.line(), lines.number(), entry);
        if (mistake.empty())
            return entry;
        return RefusedLine{lines.number(), std::move(mistake), reader.last_id()};
    }
}

std::string reason_for_long_line() {
    return "the line has more than " + std::to_string(longest_line_of_service) + " bytes";
}

bool is_blank(std::string_view line) {
    return line.find_first_not_of(" \t\r") == line.npos;
}

} // namespace batch
