#pragma once

// The platform's sockets behind one small face: Berkeley sockets, or Winsock 2 on Windows. Everything in
// which the two differ is here and in socket_api.cpp; addresses and their conversions are the same in both.
//
// A function that fails leaves its code in socket_last_error and prints nothing.

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <winsock2.h>
#include <ws2tcpip.h>

using socket_handle = SOCKET;
using socket_length = int;
inline constexpr socket_handle socket_none = INVALID_SOCKET;
inline constexpr bool socket_joins_bound_only = true;
#else
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

using socket_handle = int;
using socket_length = socklen_t;
inline constexpr socket_handle socket_none = -1;
inline constexpr bool socket_joins_bound_only = false;  // a socket must be bound before it can join a group
#endif

#include <cstdint>

// Sets of a readiness wait, and its answer.
enum socket_sets : int {
  socket_readable = 1,
  socket_writable = 2,
};

// One IPv4 address of an interface; addresses are in network byte order.
struct socket_interface {
  std::uint32_t address;
  std::uint32_t mask;     // of its network
  std::uint32_t far_end;  // of a line between two points, else 0; may be the address itself
  unsigned number;        // the interface's, not 0
  bool multicast;         // the interface can do multicast
};

// Starts the socket library where there is one to start (Winsock, version 2.2). False when it does not start.
bool socket_start();
// The code of the last failure, as the platform numbers it.
int socket_last_error();
// An IPv4 UDP socket, or socket_none.
socket_handle socket_open();
// Closes the socket. Returns what the platform says: 0, or -1 on failure.
int socket_close(socket_handle socket);

// Sets an option that takes an int, or an address in network byte order in its place.
bool socket_set_option(socket_handle socket, int level, int option, int value);
// Joins a multicast group on the interface with this address (network byte order), where it fails if it has
// joined already; with INADDR_ANY on the one that the system chooses. Where none can be chosen, which Linux
// says in one way, having no route to the group, and Winsock in several, it is the loopback interface, so
// that the game starts without a network too.
bool socket_join_group(socket_handle socket, in_addr group, std::uint32_t address);
// Binds the socket to a local address and port.
bool socket_bind(socket_handle socket, const sockaddr_in &address);

// Lists the addresses of all interfaces that are up, except for loopback, `most` of them at most. Returns how
// many; 0 also on failure.
int socket_interfaces(socket_interface *list, int most);
// The own address that the system would send from to this one; 0 when it knows no way. Sends nothing.
std::uint32_t socket_source(std::uint32_t to);

// Sends one datagram. Returns the bytes sent, or -1.
int socket_send(socket_handle socket, const char *bytes, int count, const sockaddr_in &to);
// Waits for one datagram and takes it. Returns its bytes, or -1; one of more than `most` bytes is cut to them
// without failing. `length` is the size of `from`, and becomes the length of the sender's address.
int socket_receive(socket_handle socket, char *bytes, int most, sockaddr_in *from, socket_length *length);
// The sender of the datagram that is next in the queue and stays there. False when there is none.
bool socket_peek(socket_handle socket, sockaddr_in *from);
// Waits until the socket is ready in one of `sets` (socket_sets), at most the given time and at most until a
// signal comes. Returns the sets it is ready in, 0 for none, or -1.
int socket_wait(socket_handle socket, int sets, int seconds, int microseconds);
