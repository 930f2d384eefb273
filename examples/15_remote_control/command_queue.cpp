#include "command_queue.h"

static constexpr char too_late[] = "error: the host is quitting";

std::string CommandQueue::ask(std::string text) {
    std::future<std::string> answer;
    {
        const std::lock_guard guard(mutex);
        if (closed)
            return too_late;
        commands.push_back({std::move(text), {}});
        answer = commands.back().answer.get_future();
        changed.notify_one();
    }
    return answer.get();
}

std::optional<Command> CommandQueue::take(std::chrono::milliseconds patience) {
    std::unique_lock guard(mutex);
    changed.wait_for(guard, patience, [this] { return closed || !commands.empty(); });
    if (commands.empty())
        return std::nullopt;
    std::optional<Command> first = std::move(commands.front());
    commands.pop_front();
    return first;
}

void CommandQueue::close() {
    const std::lock_guard guard(mutex);
    closed = true;
    for (Command& command : commands)
        command.answer.set_value(too_late);
    commands.clear();
    changed.notify_one();
}

bool CommandQueue::is_closed() const {
    const std::lock_guard guard(mutex);
    return closed;
}
