// Clients of a socket, each with what it sent and what it is still to get. Nothing here waits: the
// system tells by one descriptor who is to be looked after.

#include "batch/socket_service.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "batch/key.h"
#include "batch/line_reader.h"
#include "batch/stream_entries.h"

namespace batch {

namespace {

constexpr std::size_t most_clients = 64;
/// Bytes of answers that are held for a client before no more is taken from it.
constexpr std::size_t most_unread = std::size_t{1} << 20;

std::string mistake_at(const std::string& path, const char* why) {
    return "can't serve at " + path + ": " + why;
}

} // namespace

/// One that has connected.
class SocketService::Client {
public:
    explicit Client(int descriptor)
        : descriptor(descriptor)
        , lines(descriptor, longest_line_of_service, '\n', false) {}
    ~Client() { close(descriptor); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    /// Whether more may be taken from it.
    bool is_served() const { return is_readable && !has_ended && unread.size() < most_unread; }
    /// Whether nothing is left to be done for it.
    bool is_done() const { return is_gone || (has_ended && at_hand == 0 && unread.empty()); }

    /// Sends what it takes.
    void send() {
        while (!unread.empty()) {
            const ssize_t count =
                ::send(descriptor, unread.data(), unread.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
            if (count < 0 && errno == EINTR)
                continue;
            if (count <= 0) {
                is_gone = is_gone || (errno != EAGAIN && errno != EWOULDBLOCK);
                return;
            }
            unread.erase(0, static_cast<std::size_t>(count));
        }
    }

    const int descriptor;
    LineReader lines;
    std::string unread;      ///< answers that it hasn't taken yet
    std::size_t at_hand = 0; ///< entries without an answer
    bool is_readable = true;
    bool has_ended = false; ///< sends no more
    bool is_gone = false;
};

SocketService::SocketService(const Options& defaults, const std::string& folder)
    : reader(defaults, folder)
    , events(epoll_create1(EPOLL_CLOEXEC)) {}

SocketService::~SocketService() {
    for (const auto& client : clients)
        client.second->send();
    clients.clear();
    if (listener >= 0)
        close(listener);
    if (!path.empty())
        unlink(path.c_str());
    if (events >= 0)
        close(events);
}

// ------------------------------------------------------------------------------- the socket

/// Removes a socket that nobody listens at. @return why the place isn't free; empty if it is
std::string SocketService::take_place(const std::string& wanted) {
    struct stat status {};
    if (lstat(wanted.c_str(), &status) != 0)
        return errno == ENOENT ? "" : mistake_at(wanted, std::strerror(errno));
    if (!S_ISSOCK(status.st_mode))
        return mistake_at(wanted, "something else than a socket is there");
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    wanted.copy(address.sun_path, sizeof address.sun_path - 1);
    const int probe = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    const int connected =
        connect(probe, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    const int error = errno;
    close(probe);
    if (connected == 0 || error != ECONNREFUSED)
        return mistake_at(wanted, "another process serves there");
    return unlink(wanted.c_str()) == 0 ? "" : mistake_at(wanted, std::strerror(errno));
}

std::string SocketService::open(const std::string& wanted) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (wanted.size() >= sizeof address.sun_path)
        return mistake_at(wanted, "a socket's path has at most 107 bytes");
    if (std::string mistake = take_place(wanted); !mistake.empty())
        return mistake;
    wanted.copy(address.sun_path, sizeof address.sun_path - 1);
    listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    // From its first moment nobody else can connect.
    const mode_t mask = umask(0177);
    const bool is_bound =
        listener >= 0 &&
        bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    const int error = errno;
    umask(mask);
    if (!is_bound)
        return mistake_at(wanted, std::strerror(error));
    path = wanted;
    if (events < 0 || listen(listener, most_clients) != 0)
        return mistake_at(wanted, std::strerror(errno));
    listen_to_more();
    return "";
}

/// As long as there is room for them; the others stand in the system's line.
void SocketService::listen_to_more() {
    const bool has_room = clients.size() < most_clients;
    if (has_room == is_listening)
        return;
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.fd = listener;
    epoll_ctl(events, has_room ? EPOLL_CTL_ADD : EPOLL_CTL_DEL, listener, &event);
    is_listening = has_room;
}

void SocketService::accept_clients() {
    while (clients.size() < most_clients) {
        const int descriptor = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
        if (descriptor < 0)
            break;
        auto client = std::make_unique<Client>(descriptor);
        watch(*client, true);
        clients.emplace(descriptor, std::move(client));
    }
    listen_to_more();
}

// ------------------------------------------------------------------------------- clients

/// Wakes for what it sends only when that would be taken, and for room only when that is wanted.
void SocketService::watch(Client& client, bool is_new) const {
    epoll_event event{};
    const bool is_wanted = !client.is_readable && !client.has_ended;
    event.events = (is_wanted ? EPOLLIN : 0u) | (client.unread.empty() ? 0u : EPOLLOUT);
    event.data.fd = client.descriptor;
    epoll_ctl(events, is_new ? EPOLL_CTL_ADD : EPOLL_CTL_MOD, client.descriptor, &event);
}

void SocketService::attend() {
    std::array<epoll_event, 32> happened{};
    const int count = epoll_wait(events, happened.data(), static_cast<int>(happened.size()), 0);
    for (int i = 0; i < count; ++i) {
        const epoll_event& event = happened[static_cast<std::size_t>(i)];
        if (event.data.fd == listener) {
            accept_clients();
            continue;
        }
        const auto found = clients.find(event.data.fd);
        if (found == clients.end())
            continue;
        Client& client = *found->second;
        client.is_gone = client.is_gone || (event.events & (EPOLLHUP | EPOLLERR)) != 0;
        client.is_readable = client.is_readable || (event.events & EPOLLIN) != 0;
        client.send();
        watch(client);
        close_if_done(event.data.fd);
    }
}

void SocketService::close_if_done(int descriptor) {
    const auto found = clients.find(descriptor);
    if (found == clients.end() || !found->second->is_done())
        return;
    clients.erase(found);
    // Whoever gets its number next didn't ask for these.
    for (auto asker = askers.begin(); asker != askers.end();)
        asker = asker->second == descriptor ? askers.erase(asker) : std::next(asker);
    listen_to_more();
}

void SocketService::send(Client& client, const Verdict& verdict) {
    client.unread += line_of(verdict);
    client.send();
    watch(client);
}

namespace {

Verdict refusal(std::size_t line, const std::string& id, const std::string& reason) {
    Verdict verdict;
    verdict.id = id;
    verdict.fate = Fate::refused;
    verdict.reason = reason;
    verdict.line = line;
    verdict.engine = engine_version();
    return verdict;
}

} // namespace

/// Takes the next entry that it sent, and answers what comes before and is none.
/// @return whether there is one
bool SocketService::take_from(Client& client, NextEntry& next) {
    while (client.is_served() && !client.is_gone) {
        const LineReader::State state = client.lines.next();
        if (state == LineReader::State::nothing_yet) {
            client.is_readable = false;
        } else if (state == LineReader::State::end || state == LineReader::State::failed) {
            client.has_ended = true;
        } else if (state == LineReader::State::too_long) {
            send(client, refusal(client.lines.number(), "", reason_for_long_line()));
        } else if (!is_blank(client.lines.line())) {
            Entry entry;
            const std::string mistake =
                reader.read(client.lines.line(), client.lines.number(), entry);
            if (mistake.empty()) {
                entry.line = ++tickets;
                askers[tickets] = client.descriptor;
                ++client.at_hand;
                next = std::move(entry);
                return true;
            }
            send(client, refusal(client.lines.number(), reader.last_id(), mistake));
        }
    }
    return false;
}

NextEntry SocketService::next() {
    NextEntry found = NothingYet{};
    // From the one behind the last on, once around.
    auto place = clients.upper_bound(last_served);
    for (std::size_t tries = clients.size(); tries > 0; --tries) {
        if (place == clients.end())
            place = clients.begin();
        Client& client = *place->second;
        ++place;
        const bool has_entry = take_from(client, found);
        const int descriptor = client.descriptor;
        watch(client);
        close_if_done(descriptor);
        if (has_entry) {
            last_served = descriptor;
            break;
        }
    }
    return found;
}

std::string SocketService::put(const Verdict& /*verdict*/) {
    return ""; // lines that are no entries are answered here
}

std::string SocketService::answer(const Entry& entry, const Verdict& verdict) {
    const auto asker = askers.find(entry.line);
    if (asker == askers.end())
        return ""; // it is gone
    const int descriptor = asker->second;
    askers.erase(asker);
    Client& client = *clients.at(descriptor);
    --client.at_hand;
    send(client, verdict);
    close_if_done(descriptor);
    return "";
}

} // namespace batch
