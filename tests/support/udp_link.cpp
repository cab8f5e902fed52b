#include "tests/support/udp_link.h"

#include <arpa/inet.h>

#include <cstring>

#include "net/net.h"

namespace {

socket_handle open_on_loopback(sockaddr_in *address) {
  const socket_handle opened = socket_open();
  *address = {};
  address->sin_family = AF_INET;
  address->sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socket_bind(opened, *address);
  socklen_t length = sizeof *address;
  getsockname(opened, reinterpret_cast<sockaddr *>(address), &length);
  return opened;
}

}  // namespace

udp_link::udp_link() {
  netInfo = {};
  netInfo.ip_type = 'a';
  netInfo.port = 5555;
  std::strcpy(netInfo.peer_ip, "127.0.0.1");
  socket_in_out = open_on_loopback(&bindAddr);
  others[0] = open_on_loopback(&communicationAddr);
  others[1] = open_on_loopback(&toAddr);
  others[2] = open_on_loopback(&fromAddr);
}

udp_link::~udp_link() {
  for (const socket_handle other : others) socket_close(other);
  net_close();
  netInfo = {};
}

std::string udp_link::sent_to(char destination) {
  char bytes[1000];
  const ssize_t count = recv(others[destination - 'a'], bytes, sizeof bytes, MSG_DONTWAIT);
  return std::string(bytes, count < 0 ? 0 : static_cast<std::size_t>(count));
}

void udp_link::send(const std::string &bytes) {
  socket_send(others[1], bytes.data(), static_cast<int>(bytes.size()), bindAddr);
}
