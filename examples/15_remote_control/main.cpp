// A host without a screen that obeys texts which come in on a TCP port of this machine:
//
//   remote_control 9600 &
//   echo load lighthouse.obj | nc -N localhost 9600
//   echo turn 30 | nc -N localhost 9600
//   echo screenshot picture.jpg | nc -N localhost 9600
//   echo quit | nc -N localhost 9600
//
// Each connection carries one text and brings back one line, "ok" or "error: ...". The server has a
// thread of its own; all else is done by the thread that draws.

#include <chrono>
#include <cmath>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <future>
#include <mutex>
#include <sstream>
#include <string>
#include <thread>

#include <orvex/orvex.h>
#include <orvex_kit/kit.h>

using namespace orvex;

/// What is drawn, on the thread that does.
struct Stage {
    kit::View view{640, 480};
    kit::Model model;
    kit::Orbit orbit;

    kit::Outcome load(const std::string& path) {
        kit::Model next(path);
        if (!next)
            return kit::Outcome::failure(next.reason());
        model = std::move(next);
        orbit.frame(model.extent());
        return {};
    }

    kit::Outcome turn(const std::string& text) {
        char* end = nullptr;
        const double degrees = std::strtod(text.c_str(), &end);
        if (text.empty() || *end != '\0' || !std::isfinite(degrees))
            return kit::Outcome::failure("turn DEGREES");
        orbit.turn(4.0 * degrees, 0.0);
        return {};
    }

    kit::Outcome screenshot(const std::string& path) {
        for (const std::string& file : model.files())
            if (kit::are_same_file(path, file))
                return kit::Outcome::failure(path + " belongs to the model");
        view.begin(orbit.camera({view.width(), view.height()}));
        view.add(model, orbit.place().angle);
        view.end();
        return view.write(path);
    }

    kit::Outcome obey(const std::string& text) {
        std::istringstream words(text);
        std::string verb, rest;
        words >> verb >> std::ws;
        std::getline(words, rest, '\0');
        rest.erase(rest.find_last_not_of(" \t\r\n") + 1);
        if (verb == "load")
            return load(rest);
        if (verb == "turn")
            return turn(rest);
        if (verb == "screenshot")
            return screenshot(rest);
        return verb == "quit"
                   ? kit::Outcome::success()
                   : kit::Outcome::failure("load FILE, turn DEGREES, screenshot FILE or quit");
    }
};

/// Texts on their way to the thread that draws, and answers on their way back.
class Mailbox {
public:
    /// Waits for the answer; empty once the box is closed.
    std::string ask(const std::string& text) {
        std::future<std::string> answer;
        {
            const std::lock_guard guard(mutex);
            if (closed)
                return {};
            letters.push_back({text, {}});
            answer = letters.back().answer.get_future();
        }
        changed.notify_one();
        return answer.get();
    }

    /// Answers all that came in, after a moment at most.
    void answer(Stage& stage) {
        std::unique_lock guard(mutex);
        changed.wait_for(guard, std::chrono::milliseconds(30),
                         [this] { return closed || !letters.empty(); });
        for (; !letters.empty(); letters.pop_front()) {
            const kit::Outcome outcome = stage.obey(letters.front().text);
            letters.front().answer.set_value(outcome ? "ok\n"
                                                     : "error: " + outcome.reason() + "\n");
            closed = closed || letters.front().text.rfind("quit", 0) == 0;
        }
    }

    /// Lets nothing in any more.
    void close() {
        const std::lock_guard guard(mutex);
        closed = true;
        for (; !letters.empty(); letters.pop_front())
            letters.front().answer.set_value({});
    }
    bool is_closed() const {
        const std::lock_guard guard(mutex);
        return closed;
    }

private:
    struct Letter {
        std::string text;
        std::promise<std::string> answer;
    };
    mutable std::mutex mutex;
    std::condition_variable changed;
    std::deque<Letter> letters;
    bool closed = false;
};

struct Remote {
    TcpServer server;
    Mailbox box;
};

/// On the server's thread.
static void hand_over(SocketCore* core, Socket* client, unsigned char* text, int, void* user_data) {
    auto& remote = *static_cast<Remote*>(user_data);
    const std::string answer = remote.box.ask(reinterpret_cast<char*>(text));
    core->send_socket(client, answer.data(), static_cast<int>(answer.size()));
    // Said from here, so that the server doesn't wait for another client first.
    if (remote.box.is_closed())
        remote.server.send_stop_message();
}

static int fail(const std::string& reason) {
    std::fprintf(stderr, "remote_control: %s\n", reason.c_str());
    return 1;
}

static int run(int port) {
    const kit::Engine engine;
    Stage stage;
    if (!stage.view)
        return fail(stage.view.reason());
    Remote remote;
    remote.server.set_client_proc(hand_over, &remote);
    remote.server.set_listen_address("127.0.0.1"); // nobody from elsewhere is obeyed
    remote.server.close_unserved_connections(true);
    bool listened = true;
    std::thread service([&] {
        const bool stopped = remote.server.run(static_cast<unsigned short>(port));
        // Still running, for the server, after a stop from this side.
        listened = stopped || remote.server.is_running();
        remote.box.close();
    });
    for (bool told = false; !remote.box.is_closed(); remote.box.answer(stage)) {
        if (!told && remote.server.is_running()) {
            std::printf("listening on port %d\n", port);
            std::fflush(stdout);
            told = true;
        }
    }
    service.join();
    remote.server.stop();
    return listened ? 0 : fail("can't listen on port " + std::to_string(port));
}

int main(int argc, char** argv) {
    const long port = argc == 2 ? std::strtol(argv[1], nullptr, 10) : 0;
    if (port < 1 || port > 65535) {
        std::fputs("usage: remote_control PORT\n", stderr);
        return 2;
    }
    return run(static_cast<int>(port));
}
