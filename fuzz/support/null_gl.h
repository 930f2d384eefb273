#pragma once

/// @file
/// An OpenGL that draws nothing, in place of the system's in the program that links it: the
/// functions that the engine links directly and those that it fetches. It reads and writes all the
/// memory that a driver would, within what it was told of sizes, so that a sanitizer sees an array
/// that is too short; and it ends the program where a driver might fetch from nowhere.

#include <memory>

#include "orvex/renderer/opengl/window/private/window_platform.h"

namespace orvex_fuzz {

/// The window system of that OpenGL, for as long as it lives. One at a time; each begins without
/// any object.
class NullGl : public orvex::WindowPlatform {
public:
    NullGl();
    ~NullGl() override;

    std::unique_ptr<orvex::PlatformContext>
    create_context(const orvex::ContextRequest& request) override;
    std::unique_ptr<orvex::PlatformContext> adopt_current_context(void* handle) override;
    const void* current_context() override;
    void get_version(int& major, int& minor) override;
    void* get_proc_address(const char* name) override;

    /// What contexts of a plain request are: 2.1, 3.0, 3.3, 4.3 or 4.6. A core request gets at
    /// least 3.2.
    void set_version(int major, int minor);

    /// What a driver may say no to.
    enum Refusal : unsigned int {
        framebuffers = 1, ///< none is complete
        maps = 2,         ///< no buffer can be mapped
        links = 4,        ///< no program links
        memory = 8        ///< buffers stay empty
    };
    /// @param refusals  of `Refusal`, in any mix; none at first
    void set_refusals(unsigned int refusals);
};

} // namespace orvex_fuzz
