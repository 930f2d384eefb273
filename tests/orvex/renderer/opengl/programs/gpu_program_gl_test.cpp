#include "gpu_program_fixture.h"

#include <algorithm>
#include <thread>

#include "orvex/gpu/gpu_program.h"
#include "orvex/gpu/gpu_program_mgr.h"
#include "orvex/renderer/records/gpu_program_uniform.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;

namespace {

std::string id(unsigned int number) {
    return std::to_string(number);
}

/// What the driver says about a source, asked without the renderer.
std::string driver_log(GLenum type, const char* source) {
    const GLuint shader = glCreateShader(type);
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    GLint length = 0;
    glGetShaderiv(shader, GL_INFO_LOG_LENGTH, &length);
    std::string text(std::size_t(length), '\0');
    glGetShaderInfoLog(shader, length, nullptr, text.data());
    glDeleteShader(shader);
    return text.c_str();
}

class GpuProgramLoad : public GpuProgramGlTest {};
ORVEX_BOTH_PROFILES(GpuProgramLoad);

TEST_P(GpuProgramLoad, makes_the_program_with_the_first_stage) {
    std::thread([&] { data.update_thread(); }).join();
    EXPECT_TRUE(load(GPU_SHADER_VERTEX, PLAIN_VERTEX_SOURCE));
    const unsigned int shader = data.shader_ids[GPU_SHADER_VERTEX];
    EXPECT_NE(data.gl_program, 0u);
    EXPECT_NE(shader, 0u);
    EXPECT_EQ(recorder->take(),
              GlCalls({"glIsProgram(0)", "glCreateProgram()", "glCreateShader(GL_VERTEX_SHADER)",
                       "glShaderSource(" + id(shader) + ", 1, ptr, 0)",
                       "glCompileShader(" + id(shader) + ")",
                       "glGetShaderiv(" + id(shader) + ", GL_COMPILE_STATUS, ptr)",
                       "glAttachShader(" + program_id() + ", " + id(shader) + ")"}));
    EXPECT_TRUE(data.check_thread()) << "the thread of the first stage";
    EXPECT_EQ(data.renderer_id, renderer->getid());
    EXPECT_FALSE(data.linked);
}

TEST_P(GpuProgramLoad, adds_later_stages_to_the_same_program) {
    load(GPU_SHADER_VERTEX, PLAIN_VERTEX_SOURCE);
    const unsigned int program = data.gl_program;
    recorder->clear();
    EXPECT_TRUE(load(GPU_SHADER_PIXEL, PIXEL_SOURCE));
    EXPECT_EQ(data.gl_program, program);
    EXPECT_EQ(recorder->take_names(),
              GlCalls({"glIsProgram", "glCreateShader", "glShaderSource", "glCompileShader",
                       "glGetShaderiv", "glAttachShader"}));
}

TEST_P(GpuProgramLoad, refuses_null_and_emptiness_without_a_call) {
    EXPECT_FALSE(renderer->gpu_program_load_shader_from_memory(nullptr, GPU_SHADER_VERTEX, "v", 1));
    EXPECT_FALSE(
        renderer->gpu_program_load_shader_from_memory(&data, GPU_SHADER_VERTEX, nullptr, 1));
    EXPECT_FALSE(renderer->gpu_program_load_shader_from_memory(&data, GPU_SHADER_VERTEX, "v", 0));
    for (const int type : {-1, 8, 300})
        EXPECT_FALSE(
            renderer->gpu_program_load_shader_from_memory(&data, GPU_SHADER_TYPE(type), "v", 1));
    EXPECT_TRUE(recorder->take().empty());
    EXPECT_EQ(data.gl_program, 0u);
}

TEST_P(GpuProgramLoad, keeps_the_drivers_words_about_a_source_that_does_not_compile) {
    EXPECT_FALSE(load(GPU_SHADER_VERTEX, BAD_SOURCE));
    EXPECT_EQ(data.shader_ids[GPU_SHADER_VERTEX], 0u);
    EXPECT_EQ(recorder->take_names(),
              GlCalls({"glIsProgram", "glCreateProgram", "glCreateShader", "glShaderSource",
                       "glCompileShader", "glGetShaderiv", "glGetShaderiv", "glGetShaderInfoLog",
                       "glDeleteShader"}));
    ASSERT_NE(data.get_shader_info_log(GPU_SHADER_VERTEX), nullptr);
    EXPECT_EQ(data.get_shader_info_log(GPU_SHADER_VERTEX),
              driver_log(GL_VERTEX_SHADER, BAD_SOURCE));
    EXPECT_NE(data.gl_program, 0u);
}

TEST_P(GpuProgramLoad, reads_logs_of_any_length_one_after_another) {
    const std::string long_name(5000, 'x');
    const std::string long_source = "#version 150\nvoid main() { " + long_name + "(); }\n";
    EXPECT_FALSE(load(GPU_SHADER_VERTEX, long_source.c_str()));
    EXPECT_FALSE(load(GPU_SHADER_PIXEL, BAD_SOURCE));
    EXPECT_EQ(data.get_shader_info_log(GPU_SHADER_VERTEX),
              driver_log(GL_VERTEX_SHADER, long_source.c_str()));
    EXPECT_EQ(data.get_shader_info_log(GPU_SHADER_PIXEL),
              driver_log(GL_FRAGMENT_SHADER, BAD_SOURCE));
}

TEST_P(GpuProgramLoad, takes_the_source_up_to_its_terminator_whatever_the_size) {
    EXPECT_TRUE(renderer->gpu_program_load_shader_from_memory(&data, GPU_SHADER_VERTEX,
                                                              PLAIN_VERTEX_SOURCE, 1));
}

TEST_P(GpuProgramLoad, has_no_effects) {
    for (const GPU_SHADER_TYPE type : {GPU_SHADER_EFFECT, GPU_SHADER_NONE}) {
        EXPECT_FALSE(load(type, "technique {}"));
        EXPECT_EQ(recorder->take_names().back(), "glCreateShader");
        EXPECT_GL_ERROR(GL_INVALID_ENUM);
        EXPECT_EQ(data.shader_ids[type], 0u);
        EXPECT_EQ(data.get_shader_info_log(type), nullptr);
    }
}

TEST_P(GpuProgramLoad, knows_all_six_stages) {
    const char* const sources[] = {
        PLAIN_VERTEX_SOURCE,
        PIXEL_SOURCE,
        "#version 150\nlayout(points) in;\nlayout(points, max_vertices = 1) out;\nvoid main() {}\n",
        "#version 400\nlayout(vertices = 3) out;\nvoid main() {}\n",
        "#version 400\nlayout(triangles) in;\nvoid main() {}\n",
        "#version 430\nlayout(local_size_x = 1) in;\nvoid main() {}\n"};
    const char* const types[] = {"GL_VERTEX_SHADER",          "GL_FRAGMENT_SHADER",
                                 "GL_GEOMETRY_SHADER",        "GL_TESS_CONTROL_SHADER",
                                 "GL_TESS_EVALUATION_SHADER", "GL_COMPUTE_SHADER"};
    for (int stage = 0; stage < 6; ++stage) {
        recorder->clear();
        EXPECT_TRUE(load(GPU_SHADER_TYPE(stage), sources[stage])) << types[stage];
        EXPECT_EQ(recorder->count("glCreateShader"), 1);
        GLint type = 0;
        glGetShaderiv(data.shader_ids[stage], GL_SHADER_TYPE, &type);
        const GlCalls calls = recorder->calls();
        EXPECT_NE(std::find(calls.begin(), calls.end(),
                            "glCreateShader(" + std::string(types[stage]) + ")"),
                  calls.end());
        EXPECT_EQ(renderer->gpu_program_get_shader_compile_status(GPU_SHADER_TYPE(stage),
                                                                  sources[stage], nullptr, 0),
                  true);
    }
}

TEST_P(GpuProgramLoad, a_second_source_of_a_stage_links_along_and_dies_with_the_program) {
    ASSERT_TRUE(load(GPU_SHADER_VERTEX, "#version 150\n"
                                        "vec4 place();\n"
                                        "void main() { gl_Position = place(); }\n"));
    const unsigned int first = data.shader_ids[GPU_SHADER_VERTEX];
    recorder->clear();
    ASSERT_TRUE(load(GPU_SHADER_VERTEX, "#version 150\nvec4 place() { return vec4(1.0); }\n"));
    const GlCalls calls = recorder->take();
    EXPECT_NE(std::find(calls.begin(), calls.end(), "glDeleteShader(" + id(first) + ")"),
              calls.end());
    EXPECT_TRUE(glIsShader(first)) << "attached, it lives on";
    ASSERT_TRUE(load(GPU_SHADER_PIXEL, PIXEL_SOURCE));
    EXPECT_TRUE(renderer->gpu_program_link(&data));
    EXPECT_TRUE(renderer->gpu_program_kill(&data));
    EXPECT_FALSE(glIsShader(first));
}

TEST_P(GpuProgramLoad, leaves_the_link_state_alone) {
    load_program(PLAIN_VERTEX_SOURCE);
    data.linked = true;
    EXPECT_TRUE(load(GPU_SHADER_PIXEL, PIXEL_SOURCE));
    EXPECT_TRUE(data.linked);
    EXPECT_FALSE(load(GPU_SHADER_PIXEL, BAD_SOURCE));
    EXPECT_TRUE(data.linked);
}

TEST_P(GpuProgramLoad, makes_a_lost_program_again) {
    load_program(PLAIN_VERTEX_SOURCE);
    glDeleteProgram(data.gl_program);
    recorder->clear();
    EXPECT_TRUE(load(GPU_SHADER_VERTEX, PLAIN_VERTEX_SOURCE));
    EXPECT_EQ(recorder->count("glCreateProgram"), 1);
    EXPECT_EQ(recorder->count("glDeleteShader"), 0) << "the old name may be another's by now";
    EXPECT_TRUE(glIsProgram(data.gl_program));
    EXPECT_TRUE(load(GPU_SHADER_PIXEL, PIXEL_SOURCE));
    EXPECT_TRUE(renderer->gpu_program_link(&data));
}

TEST_P(GpuProgramLoad, compiles_nothing_where_an_entry_point_is_missing) {
    hide("glGetShaderInfoLog");
    EXPECT_FALSE(load(GPU_SHADER_VERTEX, PLAIN_VERTEX_SOURCE));
    EXPECT_FALSE(renderer->gpu_program_get_shader_compile_status(GPU_SHADER_VERTEX,
                                                                 PLAIN_VERTEX_SOURCE, nullptr, 0));
    EXPECT_FALSE(renderer->gpu_program_update_shader(&data, GPU_SHADER_VERTEX, "v", 1));
    EXPECT_TRUE(recorder->take().empty());
}

class GpuProgramTrial : public GpuProgramGlTest {};
ORVEX_BOTH_PROFILES(GpuProgramTrial);

TEST_P(GpuProgramTrial, tells_whether_a_source_compiles) {
    EXPECT_TRUE(renderer->gpu_program_get_shader_compile_status(GPU_SHADER_VERTEX,
                                                                PLAIN_VERTEX_SOURCE, nullptr, 0));
    EXPECT_EQ(recorder->take_names(),
              GlCalls({"glCreateShader", "glShaderSource", "glCompileShader", "glGetShaderiv",
                       "glDeleteShader"}));
    EXPECT_FALSE(
        renderer->gpu_program_get_shader_compile_status(GPU_SHADER_VERTEX, BAD_SOURCE, nullptr, 0));
    EXPECT_EQ(recorder->take_names().back(), "glDeleteShader");
}

TEST_P(GpuProgramTrial, copies_the_log_cut_and_terminated) {
    const std::string log = driver_log(GL_VERTEX_SHADER, BAD_SOURCE);
    char message[1024];
    std::memset(message, '#', sizeof message);
    EXPECT_FALSE(renderer->gpu_program_get_shader_compile_status(GPU_SHADER_VERTEX, BAD_SOURCE,
                                                                 message, sizeof message));
    EXPECT_EQ(message, log);
    std::memset(message, '#', sizeof message);
    EXPECT_FALSE(
        renderer->gpu_program_get_shader_compile_status(GPU_SHADER_VERTEX, BAD_SOURCE, message, 8));
    EXPECT_EQ(message, log.substr(0, 7));
    EXPECT_EQ(message[8], '#');
    EXPECT_FALSE(
        renderer->gpu_program_get_shader_compile_status(GPU_SHADER_VERTEX, BAD_SOURCE, message, 1));
    EXPECT_STREQ(message, "");
    message[0] = '#';
    EXPECT_FALSE(
        renderer->gpu_program_get_shader_compile_status(GPU_SHADER_VERTEX, BAD_SOURCE, message, 0));
    EXPECT_EQ(message[0], '#');
}

TEST_P(GpuProgramTrial, leaves_the_message_alone_on_success) {
    char message[8] = "before";
    EXPECT_TRUE(renderer->gpu_program_get_shader_compile_status(
        GPU_SHADER_VERTEX, PLAIN_VERTEX_SOURCE, message, sizeof message));
    EXPECT_STREQ(message, "before");
}

TEST_P(GpuProgramTrial, refuses_null_and_types_without_a_stage) {
    char message[8] = "before";
    EXPECT_FALSE(renderer->gpu_program_get_shader_compile_status(GPU_SHADER_VERTEX, nullptr,
                                                                 message, sizeof message));
    EXPECT_STREQ(message, "before");
    for (const int type : {6, 7, 8, -1})
        EXPECT_FALSE(renderer->gpu_program_get_shader_compile_status(
            GPU_SHADER_TYPE(type), PLAIN_VERTEX_SOURCE, message, sizeof message));
    EXPECT_STREQ(message, "");
    EXPECT_TRUE(recorder->take().empty());
}

class GpuProgramUpdate : public GpuProgramGlTest {};
ORVEX_BOTH_PROFILES(GpuProgramUpdate);

TEST_P(GpuProgramUpdate, with_a_bad_source_leaves_the_program_as_it_was) {
    load_program(PLAIN_VERTEX_SOURCE);
    ASSERT_TRUE(renderer->gpu_program_activate(&data));
    const unsigned int program = data.gl_program;
    const unsigned int shader = data.shader_ids[GPU_SHADER_PIXEL];
    recorder->clear();
    EXPECT_FALSE(renderer->gpu_program_update_shader(&data, GPU_SHADER_PIXEL, BAD_SOURCE, 5));
    EXPECT_EQ(recorder->take_names(),
              GlCalls({"glCreateShader", "glShaderSource", "glCompileShader", "glGetShaderiv",
                       "glGetShaderiv", "glGetShaderInfoLog", "glDeleteShader"}));
    EXPECT_EQ(data.gl_program, program);
    EXPECT_EQ(data.shader_ids[GPU_SHADER_PIXEL], shader);
    EXPECT_TRUE(data.linked);
    EXPECT_EQ(data.get_shader_info_log(GPU_SHADER_PIXEL),
              driver_log(GL_FRAGMENT_SHADER, BAD_SOURCE));
}

TEST_P(GpuProgramUpdate, exchanges_the_stage_and_remakes_the_program) {
    load_program(PLAIN_VERTEX_SOURCE);
    ASSERT_TRUE(renderer->gpu_program_activate(&data));
    const unsigned int program = data.gl_program;
    const unsigned int vertex = data.shader_ids[GPU_SHADER_VERTEX];
    const unsigned int pixel = data.shader_ids[GPU_SHADER_PIXEL];
    recorder->clear();
    EXPECT_TRUE(renderer->gpu_program_update_shader(&data, GPU_SHADER_PIXEL, PIXEL_SOURCE, 5));
    const unsigned int changed = data.shader_ids[GPU_SHADER_PIXEL];
    EXPECT_NE(changed, 0u);
    EXPECT_EQ(
        recorder->take(),
        GlCalls({"glCreateShader(GL_FRAGMENT_SHADER)",
                 "glShaderSource(" + id(changed) + ", 1, ptr, 0)",
                 "glCompileShader(" + id(changed) + ")",
                 "glGetShaderiv(" + id(changed) + ", GL_COMPILE_STATUS, ptr)",
                 "glDetachShader(" + id(program) + ", " + id(pixel) + ")",
                 "glDeleteShader(" + id(pixel) + ")", "glDeleteProgram(" + id(program) + ")",
                 "glCreateProgram()", "glAttachShader(" + program_id() + ", " + id(vertex) + ")",
                 "glAttachShader(" + program_id() + ", " + id(changed) + ")"}));
    EXPECT_FALSE(data.linked);
    EXPECT_TRUE(renderer->gpu_program_activate(&data));
    EXPECT_TRUE(data.linked);
}

TEST_P(GpuProgramUpdate, refuses_null_emptiness_and_types_without_a_stage) {
    load_program(PLAIN_VERTEX_SOURCE);
    EXPECT_FALSE(renderer->gpu_program_update_shader(nullptr, GPU_SHADER_PIXEL, PIXEL_SOURCE, 5));
    EXPECT_FALSE(renderer->gpu_program_update_shader(&data, GPU_SHADER_PIXEL, nullptr, 5));
    EXPECT_FALSE(renderer->gpu_program_update_shader(&data, GPU_SHADER_PIXEL, PIXEL_SOURCE, 0));
    for (const int type : {6, 7, 8, -1})
        EXPECT_FALSE(
            renderer->gpu_program_update_shader(&data, GPU_SHADER_TYPE(type), PIXEL_SOURCE, 5));
    EXPECT_TRUE(recorder->take().empty());
}

TEST_P(GpuProgramUpdate, of_a_program_that_is_not_made_yet_fails_but_keeps_the_stage) {
    EXPECT_FALSE(renderer->gpu_program_update_shader(&data, GPU_SHADER_PIXEL, PIXEL_SOURCE, 5));
    EXPECT_NE(data.shader_ids[GPU_SHADER_PIXEL], 0u);
}

TEST_P(GpuProgramUpdate, of_a_program_that_is_not_made_yet_leaves_no_stage_behind) {
    for (const bool by_load : {true, false}) {
        EXPECT_FALSE(renderer->gpu_program_update_shader(&data, GPU_SHADER_PIXEL, PIXEL_SOURCE, 5));
        const unsigned int stage = data.shader_ids[GPU_SHADER_PIXEL];
        ASSERT_TRUE(glIsShader(stage));
        if (by_load)
            ASSERT_TRUE(load(GPU_SHADER_VERTEX, PLAIN_VERTEX_SOURCE));
        else
            EXPECT_FALSE(renderer->gpu_program_kill(&data));
        EXPECT_TRUE(data.shader_ids[GPU_SHADER_VERTEX] == stage || !glIsShader(stage));
        EXPECT_EQ(data.shader_ids[GPU_SHADER_PIXEL], 0u);
        renderer->gpu_program_kill(&data);
    }
}

class GpuProgramLoss : public GpuProgramGlTest {};
ORVEX_BOTH_PROFILES(GpuProgramLoss);

TEST_P(GpuProgramLoss, takes_all_stages_along) {
    load_program(PLAIN_VERTEX_SOURCE);
    // A host's context went, and others got the names.
    for (const GPU_SHADER_TYPE type : {GPU_SHADER_VERTEX, GPU_SHADER_PIXEL})
        glDeleteShader(data.shader_ids[type]);
    glDeleteProgram(data.gl_program);
    const unsigned int others[] = {glCreateShader(GL_VERTEX_SHADER),
                                   glCreateShader(GL_FRAGMENT_SHADER)};
    ASSERT_TRUE(load(GPU_SHADER_VERTEX, PLAIN_VERTEX_SOURCE));
    EXPECT_EQ(data.shader_ids[GPU_SHADER_PIXEL], 0u);
    EXPECT_TRUE(renderer->gpu_program_kill(&data));
    for (const unsigned int other : others) {
        EXPECT_TRUE(glIsShader(other));
        glDeleteShader(other);
    }
}

TEST_P(GpuProgramLoss, of_the_driver_makes_no_valid_program) {
    renderer->gl.glCreateProgram = []() -> GLuint { return 0; };
    EXPECT_FALSE(load(GPU_SHADER_VERTEX, PLAIN_VERTEX_SOURCE));
    EXPECT_EQ(recorder->count("glAttachShader"), 0);
    const std::string pixel = PIXEL_SOURCE;
    GpuProgram* const program = GpuProgramMgr::get()->create_gpu_program_from_shaders(
        renderer.get(), PLAIN_VERTEX_SOURCE, pixel.c_str(), nullptr, nullptr, nullptr, nullptr,
        nullptr);
    ASSERT_TRUE(program);
    EXPECT_FALSE(program->is_valid());
    GpuProgramMgr::get()->stop(nullptr);
    forget_gl_errors();
}

TEST_P(GpuProgramLoss, of_its_link_is_told_once) {
    load_program("#version 150\nvec4 place();\nvoid main() { gl_Position = place(); }\n");
    LogCapture log;
    const auto lines = [&log] {
        return std::count_if(log.messages().begin(), log.messages().end(), [](const auto& line) {
            return line.find("GPU program linking failed: ") != std::string::npos;
        });
    };
    for (int frame = 0; frame < 3; ++frame)
        EXPECT_FALSE(renderer->gpu_program_activate(&data));
    ASSERT_EQ(lines(), 1);
    EXPECT_NE(log.messages().back().find(data.get_info_log()), std::string::npos);
}

class GpuProgramRecreate : public GpuProgramGlTest {};
ORVEX_BOTH_PROFILES(GpuProgramRecreate);

TEST_P(GpuProgramRecreate, keeps_the_stages_and_the_pending_flags) {
    load_program(PLAIN_VERTEX_SOURCE);
    ASSERT_TRUE(renderer->gpu_program_activate(&data));
    data.renderer_id = 0;
    EXPECT_TRUE(renderer->gpu_program_recreate_program(&data));
    EXPECT_FALSE(data.linked);
    EXPECT_FALSE(data.core_attribs_pending);
    EXPECT_FALSE(data.instancing_attribs_pending);
    EXPECT_EQ(data.renderer_id, renderer->getid());
    GLint attached = 0;
    glGetProgramiv(data.gl_program, GL_ATTACHED_SHADERS, &attached);
    EXPECT_EQ(attached, 2);
}

TEST_P(GpuProgramRecreate, refuses_null_and_a_program_that_is_not_made_yet) {
    EXPECT_FALSE(renderer->gpu_program_recreate_program(nullptr));
    EXPECT_FALSE(renderer->gpu_program_recreate_program(&data));
    EXPECT_TRUE(recorder->take().empty());
}

class GpuProgramKill : public GpuProgramGlTest {};
ORVEX_BOTH_PROFILES(GpuProgramKill);

TEST_P(GpuProgramKill, deletes_shaders_and_program) {
    load_program(PLAIN_VERTEX_SOURCE);
    ASSERT_TRUE(renderer->gpu_program_link(&data));
    const std::string program = program_id();
    const std::string vertex = id(data.shader_ids[GPU_SHADER_VERTEX]);
    const std::string pixel = id(data.shader_ids[GPU_SHADER_PIXEL]);
    recorder->clear();
    EXPECT_TRUE(renderer->gpu_program_kill(&data));
    EXPECT_EQ(
        recorder->take(),
        GlCalls({"glDetachShader(" + program + ", " + vertex + ")",
                 "glDeleteShader(" + vertex + ")", "glDetachShader(" + program + ", " + pixel + ")",
                 "glDeleteShader(" + pixel + ")", "glDeleteProgram(" + program + ")"}));
    EXPECT_EQ(data.gl_program, 0u);
    EXPECT_EQ(data.shader_ids[GPU_SHADER_VERTEX], 0u);
    EXPECT_FALSE(data.linked);
    EXPECT_FALSE(renderer->gpu_program_kill(&data)) << "there is nothing left";
    EXPECT_FALSE(renderer->gpu_program_kill(nullptr));
    EXPECT_TRUE(recorder->take().empty());
}

TEST_P(GpuProgramKill, deactivates_the_active_program_first) {
    load_program(PLAIN_VERTEX_SOURCE);
    ASSERT_TRUE(renderer->gpu_program_activate(&data));
    recorder->clear();
    EXPECT_TRUE(renderer->gpu_program_kill(&data));
    EXPECT_EQ(recorder->take().front(), "glUseProgram(0)");
    EXPECT_EQ(renderer->gpu_program_get_active_program(), nullptr);
    EXPECT_EQ(renderer->ctx.active_program_id, 0u);
}

TEST_P(GpuProgramKill, after_stop_keeps_the_ids_for_a_later_start) {
    load_program(PLAIN_VERTEX_SOURCE);
    const unsigned int program = data.gl_program;
    renderer->stop();
    EXPECT_FALSE(renderer->gpu_program_kill(&data));
    EXPECT_EQ(data.gl_program, program);
    EXPECT_NE(data.shader_ids[GPU_SHADER_VERTEX], 0u);
    renderer->start();
    EXPECT_TRUE(renderer->gpu_program_kill(&data));
    EXPECT_FALSE(glIsProgram(program));
}

class GpuProgramLink : public GpuProgramGlTest {};
ORVEX_BOTH_PROFILES(GpuProgramLink);

TEST_P(GpuProgramLink, happens_once) {
    load_program(PLAIN_VERTEX_SOURCE);
    EXPECT_TRUE(renderer->gpu_program_link(&data));
    EXPECT_TRUE(data.linked);
    EXPECT_EQ(recorder->take(),
              GlCalls({"glLinkProgram(" + program_id() + ")",
                       "glGetProgramiv(" + program_id() + ", GL_LINK_STATUS, ptr)"}));
    EXPECT_TRUE(renderer->gpu_program_link(&data));
    EXPECT_TRUE(recorder->take().empty());
    EXPECT_FALSE(renderer->gpu_program_link(nullptr));
}

TEST_P(GpuProgramLink, keeps_the_drivers_words_about_a_failure) {
    load_program("#version 150\nvec4 place();\nvoid main() { gl_Position = place(); }\n");
    EXPECT_FALSE(renderer->gpu_program_link(&data));
    EXPECT_FALSE(data.linked);
    EXPECT_EQ(recorder->take_names(), GlCalls({"glLinkProgram", "glGetProgramiv", "glGetProgramiv",
                                               "glGetProgramInfoLog"}));
    char log[1024] = {};
    glGetProgramInfoLog(data.gl_program, sizeof log, nullptr, log);
    EXPECT_STRNE(log, "");
    EXPECT_STREQ(data.get_info_log(), log);
}

TEST_P(GpuProgramLink, lets_every_uniform_be_looked_up_and_sent_again) {
    load_program("#version 150\nuniform float size;\nvoid main() { gl_Position = vec4(size); }\n");
    data.set_uniform_1f("size", 3.0f);
    ASSERT_TRUE(renderer->gpu_program_activate(&data));
    GLfloat value = 0.0f;
    glGetUniformfv(data.gl_program, glGetUniformLocation(data.gl_program, "size"), &value);
    EXPECT_EQ(value, 3.0f);
    data.set_vertex_attrib_name(15, "height");
    ASSERT_TRUE(renderer->gpu_program_activate(&data));
    value = 0.0f;
    glGetUniformfv(data.gl_program, glGetUniformLocation(data.gl_program, "size"), &value);
    EXPECT_EQ(value, 3.0f) << "a link set it to zero";
}

TEST_P(GpuProgramLink, shows_in_the_validation) {
    load_program(PLAIN_VERTEX_SOURCE);
    EXPECT_FALSE(renderer->gpu_program_get_validate_status(nullptr));
    EXPECT_FALSE(renderer->gpu_program_get_validate_status(&data)) << "not linked";
    ASSERT_TRUE(renderer->gpu_program_link(&data));
    recorder->clear();
    EXPECT_TRUE(renderer->gpu_program_get_validate_status(&data));
    EXPECT_EQ(recorder->take(),
              GlCalls({"glValidateProgram(" + program_id() + ")",
                       "glGetProgramiv(" + program_id() + ", GL_VALIDATE_STATUS, ptr)"}));
}

class GpuProgramCompute : public GpuProgramGlTest {
protected:
    void load_compute(const char* body) {
        const std::string source =
            "#version 430\nlayout(local_size_x = 1) in;\n" + std::string(body);
        ASSERT_TRUE(load(GPU_SHADER_COMPUTE, source.c_str()));
        recorder->clear();
    }
};
ORVEX_BOTH_PROFILES(GpuProgramCompute);

TEST_P(GpuProgramCompute, sends_uniforms_and_dispatches) {
    load_compute("uniform int factor;\n"
                 "layout(std430, binding = 1) buffer Numbers { int numbers[]; };\n"
                 "void main() { numbers[gl_GlobalInvocationID.x] =\n"
                 "              factor * int(gl_GlobalInvocationID.x); }\n");
    const unsigned int buffer =
        renderer->shader_storage_buffer_create(16, BUFFER_USAGE_DYNAMIC_READ, nullptr);
    EXPECT_TRUE(renderer->shader_storage_buffer_bind_base(buffer, 1));
    ASSERT_TRUE(renderer->gpu_program_activate(&data));
    data.set_uniform_1i("factor", 5);
    recorder->clear();
    EXPECT_TRUE(renderer->gpu_program_run_compute(&data, 4, 1, 1));
    EXPECT_EQ(recorder->take_names(),
              GlCalls({"glGetUniformLocation", "glUniform1i", "glDispatchCompute"}));
    renderer->memory_barrier(MEMORY_BARRIER_BUFFER_UPDATE);
    const auto* const numbers =
        static_cast<const int*>(renderer->shader_storage_buffer_map(buffer));
    ASSERT_NE(numbers, nullptr);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(numbers[i], 5 * i);
    EXPECT_TRUE(renderer->shader_storage_buffer_unmap(buffer));
    EXPECT_TRUE(renderer->shader_storage_buffer_kill(buffer));
}

TEST_P(GpuProgramCompute, dispatches_whatever_is_active) {
    load_compute("void main() {}\n");
    EXPECT_TRUE(renderer->gpu_program_run_compute(&data, 1, 2, 3));
    EXPECT_EQ(recorder->take(), GlCalls({"glDispatchCompute(1, 2, 3)"}));
    EXPECT_GL_ERROR(GL_INVALID_OPERATION) << "no program is active";
}

TEST_P(GpuProgramCompute, refuses_null) {
    EXPECT_FALSE(renderer->gpu_program_run_compute(nullptr, 1, 1, 1));
    EXPECT_TRUE(recorder->take().empty());
}

TEST_P(GpuProgramCompute, does_nothing_where_there_is_no_compute) {
    hide("glDispatchCompute");
    data.set_uniform_1i("factor", 5);
    EXPECT_FALSE(renderer->gpu_program_run_compute(&data, 1, 1, 1));
    EXPECT_TRUE(recorder->take().empty());
    EXPECT_TRUE(data.find_uniform("factor")->dirty) << "nothing was half done";
}

class GpuProgramFrontEnd : public GpuProgramGlTest {};
ORVEX_BOTH_PROFILES(GpuProgramFrontEnd);

TEST_P(GpuProgramFrontEnd, runs_a_text_from_load_to_death) {
    const std::string text =
        "[Vertex_Shader]\n" + std::string(PLAIN_VERTEX_SOURCE) + "[Pixel_Shader]\n" + PIXEL_SOURCE;
    GpuProgram* const program = GpuProgramMgr::get()->create_gpu_program_from_memory(
        renderer.get(), text.c_str(), text.size(), "prog");
    EXPECT_TRUE(program->is_valid());
    EXPECT_EQ(program->get_renderer_id(), renderer->getid());
    EXPECT_STREQ(program->get_shader_error_messages(), "");
    EXPECT_TRUE(program->bind(renderer.get()));
    const GpuProgramData* const record = renderer->gpu_program_get_active_program();
    ASSERT_NE(record, nullptr);
    const unsigned int gl_program = record->gl_program;
    EXPECT_TRUE(glIsProgram(gl_program));
    EXPECT_EQ(GpuProgramMgr::get()->release_resource(renderer.get(), program, nullptr), 0);
    EXPECT_EQ(renderer->gpu_program_get_active_program(), nullptr);
    EXPECT_FALSE(glIsProgram(gl_program));
}

TEST_P(GpuProgramFrontEnd, tells_the_drivers_words_about_each_stage) {
    orvex_test::LogCapture log;
    GpuProgram* const program = GpuProgramMgr::get()->create_gpu_program_from_shaders(
        renderer.get(), BAD_SOURCE, PIXEL_SOURCE, nullptr, nullptr, nullptr, nullptr, "prog");
    const std::string words = driver_log(GL_VERTEX_SHADER, BAD_SOURCE);
    EXPECT_FALSE(program->is_valid());
    EXPECT_EQ(log.messages(),
              (std::vector<std::string>{"<!> GPU program prog - Vertex shader: " + words,
                                        "<*> GPU program prog - Vertex shader error: " + words}));
    EXPECT_EQ(program->get_shader_error_messages(), "\nVertex shader error: " + words);
    EXPECT_EQ(GpuProgramMgr::get()->release_resource(renderer.get(), program, nullptr), 0);
}

TEST_P(GpuProgramFrontEnd, a_stage_that_does_not_link_is_no_reason_to_bind) {
    GpuProgram* const program = GpuProgramMgr::get()->create_gpu_program_from_shaders(
        renderer.get(), "#version 150\nvec4 place();\nvoid main() { gl_Position = place(); }\n",
        PIXEL_SOURCE, nullptr, nullptr, nullptr, nullptr, "prog");
    EXPECT_TRUE(program->is_valid()) << "it compiles";
    EXPECT_FALSE(program->bind(renderer.get()));
    EXPECT_EQ(renderer->gpu_program_get_active_program(), nullptr);
    EXPECT_EQ(GpuProgramMgr::get()->release_resource(renderer.get(), program, nullptr), 0);
}

TEST_P(GpuProgramFrontEnd, an_effect_is_never_valid) {
    orvex_test::LogCapture log;
    GpuProgram* const program = GpuProgramMgr::get()->create_gpu_program_from_effect(
        renderer.get(), "technique {}", "prog");
    EXPECT_FALSE(program->is_valid());
    EXPECT_TRUE(log.messages().empty());
    EXPECT_GL_ERROR(GL_INVALID_ENUM);
    EXPECT_EQ(GpuProgramMgr::get()->release_resource(renderer.get(), program, nullptr), 0);
}

} // namespace

} // namespace orvex_test
