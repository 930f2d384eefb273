#include "orvex/renderer/records/polyline_data.h"

#include <string>
#include <thread>

#include "orvex/geometry/lines/polyline.h"
#include "vertex_buffers_fixture.h"

namespace orvex_test {

using namespace orvex;

namespace {

bool PolylineData::*const update_flags[] = {
    &PolylineData::positions_need_update, &PolylineData::normals_need_update,
    &PolylineData::tangents_need_update,  &PolylineData::colors_need_update,
    &PolylineData::uv0_need_update,       &PolylineData::uv1_need_update};

/// Operations on one polyline, each with the calls it made.
class PolylineCalls : public RecordedRenderer {
protected:
    void make(unsigned long count = 3) {
        delete[] polyline.vertices;
        polyline.vertices = new Vertex[count];
        polyline.num_vertices = count;
    }

    GlCalls prepare() {
        EXPECT_TRUE(renderer->polyline_vb_prepare(&polyline));
        return recorder->take();
    }

    GlCalls draw(int first, int count) {
        EXPECT_TRUE(renderer->polyline_vb_draw(&polyline, first, count));
        return recorder->take();
    }

    GlCalls finish() {
        EXPECT_TRUE(renderer->polyline_vb_finish(&polyline));
        return recorder->take();
    }

    void draw_quietly() {
        prepare();
        draw(0, -1);
        finish();
    }

    PolylineData polyline;
};

class Polylines : public GlTest, public PolylineCalls {
protected:
    void SetUp() override {
        GlTest::SetUp();
        start();
    }

