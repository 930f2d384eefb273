#include "batch/model_limits.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace batch {

namespace {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using OpenFile = std::unique_ptr<std::FILE, CloseFile>;

constexpr std::uint64_t bytes_a_megabyte = 1 << 20;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool has_shadow_memory = true;
#else
constexpr bool has_shadow_memory = false;
#endif

void set_soft_limit(__rlimit_resource resource, rlim_t value) {
    rlimit limit{};
    if (getrlimit(resource, &limit) != 0)
        return;
    limit.rlim_cur = std::min(value, limit.rlim_max);
    setrlimit(resource, &limit);
}

double processor_seconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds_of = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds_of(usage.ru_utime) + seconds_of(usage.ru_stime);
}

} // namespace

Memory memory_of(int process) {
    const std::string folder = process == 0 ? "self" : std::to_string(process);
    const OpenFile file(std::fopen(("/proc/" + folder + "/statm").c_str(), "re"));
    unsigned long long addresses = 0, resident = 0;
    if (!file || std::fscanf(file.get(), "%llu %llu", &addresses, &resident) != 2)
        return {};
    const auto page = static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
    return {addresses * page, resident * page};
}

ModelLimits::ModelLimits(const BatchOptions& limits)
    : memory(static_cast<std::uint64_t>(limits.limit_memory) * bytes_a_megabyte)
    , seconds(limits.limit_seconds)
    , peaks(open("/proc/self/clear_refs", O_WRONLY | O_CLOEXEC)) {
    if (limits.limit_file > 0)
        set_soft_limit(RLIMIT_FSIZE,
                       static_cast<std::uint64_t>(limits.limit_file) * bytes_a_megabyte);
}

ModelLimits::~ModelLimits() {
    if (peaks >= 0)
        close(peaks);
}

void ModelLimits::begin() {
    // "5" sets the peak back to what there is.
    if (peaks >= 0 && write(peaks, "5", 1) != 1)
        close(std::exchange(peaks, -1));
    if (seconds > 0.0f) {
        // A second line behind the supervisor's clock, in case that there is no supervisor left.
        const double threads = static_cast<double>(sysconf(_SC_NPROCESSORS_ONLN)) + 1.0;
        const double most = processor_seconds() + static_cast<double>(seconds) * threads + 1.0;
        set_soft_limit(RLIMIT_CPU, static_cast<rlim_t>(std::ceil(most)));
    }
    if (memory > 0 && !has_shadow_memory)
        set_soft_limit(RLIMIT_AS, memory_of(0).addresses + memory);
}

void ModelLimits::end() {
    if (memory > 0)
        set_soft_limit(RLIMIT_AS, RLIM_INFINITY);
}

std::uint64_t ModelLimits::peak_bytes() const {
    const OpenFile file(std::fopen("/proc/self/status", "re"));
    char line[256];
    unsigned long long peak = 0;
    while (file && std::fgets(line, sizeof line, file.get()))
        if (std::sscanf(line, "VmHWM: %llu kB", &peak) == 1)
            break;
    return peak * 1024;
}

} // namespace batch
