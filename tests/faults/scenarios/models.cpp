// Models from files.

#include <cstdio>
#include <fstream>

#include "../scenarios.h"
#include "tests/orvex/assets/models/3ds/chunks_3ds.h"

namespace orvex_test {

using namespace orvex;

namespace {

const char* const house_obj = R"(mtllib house.mtl
o walls
v -1 -1 0
v 1 -1 0
v 1 1 0
v -1 1 0
vt 0 0
vt 1 0
vt 1 1
vt 0 1
vn 0 0 1
usemtl a_wall_of_wood_with_a_long_name
f 1/1/1 2/2/1 3/3/1
f 1/1/1 3/3/1 4/4/1
o roof
v -1 1 0
v 1 1 0
v 0 2 0
usemtl plain
f 5//1 6//1 7//1
)";
const char* const house_mtl = R"(newmtl a_wall_of_wood_with_a_long_name
Kd 1 1 1
map_Kd lighthouse_wood.png
newmtl plain
Kd 0.5 0.25 0
)";

/// A folder of one run, with a slash at its end.
const std::string folder = "/tmp/";

void write(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

/// The house, under names of this process.
std::string write_house() {
    const std::string obj = scratch_file("house.obj");
    const std::string mtl = scratch_file("house.mtl");
    std::string text = house_obj;
    text.replace(text.find("house.mtl"), 9, mtl.substr(folder.size()));
    write(obj, text);
    write(mtl, house_mtl);
    return obj.substr(folder.size());
}

void remove_house() {
    std::remove(scratch_file("house.obj").c_str());
    std::remove(scratch_file("house.mtl").c_str());
}

Model* load(Stage& stage, const std::string& file) {
    const std::string pictures = example_data("");
    return stage.get_quietly("load_model_from_file", [&] {
        return aux::load_model_from_file(file.c_str(), folder.c_str(), pictures.c_str());
    });
}

void tell(Stage& stage, Model* model) {
    stage.tell("vertices", static_cast<double>(model->get_num_vertices(model)));
    stage.tell("faces", static_cast<double>(model->get_num_faces(model)));
    stage.tell("meshes", static_cast<double>(model->get_num_children()));
    stage.tell("materials", static_cast<double>(MaterialMgr::get()->get_num_resources()));
    stage.tell("textures", static_cast<double>(TextureMgr::get()->get_num_resources()));
}

} // namespace

void play_obj(Stage& stage) {
    const std::string file = write_house();
    stage.start_engine();
    Model* const model = load(stage, file);
    tell(stage, model);
    stage.end(model);
    stage.close();
    remove_house();
}

void play_obj_drawn(Stage& stage) {
    const std::string file = write_house();
    stage.open_window(Path::gl2);
    Model* const model = load(stage, file);
    tell(stage, model);
    GpuProgram* const program = stage.make_normal_program();
    Camera* const camera = stage.make_camera();
    stage.run("set_opengl_2_3_rendering_states",
              [&] { model->set_opengl_2_3_rendering_states(true, model); });
    stage.frame([&] {
        stage.begin(camera);
        stage.draw(program, model);
    });
    stage.end(camera);
    stage.end(model);
    stage.close();
    remove_house();
}

void play_3ds(Stage& stage) {
    const std::string path = scratch_file("full.3ds");
    write(path, full_file());
    stage.start_engine();
    Model* const model = load(stage, path.substr(folder.size()));
    tell(stage, model);
    stage.end(model);
    stage.close();
    std::remove(path.c_str());
}

} // namespace orvex_test
