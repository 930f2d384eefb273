// From the start to a picture in memory on bare EGL, which no renderer can do without: a context
// off screen, a clear, and its pixels. With any argument one lit triangle is drawn, in 4 samples a
// pixel.

#include <vector>

#include <EGL/egl.h>
#include <EGL/eglext.h>
#define GL_GLEXT_PROTOTYPES
#include <GL/gl.h>
#include <GL/glext.h>

namespace {

constexpr int width = 640, height = 480;

const char* const vertex_text = R"(#version 150
in vec3 place;
out vec3 normal;
void main()
{
    normal = normalize(place + vec3(0.0, 0.0, 1.0));
    gl_Position = vec4(place, 1.0);
}
)";

const char* const pixel_text = R"(#version 150
in vec3 normal;
out vec4 color;
void main()
{
    color = vec4(vec3(0.7) * max(dot(normalize(normal), vec3(0.6, 0.48, 0.64)), 0.1), 1.0);
}
)";

void attach(GLuint program, GLenum stage, const char* text) {
    const GLuint shader = glCreateShader(stage);
    glShaderSource(shader, 1, &text, nullptr);
    glCompileShader(shader);
    glAttachShader(program, shader);
}

void begin_samples() {
    GLuint framebuffer = 0, buffers[2] = {};
    glGenFramebuffers(1, &framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    glGenRenderbuffers(2, buffers);
    const GLenum formats[] = {GL_RGBA8, GL_DEPTH_COMPONENT24};
    const GLenum places[] = {GL_COLOR_ATTACHMENT0, GL_DEPTH_ATTACHMENT};
    for (int i = 0; i < 2; ++i) {
        glBindRenderbuffer(GL_RENDERBUFFER, buffers[i]);
        glRenderbufferStorageMultisample(GL_RENDERBUFFER, 4, formats[i], width, height);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, places[i], GL_RENDERBUFFER, buffers[i]);
    }
}

void end_samples() {
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0);
    glBlitFramebuffer(0, 0, width, height, 0, 0, width, height, GL_COLOR_BUFFER_BIT, GL_NEAREST);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
}

void draw_triangle() {
    const GLfloat corners[] = {-0.8f, -0.8f, 0.0f, 0.8f, -0.8f, 0.0f, 0.0f, 0.8f, 0.0f};
    GLuint array = 0, buffer = 0;
    glGenVertexArrays(1, &array);
    glBindVertexArray(array);
    glGenBuffers(1, &buffer);
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glBufferData(GL_ARRAY_BUFFER, sizeof corners, corners, GL_STATIC_DRAW);
    const GLuint program = glCreateProgram();
    attach(program, GL_VERTEX_SHADER, vertex_text);
    attach(program, GL_FRAGMENT_SHADER, pixel_text);
    glBindAttribLocation(program, 0, "place");
    glLinkProgram(program);
    glUseProgram(program);
    glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, 0, nullptr);
    glEnableVertexAttribArray(0);
    glEnable(GL_DEPTH_TEST);
    glDrawArrays(GL_TRIANGLES, 0, 3);
}

} // namespace

int main(int argc, char** /*argv*/) {
    const EGLDisplay display =
        eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    if (!eglInitialize(display, nullptr, nullptr) || !eglBindAPI(EGL_OPENGL_API))
        return 1;
    const EGLint wanted[] = {EGL_SURFACE_TYPE,
                             EGL_PBUFFER_BIT,
                             EGL_RENDERABLE_TYPE,
                             EGL_OPENGL_BIT,
                             EGL_RED_SIZE,
                             8,
                             EGL_DEPTH_SIZE,
                             24,
                             EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    if (!eglChooseConfig(display, wanted, &config, 1, &count) || count < 1)
        return 1;
    const EGLint size[] = {EGL_WIDTH, width, EGL_HEIGHT, height, EGL_NONE};
    const EGLint version[] = {EGL_CONTEXT_MAJOR_VERSION, 3, EGL_CONTEXT_MINOR_VERSION, 2, EGL_NONE};
    const EGLSurface surface = eglCreatePbufferSurface(display, config, size);
    const EGLContext context = eglCreateContext(display, config, EGL_NO_CONTEXT, version);
    if (!eglMakeCurrent(display, surface, surface, context))
        return 1;
    std::vector<unsigned char> pixels(std::size_t{4} * width * height);
    const bool is_drawn = argc > 1;
    if (is_drawn)
        begin_samples();
    glClearColor(0.17f, 0.19f, 0.22f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    if (is_drawn) {
        draw_triangle();
        end_samples();
    }
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    eglTerminate(display);
    return pixels[3] == 255 ? 0 : 1;
}
