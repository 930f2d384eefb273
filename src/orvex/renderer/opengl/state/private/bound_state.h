#pragma once

/// @file
/// What stands bound although the order of calls has unbound it.
///
/// An object's draw binds a program, textures and a vertex array or client arrays, and unbinds them
/// again, and the next object binds the same. While binds are kept an unbind isn't sent: what it
/// would take off is held, in the one place that this is.
///
///   bound  --unbind-->  held  --the same is bound again-->  bound    nothing was sent
///                        |
///                        +--another is bound, or something looks-->  unbound, by the calls left
///                        out
///
/// Whatever looks at a state sees it as the full order leaves it: a draw takes off what its object
/// didn't bind again, and everything else, but for the few operations that ask here, restores all.
/// Only what was sent since the last restore is taken for known: a host may have changed the rest.

#include <atomic>

#include "orvex/math/mat4.h"
#include "orvex/math/vec4.h"
#include "orvex/renderer/opengl/gl/private/gl_functions.h"

namespace orvex {

struct GlState;

/// The held states of one renderer. Every question is answered with false while nothing is kept, so
/// that its caller sends what it always sends.
class BoundState {
public:
    /// @param state  outlives the object
    explicit BoundState(GlState& state)
        : state(state) {}
    ~BoundState();
    BoundState(const BoundState&) = delete;
    BoundState& operator=(const BoundState&) = delete;

    bool is_keeping() const { return keeping; }
    /// Begins to hold what is unbound from now on. Another renderer of the thread ends first.
    void begin();
    /// Restores, and holds nothing any more.
    void end();
    /// Sends what was left out, and takes nothing for known any more.
    void restore();
    /// The same without a call: another context is current, or none.
    void drop();
    /// Restores what a renderer holds on this thread. For whatever uses the API beside a renderer.
    static void restore_on_thread() {
        if (keepers.load(std::memory_order_relaxed) != 0)
            restore_keeper();
    }
    /// Takes off what is held. Before a draw: what its object binds isn't held any more.
    void take_off_held() {
        if (held != 0)
            send_held();
    }

    /// @name The program
    /// @{

    /// @return whether it is the one that is held, which stays
    bool resume_program(GLuint id);
    void program_was_bound(GLuint id);
    /// @return whether it is held; else it is to be unbound
    bool hold_program();
    /// Before a value is sent to whatever program is in use.
    void take_off_program() {
        if ((held & held_program) != 0)
            send_held();
    }
    /// @return a number that is the same for as long as the answers of the API about programs hold,
    ///         0 if they don't
    unsigned long stretch() const { return keeping ? stretch_number : 0; }
    /// @}

    /// @name The vertex array
    /// Which one is bound stands in the context.
    /// @{

    bool resume_array(GLuint id);
    void array_was_bound() { held &= ~held_array; }
    bool hold_array();
    /// Before an array is made, which may fail and leave none bound.
    void take_off_array() {
        if ((held & held_array) != 0)
            send_held();
    }
    /// @}

    /// @name Buffers of client arrays
    /// The arrays themselves are held by `ClientArrays`.
    /// @{

    bool resume_buffer(GLenum target, GLuint id);
    void buffer_was_bound(GLenum target, GLuint id);
    bool hold_buffers();
    /// The arrays are held as well.
    void client_array_was_held() { held |= held_client_arrays; }
    /// Before buffers are bound for anything but client arrays.
    void take_off_client_arrays();
    /// @}

    /// @name Textures
    /// @{

    bool resume_texture(GLenum target, GLuint id, unsigned long unit);
    /// Before a texture is bound that wasn't held.
    void make_room(GLenum target, unsigned long unit);
    void texture_was_bound(GLenum target, GLuint id, unsigned long unit);
    /// Takes off what isn't the unit's known texture, and holds that.
    bool hold_texture(unsigned long unit);
    void unit_was_cleared(unsigned long unit);
    /// Makes the unit active that the full order leaves active.
    void settle_unit();
    /// @}

    /// @name Values of the fixed pipeline, and the viewport
    /// Each tells whether the API has these already, and remembers them.
    /// @{

    bool has_colors(const vec4& ambient, const vec4& diffuse, const vec4& specular,
                    float shininess);
    void colors_were_sent() { knows_colors = keeping; }
    void forget_colors() { knows_colors = false; }
    bool has_projection(const float* matrix);
    /// Together with the matrix mode.
    bool has_model_view(const float* matrix);
    void forget_matrices() { knows_projection = knows_model_view = false; }
    /// @return four numbers, null if they have to be asked for
    const int* known_viewport() const { return knows_viewport ? viewport : nullptr; }
    void viewport_was_read(const int* numbers);
    /// @}

private:
    static constexpr unsigned int held_program = 1;
    static constexpr unsigned int held_array = 2;
    static constexpr unsigned int held_vertices = 4;
    static constexpr unsigned int held_elements = 8;
    static constexpr unsigned int held_client_arrays = 16;
    static constexpr unsigned int held_textures = 32;

    static constexpr unsigned long num_units = 32;

    /// One texture unit.
    struct Unit {
        GLenum target = 0;
        GLuint texture = 0;    ///< bound to the target since the last restore, or 0
        bool is_alone = false; ///< the other targets have none
        bool is_held = false;
    };

    static void restore_keeper();
    void forget();
    void send_held();
    void send_held_client();
    void send_held_textures();
    void take_off(unsigned long unit);
    void activate(unsigned long unit);
    Unit* find_unit(unsigned long unit) {
        return keeping && unit < num_units ? &units[unit] : nullptr;
    }

    static std::atomic<int> keepers; ///< renderers that keep, on any thread

    GlState& state;
    bool keeping = false;
    unsigned int held = 0; ///< of the flags above
    unsigned long stretch_number = 0;
    GLuint program = 0;  ///< in use since the last restore, or 0
    GLuint vertices = 0; ///< the same of buffers
    GLuint elements = 0;
    unsigned long units_held = 0; ///< one bit for each
    Unit units[num_units];
    static constexpr unsigned long no_unit = ~0UL;
    unsigned long active_unit = no_unit; ///< as the API has it, once it is known
    bool knows_colors = false;
    bool knows_projection = false;
    bool knows_model_view = false;
    bool knows_viewport = false;
    vec4 colors[3];
    float shininess = 0.0f;
    mat4 projection;
    mat4 model_view;
    int viewport[4] = {};
};

/// Holds nothing for as long as it lives, with all restored at its beginning.
class BoundStatePause {
public:
    explicit BoundStatePause(BoundState& bound)
        : bound(bound)
        , was_keeping(bound.is_keeping()) {
        if (was_keeping)
            bound.end();
    }
    ~BoundStatePause() {
        if (was_keeping)
            bound.begin();
    }
    BoundStatePause(const BoundStatePause&) = delete;
    BoundStatePause& operator=(const BoundStatePause&) = delete;

private:
    BoundState& bound;
    bool was_keeping;
};

} // namespace orvex
