#include "batch_processes.h"

#include <fstream>
#include <sstream>

#include <unistd.h>

namespace orvex_test {

batch::NextEntry ListedEntries::next() {
    if (list.empty())
        return batch::EndOfEntries{};
    batch::NextEntry first = std::move(list.front());
    // An end that is told is told again.
    if (!std::holds_alternative<batch::BrokenSource>(first))
        list.pop_front();
    else
        list.front() = std::get<batch::BrokenSource>(first);
    return first;
}

std::string KeptVerdicts::put(const batch::Verdict& verdict) {
    list.push_back(verdict);
    if (on_verdict)
        on_verdict(verdict);
    return mistake;
}

TestBatch::TestBatch() {
    defaults.size = {24, 24};
    defaults.samples = 0;
    defaults.quiet = true;
    defaults.plugin = ORVEX_POISON_LOADER;
    options.output_dir = folder.path();
    options.workers = 2;
    options.limit_seconds = 30.0f;
}

std::string TestBatch::write_model(const std::string& name, const std::string& poison) const {
    return folder.write(name, (poison.empty() ? "" : "# poison " + poison + "\n") +
                                  "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
}

void TestBatch::add(const std::string& text) {
    if (!reader)
        reader = std::make_unique<batch::EntryReader>(defaults, folder.path());
    batch::Entry entry;
    ASSERT_EQ(reader->read(text, ++line, entry), "");
    entries.list.emplace_back(std::move(entry));
}

void TestBatch::add_model(const std::string& name, const std::string& poison) {
    add(R"({"id": ")" + name + R"(", "model": ")" + write_model(name + ".obj", poison) + "\"}");
}

batch::Ending TestBatch::run() {
    return batch::Supervisor(defaults, options, entries, verdicts).run();
}

const batch::Verdict& TestBatch::verdict_of(const std::string& id) const {
    static const batch::Verdict none;
    const batch::Verdict* found = nullptr;
    for (const batch::Verdict& verdict : verdicts.list) {
        if (verdict.id != id)
            continue;
        EXPECT_EQ(found, nullptr) << id << " has two verdicts";
        found = &verdict;
    }
    EXPECT_NE(found, nullptr) << id << " has no verdict";
    return found ? *found : none;
}

bool TestBatch::has_file(const std::string& name) const {
    return access(folder.file(name).c_str(), F_OK) == 0;
}

std::vector<int> children() {
    std::ifstream file("/proc/self/task/" + std::to_string(getpid()) + "/children");
    std::vector<int> found;
    for (int child = 0; file >> child;)
        found.push_back(child);
    return found;
}

std::size_t num_open_files() {
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

} // namespace orvex_test
