#include "orvex_formats/private/workers.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace orvex::formats {

namespace {

constexpr std::size_t most_workers = 16;

/// Waits for its threads, whatever happens.
class Threads {
public:
    Threads() = default;
    ~Threads() {
        for (std::thread& thread : threads)
            thread.join();
    }
    Threads(const Threads&) = delete;
    Threads& operator=(const Threads&) = delete;

    void reserve(std::size_t count) { threads.reserve(count); }
    template<class Work>
    void add(const Work& work) {
        threads.emplace_back(work);
    }

private:
    std::vector<std::thread> threads;
};

} // namespace

unsigned int num_workers_for(std::size_t num_pieces) {
    const std::size_t processors = std::max(std::thread::hardware_concurrency(), 1u);
    return static_cast<unsigned int>(
        std::clamp<std::size_t>(num_pieces, 1, std::min(processors, most_workers)));
}

void work_together(unsigned int num_workers, const std::function<void(unsigned int)>& work) {
    std::mutex mutex;
    std::exception_ptr first;
    const auto run = [&](unsigned int worker) {
        try {
            work(worker);
        } catch (...) {
            const std::lock_guard lock(mutex);
            if (!first)
                first = std::current_exception();
        }
    };
    {
        Threads threads;
        try {
            threads.reserve(num_workers);
            for (unsigned int i = 1; i < num_workers; ++i)
                threads.add([&run, i] { run(i); });
        } catch (const std::system_error&) {
        } catch (const std::bad_alloc&) {
            // Fewer do the same work.
        }
        run(0);
    }
    if (first)
        std::rethrow_exception(first);
}

void share_out(std::size_t num_pieces, const std::function<void(std::size_t)>& work) {
    std::atomic<std::size_t> next = 0;
    work_together(num_workers_for(num_pieces), [&](unsigned int) {
        for (std::size_t piece = next++; piece < num_pieces; piece = next++)
            work(piece);
    });
}

} // namespace orvex::formats
