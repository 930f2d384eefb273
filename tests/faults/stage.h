#pragma once

#include <exception>
#include <functional>
#include <new>
#include <string>
#include <vector>

#include <orvex/orvex.h>

#include "fault.h"

/// @file
/// What scenarios stand on: the engine from its start to its stop, and steps that know what a fault
/// may do to them.
///
/// A step that meets the fault may give its failure value or, where that is promised, throw
/// `std::bad_alloc`; either way the state is as before, so that the step is done again, and works.
/// Whatever else happens is a complaint. At the end the scenario has told the same values and drawn
/// the same pictures as without the fault.

namespace orvex_test {

/// What a run of a scenario came to.
struct Outcome {
    std::vector<std::string> told;     ///< values, in order
    std::vector<std::string> pictures; ///< digests of what was drawn, in order
    std::vector<std::string> complaints;
    unsigned refusals = 0;            ///< failure values that a fault led to
    unsigned exceptions = 0;          ///< `std::bad_alloc` that passed to the host
    unsigned long calls_of_start = 0; ///< counted before the window was open
    bool broken = false;              ///< the scenario could not be carried to its end
};

/// Which drawing path a scenario takes.
enum class Path { gl2, gl3 };

/// Ends a scenario whose step can't be done again.
struct Broken {};

class Stage {
public:
    explicit Stage(Outcome& outcome_of_run)
        : outcome(outcome_of_run) {}
    /// Ends what is open.
    ~Stage();
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    /// Starts the engine, with loaders and codecs and without a log file.
    void start_engine(const char* log = "");
    /// The engine with an off-screen window of 64 by 64 pixels, and the renderer started on it.
    void open_window(Path path);
    /// Gives back what the managers hold, ends window and renderer, and stops the engine. A
    /// scenario ends with it; nodes were killed before.
    void close();

    /// @name Steps
    /// `what` is the operation's name, for the complaint.
    /// @{

    /// An operation that gives a failure value: false or null. It may throw `std::bad_alloc`.
    template<class Work>
    auto get(const char* what, Work work) {
        return attempt(what, true, work);
    }
    /// The same, of an operation that never throws.
    template<class Work>
    auto get_quietly(const char* what, Work work) {
        return attempt(what, false, work);
    }
    /// An operation without a result.
    template<class Work>
    void run(const char* what, Work work) {
        attempt(what, true, [&] {
            work();
            return true;
        });
    }
    /// The same, of an operation that never throws: an end, or what runs on another thread.
    template<class Work>
    void run_quietly(const char* what, Work work) {
        attempt(what, false, [&] {
            work();
            return true;
        });
    }
    /// A new object of the engine's.
    template<class Made, class... Arguments>
    Made* make(Arguments... arguments) {
        return get("new", [&] { return new Made(arguments...); });
    }
    /// Ends a node with what it has on the GPU.
    void end(orvex::Node* node);

    /// Draws a whole frame, clearing included. A frame that meets the fault may be incomplete, and
    /// the next one is exact.
    void frame(const std::function<void()>& draw);
    /// @}

    /// Notes a value that has to be the same with and without the fault.
    void tell(const char* what, const std::string& value);
    void tell(const char* what, double value);
    /// Notes the picture that the window shows.
    void look();
    /// Notes what went wrong.
    void complain(const char* what, const std::string& how);

    /// A program of a vertex and a pixel shader, written for both paths: see `program_text`.
    orvex::GpuProgram* make_program(const char* name, const char* vertex, const char* pixel);
    /// One that draws vertices in their colours, points of five pixels.
    orvex::GpuProgram* make_colored_program();
    /// One that draws normals as colours.
    orvex::GpuProgram* make_normal_program();
    /// One that draws texture unit 0, by the uniform "picture".
    orvex::GpuProgram* make_textured_program();
    /// A camera that looks at the origin from a distance, over the whole window.
    orvex::Camera* make_camera(float distance = 6.0f);
    /// Binds the camera and clears the window.
    void begin(orvex::Camera* camera);
    /// Draws an object by a program.
    void draw(orvex::GpuProgram* program, orvex::Object* object);
    /// Puts an object on the path in use.
    template<class Shape>
    void put_on_path(Shape* shape) {
        run("set_opengl_2_3_rendering_states",
            [&] { shape->set_opengl_2_3_rendering_states(!is_gl3(), nullptr); });
    }
    /// Puts an object on the path in use, and builds it.
    template<class Shape>
    Shape* build(Shape* shape) {
        put_on_path(shape);
        // A build takes its own flag back, also one that fails.
        get("build", [&] {
            shape->update_build_state(true);
            return shape->build(nullptr);
        });
        return shape;
    }

    bool is_gl3() const { return path == Path::gl3; }

    orvex::Renderer* renderer = nullptr;
    orvex::RenderWindow* window = nullptr;

    static constexpr int size = 64;

private:
    Outcome& outcome;
    Path path = Path::gl3;
    bool engine_runs = false;

    /// Does the work, and does it once more if it met the fault.
    template<class Work>
    auto attempt(const char* what, bool may_throw, Work work) {
        for (;;) {
            const bool met_before = fault_was_met();
            try {
                const auto result = work();
                if (result)
                    return result;
                judge_refusal(what, met_before);
            } catch (const std::bad_alloc&) {
                judge_exception(what, met_before, may_throw);
            } catch (const std::exception& other) {
                complain(what, std::string("throws ") + other.what());
                throw Broken();
            }
        }
    }
    void judge_refusal(const char* what, bool met_before);
    void judge_exception(const char* what, bool met_before, bool may_throw);
};

/// The text of a program for one path: POSITION, NORMAL, TEXCOORD and VERTEX_COLOR are the vertex,
/// OUT and IN what the stages share, SAMPLE reads a texture, COLOR is the pixel.
std::string program_text(Path path, const char* vertex, const char* pixel);

/// A digest of bytes.
std::string digest_of(const void* bytes, std::size_t size);
/// A digest of a file, or "no file".
std::string digest_of_file(const std::string& path);

} // namespace orvex_test
