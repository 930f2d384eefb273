#pragma once

#include <string>

#include "values.h"

namespace orvex {
class GpuProgram;
class Renderer;
class RenderTarget;
class RenderWindow;
} // namespace orvex

/// The engine, from start to stop. Without a drawable it loads models and pictures.
class Engine {
public:
    Engine();
    ~Engine();
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;
};

/// A drawable off screen with its renderer, on one of the drawing paths. The engine has to be
/// running, longer than this.
class Stage {
public:
    Stage() = default;
    ~Stage();
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    /// Makes the context and starts the renderer. @return what went wrong; empty if nothing did
    std::string open(int width, int height, bool gl3);
    /// Compiles a program, which belongs to the stage.
    /// @return null, with the reason in `mistake`, if it doesn't compile
    orvex::GpuProgram* compile(const std::string& text, const char* name, std::string& mistake);

    /// Directs drawing to a target of so many samples a pixel, as far as there are that many; with
    /// less than 2 to the drawable itself.
    /// @return what went wrong; empty if nothing did
    std::string use_samples(int wanted);
    /// The samples a pixel in use; 0 without multisampling.
    int samples() const;
    /// Directs drawing to where the model is drawn.
    void begin_picture();
    /// Brings the picture to the drawable, where texts are drawn and screenshots are taken.
    void resolve();
    /// Whether the drawable has no pixel in another colour, as when nothing was drawn.
    bool shows_only(const Color& color) const;

    orvex::Renderer* renderer = nullptr;
    orvex::RenderWindow* window = nullptr;

private:
    orvex::RenderTarget* target = nullptr;
    int width = 0;
    int height = 0;

    std::string reason_for_no_context();
};
