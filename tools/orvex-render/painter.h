#pragma once

#include <memory>
#include <string>
#include <vector>

#include <orvex_kit/camera.h>
#include <orvex_kit/framing.h>
#include <orvex_kit/model.h>
#include <orvex_kit/picture.h>
#include <orvex_kit/track.h>
#include <orvex_kit/view.h>

#include "options.h"
#include "sink.h"
#include "text_overlay.h"

/// Draws the pictures of one model, and gives them away. Needs a running engine.
class Painter {
public:
    /// @param options  outlives this
    explicit Painter(const Options& options)
        : options(options) {}
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

private:
    const Options& options;
    orvex::kit::View view;
    orvex::kit::Model scene;
    orvex::kit::Track track;
    std::unique_ptr<TextOverlay> overlay;
    std::unique_ptr<Sink> sink;
    orvex::kit::UpAxis up = orvex::kit::UpAxis::y; ///< of the model
    orvex::kit::Aim steady;                        ///< of all pictures of a turn
    orvex::kit::Picture last;
    bool seen = false;
    bool is_text_looked_at = false;

    std::string prepare_view();
    std::string prepare_scene();
    std::string prepare_text();
    std::string prepare_track();
    std::string prepare_outputs();
    std::string input_among(const std::vector<std::string>& names) const;
    std::string paint(int number);
    std::string paint_layers();
    int num_pictures() const;
    orvex::kit::Angle angle_of(int number) const;
    orvex::kit::Camera camera_of(int number) const;
    orvex::kit::Lens lens() const;
    orvex::kit::Aim aim() const;
    TextOverlay::Setting setting() const;
    void warn_of_text() const;
    std::string draw_text();
};
