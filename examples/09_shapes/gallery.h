#pragma once

#include <vector>

#include <orvex/orvex.h>

#include "off_screen.h"

/// The ten parametric meshes in two rows of five, with one light and a camera.
class Gallery {
public:
    /// @param height_map  file of a square RGB picture that raises the terrain
    Gallery(OffScreen& stage, const char* height_map);
    ~Gallery();
    Gallery(const Gallery&) = delete;
    Gallery& operator=(const Gallery&) = delete;

    /// Whether the height map was read and the program compiled.
    bool is_complete() const;

    /// Draws all shapes; with `quads`, those made of quads as the lines around them.
    void draw(bool quads);

private:
    struct Exhibit {
        orvex::Mesh* mesh;
        orvex::vec4 color;
    };

    OffScreen& stage;
    orvex::Texture* heights;
    orvex::GpuProgram* program;
    orvex::Light* light;
    orvex::Camera* camera;
    std::vector<Exhibit> exhibits;

    void add(orvex::Mesh* mesh, const orvex::vec4& color, float tilt, float turn);
    void add_upper_row();
    void add_lower_row();
    orvex::Mesh* make_terrain() const;
};
