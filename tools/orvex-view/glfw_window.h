#pragma once

#include <memory>
#include <string>

#include "loop.h"

/// A window of GLFW. One at a time.
class GlfwViewerWindow final : public ViewerWindow {
public:
    /// Makes it, hidden as yet.
    explicit GlfwViewerWindow(const Options& options);
    ~GlfwViewerWindow() override;
    GlfwViewerWindow(const GlfwViewerWindow&) = delete;
    GlfwViewerWindow& operator=(const GlfwViewerWindow&) = delete;

    /// Why there is none; empty if there is one.
    const std::string& mistake() const { return why; }
    /// Shows it, and tells a viewer, which lives as long as events are waited for, of what happens
    /// in it.
    void attach(Viewer& viewer);

    double now() override;
    void wait(double seconds) override;
    bool frame(const std::function<void(orvex::kit::View& view)>& draw) override;
    std::string reason() const override;
    void set_title(const std::string& title) override;

private:
    class Data;
    std::unique_ptr<Data> data;
    std::string why;
};
