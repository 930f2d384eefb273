#pragma once

#include <string>

#include <orvex_kit/picture.h>
#include <orvex_kit/program.h>
#include <orvex_kit/ref.h>
#include <orvex_kit/view.h>

namespace orvex {
class MeshPlane;
class Texture;
} // namespace orvex

/// Draws rectangles over what a view shows: pictures, and shades that texts are read on. Ends
/// before the view, with its context current.
class Pane {
public:
    Pane();
    ~Pane();
    Pane(const Pane&) = delete;
    Pane& operator=(const Pane&) = delete;

    /// Covers the view with a picture of its size, pixel by pixel.
    /// @param picture  of four 8-bit channels
    /// @return what went wrong; empty if nothing did
    std::string show(orvex::kit::View& view, const orvex::kit::Picture& picture);
    /// Darkens a part of the view.
    /// @param left,top  in pixels from the upper left corner
    /// @return what went wrong; empty if nothing did
    std::string shade(orvex::kit::View& view, float left, float top, float width, float height);

private:
    orvex::kit::Program program; ///< empty as yet
    orvex::kit::Ref<orvex::MeshPlane> square;
    orvex::Texture* texture = nullptr; ///< null as yet
    orvex::Renderer* renderer = nullptr;

    std::string make(orvex::kit::View& view);
    void drop_texture();
    bool fill_texture(const orvex::kit::Picture& picture);
    void draw(orvex::kit::View& view, const orvex::vec4& box);
};
