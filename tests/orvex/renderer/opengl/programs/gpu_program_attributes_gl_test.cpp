#include "gpu_program_fixture.h"

#include "orvex/gpu/gpu_program.h"
#include "orvex/renderer/records/mesh_data.h"
#include "orvex/renderer/records/polyline_data.h"

namespace orvex_test {

using namespace orvex;

namespace {

/// A vertex stage with vec4 attributes of these names, all of them in use.
std::string vertex_source(const std::vector<std::string>& attributes) {
    std::string declarations = "#version 150\n";
    std::string sum = "vec4(0.0)";
    for (const std::string& name : attributes) {
        declarations += "in vec4 " + name + ";\n";
        sum += " + " + name;
    }
    return declarations + "void main() { gl_Position = " + sum + "; }\n";
}

const char* const STANDARD_NAMES[] = {"orvex_Position",
                                      "orvex_Color",
                                      "orvex_Normal",
                                      "orvex_TexCoord0",
                                      "orvex_TexCoord1",
                                      "orvex_Tangent",
                                      "orvex_Instance_Position",
                                      "orvex_Instance_Rotation",
                                      "orvex_Instance_Scale",
                                      "orvex_Instance_Color"};

class GpuProgramActivate : public GpuProgramGlTest {
protected:
    void load_with_attributes(const std::vector<std::string>& attributes) {
        load_program(vertex_source(attributes));
    }

