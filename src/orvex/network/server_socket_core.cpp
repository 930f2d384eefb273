#include "orvex/network/private/server_socket_core.h"

namespace orvex {

void ServerSocketCore::hold(HeldClient& client, Socket* socket, Socket** shown) {
    const std::lock_guard guard(mutex);
    client = {socket, shown, true, clients};
    clients = &client;
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
    for (HeldClient* client = clients; client; client = client->next)
        if (client->socket == socket)
            client->open = false;
}

/// Takes a record off the list, under the lock.
void ServerSocketCore::forget(const Socket* socket) {
    HeldClient** link = &clients;
    while (*link && (*link)->socket != socket)
        link = &(*link)->next;
    if (!*link)
        return;
    HeldClient& client = **link;
    *link = client.next;
    client.socket = nullptr;
    client.open = false;
    if (client.shown)
        *client.shown = nullptr;
}

} // namespace orvex
