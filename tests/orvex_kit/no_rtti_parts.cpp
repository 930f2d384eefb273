#include "no_rtti_parts.h"

#include <orvex/assets/textures/texture.h>
#include <orvex/assets/textures/texture_mgr.h>
#include <orvex/base/image_codec.h>
#include <orvex/base/loader_3d.h>
#include <orvex/geometry/lines/polyline.h>
#include <orvex/geometry/mesh/model.h>
#include <orvex/geometry/points/vertex_pool.h>
#include <orvex/geometry/shapes/mesh_triangle.h>
#include <orvex/scene/camera.h>

namespace orvex_test {

using namespace orvex;

namespace {

class PlainMesh : public MeshTriangle {};
class PlainCloud : public VertexPool {};
class PlainLine : public Polyline {};
class PlainCamera : public Camera {};
class PlainTexture : public Texture {};

class PlainLoader : public Loader3D {
public:
    PlainLoader() {
        set_name("plain");
        set_type(PLUGIN_TYPE_LOADER_3D);
    }

    bool load_from_file(Model* model, const char*) override {
        auto* const mesh = new PlainMesh;
        mesh->set_build_params(vec4(0, 0, 0, 1), vec4(1, 0, 0, 1), vec4(0, 1, 0, 1));
        mesh->build(nullptr);
        auto* const cloud = new PlainCloud;
        cloud->init_pool(1, false);
        auto* const line = new PlainLine;
        line->add_line(vec4(0, 0, 0, 1), vec4(1, 1, 1, 1));
        line->build(nullptr);
        for (Node* const part : {static_cast<Node*>(mesh), static_cast<Node*>(cloud),
                                 static_cast<Node*>(line), static_cast<Node*>(new PlainCamera)})
            model->add_child(part);
        return TextureMgr::get()->add_resource(new PlainTexture);
    }
};

class PlainCodec : public ImageCodec {
public:
    PlainCodec() { set_type(PLUGIN_TYPE_IMAGE_CODEC); }
    bool load_image_from_file(Image*, const char*, bool) override {
        set_failure_reason("nothing is plain");
        return false;
    }
    bool load_image_from_memory(Image*, unsigned char*, unsigned long, bool) override {
        return false;
    }
    bool save_image_to_file(Image*, const char*) override { return false; }
    bool free_image_resources(Image*) override { return false; }
};

} // namespace

Loader3D* new_plain_loader() {
    return new PlainLoader;
}

ImageCodec* new_plain_codec() {
    return new PlainCodec;
}

} // namespace orvex_test
