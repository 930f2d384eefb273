#pragma once

/// @file
/// Names of new files that aren't finished yet, where a signal's handler finds them.

#include <csignal>
#include <string>

#include <sys/types.h>

namespace orvex::kit {

struct NameSlot;

/// The name of one new file. What a handler may touch lies in a slot that is never freed, so that
/// it may look at any moment, on any thread.
class NewFileName {
public:
    /// No name yet.
    NewFileName() noexcept = default;
    /// Forgets the name.
    ~NewFileName();
    NewFileName(const NewFileName&) = delete;
    NewFileName& operator=(const NewFileName&) = delete;

    /// While one lives, name and file may disagree: handlers on this thread are held off, and those
    /// on others wait.
    class Change {
    public:
        explicit Change(NewFileName& name);
        ~Change();
        Change(const Change&) = delete;
        Change& operator=(const Change&) = delete;

        /// A name that is too long for a slot is kept from handlers only.
        void set(const std::string& name);
        void clear() { set(""); }

    private:
        NewFileName& owner;
        sigset_t before;
        bool has_slot = false;
    };

    const std::string& text() const { return name; } ///< empty without one
    /// Whether this process set it. A child that was forked has a copy, and no right to the file.
    bool is_ours() const;

private:
    NameSlot* slot = nullptr;
    std::string name;
    pid_t process = 0;
};

/// Has INT, TERM and HUP remove the files of all names, as far as the program leaves those to the
/// system.
void listen_for_ending_signals();

} // namespace orvex::kit
