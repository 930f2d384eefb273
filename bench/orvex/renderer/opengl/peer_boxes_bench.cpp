/// @file
/// A frame of 10,000 boxes by OpenSceneGraph, against bare OpenGL calls that draw the same: what
/// draw_bench measures of the engine. Each box has a transform and a state set of its own; all
/// share geometry and program. Culling is off, since the engine has none.
///
/// LP_NO_RAST=1 peer_boxes_bench --benchmark_min_time=5

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <osg/Geometry>
#include <osg/MatrixTransform>
#include <osg/Program>
#include <osgViewer/Viewer>

#include "bench/support/core_context.h"
#include "orvex/gpu/gpu_program.h"
#include "orvex/renderer/opengl/private/renderer_opengl.h"

namespace {

constexpr int width = 800;
constexpr int height = 600;
constexpr int boxes_per_side = 100;

const char* const vertex_text = "varying vec4 color; void main() { color = gl_Color;"
                                " gl_Position = gl_ModelViewProjectionMatrix * gl_Vertex; }";
const char* const pixel_text = "varying vec4 color; void main() { gl_FragColor = color; }";

osg::ref_ptr<osg::Geometry> make_box() {
    osg::ref_ptr<osg::Vec3Array> corners = new osg::Vec3Array;
    osg::ref_ptr<osg::Vec4Array> colors = new osg::Vec4Array;
    for (unsigned int i = 0; i < 8; ++i) {
        const auto corner = [i](unsigned int axis) { return i >> axis & 1 ? 0.4f : -0.4f; };
        corners->push_back({corner(0), corner(1), corner(2)});
        colors->push_back({corner(0) + 0.5f, corner(1) + 0.5f, 0.5f, 1.0f});
    }
    const unsigned short quads[6][4] = {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4},
                                        {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}};
    osg::ref_ptr<osg::DrawElementsUShort> faces = new osg::DrawElementsUShort(GL_TRIANGLES);
    for (const auto& quad : quads)
        for (const int corner : {0, 1, 2, 2, 3, 0})
            faces->push_back(quad[corner]);
    osg::ref_ptr<osg::Geometry> box = new osg::Geometry;
    box->setUseDisplayList(false);
    box->setUseVertexBufferObjects(true);
    box->setVertexArray(corners);
    box->setColorArray(colors, osg::Array::BIND_PER_VERTEX);
    box->addPrimitiveSet(faces);
    return box;
}

std::vector<osg::Matrix> make_places() {
    std::vector<osg::Matrix> places;
    for (int i = 0; i < boxes_per_side * boxes_per_side; ++i)
        places.push_back(osg::Matrix::rotate(0.01 * i, 1, 0, 0) *
                         osg::Matrix::translate(i % boxes_per_side - boxes_per_side / 2,
                                                i / boxes_per_side - boxes_per_side / 2, 0));
    return places;
}

osg::ref_ptr<osg::Group> make_scene(const std::vector<osg::Matrix>& places) {
    osg::ref_ptr<osg::Program> program = new osg::Program;
    program->addShader(new osg::Shader(osg::Shader::VERTEX, vertex_text));
    program->addShader(new osg::Shader(osg::Shader::FRAGMENT, pixel_text));
    const osg::ref_ptr<osg::Geometry> box = make_box();
    osg::ref_ptr<osg::Group> root = new osg::Group;
    for (const osg::Matrix& place : places) {
        osg::ref_ptr<osg::MatrixTransform> transform = new osg::MatrixTransform(place);
        transform->getOrCreateStateSet()->setAttributeAndModes(program);
        transform->addChild(box);
        root->addChild(transform);
    }
    return root;
}

