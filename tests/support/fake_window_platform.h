#pragma once

/// @file
/// A window system that makes nothing and writes down what it is asked for.

#include <memory>
#include <string>
#include <vector>

#include "orvex/renderer/opengl/window/private/window_platform.h"

namespace orvex_test {

/// In place of the system's own window platform for as long as it lives. Events are texts such as
/// "create 1" and "destroy 1", with contexts counted from 1; an adopted one counts too.
class FakeWindowPlatform : public orvex::WindowPlatform {
public:
    FakeWindowPlatform() { orvex::set_window_platform(this); }
    ~FakeWindowPlatform() override { orvex::set_window_platform(nullptr); }

    std::unique_ptr<orvex::PlatformContext>
    create_context(const orvex::ContextRequest& request) override;
    std::unique_ptr<orvex::PlatformContext> adopt_current_context(void* handle) override;
    void get_version(int& major, int& minor) override;
    void* get_proc_address(const char* name) override;

    /// Events since the last call.
    std::vector<std::string> take_events();
    void note(std::string event) { events.push_back(std::move(event)); }

    bool refuses_contexts = false; ///< no configuration, or no context
    bool refuses_currency = false; ///< a context can't be made current or released
    bool refuses_sizes = false;    ///< no surface of a new size
    bool loses_contexts = false;   ///< a shown frame tells that the context is lost
    bool has_host_context = false; ///< there is something to adopt
    void* current = nullptr;       ///< handle of the context that is current, null for none
    void* get_string_i = nullptr;  ///< served as "glGetStringi"
    std::vector<orvex::ContextRequest> requests;

private:
    std::vector<std::string> events;
    int num_contexts = 0;

    std::unique_ptr<orvex::PlatformContext> make(const std::string& verb, void* handle);
};

} // namespace orvex_test
