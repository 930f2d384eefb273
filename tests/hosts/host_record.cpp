// Plain OpenGL, as a toolkit draws.

#define GL_GLEXT_PROTOTYPES
#include <GL/gl.h>
#include <GL/glext.h>

#include "host_scene.h"

#include <cstdlib>
#include <initializer_list>

HostRecord::HostRecord(const char* path)
    : file(path ? std::fopen(path, "wb") : nullptr) {}

HostRecord::~HostRecord() {
    if (file)
        std::fclose(file);
}

void HostRecord::add(int frame, int width, int height) {
    if (!file || width < 1 || height < 1)
        return;
    const GLenum error = glGetError();
    const std::size_t size = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4;
    void* const pixels = std::malloc(size);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
    std::fprintf(file, "%d %d %d %u\n", frame, width, height, error);
    std::fwrite(pixels, 1, size, file);
    std::fflush(file);
    std::free(pixels);
}

void disturb_states() {
    for (const GLenum capability : {GL_BLEND, GL_CULL_FACE, GL_STENCIL_TEST, GL_SCISSOR_TEST,
                                    GL_POLYGON_OFFSET_FILL, GL_DITHER})
        glEnable(capability);
    glBlendFunc(GL_ZERO, GL_ONE);
    glCullFace(GL_FRONT_AND_BACK);
    glFrontFace(GL_CW);
    glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
    glPolygonOffset(100.0f, 100.0f);
    glStencilFunc(GL_NEVER, 1, 0xff);
    glScissor(1, 2, 3, 4);
    glViewport(0, 0, 5, 7);
    glDisable(GL_DEPTH_TEST);
    glDepthFunc(GL_NEVER);
    glDepthMask(GL_FALSE);
    glClearColor(1.0f, 0.0f, 1.0f, 0.0f);
    glClearDepth(0.0);
    glActiveTexture(GL_TEXTURE3);
    // Objects of the host's, which last as long as the context.
    GLuint texture = 0;
    GLuint array = 0;
    GLuint buffer = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glGenVertexArrays(1, &array);
    glBindVertexArray(array);
    glGenBuffers(1, &buffer);
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffer);
    glUseProgram(0);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
}
