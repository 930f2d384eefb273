#pragma once

/// @file
/// The contexts of the process, and what is known of each.
///
/// Names of GL objects mean something in the context that made them, and in those that share with
/// it. A native handle is no name for a context: the next one may get the address of one that
/// ended. So each context has a number that never comes again, and so has each share group.
///
///   made by a window    its share group is known; ends when the window ends it
///   adopted             the host's: it is marked, and a new number unless its mark is there
///                       already. A second mark, which is shared, tells its group
///   seen for the first  the host's: whether it shares with others can't be asked, so that it
///   time                counts as a group of its own. A renderer that has seen another one marks
///                       it, too
///
/// What a renderer has to remember of a context's state belongs to the context, not to the
/// renderer: several may draw in it, one after the other or in turns.

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "orvex/fwd.h"
#include "orvex/renderer/opengl/buffers/private/client_arrays.h"
#include "orvex/renderer/opengl/gl/private/gl_functions.h"

namespace orvex {

/// The number of a context or a share group; 0 stands for none.
using ContextNumber = unsigned long long;

/// Names of objects that were killed while another context was current. They are deleted when
/// theirs is met again.
struct BuriedObjects {
    std::vector<GLuint> buffers;
    std::vector<GLuint> textures;
    std::vector<GLuint> render_buffers;
    std::vector<GLuint> shaders;
    std::vector<GLuint> programs;
};

/// The same of objects that are never shared, but belong to one context.
struct BuriedContextObjects {
    std::vector<GLuint> vertex_arrays;
    std::vector<GLuint> framebuffers;
};

/// By what it is known which contexts belong to a share group. Records keep it as a number.
enum class Kinship : unsigned char {
    unknown, ///< nothing: whether a name stands for the same object elsewhere can't be told
    windows, ///< its contexts were made by windows, or share with one
    mark,    ///< its first context was adopted, and left a mark that all of them see
};

/// Contexts that have buffers, textures and programs in common.
struct ShareGroup {
    ShareGroup(ContextNumber number, Kinship kinship)
        : number(number)
        , kinship(kinship) {}

    /// @param other  of another group
    /// @return whether the two are known to have nothing in common
    bool is_apart_from(Kinship other) const {
        return kinship == other && kinship != Kinship::unknown;
    }

    const ContextNumber number;
    Kinship kinship;  ///< settled before the group is met
    GLuint mark = 0;  ///< an object by which a host's context is known to belong to it, or 0
    std::mutex mutex; ///< of what is buried, here and in the contexts
    BuriedObjects buried;
};

/// One context. But for what is buried, only the thread that has it current touches it.
struct ContextState {
    ContextState(ContextNumber number, bool made_here, std::shared_ptr<ShareGroup> group)
        : number(number)
        , made_here(made_here)
        , group(std::move(group)) {}

    const ContextNumber number;
    const bool made_here; ///< by a window, which tells its end
    const std::shared_ptr<ShareGroup> group;
    BuriedContextObjects buried;
    bool lost = false; ///< nothing can be drawn in it any more
    /// What tells that it was lost, null where nothing does; looked up when first asked for.
    std::optional<PFNGLGETGRAPHICSRESETSTATUSPROC> reset_status;
    GLuint mark = 0; ///< of a host's context that was adopted; 0 where none could be left

    ClientArrays client_arrays;      ///< arrays outside vertex array objects left enabled
    unsigned int bound_array = 0;    ///< vertex array of a prepare that wasn't finished
    unsigned int bound_uniforms = 0; ///< what the target of uniform buffers holds

    /// Between its prepare and its finish, unless something else was prepared or finished since: an
    /// indexed draw without its buffers bound would read address zero.
    const MeshData* prepared_mesh = nullptr;
    unsigned int prepared_elements = 0;   ///< element buffer that its prepare left bound
    const void* refused_record = nullptr; ///< lacked a buffer in its last prepare: isn't drawn
};

namespace contexts {

/// A window made a context. It is a new one, whatever had its address before.
/// @param share  the native handle of the context that it shares with, or null
void made(const void* native, const void* share);
/// A window took a host's context over, which is current. It counts as new, unless a window made
/// it or an adoption marked it.
void adopted(const void* native);
/// A window ends a context that it made.
void ended(const void* native);

/// A renderer met the current context. One of a host's that has the address of another counts as
/// new where something that was buried would end in it.
/// @param was_elsewhere  at its last look another one was current: a host's is marked, so that it
///                       can be told from the next one at its address
/// @return what is known of it; what was buried there is its own
std::shared_ptr<ContextState> looked_at(const void* native, bool was_elsewhere);
/// @return what is known of a native context, which is entered if it wasn't met yet
std::shared_ptr<ContextState> of(const void* native);
/// @return null for a context that ended
std::shared_ptr<ContextState> find(ContextNumber number);
/// @return null for a group all of whose contexts ended
std::shared_ptr<ShareGroup> find_group(ContextNumber number);

/// Puts objects into the earth of a group; dropped if it is gone, with its objects.
void bury(ContextNumber group, const BuriedObjects& objects);
/// The same for a vertex array and a framebuffer of a context.
void bury_array(ContextNumber context, GLuint id);
void bury_framebuffer(ContextNumber context, GLuint id);

/// A window made a context current, or released it; or one was lost.
void switched();

extern std::atomic<unsigned long> change_count;
/// @return a number that grows whenever a context begins, ends or is switched to by a window, or
///         something is buried
inline unsigned long changes() {
    return change_count.load(std::memory_order_acquire);
}

} // namespace contexts

} // namespace orvex
