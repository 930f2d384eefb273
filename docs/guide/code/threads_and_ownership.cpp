// A model read on a worker thread and uploaded on the renderer's; who holds what, in numbers:
// threads_and_ownership folder/

#include <cstdio>
#include <thread>

#include "off_screen.h"

using namespace orvex;

namespace {

/// Reading needs no context: meshes and materials are made, and pictures are decoded.
Model* read_model(const char* folder) {
    Model* model = aux::load_model_from_file("lighthouse.obj", folder, folder);
    for (unsigned long i = 0; model && i < model->get_num_materials(); ++i)
        model->get_material_by_index(i)->async_loading_process_all_texture_filenames(
            nullptr, folder, PF_NONE, false);
    return model;
}

/// Whatever takes a renderer runs on the thread that holds the context.
void upload_textures(Renderer* renderer, Model* model) {
    unsigned long uploaded = 0;
    for (unsigned long i = 0; i < model->get_num_materials(); ++i) {
        Material* material = model->get_material_by_index(i);
        for (unsigned long t = 0; t < material->get_num_textures(); ++t)
            if (TextureMgr::get()->upload_to_renderer(renderer, material->get_texture_by_index(t),
                                                      0))
                ++uploaded;
    }
    std::printf("%lu textures uploaded\n", uploaded);
}

void count_references() {
    MeshBox* box = new MeshBox;
    std::printf("new: %d\n", box->get_ref());
    Node* parent = new Node;
    parent->add_child(box);
    std::printf("a child: %d\n", box->get_ref());
    box->add_ref();
    std::printf("kept by the host: %d\n", box->get_ref());
    parent->kill(nullptr, nullptr);
    std::printf("its parent gone: %d\n", box->get_ref());
    box->release(nullptr, nullptr);
}

} // namespace

int main(int argc, char** argv) {
    OffScreen stage(true, 64, 64);
    if (!stage.started || argc < 2)
        return 1;
    Model* model = nullptr;
    std::thread worker([&] { model = read_model(argv[1]); });
    worker.join();
    if (!model)
        return 1;
    upload_textures(stage.renderer, model);
    model->kill(stage.renderer, nullptr);
    MaterialMgr::get()->release_all_resources(stage.renderer, nullptr);
    count_references();
    return 0;
}
