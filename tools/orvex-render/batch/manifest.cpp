#include "batch/manifest.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "batch/results.h"
#include "batch/sum.h"

namespace batch {

namespace {

constexpr std::size_t longest_line = std::size_t{1} << 20;

} // namespace

Manifest::Manifest(const Setting& given)
    : setting(given)
    , reader(setting.defaults, setting.folder)
    , folder(setting.folder) {}

Manifest::~Manifest() {
    if (input > STDIN_FILENO)
        ::close(input);
}

std::string Manifest::open() {
    if (!folder.mistake().empty())
        return folder.mistake();
    const bool is_standard = setting.path == "-";
    const std::string name = is_standard ? "standard input" : setting.path;
    input = is_standard ? STDIN_FILENO : ::open(setting.path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status {};
    if (input < 0 || ::fstat(input, &status) != 0)
        return "can't read the manifest " + name + ": " + std::strerror(errno);
    if (S_ISDIR(status.st_mode))
        return "can't read the manifest " + name + ": " + std::strerror(EISDIR);
    // What was read before a file's place belongs to somebody else.
    file = S_ISREG(status.st_mode) && ::lseek(input, 0, SEEK_CUR) == 0;
    if (file)
        doubles.emplace();
    else
        outputs.emplace();
    return rewind();
}

/// Begins with the first line.
std::string Manifest::rewind() {
    if (file && ::lseek(input, 0, SEEK_SET) != 0)
        return std::strerror(errno);
    lines.emplace(input, longest_line, setting.is_list && setting.null ? '\0' : '\n', file);
    return file ? doubles->mistake() : outputs->mistake();
}

namespace {

bool is_blank(std::string_view line) {
    return line.find_first_not_of(" \t\r") == line.npos;
}

} // namespace

/// The next line that has a word.
LineReader::State Manifest::next_line() {
    for (;;) {
        const LineReader::State state = lines->next();
        if (state != LineReader::State::line || !is_blank(lines->line()))
            return state;
    }
}

/// Makes the entry of a line. @return why it is refused; empty if it isn't
std::string Manifest::take_line(LineReader::State state) {
    if (state == LineReader::State::too_long) {
        reader.forget();
        return "it is longer than " + std::to_string(longest_line) + " bytes";
    }
    std::string_view line = lines->line();
    // Other systems end lines with two bytes.
    if (!setting.null && line.back() == '\r')
        line.remove_suffix(1);
    if (setting.is_list)
        return reader.read_path(line, lines->number(), entry);
    return reader.read(line, lines->number(), entry);
}

namespace {

std::string as_line(std::uint64_t first) {
    return "it writes a file that line " + std::to_string(first) +
           " writes: give one of them another output, or another id";
}

} // namespace

std::string Manifest::mistake_in_outputs() {
    for (const OutputFile& output : output_files_of(entry)) {
        if (std::string mistake = folder.mistake_in_place(output.name); !mistake.empty())
            return mistake;
        const auto first = outputs ? outputs->note(output.name, entry.line) : std::nullopt;
        if (first && *first != entry.line)
            return as_line(*first);
    }
    const auto first =
        doubles && doubles->size() > 0 ? doubles->find(std::to_string(entry.line)) : std::nullopt;
    return first ? as_line(*first) : "";
}

RefusedLine Manifest::refused(std::string reason) const {
    return {lines->number(), std::move(reason), reader.last_id()};
}

bool Manifest::is_in_shard() const {
    return is_in(setting.shard, entry.id);
}

std::string Manifest::find_doubles(DoubleTexts& names,
                                   const std::function<void(const RefusedLine&)>& refuse) {
    names.find([&](std::uint64_t line, std::uint64_t first) {
        if (!doubles->note(std::to_string(line), first))
            refuse({line, as_line(first), ""});
    });
    return names.mistake().empty() ? doubles->mistake() : names.mistake();
}

std::string Manifest::check(const std::function<void(const RefusedLine&)>& refuse) {
    std::size_t count = 0;
    DoubleTexts names;
    for (LineReader::State state; (state = next_line()) != LineReader::State::end;) {
        if (state == LineReader::State::failed)
            return "can't read " + setting.path + ": " + lines->reason();
        std::string mistake = take_line(state);
        if (mistake.empty())
            for (const OutputFile& output : output_files_of(entry)) {
                if (folder.may_lack_place(output.name) && mistake.empty())
                    mistake = folder.mistake_in_place(output.name);
                names.add(output.name, entry.line);
            }
        const bool is_refused = !mistake.empty();
        if (is_refused)
            refuse(refused(std::move(mistake)));
        if (is_refused || is_in_shard())
            ++count;
    }
    if (std::string mistake = find_doubles(names, refuse); !mistake.empty())
        return mistake;
    entries = count;
    return rewind();
}

bool Manifest::is_kept() {
    const std::optional<Fate> fate = earlier ? earlier->fate_of(entry) : std::nullopt;
    num_kept.all += fate ? 1 : 0;
    num_kept.failed += fate && *fate != Fate::ok ? 1 : 0;
    return fate.has_value();
}

NextEntry Manifest::next() {
    while (!broken) {
        const LineReader::State state = next_line();
        switch (state) {
        case LineReader::State::end:
            return EndOfEntries{};
        case LineReader::State::nothing_yet:
            return NothingYet{};
        case LineReader::State::failed:
            broken = "can't read " + setting.path + ": " + lines->reason();
            continue;
        case LineReader::State::too_long:
        case LineReader::State::line:
            break;
        }
        std::string mistake = take_line(state);
        if (mistake.empty())
            mistake = mistake_in_outputs();
        if (outputs && !outputs->mistake().empty())
            broken = outputs->mistake();
        else if (!mistake.empty())
            return refused(std::move(mistake));
        else if (is_in_shard())
            return is_kept() ? NextEntry(KeptEntry{}) : NextEntry(entry);
    }
    return BrokenSource{*broken};
}

bool is_in(const Shard& shard, std::string_view id) {
    if (shard.parts == 1)
        return true;
    Sum sum;
    sum.add(id);
    std::uint64_t number = 0;
    const auto bytes = sum.finish();
    for (std::size_t i = 0; i < 8; ++i)
        number = number << 8 | bytes[i];
    return number % static_cast<std::uint64_t>(shard.parts) ==
           static_cast<std::uint64_t>(shard.part - 1);
}

} // namespace batch
