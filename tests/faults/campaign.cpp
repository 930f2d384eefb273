// The process that plays plays the scenario twice without a fault, to learn what it tells and draws
// and to let everything be made that is made for good. Then it plays it with each fault, and after
// each once more without. What it finds it writes into memory that it shares with its parent, so
// that a crash loses nothing; the parent watches how far it is.

#include "campaign.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ctime>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include "census.h"

namespace orvex_test {

const char* name_of(FaultKind kind) {
    switch (kind) {
    case FaultKind::memory:
        return "memory";
    case FaultKind::system:
        return "system";
    case FaultKind::short_count:
        return "short_count";
    case FaultKind::graphics:
        return "graphics";
    }
    return "?";
}

namespace {

constexpr std::chrono::seconds longest_run(30);

/// What both processes see.
struct Board {
    std::atomic<unsigned long> n = 0;     ///< the fault that is tried now
    std::atomic<unsigned long> beats = 0; ///< grows with each run
    std::atomic<unsigned long> next = 0;  ///< the fault to go on with
    std::atomic<bool> done = false;
    unsigned tried = 0, leaks = 0, lies = 0, exceptions = 0, quiet = 0;
    std::size_t text_size = 0;
    char text[16 * 1024] = {};

    __attribute__((format(printf, 2, 3))) void write(const char* format, ...) {
        va_list values;
        va_start(values, format);
        const int length =
            std::vsnprintf(text + text_size, sizeof text - text_size, format, values);
        va_end(values);
        if (length > 0)
            text_size = std::min(sizeof text - 1, text_size + static_cast<std::size_t>(length));
    }
};

/// The scenario in the process that plays.
class Player {
public:
    Player(const Scenario& the_scenario, FaultKind the_kind, Board& the_board)
        : scenario(the_scenario)
        , kind(the_kind)
        , board(the_board) {}

    void play_all(const Choice& choice);

private:
    const Scenario& scenario;
    const FaultKind kind;
    Board& board;
    Outcome clean;
    unsigned long num_faults = 0;

