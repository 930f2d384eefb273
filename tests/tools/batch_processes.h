#pragma once

/// @file
/// Batches by a supervisor in the test's own process.

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "batch/entry_reader.h"
#include "batch/supervisor.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

/// Gives entries of JSON, and what else a source may say.
class ListedEntries final : public batch::EntrySource {
public:
    batch::NextEntry next() override;

    std::deque<batch::NextEntry> list;
};

/// Keeps verdicts.
class KeptVerdicts final : public batch::VerdictSink {
public:
    std::string put(const batch::Verdict& verdict) override;

    std::vector<batch::Verdict> list;
    std::function<void(const batch::Verdict&)>
        on_verdict;      ///< also called with each, if there is one
    std::string mistake; ///< what it says of each
};

/// A batch in a folder of its own: models that the test writes, pictures of 24x24 pixels beside
/// them, and a loader that does harm.
class TestBatch {
public:
    TestBatch();

    /// A file with a triangle. @param poison  what the loader does with it, as "crash"
    std::string write_model(const std::string& name, const std::string& poison = "") const;
    /// An entry, as the manifest has it.
    void add(const std::string& text);
    /// One for a model of that name, which is written.
    void add_model(const std::string& name, const std::string& poison = "");
    batch::Ending run();
    /// The verdict of an id, which came once.
    const batch::Verdict& verdict_of(const std::string& id) const;
    bool has_file(const std::string& name) const;

    TempDir folder;
    Options defaults;
    batch::BatchOptions options;
    ListedEntries entries;
    KeptVerdicts verdicts;

private:
    std::unique_ptr<batch::EntryReader> reader;
    std::size_t line = 0;
};

/// The processes that this one has started and that haven't ended.
std::vector<int> children();
/// How many files this process has open.
std::size_t num_open_files();

} // namespace orvex_test