    void TearDown() override {
        renderer->polyline_vb_kill(&polyline);
        GlTest::TearDown();
    }
};
ORVEX_BOTH_PROFILES(Polylines);

TEST_P(Polylines, upload_their_records_and_record_what_is_present) {
    make();
    const GlCalls calls = prepare();
    const unsigned int buffer = polyline.vertex_buffer_id;
    EXPECT_EQ(calls,
              joined({generate_buffer(buffer), bind_array_buffer(buffer), allocate(288),
                      bind_array_buffer(0), bind_array_buffer(buffer), upload(0, 288),
                      bind_array_buffer(0), record_vertex_array(polyline.vertex_array_id, buffer),
                      generic_pointer(0, 4, 96, 0), generic_pointer(1, 4, 96, 16),
                      generic_pointer(2, 4, 96, 32), generic_pointer(5, 4, 96, 80)}));
    EXPECT_EQ(polyline.renderer_id, renderer->getid());
    for (bool PolylineData::*const flag : update_flags)
        EXPECT_FALSE(polyline.*flag);
    EXPECT_EQ(draw(0, -1), GlCalls({"glDrawArrays(GL_LINE_STRIP, 0, 3)"}));
    EXPECT_EQ(finish(), GlCalls({"glBindVertexArray(0)"}));
    EXPECT_EQ(prepare(), bind_vertex_array(polyline.vertex_array_id));
    finish();
}

TEST_P(Polylines, record_all_six_attributes_in_order_where_they_have_a_location) {
    make();
    polyline.has_uv0 = polyline.has_uv1 = true;
    polyline.normal.attrib_location = -1;
    polyline.uv0.attrib_location = 9;
    const GlCalls calls = prepare();
    EXPECT_EQ(GlCalls(calls.end() - 10, calls.end()),
              joined({generic_pointer(0, 4, 96, 0), generic_pointer(1, 4, 96, 16),
                      generic_pointer(9, 4, 96, 48), generic_pointer(4, 4, 96, 64),
                      generic_pointer(5, 4, 96, 80)}));
    finish();
}

TEST_P(Polylines, record_positions_alone_when_the_rest_is_switched_off) {
    make();
    polyline.has_color = polyline.has_normal = polyline.has_tangent = false;
    const GlCalls calls = prepare();
    EXPECT_EQ(recorder->count("glVertexAttribPointer"), 0);
    EXPECT_EQ(GlCalls(calls.end() - 2, calls.end()), generic_pointer(0, 4, 96, 0));
    finish();
}

TEST_P(Polylines, upload_everything_for_any_flag) {
    make();
    draw_quietly();
    for (bool PolylineData::*const flag : update_flags) {
        polyline.*flag = true;
        EXPECT_EQ(prepare(),
                  joined({bind_array_buffer(polyline.vertex_buffer_id), upload(0, 288),
                          bind_array_buffer(0), bind_vertex_array(polyline.vertex_array_id)}));
        EXPECT_FALSE(polyline.*flag);
    }
    finish();
}

TEST_P(Polylines, are_drawn_by_their_mode) {
    struct Row {
        LINE_RENDER_MODE mode;
        bool tessellation;
        const char* primitive;
    };
    const Row rows[] = {{LINE_RENDER_MODE_LINES, false, "GL_LINES"},
                        {LINE_RENDER_MODE_LINE_STRIP, false, "GL_LINE_STRIP"},
                        {LINE_RENDER_MODE_LINE_LOOP, false, "GL_LINE_LOOP"},
                        {LINE_RENDER_MODE_LINES, true, "GL_PATCHES"},
                        {LINE_RENDER_MODE_LINE_STRIP, true, "GL_PATCHES"},
                        {LINE_RENDER_MODE_LINE_LOOP, true, "GL_PATCHES"},
                        {static_cast<LINE_RENDER_MODE>(3), true, "GL_PATCHES"}};
    make();
    prepare();
    for (const Row& row : rows) {
        polyline.render_mode = row.mode;
        polyline.tessellation_state = row.tessellation;
        EXPECT_EQ(draw(1, 2), GlCalls({call("glDrawArrays(%s, 1, 2)", row.primitive)}));
        // Patches need a program that takes them.
        const GlRecorderPause pause(*recorder);
        glGetError();
    }
    finish();
}

TEST_P(Polylines, of_an_unknown_mode_draw_nothing) {
    make();
    prepare();
    for (const int mode : {-1, 3, 100}) {
        polyline.render_mode = static_cast<LINE_RENDER_MODE>(mode);
        EXPECT_EQ(draw(0, -1), GlCalls());
    }
    finish();
}

TEST_P(Polylines, draw_all_vertices_for_a_count_below_one_whatever_the_start) {
    make(8);
    prepare();
    EXPECT_EQ(draw(5, -1), GlCalls({"glDrawArrays(GL_LINE_STRIP, 5, 8)"}));
    EXPECT_EQ(draw(0, 0), GlCalls({"glDrawArrays(GL_LINE_STRIP, 0, 8)"}));
    EXPECT_EQ(draw(5, 1), GlCalls({"glDrawArrays(GL_LINE_STRIP, 5, 1)"}));
    finish();
}

TEST_P(Polylines, keep_the_default_usage_in_the_record_even_when_one_is_forced) {
    make();
    renderer->force_buffer_object_usage(BUFFER_USAGE_DYNAMIC_DRAW, BUFFER_USAGE_DEFAULT);
    EXPECT_EQ(prepare()[2], "glBufferData(GL_ARRAY_BUFFER, 288, 0, GL_DYNAMIC_DRAW)");
    EXPECT_EQ(polyline.vertex_buffer_usage, static_cast<unsigned int>(GL_STATIC_DRAW));
    finish();
    renderer->polyline_vb_kill(&polyline);
    renderer->force_buffer_object_usage(BUFFER_USAGE_DEFAULT, BUFFER_USAGE_DEFAULT);
    polyline.vertex_buffer_usage = GL_STREAM_DRAW;
    recorder->clear();
    EXPECT_EQ(prepare()[2], "glBufferData(GL_ARRAY_BUFFER, 288, 0, GL_STREAM_DRAW)");
    finish();
}

TEST_P(Polylines, of_another_size_get_new_storage) {
    make();
    draw_quietly();
    make(5);
    EXPECT_EQ(prepare(), joined({bind_array_buffer(polyline.vertex_buffer_id), allocate(480),
                                 bind_array_buffer(0), bind_array_buffer(polyline.vertex_buffer_id),
                                 upload(0, 480), bind_array_buffer(0),
                                 bind_vertex_array(polyline.vertex_array_id)}));
    finish();
}

TEST_P(Polylines, without_vertices_make_nothing) {
    EXPECT_FALSE(renderer->polyline_vb_prepare(&polyline));
    polyline.use_generic_vertex_attribs = false;
    EXPECT_FALSE(renderer->polyline_vb_prepare(&polyline));
    polyline.num_vertices = 3; // as after a failed allocation
    EXPECT_FALSE(renderer->polyline_vb_prepare(&polyline));
    polyline.use_generic_vertex_attribs = true;
    EXPECT_FALSE(renderer->polyline_vb_prepare(&polyline));
    EXPECT_TRUE(recorder->take().empty());
    EXPECT_EQ(polyline.vertex_buffer_id, 0u);
}

TEST_P(Polylines, refuse_null) {
    EXPECT_FALSE(renderer->polyline_vb_prepare(nullptr));
    EXPECT_FALSE(renderer->polyline_vb_prepare_gl2(nullptr));
    EXPECT_FALSE(renderer->polyline_vb_draw(nullptr, 0, -1));
    EXPECT_FALSE(renderer->polyline_vb_finish(nullptr));
    EXPECT_FALSE(renderer->polyline_vb_kill(nullptr));
    EXPECT_TRUE(recorder->take().empty());
}

TEST_P(Polylines, are_killed_array_first) {
    make();
    draw_quietly();
    const unsigned int buffer = polyline.vertex_buffer_id;
    const unsigned int array = polyline.vertex_array_id;
    EXPECT_TRUE(renderer->polyline_vb_kill(&polyline));
    EXPECT_EQ(recorder->take(), GlCalls({call("glDeleteVertexArrays(1, [%u])", array),
                                         call("glDeleteBuffers(1, [%u])", buffer)}));
    EXPECT_EQ(polyline.vertex_buffer_id, 0u);
    EXPECT_EQ(polyline.vertex_array_id, 0u);
    EXPECT_TRUE(renderer->polyline_vb_kill(&polyline));
    EXPECT_TRUE(recorder->take().empty());
}

TEST_P(Polylines, forget_the_size_of_a_buffer_that_was_killed) {
    make();
    draw_quietly();
    EXPECT_TRUE(renderer->polyline_vb_kill(&polyline));
    make(5);
    polyline.vertex_buffer_id = renderer->vertex_buffer_create(480, BUFFER_USAGE_STATIC_DRAW);
    recorder->clear();
    EXPECT_TRUE(renderer->polyline_vb_prepare(&polyline));
    EXPECT_EQ(recorder->count("glBufferData"), 0) << "the host's own stays as it is";
    finish();
}

TEST_P(Polylines, are_killed_on_their_own_thread_only) {
    make();
    draw_quietly();
    const unsigned int buffer = polyline.vertex_buffer_id;
    std::thread([this] { EXPECT_FALSE(renderer->polyline_vb_kill(&polyline)); }).join();
    EXPECT_TRUE(recorder->take().empty());
    EXPECT_EQ(polyline.vertex_buffer_id, buffer);
}

TEST_P(Polylines, do_nothing_without_the_entry_points) {
    make();
    start_without({"glGenVertexArrays", "glBindBuffer", "glDeleteBuffers"});
    EXPECT_FALSE(renderer->polyline_vb_prepare(&polyline));
    polyline.use_generic_vertex_attribs = false;
    EXPECT_FALSE(renderer->polyline_vb_prepare(&polyline));
    EXPECT_FALSE(renderer->polyline_vb_finish(&polyline));
    EXPECT_FALSE(renderer->polyline_vb_kill(&polyline));
    EXPECT_TRUE(recorder->take().empty());
}

TEST_P(Polylines, keep_a_vertex_array_that_can_not_be_deleted_nor_unbound) {
    make();
    draw_quietly();
    const unsigned int buffer = polyline.vertex_buffer_id;
    const unsigned int array = polyline.vertex_array_id;
    start_without({"glDeleteVertexArrays", "glBindVertexArray"});
    EXPECT_FALSE(renderer->polyline_vb_finish(&polyline));
    EXPECT_FALSE(renderer->polyline_vb_kill(&polyline));
    EXPECT_TRUE(recorder->take().empty());
    EXPECT_EQ(polyline.vertex_buffer_id, buffer);
    EXPECT_EQ(polyline.vertex_array_id, array);
}

TEST_P(Polylines, leave_a_mesh_prepared_before_them_undrawn) {
    make();
    expect_mesh_undrawn_across([this] { prepare(); }, [this] { finish(); });
}

/// Takes over the path of client arrays.
class ClientArraysTaker : public RendererOpenGL {
public:
    bool polyline_vb_prepare_gl2(PolylineData* polyline) override {
        taken = polyline;
        return false;
    }

