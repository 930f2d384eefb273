#include "progress.h"

#include <cstdio>
#include <utility>

Progress::Progress(std::string text)
    : what(std::move(text)) {
    std::fprintf(stderr, "%s\n", what.c_str());
    thread = std::thread([this] { tell_each_second(); });
}

Progress::~Progress() {
    {
        const std::lock_guard<std::mutex> guard(mutex);
        at_end = true;
    }
    ended.notify_one();
    thread.join();
}

double Progress::seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

void Progress::tell_each_second() {
    std::unique_lock<std::mutex> guard(mutex);
    while (!ended.wait_for(guard, std::chrono::seconds(1), [this] { return at_end; }))
        std::fprintf(stderr, "  ... %s (%.0f s)\n", what.c_str(), seconds());
}
