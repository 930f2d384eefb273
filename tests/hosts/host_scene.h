#pragma once

// What the hosts of the tests show, and how they start and stop the engine: public headers only,
// and nothing that wants exceptions or type information, as some hosts are built without.

#include <cstdio>

namespace orvex {
class Camera;
class GpuProgram;
class MeshBox;
class MeshQuad;
class MeshTorus;
class Model;
class Polyline;
class Renderer;
class RenderTarget;
class RenderWindow;
class Scene;
class Texture;
namespace aux {
class Hud;
} // namespace aux
} // namespace orvex

class Turntable;

/// The engine and one scene, for up to `most_windows` windows. All of it on the thread that has the
/// window's context current.
class HostScene {
public:
    static constexpr int most_windows = 2;

    /// Starts the engine. Its errors and warnings go to standard error.
    /// @param core  whether the contexts have the core profile alone
    explicit HostScene(bool core);
    /// Stops the engine. A window's context is current.
    ~HostScene();
    HostScene(const HostScene&) = delete;
    HostScene& operator=(const HostScene&) = delete;

    /// Makes what a context doesn't take over from another one: programs, unless a window that
    /// shares has them, and a target. To be called with the window's context current, the first
    /// time and whenever it got a new one.
    bool enter(orvex::RenderWindow* window, bool has_programs = false);
    /// Ends what belongs to the window's context, which is current still.
    void leave(orvex::RenderWindow* window);
    /// Draws a frame into the framebuffer that stands for the window. The same number always gives
    /// the same picture.
    void draw(orvex::RenderWindow* window, int frame, int width, int height);

    orvex::Renderer* renderer = nullptr;

private:
    struct View {
        orvex::RenderWindow* window = nullptr;
        orvex::RenderTarget* target = nullptr;
        orvex::Texture* picture = nullptr; ///< stands for what the target shows
        orvex::aux::Hud* hud = nullptr;
    };

    bool core;
    bool started = false;
    View views[most_windows];
    orvex::Camera* camera;
    orvex::MeshTorus* ring;
    orvex::MeshQuad* panel;
    orvex::MeshBox* box;
    orvex::Polyline* curve;
    orvex::Scene* scene; ///< a tent on a turntable
    Turntable* turntable;
    orvex::Model* tent;
    orvex::Texture* checker;
    orvex::GpuProgram* normals;
    orvex::GpuProgram* pictures;
    orvex::GpuProgram* colors;

    void make_nodes();
    void make_scene();
    void make_checker();
    bool load_programs();
    View* view_of(orvex::RenderWindow* window);
    void look(int width, int height);
    void draw_ring(const View& view, int frame);
    void draw_panel(const View& view, int frame);
    void draw_curve(int frame);
    void draw_scene(int frame);
    void draw_box(int frame);
};

/// Writes down each frame as it was drawn, for the test to look at.
class HostRecord {
public:
    /// @param path  the file; null for none
    explicit HostRecord(const char* path);
    ~HostRecord();
    HostRecord(const HostRecord&) = delete;
    HostRecord& operator=(const HostRecord&) = delete;

    /// Reads the framebuffer that is bound, and takes the error that OpenGL kept.
    void add(int frame, int width, int height);

private:
    std::FILE* file;
};

/// Leaves behind what a toolkit's own drawing may: states, bindings, a viewport of its own.
void disturb_states();
