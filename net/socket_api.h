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

// Sets of a readiness wait, and its answer.
enum socket_sets : int {
  socket_readable = 1,
  socket_writable = 2,
};

// Starts the socket library where there is one to start (Winsock, version 2.2). False when it does not start.
bool socket_start();
// The code of the last failure, as the platform numbers it.
int socket_last_error();
// An IPv4 UDP socket, or socket_none.
socket_handle socket_open();
// Closes the socket. Returns what the platform says: 0, or -1 on failure.
int socket_close(socket_handle socket);

// Sets an option that takes an int.
bool socket_set_option(socket_handle socket, int level, int option, int value);
// Joins a multicast group on any interface. Without a network, which Linux tells in one way, having no route
// to the group, and Winsock in several, joins it on the loopback interface, so that the game starts offline
// too.
bool socket_join_group(socket_handle socket, in_addr group);
// Binds the socket to a local address and port.
bool socket_bind(socket_handle socket, const sockaddr_in &address);

// Sends one datagram. Returns the bytes sent, or -1.
int socket_send(socket_handle socket, const char *bytes, int count, const sockaddr_in &to);
// Waits for one datagram and takes it. Returns its bytes, or -1; one of more than `most` bytes is cut to them
// without failing. `length` is the size of `from`, and becomes the length of the sender's address.
int socket_receive(socket_handle socket, char *bytes, int most, sockaddr_in *from, socket_length *length);
// The sender of the datagram that is next in the queue and stays there. False when there is none.
bool socket_peek(socket_handle socket, sockaddr_in *from);
// Waits until the socket is ready in one of `sets` (socket_sets), at most the given time. Returns the sets it
// is ready in, 0 when the time has passed, or -1.
int socket_wait(socket_handle socket, int sets, int seconds, int microseconds);
