#include "fake_window_platform.h"

#include <cstdint>
#include <cstring>
#include <utility>

namespace orvex_test {

namespace {

class FakeContext : public orvex::PlatformContext {
public:
    FakeContext(FakeWindowPlatform& platform, int number, void* handle, bool adopted)
        : platform(platform)
        , number(std::to_string(number))
        , native_handle(handle)
        , adopted(adopted) {}
    ~FakeContext() override {
        platform.note("destroy " + number);
        if (is_current() && !adopted)
            platform.current = nullptr;
    }

    void* handle() const override { return native_handle; }
    const void* native() const override { return native_handle; }
    bool is_current() const override { return platform.current == native_handle; }
    bool make_current() override {
        platform.note("make current " + number);
        if (platform.refuses_currency)
            return false;
        platform.current = native_handle;
        return true;
    }
    bool release_current() override {
        platform.note("release current");
        if (platform.refuses_currency)
            return false;
        platform.current = nullptr;
        return true;
    }
    bool present() override {
        platform.note("present " + number);
        return !platform.loses_contexts;
    }
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
    void* native_handle;
    bool adopted;
};

} // namespace

std::unique_ptr<orvex::PlatformContext> FakeWindowPlatform::make(const std::string& verb,
                                                                 void* handle) {
    ++num_contexts;
    note(verb + " " + std::to_string(num_contexts));
    const bool adopted = handle;
    if (!adopted)
        handle = reinterpret_cast<void*>(static_cast<std::uintptr_t>(0x1000 + num_contexts));
    return std::make_unique<FakeContext>(*this, num_contexts, handle, adopted);
}

std::unique_ptr<orvex::PlatformContext>
FakeWindowPlatform::create_context(const orvex::ContextRequest& request) {
    requests.push_back(request);
    return refuses_contexts ? nullptr : make("create", nullptr);
}

std::unique_ptr<orvex::PlatformContext> FakeWindowPlatform::adopt_current_context(void* handle) {
    if (!has_host_context)
        return nullptr;
    current = handle;
    return make("adopt", handle);
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
