#pragma once

#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "orvex/renderer/records/gpu_program_data.h"
#include "orvex/renderer/records/uniform_buffer_data.h"
#include "tests/support/fake_renderer.h"

namespace orvex_test {

/// A renderer that "compiles": every source but those with the word "bad" in them, whose log is
/// "bad <stage number>". It makes the program as a back end does, and maps uniform buffers to a
/// store of its own.
class FakeCompiler : public FakeRenderer {
public:
    std::vector<std::pair<int, std::string>> sources; ///< stage and text of each compile, in order
    orvex::GpuProgramData* record = nullptr;          ///< of the last compile
    unsigned long last_size = 0;                      ///< of the last compile
    bool leaves_log = true;                           ///< a failure leaves a log
    unsigned long long store[4] = {};                 ///< behind every mapped uniform buffer

    bool gpu_program_load_shader_from_memory(orvex::GpuProgramData* program,
                                             orvex::GPU_SHADER_TYPE type, const char* source,
                                             unsigned long size) override {
        record = program;
        last_size = size;
        program->gl_program = 1;
        program->renderer_id = get_id();
        if (!source || size == 0)
            return false;
        sources.emplace_back(type, source);
        if (!std::strstr(source, "bad"))
            return true;
        const std::string log = "bad " + std::to_string(type);
        if (leaves_log)
            program->set_shader_info_log(type, log.c_str(), log.size());
        return false;
    }

    bool uniform_buffer_initialize(orvex::UniformBufferData* block, unsigned int program) override {
        FakeRenderer::uniform_buffer_initialize(block, program);
        block->buffer = 1;
        block->size = sizeof store;
        return true;
    }

    void* uniform_buffer_map(orvex::UniformBufferData* block) override {
        FakeRenderer::uniform_buffer_map(block);
        return block->mapped = store;
    }

    bool uniform_buffer_unmap(orvex::UniformBufferData* block) override {
        block->mapped = nullptr;
        return FakeRenderer::uniform_buffer_unmap(block);
    }
};

} // namespace orvex_test
