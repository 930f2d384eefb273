#pragma once

// What an example needs around one model, whatever window it is shown in: the engine from its start
// to its stop, the program that lights the model, and a camera that sees all of it.

#include <memory>
#include <string>

namespace orvex {
class Camera;
class GpuProgram;
class Renderer;
class RenderWindow;
} // namespace orvex

class ModelView;

/// The engine with at most one model in it. All of it on the render thread.
class ModelStage {
public:
    /// Starts the engine. Its errors and warnings go to standard error.
    ModelStage();
    /// Needs the context that was current when the model was loaded.
    ~ModelStage();
    ModelStage(ModelStage const&) = delete;
    ModelStage& operator=(ModelStage const&) = delete;

    /// Without a context at first: the example makes one in it, or gives it the toolkit's own. What
    /// is drawn here needs a core context of 3.2 or later.
    orvex::RenderWindow* window = nullptr;
    orvex::Renderer* renderer = nullptr;
    /// Null before `load`.
    std::unique_ptr<ModelView> view;

    /// Starts the renderer on the context that is current, and loads the model.
    /// @return what is wrong; empty if nothing is
    std::string load(std::string const& path);
    /// Draws the model, seen as a whole. An empty window gets nothing.
    void draw(int width, int height);
    /// Draws the model as a camera sees it.
    void draw(orvex::Camera& camera);

private:
    orvex::Camera* camera;
    orvex::GpuProgram* program = nullptr;

    bool start();
};
