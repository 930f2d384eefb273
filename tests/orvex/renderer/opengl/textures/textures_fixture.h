#pragma once

/// @file
/// What the tests of the texture operations share.

#include <climits>
#include <memory>
#include <string>
#include <vector>

#include <GL/gl.h>
#include <GL/glext.h>
#include <gtest/gtest.h>

#include "orvex/renderer/opengl/private/renderer_opengl.h"
#include "orvex/renderer/records/texture_data.h"
#include "tests/support/gl_context.h"
#include "tests/support/gl_recorder.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;
using Bytes = std::vector<unsigned char>;

/// A started renderer whose calls are recorded, and a texture record of the test's own.
class Textures : public orvex_test::GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        recorder = std::make_unique<orvex_test::GlRecorder>();
        start();
    }
    void TearDown() override {
        for (GLuint id : made)
            glDeleteTextures(1, &id);
        recorder.reset();
        context().take_messages();
        GlTest::TearDown();
    }

    /// Makes the renderer, after entry points that the test wants missing were hidden.
    void start() {
        renderer = std::make_unique<RendererOpenGL>();
        renderer->start();
        orvex_test::forget_gl_errors();
        log.clear();
        recorder->clear();
    }

    /// Takes the record off the GPU, so that the next load is a first one.
    void forget() {
        renderer->texture_unload(&data);
        data.cleanup();
        recorder->clear();
    }

    /// Creates the CPU pixels of a 2D texture and numbers its bytes.
    void create_2d(unsigned long width, unsigned long height, PIXEL_FORMAT format) {
        forget();
        data.type = TEXTURE_TYPE_2D;
        data.create(width, height, 1, format, true);
        number_pixels(data);
    }

    void create_1d(unsigned long width, PIXEL_FORMAT format) {
        create_2d(width, 1, format);
        data.type = TEXTURE_TYPE_1D;
    }

    void create_cube(unsigned long size, PIXEL_FORMAT format) {
        forget();
        data.type = TEXTURE_TYPE_CUBE;
        for (TextureCubeMapFace& face : data.cubemap_faces) {
            face.image.create(size, size, 1, format, true);
            number_pixels(face.image);
        }
    }

    static void number_pixels(Image& image) {
        const unsigned long bytes =
            image.width * image.height * static_cast<unsigned long>(image.get_pixel_format_size());
        if (image.pixmap_u8)
            for (unsigned long i = 0; i < bytes; ++i)
                image.pixmap_u8[i] = static_cast<unsigned char>(i + 1);
        else
            for (unsigned long i = 0; i < bytes / sizeof(float); ++i)
                image.pixmap_f32[i] = static_cast<float>(i + 1) / 4;
    }

    bool load(unsigned long unit = 0) {
        switch (data.type) {
        case TEXTURE_TYPE_1D:
            return keep(renderer->texture_1d_load(&data, unit));
        case TEXTURE_TYPE_CUBE:
            return keep(renderer->texture_cube_load(&data, unit));
        default:
            return keep(renderer->texture_2d_load(&data, unit));
        }
    }

    bool keep(bool result) {
        made.push_back(data.opengl_texture_id);
        return result;
    }

    std::string id() const { return std::to_string(data.opengl_texture_id); }

    /// The RGBA bytes that a target of the active unit holds.
    Bytes pixels_of(GLenum target, unsigned long count) {
        const orvex_test::GlRecorderPause pause(*recorder);
        Bytes pixels(count * 4);
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glGetTexImage(target, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
        return pixels;
    }

    GLint parameter(GLenum target, GLenum name) {
        const orvex_test::GlRecorderPause pause(*recorder);
        GLint value = 0;
        glGetTexParameteriv(target, name, &value);
        return value;
    }

    /// What the API itself says.
    GLint asked(GLenum binding) {
        GLint value = 0;
        glGetIntegerv(binding, &value);
        return value;
    }

    bool core() const { return GetParam() == orvex_test::Profile::core; }

    LogCapture log;
    std::unique_ptr<orvex_test::GlRecorder> recorder;
    std::unique_ptr<RendererOpenGL> renderer;
    TextureData data;
    std::vector<GLuint> made;
};

} // namespace orvex_test
