#include "host_classes.h"

#include <cstring>

#include <orvex/geometry/mesh/mesh.h>
#include <orvex/geometry/mesh/model.h>

using namespace orvex;

TentLoader::TentLoader() {
    set_name("tent_loader");
    set_type(PLUGIN_TYPE_LOADER_3D);
}

bool TentLoader::load_from_file(Model* model, const char* filename) {
    if (!model || !filename || std::strcmp(filename, "tent") != 0)
        return false;
    Mesh* const mesh = model->create_mesh();
    model->add_child(mesh);
    if (!mesh->alloc_vertex_data(5) || !mesh->alloc_face_data(4, false))
        return false;
    mesh->set_vertex_position(0, vec4(0.0f, 1.0f, 0.0f, 1.0f));
    for (unsigned int corner = 0; corner < 4; ++corner) {
        const float x = corner == 1 || corner == 2 ? 0.7f : -0.7f;
        const float z = corner < 2 ? 0.7f : -0.7f;
        mesh->set_vertex_position(corner + 1, vec4(x, -0.4f, z, 1.0f));
        mesh->set_face_indexes(corner, 0, corner + 1, (corner + 1) % 4 + 1);
    }
    mesh->compute_faces_normal(nullptr);
    mesh->compute_vertices_normal(nullptr);
    mesh->update_bounding_sphere(nullptr);
    return true;
}

bool Turntable::_update(float degrees) {
    angle = degrees;
    for (unsigned long i = 0; i < get_num_children(); ++i)
        static_cast<Object*>(get_child(i))->set_orientation_euler_xyz(0.0f, angle, 0.0f);
    return true;
}

bool CountingSceneRenderer::render_scene(Renderer* renderer, Scene* scene, Camera* camera,
                                         Node* node) {
    ++rendered;
    return SceneRenderer::render_scene(renderer, scene, camera, node);
}
