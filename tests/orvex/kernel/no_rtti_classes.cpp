#include "no_rtti_classes.h"

#include "orvex/assets/textures/texture.h"
#include "orvex/base/image_codec.h"
#include "orvex/base/loader_3d.h"
#include "orvex/geometry/shapes/mesh_box.h"
#include "orvex/renderer/render_window.h"
#include "orvex/scene/object.h"
#include "tests/support/fake_renderer.h"

namespace orvex_test {

using namespace orvex;

namespace {

class PlainObject : public Object {};
class PlainMesh : public MeshBox {};
class PlainTexture : public Texture {};
class PlainRenderer : public FakeRenderer {};

class PlainLoader : public Loader3D {
public:
    PlainLoader() { set_type(PLUGIN_TYPE_LOADER_3D); }
    bool load_from_file(Model*, const char*) override { return true; }
};

class PlainCodec : public ImageCodec {
public:
    PlainCodec() { set_type(PLUGIN_TYPE_IMAGE_CODEC); }
    bool load_image_from_file(Image*, const char*, bool) override { return false; }
    bool load_image_from_memory(Image*, unsigned char*, unsigned long, bool) override {
        return false;
    }
    bool save_image_to_file(Image*, const char*) override { return false; }
    bool free_image_resources(Image*) override { return false; }
};

class PlainWindow : public RenderWindow {
public:
    bool initialize(void*, void*, int, int, const char*, RenderWindow*,
                    RenderWindow_ExtraData*) override {
        return false;
    }
    bool terminate() override { return true; }
    bool apply_context(bool) override { return false; }
    bool display_framebuffer() override { return false; }
    bool vsync(bool) override { return false; }
    bool share_ctx(RenderWindow*) override { return false; }
    int get_api_3d() override { return 0; }
    bool is_opengl_version_supported(int, int) override { return false; }
    bool get_opengl_version(int*, int*) override { return false; }
    bool check_opengl_extension(const char*) override { return false; }
    bool build_opengl_extensions_list() override { return false; }
    bool destroy_opengl_extensions_list() override { return false; }
    unsigned long get_num_opengl_extensions() override { return 0; }
    int get_num_GL_extensions() override { return 0; }
    int get_num_WGL_extensions() override { return 0; }
    int get_num_GLX_extensions() override { return 0; }
    const char* get_opengl_extension(unsigned long) override { return nullptr; }
    void* opengl_get_ctx() override { return nullptr; }
    void* d3d_get_device() override { return nullptr; }
    void* d3d11_get_device_ctx() override { return nullptr; }
    void update_size(int, int) override {}
    bool osx_kill_context() override { return false; }
    bool osx_init_with_cocoa_nsgl_ctx(void*) override { return false; }
    bool osx_apply_context(bool) override { return false; }
    bool osx_display_framebuffer() override { return false; }
    bool osx_vsync(bool) override { return false; }
    bool osx_update_current_virtual_screen_ctx() override { return false; }
    int osx_get_current_virtual_screen() override { return -1; }
    bool osx_set_current_virtual_screen(int) override { return false; }
    int osx_get_num_of_virtual_screens() override { return 0; }
    void* osx_get_cgl_ctx() override { return nullptr; }
    bool osx_enable_multi_threaded_gl_engine(bool) override { return false; }
    bool osx_lock_context(bool) override { return false; }
    bool osx_create_cgl_context(void*, int, int, const char*, RenderWindow*,
                                RenderWindow_ExtraData*) override {
        return false;
    }
    bool osx_create_cocoa_nsgl_context(void*, int, int, const char*, RenderWindow*,
                                       RenderWindow_ExtraData*) override {
        return false;
    }
    bool osx_apply_context_cocoa(bool) override { return false; }
    bool osx_update_context_cocoa() override { return false; }
    bool osx_display_framebuffer_cocoa() override { return false; }
    bool osx_vsync_cocoa(bool) override { return false; }
    void* osx_get_nsgl_ctx() override { return nullptr; }
};

} // namespace

Object* new_plain_object() {
    return new PlainObject;
}

Loader3D* new_plain_loader() {
    return new PlainLoader;
}

ImageCodec* new_plain_codec() {
    return new PlainCodec;
}

Mesh* new_plain_mesh() {
    return new PlainMesh;
}

Renderer* new_plain_renderer() {
    return new PlainRenderer;
}

Texture* new_plain_texture() {
    return new PlainTexture;
}

RenderWindow* new_plain_window() {
    return new PlainWindow;
}

} // namespace orvex_test
