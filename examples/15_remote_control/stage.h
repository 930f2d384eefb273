#pragma once

#include <string>

#include "model_stage.h"

/// What the host renders: at most one model, off screen. Everything on the render thread.
class Stage {
public:
    /// Makes the drawable.
    /// @return what is wrong; empty if nothing is
    std::string open(int width, int height);

    /// Shows a model file instead of what there was, from so far that no turn brings it out of
    /// sight.
    /// @return what is wrong; empty if nothing is
    std::string load(const std::string& path);
    /// Turns the model around the upright axis through its middle.
    void turn(float degrees);
    void draw();
    /// Draws, and writes the frame as JPEG, whole or not at all, and over no file of the model's.
    bool screenshot(const std::string& path);
    /// Lets the frame be seen, where there is a screen.
    void show();

private:
    ModelStage stage;
    orvex::kit::Lens lens{1, 1};
    orvex::kit::Aim aim;
    orvex::kit::Angle angle; ///< from where the model is seen
};
