#pragma once

/// @file
/// Forward declarations of the network classes.

namespace orvex {

class SocketCore;
class TcpServer;

struct SockAddr;
struct Socket;
struct TcpServerClientThreadParams;

enum SOCKET_OPTION : int;
enum SOCKET_PROTOCOL : int;
enum SOCKET_TYPE : int;

} // namespace orvex
