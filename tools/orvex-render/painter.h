#pragma once

#include <memory>
#include <string>
#include <vector>

#include <orvex_kit/camera.h>
#include <orvex_kit/framing.h>
#include <orvex_kit/model.h>
#include <orvex_kit/picture.h>
#include <orvex_kit/track.h>

#include "easel.h"
#include "options.h"
#include "sink.h"
#include "text_overlay.h"

/// Draws the pictures of one model, and gives them away. Needs a running engine.
class Painter {
public:
    /// What it is at, or was when something went wrong.
    enum class Work {
        view,    ///< what is drawn on
        model,   ///< its file and those that it names
        extras,  ///< a font, a track
        outputs, ///< where pictures go
        drawing,
        writing
    };
    /// How long it took, in seconds.
    struct Seconds {
        double load = 0.0;  ///< the model with its textures
        double draw = 0.0;  ///< until pixels are in memory
        double write = 0.0; ///< until files are whole
    };

    /// @param options,easel  outlive this. No other painter uses the easel meanwhile
    Painter(const Options& options, Easel& easel)
        : options(options)
        , easel(easel) {}
    Painter(const Painter&) = delete;
    Painter& operator=(const Painter&) = delete;

    /// Everything up to the first picture. @return what went wrong; empty if nothing did
    std::string prepare();
    /// Draws and writes all pictures. @return what went wrong; empty if nothing did
    std::string paint();
    /// What was written, in words, after a good `paint`.
    std::string told() const;
    /// Whether the model has left a pixel in any picture.
    bool has_shown_something() const { return seen; }
    /// Why it hasn't.
    std::string reason_for_nothing() const;
    /// The picture that was drawn last.
    const orvex::kit::Picture& picture() const { return last; }
    /// The model; empty before a good `prepare`.
    const orvex::kit::Model& model() const { return scene; }

    Work work() const { return at; }
    const Seconds& seconds() const { return taken; }
    /// Every file that it reads: the model's, those of font, look, track, plugin and reference.
    std::vector<std::string> inputs() const;

private:
    const Options& options;
    Easel& easel;
    orvex::kit::Model scene;
    orvex::kit::Track track;
    TextOverlay* overlay = nullptr; ///< the easel's; null without a text
    std::unique_ptr<Sink> sink;
    Work at = Work::view;
    Seconds taken;
    orvex::kit::UpAxis up = orvex::kit::UpAxis::y; ///< of the model
    orvex::kit::Aim steady;                        ///< of all pictures of a turn
    orvex::kit::Picture last;
    bool seen = false;
    bool is_text_looked_at = false;

    std::string prepare_view();
    std::string load_scene();
    std::string prepare_scene();
    std::string prepare_text();
    std::string prepare_track();
    std::string prepare_outputs();
    std::string input_among(const std::vector<std::string>& names) const;
    std::string draw(int number);
    std::string paint(int number);
    std::string paint_layers();
    std::string draw_layers(const orvex::kit::Camera& camera,
                            std::vector<orvex::kit::Picture>& pictures);
    std::string mistake_of_driver();
    int num_pictures() const;
    orvex::kit::Angle angle_of(int number) const;
    orvex::kit::Camera camera_of(int number) const;
    orvex::kit::Lens lens() const;
    orvex::kit::Aim aim() const;
    TextOverlay::Setting setting() const;
    void warn_of_text() const;
    std::string draw_text();
};
