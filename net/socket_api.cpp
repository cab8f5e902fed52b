#include "net/socket_api.h"

#ifdef _WIN32
#include <mswsock.h>
#else
#include <net/if.h>
#include <sys/select.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#endif

namespace {

template <typename option_value>
bool set_option(socket_handle socket, int level, int option, const option_value &value) {
  return setsockopt(socket, level, option, reinterpret_cast<const char *>(&value), sizeof value) == 0;
}

}  // namespace

#ifdef _WIN32

namespace {

using byte_count = int;

// By itself Winsock fails a receive after a datagram of ours has met a closed port. Here silence alone tells
// that a peer is gone.
void ignore_closed_ports(socket_handle socket) {
  BOOL report = FALSE;
  DWORD size = 0;
  WSAIoctl(socket, SIO_UDP_CONNRESET, &report, sizeof report, nullptr, 0, &size, nullptr, nullptr);
}

// Too many codes have been seen for that to tell it from another failure.
bool without_network(int) {
  return true;
}

bool join_on_loopback(socket_handle socket, in_addr group) {
  ip_mreq request = {};
  request.imr_multiaddr = group;
  request.imr_interface.s_addr = htonl(INADDR_LOOPBACK);
  return set_option(socket, IPPROTO_IP, IP_ADD_MEMBERSHIP, request);
}

int receive(socket_handle socket, char *bytes, int most, int flags, sockaddr_in *from,
            socket_length *length) {
  const int received = recvfrom(socket, bytes, most, flags, reinterpret_cast<sockaddr *>(from), length);
  if (received == SOCKET_ERROR && WSAGetLastError() == WSAEMSGSIZE) return most;  // cut, and taken
  return received;
}

// A set of Winsock holds any handle.
bool fits_a_set(socket_handle) {
  return true;
}

}  // namespace

bool socket_start() {
  WSADATA data;
  return WSAStartup(MAKEWORD(2, 2), &data) == 0;
}

int socket_last_error() {
  return WSAGetLastError();
}

socket_handle socket_open() {
  const socket_handle opened = socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP);
  if (opened != socket_none) ignore_closed_ports(opened);
  return opened;
}

int socket_close(socket_handle socket) {
  return closesocket(socket);
}

#else

namespace {

using byte_count = std::size_t;

bool without_network(int join_error) {
  return join_error == ENODEV;
}

// By the interface's name, since without a network the loopback interface may be down and have no address.
bool join_on_loopback(socket_handle socket, in_addr group) {
  ip_mreqn request = {};
  request.imr_multiaddr = group;
  request.imr_address.s_addr = htonl(INADDR_LOOPBACK);
  request.imr_ifindex = static_cast<int>(if_nametoindex("lo"));
  return set_option(socket, IPPROTO_IP, IP_ADD_MEMBERSHIP, request);
}

int receive(socket_handle socket, char *bytes, int most, int flags, sockaddr_in *from,
            socket_length *length) {
  return static_cast<int>(recvfrom(socket, bytes, static_cast<byte_count>(most), flags,
                                   reinterpret_cast<sockaddr *>(from), length));
}

// A set is an array of bits: a handle outside of it must not be put in.
bool fits_a_set(socket_handle socket) {
  const bool fits = socket >= 0 && socket < FD_SETSIZE;
  if (!fits) errno = EBADF;
  return fits;
}

}  // namespace

bool socket_start() {
  return true;
}

int socket_last_error() {
  return errno;
}

socket_handle socket_open() {
  return socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP);
}

int socket_close(socket_handle socket) {
  return close(socket);
}

#endif

bool socket_set_option(socket_handle socket, int level, int option, int value) {
  return set_option(socket, level, option, value);
}

bool socket_join_group(socket_handle socket, in_addr group) {
  ip_mreq request = {};
  request.imr_multiaddr = group;
  request.imr_interface.s_addr = htonl(INADDR_ANY);
  if (set_option(socket, IPPROTO_IP, IP_ADD_MEMBERSHIP, request)) return true;
  return without_network(socket_last_error()) && join_on_loopback(socket, group);
}

bool socket_bind(socket_handle socket, const sockaddr_in &address) {
  return bind(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
}

int socket_send(socket_handle socket, const char *bytes, int count, const sockaddr_in &to) {
  return static_cast<int>(sendto(socket, bytes, static_cast<byte_count>(count), 0,
                                 reinterpret_cast<const sockaddr *>(&to), sizeof to));
}

int socket_receive(socket_handle socket, char *bytes, int most, sockaddr_in *from, socket_length *length) {
  return receive(socket, bytes, most, 0, from, length);
}

bool socket_peek(socket_handle socket, sockaddr_in *from) {
  char byte = 0;
  socket_length length = sizeof *from;
  return receive(socket, &byte, sizeof byte, MSG_PEEK, from, &length) >= 0;
}

int socket_wait(socket_handle socket, int sets, int seconds, int microseconds) {
  if (!fits_a_set(socket)) return -1;
  fd_set read_set;
  fd_set write_set;
  FD_ZERO(&read_set);
  FD_ZERO(&write_set);
  if ((sets & socket_readable) != 0) FD_SET(socket, &read_set);
  if ((sets & socket_writable) != 0) FD_SET(socket, &write_set);
  timeval wait = {seconds, microseconds};
  const int highest = static_cast<int>(socket) + 1;  // Winsock takes no notice of it
  if (select(highest, &read_set, &write_set, nullptr, &wait) < 0) return -1;
  return (FD_ISSET(socket, &read_set) ? socket_readable : 0) |
         (FD_ISSET(socket, &write_set) ? socket_writable : 0);
}
