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
    Label(orvex::Renderer* renderer, const std::string& font);
    ~Label();
    Label(const Label&) = delete;
    Label& operator=(const Label&) = delete;

    /// Whether the font could be loaded.
    bool is_ready() const { return ready; }
    /// Draws lines down from the upper left corner, and others up to the lower one.
    void draw(int width, int height, const std::vector<std::string>& upper,
              const std::vector<std::string>& lower);

private:
    orvex::Renderer* renderer;
    orvex::Camera* camera;
    orvex::Font* font;
    orvex::GpuProgram* program;
    bool ready = false;

    void queue(int x, int y, const std::vector<std::string>& lines);
};