    std::string link() const { return "glLinkProgram(" + program_id() + ")"; }
    std::string link_status() const {
        return "glGetProgramiv(" + program_id() + ", GL_LINK_STATUS, ptr)";
    }
    std::string lookup(const std::string& name) const {
        return "glGetAttribLocation(" + program_id() + ", \"" + name + "\")";
    }
    std::string bind(int index) const {
        return "glBindAttribLocation(" + program_id() + ", " + std::to_string(index) + ", \"" +
               STANDARD_NAMES[index] + "\")";
    }
    std::string use() const { return "glUseProgram(" + program_id() + ")"; }
};
ORVEX_BOTH_PROFILES(GpuProgramActivate);

TEST_P(GpuProgramActivate, links_binds_links_again_and_uses) {
    load_with_attributes({"orvex_Normal", "orvex_Instance_Scale"});
    EXPECT_TRUE(renderer->gpu_program_activate(&data));
    GlCalls expected{link(), link_status()};
    for (int i = 0; i < 10; ++i) {
        expected.push_back(lookup(STANDARD_NAMES[i]));
        if (i == 2 || i == 8)
            expected.push_back(bind(i));
    }
    expected.insert(expected.end(), {link(), link_status(), use()});
    EXPECT_EQ(recorder->take(), expected);
    EXPECT_TRUE(data.linked);
    EXPECT_FALSE(data.core_attribs_pending);
    EXPECT_FALSE(data.instancing_attribs_pending);
    EXPECT_FALSE(data.auto_generic_pending);
    EXPECT_TRUE(data.use_generic_vertex_attribs);
    EXPECT_EQ(renderer->gpu_program_get_active_program(), &data);
    EXPECT_EQ(renderer->ctx.active_program_id, data.gl_program);
    EXPECT_EQ(renderer->gpu_program_get_vertex_attrib_location(&data, "orvex_Normal"), 2);
    EXPECT_EQ(renderer->gpu_program_get_vertex_attrib_location(&data, "orvex_Instance_Scale"), 8);
}

TEST_P(GpuProgramActivate, of_a_ready_program_is_one_call) {
    load_with_attributes({"orvex_Position"});
    EXPECT_TRUE(renderer->gpu_program_activate(&data));
    recorder->clear();
    EXPECT_TRUE(renderer->gpu_program_activate(&data));
    EXPECT_EQ(recorder->take(), GlCalls({use()}));
}

TEST_P(GpuProgramActivate, moves_every_standard_attribute_to_its_place) {
    load_with_attributes({STANDARD_NAMES, STANDARD_NAMES + 10});
    EXPECT_TRUE(renderer->gpu_program_activate(&data));
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(renderer->gpu_program_get_vertex_attrib_location(&data, STANDARD_NAMES[i]), i);
}

TEST_P(GpuProgramActivate, with_only_a_normal_moves_nothing_else) {
    load_with_attributes({"orvex_Normal"});
    EXPECT_TRUE(renderer->gpu_program_activate(&data));
    EXPECT_EQ(recorder->count("glBindAttribLocation"), 1);
    EXPECT_EQ(renderer->gpu_program_get_vertex_attrib_location(&data, "orvex_Normal"), 2);
    EXPECT_TRUE(data.use_generic_vertex_attribs);
}

TEST_P(GpuProgramActivate, without_standard_names_links_once_and_stays_on_client_arrays) {
    load_with_attributes({"height"});
    EXPECT_TRUE(renderer->gpu_program_activate(&data));
    EXPECT_EQ(recorder->count("glLinkProgram"), 1);
    EXPECT_EQ(recorder->count("glBindAttribLocation"), 0);
    EXPECT_FALSE(data.use_generic_vertex_attribs);
    EXPECT_TRUE(data.auto_generic_pending);
}

TEST_P(GpuProgramActivate, overturns_a_path_forced_before_but_not_after) {
    load_with_attributes({"orvex_Position"});
    data.set_use_generic_vertex_attribs_state(false);
    EXPECT_TRUE(renderer->gpu_program_activate(&data));
    EXPECT_TRUE(data.use_generic_vertex_attribs);
    data.set_use_generic_vertex_attribs_state(false);
    data.core_attribs_pending = true;
    EXPECT_TRUE(renderer->gpu_program_activate(&data));
    EXPECT_FALSE(data.use_generic_vertex_attribs);
}

TEST_P(GpuProgramActivate, links_again_after_a_new_attribute_name_but_does_not_bind_it) {
    load_with_attributes({"orvex_Position", "height"});
    EXPECT_TRUE(renderer->gpu_program_activate(&data));
    recorder->clear();
    EXPECT_TRUE(data.set_vertex_attrib_name(12, "height"));
    EXPECT_TRUE(renderer->gpu_program_activate(&data));
    EXPECT_EQ(recorder->take(), GlCalls({link(), link_status(), use()}));
}

TEST_P(GpuProgramActivate, binds_replaced_names) {
    load_with_attributes({"place", "misc"});
    data.set_vertex_attrib_name(4, "place");
    data.set_vertex_attrib_name(10, "misc");
    EXPECT_TRUE(renderer->gpu_program_activate(&data));
    EXPECT_EQ(renderer->gpu_program_get_vertex_attrib_location(&data, "place"), 4);
    EXPECT_EQ(renderer->gpu_program_get_vertex_attrib_location(&data, "misc"), 10);
    EXPECT_TRUE(data.use_generic_vertex_attribs);
}

TEST_P(GpuProgramActivate, passes_over_names_that_are_null) {
    load_with_attributes({"orvex_Position"});
    for (unsigned int i = 0; i < 16; ++i)
        data.set_vertex_attrib_name(i, nullptr);
    EXPECT_TRUE(renderer->gpu_program_activate(&data));
    EXPECT_EQ(recorder->take(), GlCalls({link(), link_status(), use()}));
    EXPECT_FALSE(data.use_generic_vertex_attribs);
}

TEST_P(GpuProgramActivate, looks_for_names_of_any_length) {
    load_with_attributes({"orvex_Position"});
    const std::string name(100000, 'n');
    data.set_vertex_attrib_name(1, name.c_str());
    data.set_uniform_1f(name.c_str(), 1.0f);
    EXPECT_TRUE(renderer->gpu_program_activate(&data));
    EXPECT_EQ(renderer->gpu_program_get_vertex_attrib_location(&data, "orvex_Position"), 0);
    renderer->gpu_program_set_uniform_1f(&data, name.c_str(), 1.0f);
    EXPECT_EQ(recorder->count("glUniform1f"), 0);
}

TEST_P(GpuProgramActivate, that_fails_leaves_the_program_before) {
    load_with_attributes({"orvex_Position"});
    EXPECT_TRUE(renderer->gpu_program_activate(&data));
    GpuProgramData broken;
    const char source[] = "#version 150\nvec4 place();\nvoid main() { gl_Position = place(); }\n";
    ASSERT_TRUE(renderer->gpu_program_load_shader_from_memory(&broken, GPU_SHADER_VERTEX, source,
                                                              sizeof source));
    EXPECT_FALSE(renderer->gpu_program_activate(&broken));
    EXPECT_EQ(renderer->gpu_program_get_active_program(), &data);
    GLint used = 0;
    glGetIntegerv(GL_CURRENT_PROGRAM, &used);
    EXPECT_EQ(GLuint(used), data.gl_program);
    EXPECT_NE(broken.get_info_log(), nullptr);
    EXPECT_TRUE(broken.core_attribs_pending);
    renderer->gpu_program_kill(&broken);
}

TEST_P(GpuProgramActivate, of_null_deactivates) {
    load_with_attributes({"orvex_Position"});
    for (const bool directly : {true, false}) {
        EXPECT_TRUE(renderer->gpu_program_activate(&data));
        recorder->clear();
        EXPECT_TRUE(directly ? renderer->gpu_program_deactivate(&data)
                             : renderer->gpu_program_activate(nullptr));
        EXPECT_EQ(recorder->take(), GlCalls({"glUseProgram(0)"}));
        EXPECT_EQ(renderer->gpu_program_get_active_program(), nullptr);
        EXPECT_EQ(renderer->ctx.active_program_id, 0u);
    }
}

TEST_P(GpuProgramActivate, needs_the_entry_points) {
    load_with_attributes({"orvex_Position"});
    hide("glUseProgram");
    EXPECT_FALSE(renderer->gpu_program_activate(&data));
    EXPECT_TRUE(recorder->take().empty());
    EXPECT_TRUE(renderer->gpu_program_deactivate(nullptr));
    EXPECT_EQ(renderer->gpu_program_get_active_program(), nullptr);
}

class GpuProgramActive : public GpuProgramGlTest {
protected:
    void load_into(GpuProgramData& record) {
        const std::string vertex = vertex_source({"orvex_Position"});
        ASSERT_TRUE(renderer->gpu_program_load_shader_from_memory(&record, GPU_SHADER_VERTEX,
                                                                  vertex.c_str(), vertex.size()));
        ASSERT_TRUE(renderer->gpu_program_load_shader_from_memory(
            &record, GPU_SHADER_PIXEL, PIXEL_SOURCE, std::strlen(PIXEL_SOURCE)));
    }
};
ORVEX_BOTH_PROFILES(GpuProgramActive);

TEST_P(GpuProgramActive, is_null_at_first) {
    EXPECT_EQ(renderer->gpu_program_get_active_program(), nullptr);
}

TEST_P(GpuProgramActive, does_not_outlive_its_record) {
    auto record = std::make_unique<GpuProgramData>();
    load_into(*record);
    EXPECT_TRUE(renderer->gpu_program_activate(record.get()));
    const unsigned int program = record->gl_program;
    record.reset();
    EXPECT_EQ(renderer->gpu_program_get_active_program(), nullptr);
    glDeleteProgram(program);
}

TEST_P(GpuProgramActive, survives_the_end_of_one_that_was_active_before) {
    auto record = std::make_unique<GpuProgramData>();
    load_into(*record);
    load_into(data);
    EXPECT_TRUE(renderer->gpu_program_activate(record.get()));
    EXPECT_TRUE(renderer->gpu_program_activate(&data));
    EXPECT_TRUE(renderer->gpu_program_kill(record.get()));
    EXPECT_EQ(renderer->gpu_program_get_active_program(), &data);
    record.reset();
    EXPECT_EQ(renderer->gpu_program_get_active_program(), &data);
}

TEST_P(GpuProgramActive, may_outlive_its_renderer) {
    GpuProgramData record;
    load_into(record);
    EXPECT_TRUE(renderer->gpu_program_activate(&record));
    renderer = std::make_unique<RendererOpenGL>();
    renderer->start();
    EXPECT_EQ(renderer->gpu_program_get_active_program(), nullptr);
    EXPECT_TRUE(renderer->gpu_program_kill(&record));
}

TEST_P(GpuProgramActive, is_forgotten_when_the_state_is_reset) {
    auto record = std::make_unique<GpuProgramData>();
    load_into(*record);
    EXPECT_TRUE(renderer->gpu_program_activate(record.get()));
    EXPECT_TRUE(renderer->reset_render_states());
    EXPECT_EQ(renderer->gpu_program_get_active_program(), nullptr);
    EXPECT_TRUE(renderer->gpu_program_kill(record.get()));
    record.reset();
}

class GpuProgramAttribute : public GpuProgramGlTest {};
ORVEX_BOTH_PROFILES(GpuProgramAttribute);

TEST_P(GpuProgramAttribute, is_looked_up_and_bound_by_name) {
    load_program(vertex_source({"height", "width"}));
    ASSERT_TRUE(renderer->gpu_program_bind_vertex_attrib_location(&data, "height", 7));
    ASSERT_TRUE(renderer->gpu_program_link(&data));
    EXPECT_EQ(renderer->gpu_program_get_vertex_attrib_location(&data, "height"), 7);
    EXPECT_EQ(renderer->gpu_program_get_vertex_attrib_location(&data, "depth"), -1);
}

TEST_P(GpuProgramAttribute, of_null_is_nowhere) {
    EXPECT_EQ(renderer->gpu_program_get_vertex_attrib_location(nullptr, "height"), -1);
    EXPECT_EQ(renderer->gpu_program_get_vertex_attrib_location(&data, nullptr), -1);
    EXPECT_FALSE(renderer->gpu_program_bind_vertex_attrib_location(nullptr, "height", 7));
    EXPECT_FALSE(renderer->gpu_program_bind_vertex_attrib_location(&data, nullptr, 7));
    EXPECT_FALSE(renderer->gpu_program_update_core_vertex_attrib_locations(nullptr));
    EXPECT_FALSE(renderer->gpu_program_update_instancing_vertex_attrib_locations(nullptr));
    EXPECT_EQ(renderer->_bind_core_vertex_attrib_location(nullptr, 0), -1);
    EXPECT_TRUE(recorder->take().empty());
}

TEST_P(GpuProgramAttribute, of_a_free_name_leaves_the_path_alone) {
    load_program(vertex_source({"height"}));
    ASSERT_TRUE(renderer->gpu_program_link(&data));
    EXPECT_GE(renderer->_bind_core_vertex_attrib_location_v2(&data, "height", 9), 0);
    EXPECT_FALSE(data.linked);
    EXPECT_FALSE(data.use_generic_vertex_attribs);
    EXPECT_TRUE(data.auto_generic_pending);
    ASSERT_TRUE(renderer->gpu_program_link(&data));
    EXPECT_EQ(renderer->gpu_program_get_vertex_attrib_location(&data, "height"), 9);
    EXPECT_EQ(renderer->_bind_core_vertex_attrib_location_v2(&data, "depth", 3), -1);
    EXPECT_TRUE(data.linked);
}

TEST_P(GpuProgramAttribute, is_not_pending_twice) {
    load_program(vertex_source({"orvex_Position"}));
    ASSERT_TRUE(renderer->gpu_program_link(&data));
    EXPECT_TRUE(renderer->gpu_program_update_core_vertex_attrib_locations(&data));
    EXPECT_TRUE(renderer->gpu_program_update_instancing_vertex_attrib_locations(&data));
    recorder->clear();
    EXPECT_TRUE(renderer->gpu_program_update_core_vertex_attrib_locations(&data));
    EXPECT_TRUE(renderer->gpu_program_update_instancing_vertex_attrib_locations(&data));
    EXPECT_TRUE(recorder->take().empty());
}

class GpuProgramMesh : public GpuProgramGlTest {
protected:
    MeshData mesh;
};
ORVEX_BOTH_PROFILES(GpuProgramMesh);

TEST_P(GpuProgramMesh, without_instances_or_of_null_has_no_instance_attributes) {
    EXPECT_FALSE(
        renderer->gpu_program_update_instancing_vertex_attrib_locations_mesh(&data, &mesh));
    mesh.num_instances = 2;
    EXPECT_FALSE(
        renderer->gpu_program_update_instancing_vertex_attrib_locations_mesh(nullptr, &mesh));
    EXPECT_FALSE(
        renderer->gpu_program_update_instancing_vertex_attrib_locations_mesh(&data, nullptr));
    EXPECT_TRUE(recorder->take().empty());
}

TEST_P(GpuProgramMesh, on_client_arrays_learns_where_its_instance_attributes_stand) {
    load_program(vertex_source({"orvex_Instance_Rotation", "misc"}));
    data.set_vertex_attrib_name(10, "misc");
    ASSERT_TRUE(renderer->gpu_program_link(&data));
    mesh.num_instances = 2;
    mesh.use_generic_vertex_attribs = false;
    EXPECT_TRUE(renderer->gpu_program_update_instancing_vertex_attrib_locations_mesh(&data, &mesh));
    EXPECT_EQ(mesh.instance_positions.attrib_location, -1);
    EXPECT_EQ(mesh.instance_rotations.attrib_location,
              glGetAttribLocation(data.gl_program, "orvex_Instance_Rotation"));
    EXPECT_EQ(mesh.instance_scales.attrib_location, -1);
    EXPECT_EQ(mesh.instance_colors.attrib_location, -1);
    EXPECT_EQ(mesh.instance_miscs.attrib_location, glGetAttribLocation(data.gl_program, "misc"));
    EXPECT_GE(mesh.instance_miscs.attrib_location, 0);
    EXPECT_TRUE(data.linked);
}

TEST_P(GpuProgramMesh, on_generic_attributes_moves_its_instance_attributes) {
    load_program(vertex_source({"orvex_Instance_Position", "orvex_Instance_Color"}));
    ASSERT_TRUE(renderer->gpu_program_link(&data));
    mesh.num_instances = 2;
    mesh.use_generic_vertex_attribs = true;
    recorder->clear();
    EXPECT_TRUE(renderer->gpu_program_update_instancing_vertex_attrib_locations_mesh(&data, &mesh));
    const std::string begin = "glBindAttribLocation(" + program_id();
    EXPECT_EQ(recorder->take(), GlCalls({begin + ", 6, \"orvex_Instance_Position\")",
                                         begin + ", 7, \"orvex_Instance_Rotation\")",
                                         begin + ", 8, \"orvex_Instance_Scale\")",
                                         begin + ", 9, \"orvex_Instance_Color\")"}))
        << "the name at 10 is none";
    EXPECT_FALSE(data.linked);
    EXPECT_EQ(mesh.instance_positions.attrib_location, 6);
    EXPECT_EQ(mesh.instance_colors.attrib_location, 9);
    ASSERT_TRUE(renderer->gpu_program_link(&data));
    EXPECT_EQ(glGetAttribLocation(data.gl_program, "orvex_Instance_Color"), 9);
}

TEST_P(GpuProgramMesh, learns_where_its_user_attributes_stand_each_time) {
    load_program(vertex_source({"orvex_Attrib0", "orvex_Attrib2"}));
    ASSERT_TRUE(renderer->gpu_program_link(&data));
    ASSERT_TRUE(mesh.alloc_user_vertex_attribs(3));
    ASSERT_EQ(mesh.num_user_attribs, 3u);
    recorder->clear();
    for (int pass = 0; pass < 2; ++pass) {
        EXPECT_TRUE(renderer->gpu_program_update_user_vertex_attrib_locations_mesh(&data, &mesh));
        const std::string begin = "glGetAttribLocation(" + program_id();
        EXPECT_EQ(recorder->take(),
                  GlCalls({begin + ", \"orvex_Attrib0\")", begin + ", \"orvex_Attrib1\")",
                           begin + ", \"orvex_Attrib2\")"}));
        EXPECT_TRUE(mesh.user_attribs_allocated);
    }
    EXPECT_EQ(mesh.user_attribs[0].attrib_location,
              glGetAttribLocation(data.gl_program, "orvex_Attrib0"));
    EXPECT_EQ(mesh.user_attribs[1].attrib_location, -1);
    EXPECT_EQ(mesh.user_attribs[2].attrib_location,
              glGetAttribLocation(data.gl_program, "orvex_Attrib2"));
}

TEST_P(GpuProgramMesh, without_user_attributes_or_of_null_is_refused) {
    EXPECT_FALSE(renderer->gpu_program_update_user_vertex_attrib_locations_mesh(&data, &mesh));
    EXPECT_FALSE(renderer->gpu_program_update_user_vertex_attrib_locations_mesh(nullptr, &mesh));
    EXPECT_FALSE(renderer->gpu_program_update_user_vertex_attrib_locations_mesh(&data, nullptr));
    mesh.num_user_attribs = 3;
    EXPECT_TRUE(renderer->gpu_program_update_user_vertex_attrib_locations_mesh(&data, &mesh))
        << "a count without a list";
    mesh.num_user_attribs = 0;
    EXPECT_TRUE(recorder->take().empty());
}

class GpuProgramPolyline : public GpuProgramGlTest {
protected:
    PolylineData polyline;
};
ORVEX_BOTH_PROFILES(GpuProgramPolyline);

TEST_P(GpuProgramPolyline, learns_where_its_user_attributes_stand_each_time) {
    load_program(vertex_source({"orvex_Attrib0", "orvex_Attrib2"}));
    ASSERT_TRUE(renderer->gpu_program_link(&data));
    polyline.user_attribs = new VertexAttribArray[3];
    polyline.num_user_attribs = 3;
    polyline.user_attribs_allocated = true;
    polyline.user_attribs[1].attrib_location = 5;
    recorder->clear();
    for (int pass = 0; pass < 2; ++pass) {
        EXPECT_TRUE(
            renderer->gpu_program_update_user_vertex_attrib_locations_polyline(&data, &polyline));
        const std::string begin = "glGetAttribLocation(" + program_id();
        EXPECT_EQ(recorder->take(),
                  GlCalls({begin + ", \"orvex_Attrib0\")", begin + ", \"orvex_Attrib1\")",
                           begin + ", \"orvex_Attrib2\")"}));
        EXPECT_TRUE(polyline.user_attribs_allocated);
    }
    const int first = polyline.user_attribs[0].attrib_location;
    const int third = polyline.user_attribs[2].attrib_location;
    EXPECT_EQ(first, glGetAttribLocation(data.gl_program, "orvex_Attrib0"));
    EXPECT_EQ(polyline.user_attribs[1].attrib_location, -1);
    EXPECT_EQ(third, glGetAttribLocation(data.gl_program, "orvex_Attrib2"));
    EXPECT_GE(first, 0);
    EXPECT_GE(third, 0);
    EXPECT_NE(first, third);
}

TEST_P(GpuProgramPolyline, without_user_attributes_or_of_null_is_refused) {
    const auto update = [this](GpuProgramData* program, PolylineData* record) {
        return renderer->gpu_program_update_user_vertex_attrib_locations_polyline(program, record);
    };
    EXPECT_FALSE(update(&data, &polyline));
    polyline.num_user_attribs = 3;
    EXPECT_FALSE(update(nullptr, &polyline));
    EXPECT_FALSE(update(&data, nullptr));
    EXPECT_TRUE(update(&data, &polyline)) << "a count without a list";
    polyline.num_user_attribs = 0;
    EXPECT_TRUE(recorder->take().empty());
}

} // namespace

} // namespace orvex_test
