#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

/// Says what a long step does, and each second that it still does it, until the end of its scope.
/// Lines go to standard error from a thread of its own: a step that blocks still shows life.
class Progress {
public:
    explicit Progress(std::string what);
    ~Progress();
    Progress(Progress const&) = delete;
    Progress& operator=(Progress const&) = delete;

    double seconds() const;

private:
    std::string what;
    std::chrono::steady_clock::time_point begin = std::chrono::steady_clock::now();
    std::mutex mutex;
    std::condition_variable ended;
    bool at_end = false;
    std::thread thread;

    void tell_each_second();
};
