// Draws the ten parametric meshes under one light, and again with their quads as lines:
//
//     shapes [gl2|gl3] [lit.jpg] [quads.jpg] [height_map.png]
//
// The terrain rises from the height map, any square RGB picture.

#include "gallery.h"

int main(int argc, char** argv) {
    OffScreen stage(wants_gl3(argc, argv), 800, 340);
    if (!stage.started)
        return 1;
    const char* const height_map = argc > 4 ? argv[4] : SHAPES_HEIGHT_MAP;
    Gallery gallery(stage, height_map);
    if (!gallery.is_complete())
        return 1;
    gallery.draw(false);
    if (!stage.write(argc > 2 ? argv[2] : "shapes.jpg"))
        return 1;
    gallery.draw(true);
    return stage.write(argc > 3 ? argv[3] : "shapes_quads.jpg") ? 0 : 1;
}
