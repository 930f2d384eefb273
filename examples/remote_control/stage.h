#pragma once

#include <memory>
#include <string>

namespace orvex {
class Camera;
class GpuProgram;
class Model;
class Renderer;
class RenderWindow;
} // namespace orvex

class ModelView;

/// What the host renders: at most one model, off screen. Everything on the render thread.
class Stage {
public:
    Stage();
    ~Stage();
    Stage(Stage const&) = delete;
    Stage& operator=(Stage const&) = delete;

    /// Starts the engine.
    /// @return false, with the reason in `mistake`
    bool open(int width, int height);
    std::string mistake;

    /// Shows a model file instead of what there was, seen as a whole.
    /// @return what is wrong; empty if nothing is
    std::string load(std::string const& path);
    /// Turns the model around its upright axis.
    void turn(float degrees);
    void draw();
    /// Draws, and writes the frame as JPEG.
    bool screenshot(std::string const& path);
    /// Lets the frame be seen, where there is a screen.
    void show();

private:
    int width = 0;
    int height = 0;
    float angle_degrees = 0.0f;
    orvex::Renderer* renderer = nullptr;
    orvex::RenderWindow* window = nullptr;
    orvex::GpuProgram* program = nullptr;
    orvex::Camera* camera = nullptr;
    orvex::Model* model = nullptr; ///< the view's
    std::unique_ptr<ModelView> view;

    bool open_window();
    bool load_program();
};
