#include "orvex/network/private/server_socket_core.h"

namespace orvex {

void ServerSocketCore::hold(HeldClient& client, Socket* socket, Socket** shown) {
    const std::lock_guard guard(mutex);
    client = {socket, shown, true};
    clients[socket] = &client;
}

void ServerSocketCore::shut_down(HeldClient& client) {
    const std::lock_guard guard(mutex);
    const bool is_taken = client.shown && !*client.shown;
    if (client.open && !is_taken)
        shutdown_socket(client.socket);
}

void ServerSocketCore::end(HeldClient& client) {
    kill_socket(let_go(client));
}

/// Takes a connection off the list and gives what is there to be killed.
Socket* ServerSocketCore::let_go(HeldClient& client) {
    const std::lock_guard guard(mutex);
    Socket* const socket = client.shown ? *client.shown : client.socket;
    forget(client.socket);
    if (client.shown)
        *client.shown = nullptr;
    return socket;
}

bool ServerSocketCore::close_socket(Socket* socket) {
    mark_closed(socket);
    return SocketCore::close_socket(socket);
}

bool ServerSocketCore::close_connection(Socket* socket) {
    mark_closed(socket);
    return SocketCore::close_connection(socket);
}

bool ServerSocketCore::kill_socket(Socket* socket) {
    {
        const std::lock_guard guard(mutex);
        forget(socket);
    }
    return SocketCore::kill_socket(socket);
}

void ServerSocketCore::mark_closed(Socket* socket) {
    const std::lock_guard guard(mutex);
    const auto entry = clients.find(socket);
    if (entry != clients.end())
        entry->second->open = false;
}

/// Takes a record off the list, under the lock.
void ServerSocketCore::forget(Socket* socket) {
    const auto entry = clients.find(socket);
    if (entry == clients.end())
        return;
    HeldClient& client = *entry->second;
    client.socket = nullptr;
    client.open = false;
    if (client.shown)
        *client.shown = nullptr;
    clients.erase(entry);
}

} // namespace orvex