    Outcome play(unsigned long n, unsigned long* counted = nullptr);
    bool learn();
    bool try_fault(unsigned long n);
    bool is_clean_again(unsigned long n);
    bool look_for_leaks(unsigned long n, const Census& before, unsigned long first_serial);
    void judge(unsigned long n, const Outcome& outcome);
    void complain(unsigned long n, const std::string& how);
    void name_leaks(unsigned long first_serial);
};

Outcome Player::play(unsigned long n, unsigned long* counted) {
    ++board.beats;
    Outcome outcome;
    arm_fault(kind, n);
    try {
        Stage stage(outcome);
        scenario.play(stage);
    } catch (const Broken&) {
        outcome.broken = true;
    } catch (const std::exception& other) {
        outcome.broken = true;
        outcome.complaints.push_back(std::string("the scenario itself: ") + other.what());
    }
    const unsigned long count = disarm_fault();
    if (counted)
        *counted = count;
    return outcome;
}

/// @return whether the scenario is fit to be played: it works, and leaves nothing behind
bool Player::learn() {
    play(never);
    clean = play(never, &num_faults);
    const Census before = take_census();
    const unsigned long first_serial = next_block_serial();
    const Outcome again = play(never);
    if (!clean.complaints.empty() || clean.broken) {
        ++board.lies;
        for (const std::string& complaint : clean.complaints)
            board.write("  without a fault: %s\n", complaint.c_str());
        return false;
    }
    if (again.told != clean.told || again.pictures != clean.pictures) {
        ++board.lies;
        board.write("  without a fault: two runs differ\n");
        return false;
    }
    const Census after = settled_census(before);
    if (!after.exceeds(before) && after.gl_objects == 0)
        return true;
    ++board.leaks;
    board.write("  without a fault: a run leaves %ld blocks, %ld descriptors, %ld threads,%s\n",
                static_cast<long>(after.blocks - before.blocks),
                static_cast<long>(after.descriptors - before.descriptors),
                static_cast<long>(after.threads - before.threads), names_of_gl_objects());
    name_leaks(first_serial);
    return false;
}

void Player::play_all(const Choice& choice) {
    if (!learn()) {
        board.done = true;
        return;
    }
    // The start of a window is alike in all: few scenarios meet faults there.
    const unsigned long start = scenario.with_start ? 0 : clean.calls_of_start;
    const unsigned long first = std::max<unsigned long>(board.next, start);
    const unsigned long num_wanted = num_faults - std::min(start, num_faults);
    const unsigned long stride =
        choice.at_most >= num_wanted ? 1 : (num_wanted + choice.at_most - 1) / choice.at_most;
    for (unsigned long n = first;; n += stride) {
        if (choice.only != never)
            n = choice.only;
        board.n = n;
        board.next = n + stride;
        const bool goes_on = try_fault(n);
        if (choice.only != never || n >= num_faults + stride)
            board.done = true;
        if (!goes_on || board.done)
            return;
    }
}

/// @return whether this process can go on: the engine is as it was
bool Player::try_fault(unsigned long n) {
    const Census before = take_census();
    const unsigned long first_serial = next_block_serial();
    const Outcome outcome = play(n);
    if (!fault_was_met()) {
        // The work may take another turn from run to run: the last ones aren't always there.
        board.done = n >= num_faults;
        return true;
    }
    ++board.tried;
    board.exceptions += outcome.exceptions > 0;
    judge(n, outcome);
    if (outcome.broken)
        return false;
    return look_for_leaks(n, before, first_serial) && is_clean_again(n);
}

void Player::complain(unsigned long n, const std::string& how) {
    ++board.lies;
    board.write("  fault %lu (%s at %s): %s\n", n, failed_function(), place_text(failed_place()),
                how.c_str());
}

void Player::judge(unsigned long n, const Outcome& outcome) {
    for (const std::string& complaint : outcome.complaints)
        complain(n, complaint);
    if (!outcome.complaints.empty())
        return;
    const bool may_stay_unsaid = scenario.quiet == Quiet::pictures ||
                                 (scenario.quiet == Quiet::parts && kind == FaultKind::memory);
    for (std::size_t i = 0; i < clean.told.size() && !may_stay_unsaid; ++i)
        if (i >= outcome.told.size() || outcome.told[i] != clean.told[i])
            return complain(n, "told \"" + (i < outcome.told.size() ? outcome.told[i] : "") +
                                   "\" for \"" + clean.told[i] + "\"");
    if (outcome.pictures == clean.pictures && outcome.told == clean.told)
        return;
    // No check is promised of what OpenGL makes within a frame.
    if (kind == FaultKind::graphics || may_stay_unsaid)
        ++board.quiet;
    else
        complain(n, "another picture");
}

/// Blocks that TinyXML-2 took from a serial on and lost in a fault of its own.
std::size_t num_of_tinyxml(unsigned long first_serial) {
    LivingBlock blocks[6];
    const std::size_t count =
        is_tinyxml(failed_place()) ? find_living_blocks(first_serial, blocks, 6) : 0;
    return static_cast<std::size_t>(std::count_if(
        blocks, blocks + count, [](const LivingBlock& block) { return is_tinyxml(block.place); }));
}

/// What is left once may be made for good; what is left each time is lost.
bool Player::look_for_leaks(unsigned long n, const Census& before, unsigned long first_serial) {
    const Census once = settled_census(before);
    if (!once.exceeds(before))
        return true;
    const unsigned long second_serial = next_block_serial();
    play(n);
    Census twice = settled_census(once);
    twice.blocks -= num_of_tinyxml(second_serial);
    const bool gl_is_left = once.gl_objects > before.gl_objects;
    if (twice.exceeds(once) || gl_is_left) {
        ++board.leaks;
        board.write("  fault %lu (%s at %s) leaves %ld blocks, %ld descriptors, %ld threads, "
                    "%ld contexts and surfaces,%s\n",
                    n, failed_function(), place_text(failed_place()),
                    static_cast<long>(twice.blocks - once.blocks),
                    static_cast<long>(twice.descriptors - once.descriptors),
                    static_cast<long>(twice.threads - once.threads),
                    static_cast<long>(twice.egl_objects - once.egl_objects), names_of_gl_objects());
        name_leaks(gl_is_left ? first_serial : second_serial);
        forget_gl_objects();
    }
    return true;
}

bool Player::is_clean_again(unsigned long n) {
    const Outcome after = play(never);
    if (after.complaints.empty() && after.told == clean.told && after.pictures == clean.pictures)
        return true;
    ++board.lies;
    board.write("  after fault %lu the next run %s\n", n,
                after.complaints.empty() ? "differs" : after.complaints[0].c_str());
    return false;
}

void Player::name_leaks(unsigned long first_serial) {
    LivingBlock blocks[6];
    const std::size_t count = find_living_blocks(first_serial, blocks, 6);
    for (std::size_t i = 0; i < count; ++i)
        board.write("    %zu bytes from %s\n", blocks[i].size, place_text(blocks[i].place));
}

/// Waits for the process that plays, as long as it gets on.
/// @return how it ended; -1 when it hung
int watch(pid_t player, const Board& board) {
    using Clock = std::chrono::steady_clock;
    unsigned long beats = board.beats;
    Clock::time_point since = Clock::now();
    for (;;) {
        int status = 0;
        if (waitpid(player, &status, WNOHANG) == player)
            return status;
        const timespec pause{0, 2'000'000};
        nanosleep(&pause, nullptr);
        if (board.beats != beats) {
            beats = board.beats;
            since = Clock::now();
        } else if (Clock::now() - since > longest_run) {
            kill(player, SIGKILL);
            waitpid(player, &status, 0);
            return -1;
        }
    }
}

/// One process, until it is done or ended by a fault.
int run_player(const Scenario& scenario, FaultKind kind, const Choice& choice, Board& board) {
    std::fflush(nullptr);
    const pid_t player = fork();
    if (player == 0) {
        Player(scenario, kind, board).play_all(choice);
        std::fflush(nullptr);
        _exit(0);
    }
    return watch(player, board);
}

} // namespace

Tally try_faults(const Scenario& scenario, FaultKind kind, const Choice& choice) {
    void* const shared =
        mmap(nullptr, sizeof(Board), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    Board& board = *new (shared) Board;
    Tally tally;
    int num_ended = 0;
    while (!board.done) {
        const unsigned long next_before = board.next;
        const int status = run_player(scenario, kind, choice, board);
        if (status == 0)
            continue;
        ++(status == -1 ? tally.hangs : tally.crashes);
        board.write("  fault %lu (%s at %s): %s %d\n", board.n.load(), failed_function(),
                    place_text(failed_place()),
                    status == -1 ? "hangs, or takes too long" : "crashes, status", status);
        // Not even the runs without a fault came to an end, or too few of the others do.
        if (board.next == next_before || choice.only != never || ++num_ended == 40)
            break;
    }
    tally.tried = board.tried + tally.crashes + tally.hangs;
    tally.leaks = board.leaks;
    tally.lies = board.lies;
    tally.exceptions = board.exceptions;
    tally.quiet = board.quiet;
    tally.text.assign(board.text, board.text_size);
    munmap(shared, sizeof(Board));
    return tally;
}

void print_head() {
    std::printf("%-18s %-11s %6s %7s %6s %6s %6s %10s %6s\n", "scenario", "kind", "faults",
                "crashes", "hangs", "leaks", "lies", "exceptions", "quiet");
}

void print_row(const Scenario& scenario, FaultKind kind, const Tally& tally) {
    std::printf("%-18s %-11s %6u %7u %6u %6u %6u %10u %6u\n%s", scenario.name, name_of(kind),
                tally.tried, tally.crashes, tally.hangs, tally.leaks, tally.lies, tally.exceptions,
                tally.quiet, tally.text.c_str());
    std::fflush(stdout);
}

} // namespace orvex_test