double median(std::vector<double>& times) {
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

template<class Draw>
double processor_time(Draw draw) {
    const std::clock_t start = std::clock();
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    draw();
    glFinish();
    return 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

void boxes(benchmark::State& state) {
    orvex::RendererOpenGL context; // brings a context off screen, and entry points
    orvex::start_on_core_context(context, width, height, true);
    const std::vector<osg::Matrix> places = make_places();
    osgViewer::Viewer viewer;
    viewer.setThreadingModel(osgViewer::ViewerBase::SingleThreaded);
    viewer.setUpViewerAsEmbeddedInWindow(0, 0, width, height);
    viewer.getCamera()->setProjectionMatrixAsPerspective(60.0, 4.0 / 3.0, 1.0, 1000.0);
    viewer.getCamera()->setViewMatrix(osg::Matrix::translate(0, 0, -150));
    viewer.getCamera()->setCullingMode(osg::CullSettings::NO_CULLING);
    viewer.getCamera()->setComputeNearFarMode(osg::CullSettings::DO_NOT_COMPUTE_NEAR_FAR);
    viewer.setSceneData(make_scene(places));
    viewer.realize();
    viewer.frame();
    viewer.frame();

    // The bare loop: bound once, and a matrix a box.
    const std::string text =
        std::string("[Vertex_Shader]\n") + vertex_text + "\n[Pixel_Shader]\n" + pixel_text + "\n";
    auto* const program = new orvex::GpuProgram;
    program->add_ref();
    program->load_from_memory(&context, text.c_str(), text.size());
    GLuint buffers[2] = {};
    context.gl.glGenBuffers(2, buffers);
    const osg::ref_ptr<osg::Geometry> box = make_box();
    const auto& corners = static_cast<const osg::Vec3Array&>(*box->getVertexArray());
    const auto& faces = static_cast<const osg::DrawElementsUShort&>(*box->getPrimitiveSet(0));
    const auto& colors = static_cast<const osg::Vec4Array&>(*box->getColorArray());
    context.gl.glBindBuffer(GL_ARRAY_BUFFER, buffers[0]);
    context.gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffers[1]);
    context.gl.glBufferData(
        GL_ARRAY_BUFFER,
        static_cast<GLsizeiptr>(corners.getTotalDataSize() + colors.getTotalDataSize()), nullptr,
        GL_STATIC_DRAW);
    context.gl.glBufferSubData(GL_ARRAY_BUFFER, 0,
                               static_cast<GLsizeiptr>(corners.getTotalDataSize()),
                               corners.getDataPointer());
    context.gl.glBufferSubData(GL_ARRAY_BUFFER, static_cast<GLintptr>(corners.getTotalDataSize()),
                               static_cast<GLsizeiptr>(colors.getTotalDataSize()),
                               colors.getDataPointer());
    context.gl.glBufferData(GL_ELEMENT_ARRAY_BUFFER,
                            static_cast<GLsizeiptr>(faces.getTotalDataSize()),
                            faces.getDataPointer(), GL_STATIC_DRAW);
    std::vector<osg::Matrixf> seen_places;
    for (const osg::Matrix& place : places)
        seen_places.emplace_back(place * viewer.getCamera()->getViewMatrix());
    const auto bare = [&] {
        program->bind(&context);
        context.gl.glBindBuffer(GL_ARRAY_BUFFER, buffers[0]);
        context.gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffers[1]);
        glEnableClientState(GL_VERTEX_ARRAY);
        glEnableClientState(GL_COLOR_ARRAY);
        glVertexPointer(3, GL_FLOAT, 0, nullptr);
        glColorPointer(
            4, GL_FLOAT, 0,
            reinterpret_cast<const void*>(static_cast<std::uintptr_t>(corners.getTotalDataSize())));
        glMatrixMode(GL_PROJECTION);
        glLoadMatrixf(osg::Matrixf(viewer.getCamera()->getProjectionMatrix()).ptr());
        glMatrixMode(GL_MODELVIEW);
        for (const osg::Matrixf& place : seen_places) {
            glLoadMatrixf(place.ptr());
            glDrawElements(GL_TRIANGLES, 36, GL_UNSIGNED_SHORT, nullptr);
        }
        glDisableClientState(GL_VERTEX_ARRAY);
        glDisableClientState(GL_COLOR_ARRAY);
        program->unbind(&context);
        context.gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
        context.gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    };

    std::vector<double> bare_times;
    std::vector<double> peer_times;
    for (auto _ : state) {
        glPushAttrib(GL_ALL_ATTRIB_BITS);
        bare_times.push_back(processor_time(bare));
        glPopAttrib();
        peer_times.push_back(processor_time([&] { viewer.frame(); }));
    }
    program->release(&context, nullptr);
    state.counters["bare_ms"] = median(bare_times);
    state.counters["peer_ms"] = median(peer_times);
    state.counters["cpu_ratio"] = median(peer_times) / median(bare_times);
}

BENCHMARK(boxes)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
