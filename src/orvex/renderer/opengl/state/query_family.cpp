#include "orvex/renderer/opengl/state/private/query_family.h"

#include "orvex/renderer/opengl/state/private/gl_state.h"

namespace orvex {

unsigned int QueryFamily::error() const {
    return glGetError();
}

const char* QueryFamily::text(GLenum name) const {
    return reinterpret_cast<const char*>(glGetString(name));
}

bool QueryFamily::version(int* major, int* minor) const {
    const char* const written = text(GL_VERSION);
    if (!written || written[0] == '\0')
        return false;
    int found_major = written[0] - '0';
    int found_minor = 0;
    if (found_major >= 3) {
        found_major = integer(GL_MAJOR_VERSION);
        found_minor = integer(GL_MINOR_VERSION);
    } else if (written[1] != '\0' && written[2] != '\0') {
        found_minor = written[2] - '0';
    }
    if (major)
        *major = found_major;
    if (minor)
        *minor = found_minor;
    return true;
}

// Where the API lacks the constant it notes an error and writes nothing: the start value stays.

int QueryFamily::integer(GLenum name) const {
    GLint value = 0;
    glGetIntegerv(name, &value);
    return value;
}

int QueryFamily::first_of_two(GLenum name) const {
    GLint values[2] = {};
    glGetIntegerv(name, values);
    return values[0];
}

unsigned int QueryFamily::first_of_four(GLenum name) const {
    GLint values[4] = {};
    glGetIntegerv(name, values);
    return static_cast<unsigned int>(values[0]);
}

float QueryFamily::max_anisotropy() const {
    GLfloat value = 0.0f;
    glGetFloatv(GL_MAX_TEXTURE_MAX_ANISOTROPY_EXT, &value);
    return value;
}

bool QueryFamily::indexed(GLenum name, int* x, int* y, int* z) const {
    if (!state.gl.glGetIntegeri_v)
        return false;
    int* const outputs[] = {x, y, z};
    for (GLuint i = 0; i < 3; ++i) {
        if (outputs[i]) {
            *outputs[i] = 0;
            state.gl.glGetIntegeri_v(name, i, outputs[i]);
        }
    }
    return true;
}

bool QueryFamily::has_instancing() const {
    return has_entries(state.gl.glDrawElementsInstancedARB, state.gl.glVertexAttribDivisorARB);
}

} // namespace orvex
