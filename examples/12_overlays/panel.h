#pragma once

#include "off_screen.h"

/// What lies over the scene, in pixels of the window: a graph of the last frame times, two level
/// meters, a logo, text, and a camera's axes. Objects are made once and drawn every frame.
class Panel {
public:
    Panel(OffScreen& stage, const std::string& data_folder);
    ~Panel();
    Panel(const Panel&) = delete;
    Panel& operator=(const Panel&) = delete;

    /// False if the sheet of glyphs could not be loaded.
    bool ok() const { return loaded; }

    void add_frame_time(float milliseconds);
    /// Levels from 0 to 1.
    void set_levels(float left, float right);
    void draw(orvex::Camera* scene_camera);

private:
    void make_graph();
    void make_meters();
    void queue_texts();
    void draw_backgrounds();
    void draw_lines_and_lights();
    void draw_texts();

    OffScreen& stage;
    bool loaded = false;
    orvex::GpuProgram* colored;
    orvex::GpuProgram* glyphs;
    orvex::Camera* pixels;  ///< the origin in the middle of the window, y up
    orvex::Camera* letters; ///< the origin in the upper left corner
    orvex::Graph2d* graph;
    orvex::MadLedBar* strip;
    orvex::MadLedBar* points;
    orvex::Font* font;
    orvex::Texture* logo;
    orvex::Texture* shade;
    orvex::aux::Hud hud;
    orvex::aux::TripodVisualizerCamera axes;
};
