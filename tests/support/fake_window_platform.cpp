#include "fake_window_platform.h"

#include <cstdint>
#include <cstring>
#include <utility>

namespace orvex_test {

namespace {

class FakeContext : public orvex::PlatformContext {
public:
    FakeContext(FakeWindowPlatform& platform, int number, void* handle)
        : platform(platform)
        , number(std::to_string(number))
        , native(handle) {}
    ~FakeContext() override { platform.note("destroy " + number); }

    void* handle() const override { return native; }
    bool make_current() override {
        platform.note("make current " + number);
        return !platform.refuses_currency;
    }
    bool release_current() override {
        platform.note("release current");
        return !platform.refuses_currency;
    }
    void present() override { platform.note("present " + number); }
    void set_swap_interval(int interval) override {
        platform.note("interval " + std::to_string(interval) + " of " + number);
    }
    bool resize(int width, int height) override {
        platform.note("resize " + number + " to " + std::to_string(width) + "x" +
                      std::to_string(height));
        return !platform.refuses_sizes;
    }

private:
    FakeWindowPlatform& platform;
    std::string number;
    void* native;
};

} // namespace

std::unique_ptr<orvex::PlatformContext> FakeWindowPlatform::make(const std::string& verb,
                                                                 void* handle) {
    ++num_contexts;
    note(verb + " " + std::to_string(num_contexts));
    if (!handle)
        handle = reinterpret_cast<void*>(static_cast<std::uintptr_t>(0x1000 + num_contexts));
    return std::make_unique<FakeContext>(*this, num_contexts, handle);
}

std::unique_ptr<orvex::PlatformContext>
FakeWindowPlatform::create_context(const orvex::ContextRequest& request) {
    requests.push_back(request);
    return refuses_contexts ? nullptr : make("create", nullptr);
}

std::unique_ptr<orvex::PlatformContext> FakeWindowPlatform::adopt_current_context(void* handle) {
    return has_host_context ? make("adopt", handle) : nullptr;
}

void FakeWindowPlatform::get_version(int& major, int& minor) {
    major = 1;
    minor = 7;
}

void* FakeWindowPlatform::get_proc_address(const char* name) {
    return std::strcmp(name, "glGetStringi") == 0 ? get_string_i : nullptr;
}

std::vector<std::string> FakeWindowPlatform::take_events() {
    return std::exchange(events, {});
}

} // namespace orvex_test
