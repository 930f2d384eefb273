#pragma once

/// @file
/// Text over a picture.

#include <memory>
#include <string>

#include <orvex/fwd.h>

#include "orvex_kit/api.h"
#include "orvex_kit/font.h"
#include "orvex_kit/path.h"

namespace orvex::kit {

class View;

/// Draws texts over what a renderer has drawn: they are added, wherever they are to stand, and
/// drawn by one call.
///
/// Belongs to the renderer's thread. When the `Engine` or the view ends first, it is empty from
/// then on. An empty one takes no texts and draws nothing.
///
/// @code
/// kit::View view(640, 480);
/// kit::Text text(view);
/// text.add("5 m²", 20, 20);
/// text.draw(640, 480);
/// @endcode
class ORVEX_KIT_API Text {
public:
    /// In a view.
    explicit Text(View& view, const Font& font = {});
    /// With a renderer of the host's, whose context is current whenever this is used, and when it
    /// ends. The renderer ends later, and so does the engine unless it is a `kit::Engine`.
    Text(orvex::Renderer& renderer, Path path, const Font& font = {});
    ~Text();                                ///< gives its objects back
    Text(Text&& other) noexcept;            ///< leaves the other one empty
    Text& operator=(Text&& other) noexcept; ///< ends what it was; leaves the other one empty

    /// Whether it draws.
    explicit operator bool() const noexcept;
    /// Why it doesn't; empty if it does. Valid until it changes or ends.
    const std::string& reason() const noexcept;

    /// Adds a text to what is drawn next.
    /// @param text  in UTF-8; see `Font`
    /// @param x,y   of the upper left corner of its room, in pixels from that of the picture
    void add(const std::string& text, float x, float y, const TextStyle& style = {});
    /// Draws what was added, in the order of the calls, and forgets it. Depth test and blending
    /// are as models want them afterwards: on, and off; polygons are filled, and the active camera
    /// is this one's.
    /// @param width,height  of the picture, in pixels; the viewport is set to it
    /// @return false if memory ran out, and then nothing was drawn
    bool draw(int width, int height);

private:
    class Data;
    std::unique_ptr<Data> data;
};

} // namespace orvex::kit
