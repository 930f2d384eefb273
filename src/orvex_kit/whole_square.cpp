#include "orvex_kit/private/whole_square.h"

namespace orvex::kit {

WholeSquare::WholeSquare(ViewContext& context)
    : context(context)
    , mesh(make<orvex::MeshPlane>()) {
    mesh->set_build_params(2.0f, 2.0f, 1, 1);
    mesh->build(nullptr);
    mesh->set_opengl_2_3_rendering_states(context.path == Path::gl2, nullptr);
    context.add(*this);
}

WholeSquare::~WholeSquare() {
    close();
    context.remove(*this);
}

void WholeSquare::close() {
    if (!mesh)
        return;
    // Its last hold gives the buffers back to the renderer that is current.
    const ViewContext::Visit visit(context);
    mesh.reset();
}

void WholeSquare::render() {
    if (mesh)
        mesh->render(context.renderer, nullptr);
}

} // namespace orvex::kit
