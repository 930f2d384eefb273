#pragma once

/// @file
/// Entries from programs on this machine, by a socket.

#include <cstddef>
#include <map>
#include <memory>
#include <string>

#include "batch/attendant.h"
#include "batch/entry_reader.h"
#include "batch/entry_source.h"
#include "batch/verdict_sink.h"

namespace batch {

/// A socket of the file system that takes entries, a line of JSON each, and answers each line with
/// its verdict, as soon as there is one, to the client that sent it. Only its own user can reach
/// it.
///
/// Clients take turns, so that a long list of one doesn't keep others waiting. A line that is no
/// entry is answered with that. A client that doesn't read its answers isn't read from either; one
/// that is gone gets none, though what it sent may still be drawn. A client that sends no more, but
/// still reads, gets all its answers before the socket closes. What is held for a client is
/// bounded.
class SocketService final : public EntrySource, public VerdictSink, public Attendant {
public:
    /// @param defaults  options of entries
    /// @param folder    the output folder
    SocketService(const Options& defaults, const std::string& folder);
    /// Sends what can be sent at once, closes all, and removes the socket's file.
    ~SocketService() override;

    /// Makes the socket. One that nobody listens at any more, as after a kill, is replaced.
    /// @return what is wrong, as a sentence without a stop; empty if nothing is
    std::string open(const std::string& path);

    NextEntry next() override;
    int descriptor() const override { return events; }
    void attend() override;
    std::string put(const Verdict& verdict) override;
    std::string answer(const Entry& entry, const Verdict& verdict) override;

private:
    class Client;
    using Clients = std::map<int, std::unique_ptr<Client>>; ///< by their descriptors

    EntryReader reader;
    std::string path; ///< of the socket's file, once it is this one's
    int events = -1;
    int listener = -1;
    bool is_listening = false; ///< for more clients
    Clients clients;
    int last_served = -1;              ///< the client whose entry was taken last
    std::map<std::size_t, int> askers; ///< of entries at hand, by their tickets
    std::size_t tickets = 0;

    std::string take_place(const std::string& wanted);
    void accept_clients();
    void listen_to_more();
    bool take_from(Client& client, NextEntry& entry);
    void watch(Client& client, bool is_new = false) const;
    void send(Client& client, const Verdict& verdict);
    void close_if_done(int descriptor);
};

} // namespace batch