    PolylineData* taken = nullptr;
};

TEST_P(Polylines, hand_the_path_of_client_arrays_to_a_renderer_that_takes_it_over) {
    ClientArraysTaker taker;
    EXPECT_FALSE(taker.polyline_vb_prepare(&polyline));
    EXPECT_EQ(taker.taken, nullptr) << "generic attributes go another way";
    polyline.use_generic_vertex_attribs = false;
    EXPECT_FALSE(taker.polyline_vb_prepare(&polyline));
    EXPECT_EQ(taker.taken, &polyline);
}

TEST_P(Polylines, can_have_their_buffer_mapped) {
    Polyline* const object = new Polyline;
    object->initialize(2, LINE_RENDER_MODE_LINES);
    PolylineData& data = *object->get_polyline_data();
    EXPECT_EQ(object->map_vertex_buffer(renderer.get()), nullptr);
    EXPECT_TRUE(renderer->polyline_vb_prepare(&data));
    EXPECT_TRUE(renderer->polyline_vb_finish(&data));
    ASSERT_NE(object->map_vertex_buffer(renderer.get()), nullptr);
    static_cast<Vertex*>(object->get_mapped_vertex_buffer())[1].position =
        vec4(1.0f, 2.0f, 3.0f, 4.0f);
    EXPECT_TRUE(object->unmap_vertex_buffer(renderer.get()));
    Vertex read[2];
    renderer->gl.glBindBuffer(GL_ARRAY_BUFFER, data.vertex_buffer_id);
    renderer->gl.glGetBufferSubData(GL_ARRAY_BUFFER, 0, sizeof(read), read);
    renderer->gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    EXPECT_EQ(read[1].position, vec4(1.0f, 2.0f, 3.0f, 4.0f));
    EXPECT_EQ(object->release(renderer.get(), nullptr), 0);
}

/// On a compatibility context, drawn by client arrays.
class PolylinesOfClientArrays : public GlCompatibilityTest, public PolylineCalls {
protected:
    void SetUp() override {
        start();
        polyline.use_generic_vertex_attribs = false;
    }

