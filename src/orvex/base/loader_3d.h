#pragma once

/// @file
/// Loader3D: the interface of model file loaders.

#include <memory>

#include "orvex/api.h"
#include "orvex/base/plugin.h"
#include "orvex/fwd.h"

namespace orvex {

/// Reads a model file into a `Model`. A plugin of type `PLUGIN_TYPE_LOADER_3D`, which concrete
/// loaders set in their constructor.
///
/// `Kernel` sets the two directories before each load. Directories are prefixes, put before file
/// names as they are: the caller ends them in a separator.
class ORVEX_API Loader3D : public Plugin {
public:
    /// All texts are empty.
    Loader3D();
    ~Loader3D() override;

    /// The plugin as a loader, decided by what its constructor noted, and not by type information,
    /// which classes of hosts and plugins may lack.
    /// @return null for null, and for a plugin that is none, whatever type it bears
    static Loader3D* from_plugin(Plugin* plugin);

    /// Reads `filename` into `model`, which the caller owns.
    /// @return whether the model was read. On false the loader has given back whatever it added to
    ///         the model.
    virtual bool load_from_file(Model* model, const char* filename) = 0;

    /// Texts are copied and null is ignored; the pointer of a getter is valid until its setter
    /// runs. Where textures and other resources of a model lie.
    void set_resource_dir(const char* directory);
    const char* get_resource_dir() const; ///< never null; empty unless set
    /// Where the model file and its companions lie.
    void set_model_dir(const char* directory);
    const char* get_model_dir() const; ///< never null; empty unless set
    /// A name beside that of the plugin; the engine never reads it.
    void set_loader_name(const char* name);
    const char* get_loader_name() const; ///< never null; empty unless set
    /// A text for people; the engine never reads it.
    void set_loader_description(const char* description);
    const char* get_loader_description() const; ///< never null; empty unless set

    /// @name Which moment is read
    /// @{

    /// Chooses a moment of a file that moves, for all loads from now on. Loaders that know no time
    /// pass it over.
    /// @param seconds  on the clock of the file's first animation, whose ends stand still; NaN, as
    ///                 at first, has everything at rest
    void set_time(float seconds) noexcept;
    [[nodiscard]] float get_time() const noexcept; ///< as set
    /// @}

    /// @name Why a load failed
    /// Kept until the next load. `Kernel` forgets it before each, and makes one answer of those of
    /// all loaders that it asked: `Kernel::get_load_failure_reason`.
    /// @{

    /// The place, as a line or an offset in bytes, and what is wrong there: "line 4: …". Never
    /// null; empty after a success, and for loaders that give no reason.
    [[nodiscard]] const char* get_failure_reason() const noexcept;
    /// Whether the file that was refused is of this loader's format, so that its reason is the one
    /// to be told.
    [[nodiscard]] bool get_format_known_state() const noexcept;
    /// Empties the reason, the notes and the list of files.
    void clear_failure_reason() noexcept;
    /// @}

    /// @name What a load left out
    /// Sentences about what the file holds and the model doesn't. Kept until the next load, of
    /// which `Kernel` makes them forgotten with the reason; at most 32 of them, each once.
    /// @{
    [[nodiscard]] unsigned long get_num_notes() const noexcept; ///< 0 unless the loader tells any
    /// One of them, from 0 on; never null, empty past the end. Valid until the next load.
    [[nodiscard]] const char* get_note(unsigned long i) const noexcept;
    /// @}

    /// @name What else a load has read
    /// Files beside the one that it was asked for, as they were opened: material libraries,
    /// buffers, parts. For hosts that watch them, or mustn't write onto them. Kept until the next
    /// load.
    /// @{
    [[nodiscard]] unsigned long get_num_files() const noexcept; ///< 0 unless the loader tells any
    /// One of them, from 0 on; never null, empty past the end. Valid until the next load.
    [[nodiscard]] const char* get_file(unsigned long i) const noexcept;
    /// @}

protected:
    /// @name For loaders, on their way to a false result
    /// Formats as `printf` does. The text is kept without an allocation, and cut at 511 bytes.
    /// @{

    /// A file of this loader's format that can't be read as a whole.
    void set_failure_reason(const char* format, ...) noexcept ORVEX_PRINTF(2, 3);
    /// A file of some other format.
    void set_format_unknown(const char* format, ...) noexcept ORVEX_PRINTF(2, 3);
    /// @}

    /// Keeps a note, formatted as `printf` does and cut at 511 bytes. One that is kept already and
    /// one beyond the thirty-second are dropped, and so is one that finds no memory.
    void add_note(const char* format, ...) noexcept ORVEX_PRINTF(2, 3);

    /// Keeps the path of a file that was read, too. Null is ignored.
    void add_file(const char* path);

private:
    struct Loader3DData;

    std::unique_ptr<Loader3DData> loader_data;
};

} // namespace orvex
