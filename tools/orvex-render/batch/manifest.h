#pragma once

/// @file
/// Manifests: what a batch is to draw, as a file or a pipe has it.

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "batch/batch_options.h"
#include "batch/double_texts.h"
#include "batch/entry_reader.h"
#include "batch/entry_source.h"
#include "batch/line_reader.h"
#include "batch/output_folder.h"
#include "batch/sum_table.h"

namespace batch {

class Results;

/// Reads a manifest of JSON lines, or a list of paths. Lines without a word are passed over.
///
/// A line is refused that is no entry, that is longer than a line may be, whose output isn't a
/// place within the output folder, or which would write a file that an earlier line writes. A file
/// can be checked whole before its first entry is given; a pipe is checked as it comes.
class Manifest : public EntrySource {
public:
    /// What is read, and how.
    struct Setting {
        std::string path;     ///< - is standard input
        bool is_list = false; ///< of paths, instead of JSON
        bool null = false;    ///< paths end with a zero byte
        std::string folder;   ///< for outputs; empty: the current one
        Shard shard;
        Options defaults;
    };

    explicit Manifest(const Setting& setting);
    ~Manifest() override;

    /// Opens it. @return what is wrong, as a sentence without a stop; empty if nothing is
    std::string open();
    /// Whether it can be checked before it is read.
    bool is_file() const { return file; }
    /// Looks at all lines of a file, before the first entry.
    /// @param refuse  is called for each that is no entry
    /// @return why the file can't be read; empty if it can
    std::string check(const std::function<void(const RefusedLine&)>& refuse);
    /// Keeps entries of which earlier results still hold. `results` outlive this.
    void keep(Results& results) { earlier = &results; }

    NextEntry next() override;
    int descriptor() const override { return file ? -1 : input; }
    std::optional<std::size_t> total() const override { return entries; }
    Kept kept() const override { return num_kept; }

private:
    Setting setting;
    EntryReader reader;
    OutputFolder folder;
    std::optional<LineReader> lines;
    std::optional<SumTable> outputs; ///< the line that writes each file first, of a pipe
    std::optional<SumTable> doubles; ///< of a file: the lines that write what earlier ones do
    Entry entry;                     ///< of the line that was read last
    int input = -1;
    bool file = false;
    Results* earlier = nullptr;
    std::optional<std::size_t> entries;
    Kept num_kept;
    std::optional<std::string> broken;

    LineReader::State next_line();
    std::string take_line(LineReader::State state);
    std::string mistake_in_outputs();
    std::string find_doubles(DoubleTexts& names,
                             const std::function<void(const RefusedLine&)>& refuse);
    RefusedLine refused(std::string reason) const;
    bool is_in_shard() const;
    bool is_kept();
    std::string rewind();
};

/// Whether an id's entry is in a part of a batch: by the first eight bytes of its SHA-256, as one
/// number, modulo the number of parts.
bool is_in(const Shard& shard, std::string_view id);

} // namespace batch
