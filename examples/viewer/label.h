#pragma once

#include <string>
#include <vector>

namespace orvex {
class Camera;
class Font;
class GpuProgram;
class Renderer;
} // namespace orvex

/// Lines of text in the corners of the window.
class Label {
public:
    /// @param font  a BMFont description; its sheet lies beside it
    Label(orvex::Renderer* renderer, std::string const& font);
    ~Label();
    Label(Label const&) = delete;
    Label& operator=(Label const&) = delete;

    /// Whether the font could be loaded.
    bool is_ready() const { return ready; }
    /// Draws lines down from the upper left corner, and others up to the lower one.
    void draw(int width, int height, std::vector<std::string> const& upper,
              std::vector<std::string> const& lower);

private:
    orvex::Renderer* renderer;
    orvex::Camera* camera;
    orvex::Font* font;
    orvex::GpuProgram* program;
    bool ready = false;

    void queue(int x, int y, std::vector<std::string> const& lines);
};
