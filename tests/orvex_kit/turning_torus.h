#pragma once

/// @file
/// What hosts draw in tests: a torus in the colours of its normals, which shows states that are
/// left otherwise than a frame needs them.

#include <orvex/geometry/shapes/mesh_torus.h>
#include <orvex/gpu/gpu_program.h>
#include <orvex/math/vec4.h>

#include "orvex_kit/camera.h"
#include "orvex_kit/program.h"
#include "orvex_kit/ref.h"
#include "orvex_kit/view.h"

namespace orvex_test {

/// Belongs to the view that draws it first.
class TurningTorus {
public:
    /// A whole frame.
    /// @param number  each shows the torus from another place
    void draw(orvex::kit::View& view, int number) {
        if (!program)
            make(view);
        orvex::kit::Camera camera;
        const float turn = 0.4f * static_cast<float>(number);
        camera.look_at(orvex::vec4(4.0f - turn, 3.0f, 4.0f + turn, 1.0f),
                       orvex::vec4(0.0f, 0.0f, 0.0f, 1.0f));
        view.begin(camera);
        program.gpu()->bind(view.renderer());
        torus->render(view.renderer(), nullptr);
        program.gpu()->unbind(view.renderer());
        view.end();
    }

private:
    orvex::kit::Program program;
    orvex::kit::Ref<orvex::MeshTorus> torus;

    void make(orvex::kit::View& view) {
        program = orvex::kit::Program::from_text(
            view, "[Vertex_Shader]\nuniform mat4 orvex_ModelViewProjectionMatrix;\n"
                  "OUT vec3 shown;\n"
                  "void main() { shown = 0.5 + 0.5 * NORMAL;\n"
                  "gl_Position = orvex_ModelViewProjectionMatrix * POSITION; }\n"
                  "[Pixel_Shader]\nIN vec3 shown;\n"
                  "void main() { COLOR = vec4(shown, 1.0); }\n");
        torus = orvex::kit::make<orvex::MeshTorus>();
        torus->set_build_params(1.5f, 0.6f, 24);
        torus->build(nullptr);
        torus->set_opengl_2_3_rendering_states(view.path() == orvex::kit::Path::gl2, nullptr);
        torus->set_use_fixed_mvp_matrices_state(view.path() == orvex::kit::Path::gl2, nullptr);
    }
};

} // namespace orvex_test