    void TearDown() override {
        renderer->polyline_vb_kill(&polyline);
        GlCompatibilityTest::TearDown();
    }
};

const GlCalls positions = {"glVertexPointer(4, GL_FLOAT, 96, 0)",
                           "glEnableClientState(GL_VERTEX_ARRAY)"};
const GlCalls colors = {"glColorPointer(4, GL_FLOAT, 96, 16)",
                        "glEnableClientState(GL_COLOR_ARRAY)"};
const GlCalls normals = {"glNormalPointer(GL_FLOAT, 96, 32)",
                         "glEnableClientState(GL_NORMAL_ARRAY)"};
const GlCalls uvs = {
    "glClientActiveTexture(GL_TEXTURE0)",          "glTexCoordPointer(4, GL_FLOAT, 96, 48)",
    "glEnableClientState(GL_TEXTURE_COORD_ARRAY)", "glClientActiveTexture(GL_TEXTURE1)",
    "glTexCoordPointer(4, GL_FLOAT, 96, 64)",      "glEnableClientState(GL_TEXTURE_COORD_ARRAY)"};

GlCalls finished(bool tangents) {
    return joined(
        {bind_array_buffer(0),
         {"glDisableClientState(GL_VERTEX_ARRAY)", "glDisableClientState(GL_COLOR_ARRAY)",
          "glDisableClientState(GL_NORMAL_ARRAY)"},
         tangents ? GlCalls{"glDisableVertexAttribArray(5)"} : GlCalls{},
         {"glClientActiveTexture(GL_TEXTURE1)", "glDisableClientState(GL_TEXTURE_COORD_ARRAY)",
          "glClientActiveTexture(GL_TEXTURE0)", "glDisableClientState(GL_TEXTURE_COORD_ARRAY)"}});
}

TEST_F(PolylinesOfClientArrays, draw_what_is_present) {
    make();
    const GlCalls calls = prepare();
    const unsigned int buffer = polyline.vertex_buffer_id;
    EXPECT_EQ(calls,
              joined({generate_buffer(buffer), bind_array_buffer(buffer), allocate(288),
                      upload(0, 288), positions, colors, normals, generic_pointer(5, 4, 96, 80)}));
    EXPECT_EQ(polyline.renderer_id, renderer->getid());
    EXPECT_EQ(draw(0, -1), GlCalls({"glDrawArrays(GL_LINE_STRIP, 0, 3)"}));
    EXPECT_EQ(finish(), finished(true));
    EXPECT_EQ(prepare(), joined({bind_array_buffer(buffer), positions, colors, normals,
                                 generic_pointer(5, 4, 96, 80)}));
    finish();
    for (bool PolylineData::*const flag : update_flags) {
        polyline.*flag = true;
        EXPECT_EQ(prepare()[1], upload(0, 288)[0]);
        EXPECT_FALSE(polyline.*flag);
    }
    finish();
}

TEST_F(PolylinesOfClientArrays, draw_all_six_attributes_in_order) {
    make();
    polyline.has_uv0 = polyline.has_uv1 = true;
    polyline.tangent.attrib_location = 7;
    draw_quietly();
    EXPECT_EQ(prepare(), joined({bind_array_buffer(polyline.vertex_buffer_id), positions, colors,
                                 normals, uvs, generic_pointer(7, 4, 96, 80)}));
    finish();
}

TEST_F(PolylinesOfClientArrays, leave_out_what_is_switched_off) {
    make();
    polyline.has_color = polyline.has_normal = false;
    polyline.tangent.attrib_location = -1;
    draw_quietly();
    EXPECT_EQ(prepare(), joined({bind_array_buffer(polyline.vertex_buffer_id), positions}));
    EXPECT_EQ(finish(), finished(false));
}

TEST_F(PolylinesOfClientArrays, with_a_vertex_array_from_before_leave_their_arrays_enabled) {
    make();
    polyline.use_generic_vertex_attribs = true;
    draw_quietly();
    polyline.use_generic_vertex_attribs = false;
    EXPECT_EQ(prepare()[0], bind_array_buffer(polyline.vertex_buffer_id)[0])
        << "no array is bound that had to be taken off";
    EXPECT_EQ(finish(), GlCalls({"glBindVertexArray(0)"}));
    {
        const GlRecorderPause pause(*recorder);
        EXPECT_TRUE(glIsEnabled(GL_COLOR_ARRAY));
    }
    EXPECT_TRUE(renderer->polyline_vb_kill(&polyline));
    EXPECT_FALSE(glIsEnabled(GL_VERTEX_ARRAY));
    EXPECT_FALSE(glIsEnabled(GL_COLOR_ARRAY));
    EXPECT_FALSE(glIsEnabled(GL_NORMAL_ARRAY));
}

TEST_F(PolylinesOfClientArrays, switch_off_arrays_left_by_others_that_are_too_short_for_them) {
    polyline.has_color = polyline.has_normal = false;
    expect_short_arrays_switched_off([this](unsigned long count) {
        make(count);
        prepare();
    });
    finish();
}

TEST_F(PolylinesOfClientArrays, are_prepared_by_the_form_with_a_name_of_its_own) {
    make();
    polyline.use_generic_vertex_attribs = true;
    EXPECT_TRUE(renderer->polyline_vb_prepare_gl2(&polyline));
    EXPECT_EQ(polyline.vertex_array_id, 0u);
    EXPECT_EQ(recorder->count("glVertexPointer"), 1);
    finish();
}

} // namespace

} // namespace orvex_test
