#include "net/socket_api.h"

#ifdef _WIN32
#include <mswsock.h>
// Needs Winsock's headers before it.
#include <iphlpapi.h>
#else
#include <ifaddrs.h>
#include <net/if.h>
#include <sys/select.h>
#include <unistd.h>

#include <cstddef>
#endif

#include <cerrno>

namespace {

template <typename option_value>
bool set_option(socket_handle socket, int level, int option, const option_value &value) {
  return setsockopt(socket, level, option, reinterpret_cast<const char *>(&value), sizeof value) == 0;
}

bool join(socket_handle socket, in_addr group, std::uint32_t address) {
  ip_mreq request = {};
  request.imr_multiaddr = group;
  request.imr_interface.s_addr = address;
  return set_option(socket, IPPROTO_IP, IP_ADD_MEMBERSHIP, request);
}

std::uint32_t address_in(const sockaddr *address) {
  return address == nullptr ? 0 : reinterpret_cast<const sockaddr_in *>(address)->sin_addr.s_addr;
}

}  // namespace

#ifdef _WIN32

namespace {

using byte_count = int;
constexpr ULONG adapters_size = 65536;  // bytes, enough for more adapters than there are

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
  return join(socket, group, htonl(INADDR_LOOPBACK));
}

bool is_usable(const IP_ADAPTER_ADDRESSES &adapter) {
  return adapter.OperStatus == IfOperStatusUp && adapter.IfType != IF_TYPE_SOFTWARE_LOOPBACK;
}

socket_interface describe(const IP_ADAPTER_ADDRESSES &adapter, const IP_ADAPTER_UNICAST_ADDRESS &one) {
  ULONG mask = 0;
  ConvertLengthToIpv4Mask(one.OnLinkPrefixLength, &mask);
  const bool multicast = (adapter.Flags & IP_ADAPTER_NO_MULTICAST) == 0;
  return {address_in(one.Address.lpSockaddr), mask, 0, adapter.IfIndex, multicast};
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

int socket_interfaces(socket_interface *list, int most) {
  alignas(IP_ADAPTER_ADDRESSES) static char adapters[adapters_size];
  const auto *adapter = reinterpret_cast<IP_ADAPTER_ADDRESSES *>(adapters);
  ULONG size = adapters_size;
  if (GetAdaptersAddresses(AF_INET, GAA_FLAG_SKIP_DNS_SERVER, nullptr,
                           reinterpret_cast<IP_ADAPTER_ADDRESSES *>(adapters), &size) != NO_ERROR) {
    return 0;
  }
  int count = 0;
  for (; adapter != nullptr; adapter = adapter->Next) {
    if (!is_usable(*adapter)) continue;
    for (const auto *one = adapter->FirstUnicastAddress; one != nullptr && count < most; one = one->Next) {
      list[count++] = describe(*adapter, *one);
    }
  }
  return count;
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

bool is_usable(const ifaddrs &one) {
  const bool ip4 = one.ifa_addr != nullptr && one.ifa_addr->sa_family == AF_INET;
  return ip4 && (one.ifa_flags & IFF_UP) != 0 && (one.ifa_flags & IFF_LOOPBACK) == 0;
}

socket_interface describe(const ifaddrs &one) {
  const bool line = (one.ifa_flags & IFF_POINTOPOINT) != 0;
  return {address_in(one.ifa_addr), address_in(one.ifa_netmask), line ? address_in(one.ifa_dstaddr) : 0,
          if_nametoindex(one.ifa_name), (one.ifa_flags & IFF_MULTICAST) != 0};
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

int socket_interfaces(socket_interface *list, int most) {
  ifaddrs *all = nullptr;
  if (getifaddrs(&all) != 0) return 0;
  int count = 0;
  for (const ifaddrs *one = all; one != nullptr && count < most; one = one->ifa_next) {
    if (is_usable(*one)) list[count++] = describe(*one);
  }
  freeifaddrs(all);
  return count;
}

#endif

bool socket_set_option(socket_handle socket, int level, int option, int value) {
  return set_option(socket, level, option, value);
}

bool socket_join_group(socket_handle socket, in_addr group, std::uint32_t address) {
  if (join(socket, group, address)) return true;
  return address == INADDR_ANY && without_network(socket_last_error()) && join_on_loopback(socket, group);
}

// A UDP socket that is connected has asked for the way, and nothing else has happened.
std::uint32_t socket_source(std::uint32_t to) {
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = to;
  address.sin_port = htons(1);  // any but 0
  const socket_handle asking = socket_open();
  socket_length length = sizeof address;
  sockaddr *ends = reinterpret_cast<sockaddr *>(&address);
  const bool answered = connect(asking, ends, length) == 0 && getsockname(asking, ends, &length) == 0;
  socket_close(asking);
  return answered ? address.sin_addr.s_addr : 0;
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
  char start = 0;
  socket_length length = sizeof *from;
  return receive(socket, &start, sizeof start, MSG_PEEK, from, &length) >= 0;
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
  if (select(highest, &read_set, &write_set, nullptr, &wait) < 0) {
    return socket_last_error() == EINTR ? 0 : -1;  // a signal, such as that of Ctrl+C, ends the wait early
  }
  return (FD_ISSET(socket, &read_set) ? socket_readable : 0) |
         (FD_ISSET(socket, &write_set) ? socket_writable : 0);
}
