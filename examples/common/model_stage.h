#pragma once

// What an example needs around one model, whatever it is shown in: the engine from its start to its
// stop, the program that lights the model, and a camera that sees all of it.

#include <string>

#include <orvex_kit/framing.h>
#include <orvex_kit/model.h>

namespace orvex {
class Camera;
class GpuProgram;
class Renderer;
class RenderWindow;
} // namespace orvex

/// The engine with at most one model in it. All of it on the render thread.
class ModelStage {
public:
    /// Starts the engine. Its errors and warnings go to standard error.
    ModelStage();
    /// Needs the context that was current when the model was loaded.
    ~ModelStage();
    ModelStage(const ModelStage&) = delete;
    ModelStage& operator=(const ModelStage&) = delete;

    /// Without a context at first: the example makes one in it, or gives it the toolkit's own. What
    /// is drawn here needs a core context of 3.2 or later.
    orvex::RenderWindow* window = nullptr;
    orvex::Renderer* renderer = nullptr;
    /// Empty before a model was loaded, and after one could not be.
    orvex::kit::Model scene;

    /// Starts the renderer on the context that is current.
    /// @return what is wrong; empty if nothing is
    std::string start();
    /// Shows a model, upright, instead of what there was, and starts the renderer before if nobody
    /// has.
    /// @return what is wrong; empty if nothing is
    std::string load(const std::string& path);
    /// Draws the model, seen as a whole. An empty window gets nothing, as does one without a model.
    void draw(int width, int height, const orvex::kit::Angle& from = {});
    /// Draws the model as a camera sees it, with its lights for an angle; or the bare background.
    void draw(const orvex::kit::Camera& eye, int width, int height,
              const orvex::kit::Angle& lit_from = {});
    /// That of the engine, as it stood for what was drawn last.
    orvex::Camera& last_camera() { return *camera; }

private:
    orvex::Camera* camera;
    orvex::GpuProgram* program = nullptr;
};
