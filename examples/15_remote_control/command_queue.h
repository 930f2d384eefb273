#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <future>
#include <mutex>
#include <optional>
#include <string>

/// A text that waits to be obeyed. Who takes it answers it.
struct Command {
    std::string text;
    std::promise<std::string> answer;
};

/// Hands texts from the server's threads over to the render thread, and answers back: only the
/// render thread may touch the engine.
class CommandQueue {
public:
    /// Waits until the text was obeyed. Any thread but the render thread.
    /// @return the answer; an error once the queue is closed
    std::string ask(std::string text);

    /// The next text; none if nothing comes in time. The render thread.
    std::optional<Command> take(std::chrono::milliseconds patience);

    /// Lets nothing in any more, and answers what is waiting. Any thread.
    void close();
    bool is_closed() const;

private:
    mutable std::mutex mutex;
    std::condition_variable changed;
    std::deque<Command> commands;
    bool closed = false;
};
