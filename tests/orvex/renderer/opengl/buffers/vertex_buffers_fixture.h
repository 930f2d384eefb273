#pragma once

/// @file
/// Stores to draw and a started renderer behind the recording layer.

#include <cstdarg>
#include <cstdio>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "orvex/renderer/opengl/private/renderer_opengl.h"
#include "orvex/renderer/records/mesh_data_packed.h"
#include "tests/support/gl_context.h"
#include "tests/support/gl_recorder.h"

namespace orvex_test {

/// One call as the recorder writes it, printf-style.
[[gnu::format(printf, 1, 2)]] inline std::string call(const char* format, ...) {
    char text[256];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof(text), format, arguments);
    va_end(arguments);
    return text;
}

/// Several lists of calls, one behind the other.
inline GlCalls joined(std::initializer_list<GlCalls> parts) {
    GlCalls all;
    for (const GlCalls& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

/// Fills a store with a triangle and `num_faces` faces over it.
inline void make_triangle(orvex::MeshData& store, bool separate, unsigned long num_faces = 1) {
    store.separate_vertex_arrays = separate;
    ASSERT_TRUE(store.alloc_vertex_data(3));
    store.set_position(0, orvex::vec3(-1.0f, -1.0f, 0.0f));
    store.set_position(1, orvex::vec3(3.0f, -1.0f, 0.0f));
    store.set_position(2, orvex::vec3(-1.0f, 3.0f, 0.0f));
    store.index_bits = 16;
    store.num_faces = num_faces;
    store.faces_u16 = num_faces > 0 ? new orvex::FaceU16[num_faces] : nullptr;
    for (unsigned long i = 0; i < num_faces; ++i)
        store.faces_u16[i] = {0, 1, 2};
}

/// Replaces the faces of a store.
inline void set_num_faces(orvex::MeshData& store, unsigned long num_faces) {
    delete[] store.faces_u16;
    store.num_faces = num_faces;
    store.faces_u16 = new orvex::FaceU16[num_faces];
    for (unsigned long i = 0; i < num_faces; ++i)
        store.faces_u16[i] = {0, 1, 2};
}

/// Allocates one instance array of a store.
inline void make_instances(orvex::MeshData& store, orvex::VertexAttribArray& array,
                           unsigned long count) {
    delete[] array.data;
    store.num_instances = count;
    array.data = new orvex::vec4[count];
    array.num_elements = count;
}

/// A current context, the recorder and a started renderer.
class RecordedRenderer {
public:
    void start() {
        recorder = std::make_unique<GlRecorder>();
        renderer = std::make_unique<orvex::RendererOpenGL>();
        renderer->initialize();
        renderer->start();
        const GlRecorderPause pause(*recorder);
        forget_gl_errors();
        recorder->clear();
    }

    /// Starts anew where the API lacks entry points.
    void start_without(std::initializer_list<const char*> entries) {
        for (const char* const entry : entries)
            recorder->hide(entry);
        renderer->stop();
        renderer->start();
        const GlRecorderPause pause(*recorder);
        forget_gl_errors();
        recorder->clear();
    }

    /// Prepares a mesh around each of the two, which unbind its vertex array before it is drawn.
    template<class Prepare, class Finish>
    void expect_mesh_undrawn_across(Prepare prepare_other, Finish finish_other) {
        orvex::MeshData mesh;
        make_triangle(mesh, true);
        for (const bool prepared_first : {false, true}) {
            if (prepared_first)
                prepare_other();
            EXPECT_TRUE(renderer->vertex_buffer_prepare(&mesh));
            if (!prepared_first)
                prepare_other();
            finish_other();
            recorder->clear();
            EXPECT_TRUE(renderer->vertex_buffer_draw(&mesh));
            EXPECT_EQ(recorder->take(), GlCalls());
        }
        EXPECT_TRUE(renderer->vertex_buffer_kill(&mesh));
    }

    /// Lets a mesh of client arrays leave its colours enabled, three of them, and calls
    /// `prepare_other(n)` for records of n vertices without colours.
    template<class PrepareOther>
    void expect_short_arrays_switched_off(PrepareOther prepare_other) {
        orvex::MeshData mesh;
        make_triangle(mesh, false);
        mesh.set_use_generic_vertex_attribs_state(false);
        draw_quietly(mesh);
        prepare_other(3ul);
        EXPECT_TRUE(glIsEnabled(GL_COLOR_ARRAY));
        prepare_other(4ul);
        EXPECT_FALSE(glIsEnabled(GL_COLOR_ARRAY));
        EXPECT_TRUE(renderer->vertex_buffer_kill(&mesh));
    }

    /// Prepares, and forgets the calls.
    bool prepare_quietly(orvex::MeshData& store) {
        const bool ready = renderer->vertex_buffer_prepare(&store);
        recorder->clear();
        return ready;
    }

    /// Prepares, draws, finishes, and forgets the calls.
    void draw_quietly(orvex::MeshData& store) {
        renderer->vertex_buffer_prepare(&store);
        renderer->vertex_buffer_draw(&store);
        renderer->vertex_buffer_finish(&store);
        recorder->clear();
    }

    GlCalls prepare(orvex::MeshData& store) {
        renderer->vertex_buffer_prepare(&store);
        return recorder->take();
    }

    GlCalls draw(orvex::MeshData& store) {
        renderer->vertex_buffer_draw(&store);
        return recorder->take();
    }

    GlCalls finish(orvex::MeshData& store) {
        renderer->vertex_buffer_finish(&store);
        return recorder->take();
    }

    GlCalls kill(orvex::MeshData& store) {
        renderer->vertex_buffer_kill(&store);
        return recorder->take();
    }

    std::unique_ptr<GlRecorder> recorder;
    std::unique_ptr<orvex::RendererOpenGL> renderer;
};

/// On both profiles; stores are drawn by generic attributes.
class VertexBuffersTest : public GlTest, protected RecordedRenderer {
protected:
    void SetUp() override {
        GlTest::SetUp();
        start();
    }
};

/// On a compatibility context, for client arrays.
class ClientArraysTest : public GlCompatibilityTest, protected RecordedRenderer {
protected:
    void SetUp() override { start(); }

    /// A triangle for the path of the fixed pipeline.
    static void make_client_triangle(orvex::MeshData& store, bool separate,
                                     unsigned long num_faces = 1) {
        make_triangle(store, separate, num_faces);
        store.set_use_generic_vertex_attribs_state(false);
    }
};

inline GlCalls bind_array_buffer(unsigned int id) {
    return {call("glBindBuffer(GL_ARRAY_BUFFER, %u)", id)};
}

inline GlCalls bind_element_buffer(unsigned int id) {
    return {call("glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, %u)", id)};
}

inline GlCalls upload(unsigned long offset, unsigned long size) {
    return {call("glBufferSubData(GL_ARRAY_BUFFER, %lu, %lu, ptr)", offset, size)};
}

inline GlCalls allocate(unsigned long size, const char* usage = "GL_STATIC_DRAW") {
    return {call("glBufferData(GL_ARRAY_BUFFER, %lu, 0, %s)", size, usage)};
}

inline GlCalls generate_buffer(unsigned int id) {
    return {call("glGenBuffers(1, [%u])", id)};
}

inline GlCalls generic_pointer(int location, int dim, int stride, unsigned long offset) {
    return {call("glEnableVertexAttribArray(%d)", location),
            call("glVertexAttribPointer(%d, %d, GL_FLOAT, false, %d, %lu)", location, dim, stride,
                 offset)};
}

inline GlCalls create_faces(unsigned int id, unsigned long size) {
    return joined(
        {generate_buffer(id),
         bind_element_buffer(id),
         {call("glBufferData(GL_ELEMENT_ARRAY_BUFFER, %lu, ptr, GL_STATIC_DRAW)", size)}});
}

inline GlCalls upload_elements(unsigned long size) {
    return {call("glBufferSubData(GL_ELEMENT_ARRAY_BUFFER, 0, %lu, ptr)", size)};
}

inline GlCalls record_vertex_array(unsigned int id, unsigned int vertex_buffer) {
    return {call("glGenVertexArrays(1, [%u])", id), call("glBindVertexArray(%u)", id),
            call("glBindBuffer(GL_ARRAY_BUFFER, %u)", vertex_buffer)};
}

inline GlCalls bind_vertex_array(unsigned int id) {
    return {call("glBindVertexArray(%u)", id)};
}

} // namespace orvex_test
