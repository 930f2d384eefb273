#include "progress_bar.h"

#include <algorithm>
#include <cmath>

#include <sys/ioctl.h>
#include <unistd.h>

std::string clock_of(double seconds) {
    const long whole = std::lround(std::min(seconds, 359999.0));
    char text[32];
    if (whole < 3600)
        std::snprintf(text, sizeof text, "%ld:%02ld", whole / 60, whole % 60);
    else
        std::snprintf(text, sizeof text, "%ld:%02ld:%02ld", whole / 3600, whole / 60 % 60,
                      whole % 60);
    return text;
}

namespace {

/// What the time so far lets expect; nothing before the first step is done.
std::string time_of(int done, int total, double seconds) {
    if (done <= 0)
        return "";
    if (done >= total)
        return "  " + clock_of(seconds);
    return "  " + clock_of(seconds / done * (total - done)) + " left";
}

} // namespace

int columns_of(std::FILE* stream) {
    winsize size{};
    const bool known = ioctl(fileno(stream), TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : 80;
}

std::string progress_line(int done, int total, double seconds, int columns) {
    const std::string count = std::to_string(total);
    std::string numbers = std::to_string(std::clamp(done, 0, total));
    numbers.insert(0, count.size() - numbers.size(), ' ');
    numbers = "  " + numbers + "/" + count + time_of(done, total, seconds);

    // The last column stays free: some terminals begin a new line behind it.
    const int room = columns - 3 - static_cast<int>(numbers.size());
    const std::size_t length = static_cast<std::size_t>(std::clamp(room, 4, 40));
    const std::size_t filled = total > 0
                                   ? length * static_cast<std::size_t>(std::clamp(done, 0, total)) /
                                         static_cast<std::size_t>(total)
                                   : length;
    return "[" + std::string(filled, '#') + std::string(length - filled, '.') + "]" + numbers;
}

ProgressBar::ProgressBar(std::FILE* stream, int total, bool wanted)
    : stream(stream)
    , total(total)
    , shown(wanted && isatty(fileno(stream))) {
    show(0);
}

ProgressBar::~ProgressBar() {
    if (shown)
        std::fputc('\n', stream);
}

void ProgressBar::show(int done) const {
    if (!shown)
        return;
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    // What a longer line has left behind is erased.
    std::fprintf(stream, "\r%s\x1b[K",
                 progress_line(done, total, seconds, columns_of(stream)).c_str());
    std::fflush(stream);
}
