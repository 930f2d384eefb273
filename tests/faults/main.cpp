// Runs scenarios with one fault after the other:
//
//   fault_scenarios                        all scenarios, all kinds, every fault, and a table
//   fault_scenarios --at-most 40 ...       at most so many faults of a kind, evenly spread
//   fault_scenarios --kind memory ...      memory, system, short_count or graphics alone
//   fault_scenarios --only N ...           the fault of this number alone
//   fault_scenarios obj sky                these scenarios
//   fault_scenarios --list                 their names
//
// Exit code 0: nothing was found.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "campaign.h"

using namespace orvex_test;

namespace {

struct Words {
    std::vector<FaultKind> kinds;
    std::vector<const Scenario*> scenarios;
    Choice choice;
    bool list = false;
    bool wrong = false;
};

const Scenario* find_scenario(const char* name) {
    for (const Scenario& scenario : all_scenarios())
        if (std::strcmp(scenario.name, name) == 0)
            return &scenario;
    return nullptr;
}

bool add_kind(Words& words, const char* name) {
    for (const FaultKind kind : all_kinds)
        if (std::strcmp(name_of(kind), name) == 0) {
            words.kinds.push_back(kind);
            return true;
        }
    return false;
}

/// One word, and the one behind it where it takes one.
void read_word(Words& words, char** argv, int argc, int& i) {
    const char* const word = argv[i];
    const bool is_last = i + 1 == argc;
    if (std::strcmp(word, "--list") == 0)
        words.list = true;
    else if (std::strcmp(word, "--kind") == 0 && !is_last)
        words.wrong |= !add_kind(words, argv[++i]);
    else if (std::strcmp(word, "--at-most") == 0 && !is_last)
        words.choice.at_most = std::strtoul(argv[++i], nullptr, 10);
    else if (std::strcmp(word, "--only") == 0 && !is_last)
        words.choice.only = std::strtoul(argv[++i], nullptr, 10);
    else if (const Scenario* const scenario = find_scenario(word))
        words.scenarios.push_back(scenario);
    else
        words.wrong = true;
}

Words read_words(int argc, char** argv) {
    Words words;
    for (int i = 1; i < argc; ++i)
        read_word(words, argv, argc, i);
    if (words.kinds.empty())
        words.kinds.assign(std::begin(all_kinds), std::end(all_kinds));
    if (words.scenarios.empty())
        for (const Scenario& scenario : all_scenarios())
            words.scenarios.push_back(&scenario);
    return words;
}

} // namespace

int main(int argc, char** argv) {
    const Words words = read_words(argc, argv);
    if (words.wrong || words.choice.at_most == 0) {
        std::fprintf(stderr, "usage: fault_scenarios [--list] [--kind KIND] [--at-most N] "
                             "[--only N] [SCENARIO...]\n");
        return 2;
    }
    if (words.list) {
        for (const Scenario* const scenario : words.scenarios)
            std::puts(scenario->name);
        return 0;
    }
    find_engine();
    print_head();
    bool clean = true;
    for (const Scenario* const scenario : words.scenarios)
        for (const FaultKind kind : words.kinds) {
            const Tally tally = try_faults(*scenario, kind, words.choice);
            print_row(*scenario, kind, tally);
            clean = clean && tally.is_clean();
        }
    return clean ? 0 : 1;
}
