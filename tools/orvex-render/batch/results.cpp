#include "batch/results.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <orvex_kit/whole_file.h>

#include "batch/key.h"
#include "batch/line_reader.h"

namespace batch {

namespace {

/// Of a verdict on a turn of very many pictures.
constexpr std::size_t longest_line = std::size_t{64} << 20;

} // namespace

Results::Results(std::string name)
    : path(std::move(name)) {}

Results::~Results() {
    if (file > STDOUT_FILENO)
        ::close(file);
}

std::string Results::mistake(const char* what) const {
    return std::string("can't ") + what + " the results " +
           (path == "-" ? "to standard output" : path) + ": " + std::strerror(errno);
}

std::string Results::open(bool resume) {
    if (resume && path == "-")
        return "--resume needs a file of --results";
    if (std::string wrong = open_file(resume); !wrong.empty())
        return wrong;
    return resume ? read_earlier() : "";
}

std::string Results::open_file(bool resume) {
    constexpr int mode = 0666;
    file = path == "-" ? STDOUT_FILENO
                       : ::open(path.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, mode);
    // A pipe's end or a terminal may not be read.
    if (file < 0 && !resume)
        file = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
    struct stat status {};
    if (file < 0 || ::fstat(file, &status) != 0)
        return mistake("write");
    is_regular = S_ISREG(status.st_mode) && path != "-";
    if (is_regular && !lock())
        return "another batch writes the results " + path;
    if (resume && !is_regular)
        return "--resume needs a file of --results, which " + path + " isn't";
    if (!resume && is_regular && status.st_size > 0)
        return "the results " + path +
               " are there already: --resume goes on with them, another name begins anew";
    return "";
}

/// For this process alone: what it has forked doesn't hold the file when it has ended itself.
bool Results::lock() const {
    struct flock all {};
    all.l_type = F_WRLCK;
    all.l_whence = SEEK_SET;
    // Where a file system knows no locks, nobody is kept out.
    return ::fcntl(file, F_SETLK, &all) == 0 || (errno != EAGAIN && errno != EACCES);
}

std::string Results::cut(std::uint64_t size) const {
    return ::ftruncate(file, static_cast<off_t>(size)) == 0 ? "" : mistake("write");
}

std::string Results::read_earlier() {
    constexpr std::uint64_t bytes_of_verdict = 300;
    struct stat status {};
    ::fstat(file, &status);
    places.emplace(static_cast<std::uint64_t>(status.st_size) / bytes_of_verdict);
    stale.emplace();
    LineReader lines(file, longest_line);
    for (LineReader::State state; (state = lines.next()) != LineReader::State::end;) {
        if (state == LineReader::State::failed)
            return mistake("read");
        // A write that was cut short has no line feed.
        if (!lines.is_whole())
            return cut(lines.begin());
        const std::optional<Verdict> verdict =
            state == LineReader::State::line ? verdict_of_line(lines.line()) : std::nullopt;
        if (!verdict)
            return path + ", line " + std::to_string(lines.number()) +
                   " is no verdict: --resume goes on with results of an earlier batch";
        // A refused line is told of again.
        const auto before =
            verdict->line > 0 ? lines.begin() : places->replace(verdict->output, lines.begin());
        if (before)
            put_aside(*before);
        if (!places->mistake().empty())
            return places->mistake();
    }
    return "";
}

void Results::put_aside(std::uint64_t place) {
    stale->note(std::to_string(place), 0);
}

/// The verdict whose line begins there.
std::optional<Verdict> Results::verdict_at(std::uint64_t place) const {
    std::string line;
    std::string block(4096, '\0');
    for (std::size_t end = line.npos; end == line.npos;) {
        const ssize_t length =
            ::pread(file, block.data(), block.size(), static_cast<off_t>(place + line.size()));
        if (length <= 0)
            return std::nullopt;
        line.append(block, 0, static_cast<std::size_t>(length));
        end = line.find('\n');
        if (end != line.npos)
            line.resize(end);
    }
    return verdict_of_line(line);
}

std::optional<Fate> Results::fate_of(const Entry& entry) {
    const auto place = places ? places->find(entry.output) : std::nullopt;
    if (!place)
        return std::nullopt;
    const std::optional<Verdict> verdict = verdict_at(*place);
    if (verdict && still_holds(*verdict, entry))
        return verdict->fate;
    put_aside(*place);
    return std::nullopt;
}

std::string Results::put(const Verdict& verdict) {
    const std::string line = line_of(verdict);
    const off_t before = is_regular ? ::lseek(file, 0, SEEK_END) : 0;
    for (std::size_t done = 0; done < line.size();) {
        const ssize_t length = ::write(file, line.data() + done, line.size() - done);
        if (length < 0 && errno == EINTR)
            continue;
        if (length < 0) {
            std::string wrong = mistake("write");
            // What others read are whole lines.
            if (is_regular && done > 0)
                cut(static_cast<std::uint64_t>(before));
            return wrong;
        }
        done += static_cast<std::size_t>(length);
    }
    return "";
}

std::string Results::finish() {
    if (!stale || stale->size() == 0)
        return "";
    return stale->mistake().empty() ? write_without_stale() : stale->mistake();
}

std::string Results::write_without_stale() {
    orvex::kit::WholeFile kept(path);
    orvex::kit::Outcome outcome = kept.begin();
    if (::lseek(file, 0, SEEK_SET) != 0)
        return mistake("read");
    LineReader lines(file, longest_line);
    LineReader::State state = lines.next();
    for (; outcome && state == LineReader::State::line; state = lines.next())
        if (!stale->find(std::to_string(lines.begin())))
            outcome = kept.put(std::string(lines.line()) + '\n');
    if (outcome && state != LineReader::State::end)
        return mistake("read");
    if (outcome)
        outcome = kept.finish();
    return outcome.reason();
}

} // namespace batch
