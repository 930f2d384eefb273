#pragma once

/// @file
/// The viewer without its window: what mouse, keys and files ask for, and what is drawn then.

#include <string>
#include <vector>

#include <orvex_kit/layers.h>
#include <orvex_kit/view.h>

#include "eye.h"
#include "frame_clock.h"
#include "keys.h"
#include "look_choice.h"
#include "options.h"
#include "pane.h"
#include "shown_model.h"
#include "words.h"

/// A model that is looked at, as somebody at a window does it. It knows no window: whoever has one
/// tells it what mouse, keys and time do, and asks it for frames.
///
/// Needs a running engine. Places are in units of the window, from its upper left corner. It ends
/// before the view that it was drawn in, with its context current. What is refused is told on
/// standard error as well as on the screen.
class Viewer {
public:
    explicit Viewer(const Options& options);
    Viewer(const Viewer&) = delete;
    Viewer& operator=(const Viewer&) = delete;

    /// Takes what the command line names. @return what is wrong with it; empty if nothing is
    std::string open();

    /// @name What somebody does
    /// @{
    void press(Key key);   ///< a key goes down; not again for one that repeats
    void release(Key key); ///< it goes up
    void press_button(Button button) { eye.press_button(button); }     ///< likewise
    void release_button(Button button) { eye.release_button(button); } ///< likewise
    void move_pointer(double x, double y);                             ///< to a place
    void turn_wheel(double notches);                  ///< nearer with positive ones
    void drop(const std::vector<std::string>& paths); ///< files on the window
    void let_go() { eye.let_go(); } ///< of all that is held, as when the window isn't in use
    /// @}

    /// @name What becomes of the window
    /// @{

    /// @param screen  the framebuffer's size, and its pixels in a unit of places
    /// @param scale   pixels in a unit of texts
    void resize(const orvex::kit::Screen& screen, float scale);
    void refresh() { is_stale = true; } ///< its picture was lost
    /// @}

    /// @name Time
    /// @{

    /// Looks whether files have changed; a few times a second.
    void look_at_files();
    /// Moves on by the keys that are held. @param seconds  since the last call, or since
    /// `is_moving`
    void advance(double seconds);
    /// Whether a key is held that goes on moving.
    bool is_moving() const { return eye.is_moving(); }
    /// Whether frames are drawn all the time.
    bool is_measuring() const { return has_statistics; }
    /// Counts a frame that was drawn. @param seconds  that it took  @param now  when it ended
    void count_frame(double seconds, double now);
    /// @}

    /// Whether there is something new to draw.
    bool needs_frame() const { return is_stale || has_statistics; }
    /// Draws a frame, and writes it if that was asked for.
    void draw(orvex::kit::View& view);
    void end() { has_ended = true; }            ///< as when the window is closed
    bool is_ended() const { return has_ended; } ///< whether that was asked for
    std::string window_title() const;           ///< for the window's frame

    /// @name What is shown
    /// @{
    const orvex::kit::Model& model() const { return shown.model(); } ///< empty without one
    orvex::kit::Camera camera() const;                               ///< that of the next frame
    orvex::kit::Layer layer() const { return current_layer; }
    const std::string& look() const { return looks.name(); } ///< its name, or its file
    bool is_wireframe() const { return has_edges; }
    orvex::kit::UpAxis up_axis() const { return eye.orbit.place().angle.up; }
    Words words() const; ///< over the model
    /// @}

private:
    Options options;
    ShownModel shown;
    orvex::kit::UpAxis wanted_up;
    Eye eye;
    orvex::kit::Screen screen{1280, 960, 1.0};
    float text_scale = 1.0f;
    LookChoice looks;
    orvex::kit::Layer current_layer;
    bool has_edges;
    bool has_text;
    bool has_statistics;
    bool has_help = false;
    bool is_picture_wanted = false;
    bool has_ended = false;
    bool is_stale = true;
    FrameClock clock;
    std::string notice;
    bool is_notice_bad = false;
    std::string caption; ///< of the layer
    Pane pane;
    WordsOverlay overlay;

    void obey(Command command, Key key);
    void choose_look(Key digit);
    void step_layer(int places);
    void step_up_axis();
    void show(const std::string& path);
    void take(ShownModel::Change change);
    void frame_model();
    void note(const std::string& text);
    void warn(const std::string& text);
    void forget_notice();
    std::string title() const;

    void draw_model(orvex::kit::View& view);
    std::string draw_layer(orvex::kit::View& view, orvex::kit::Picture& picture);
    void write_picture(orvex::kit::View& view, const orvex::kit::Picture& layer);
};
