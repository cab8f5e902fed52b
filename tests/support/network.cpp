#include "tests/support/network.h"

#include <algorithm>
#include <cstring>

#include "net/net.h"
#include "tests/support/world.h"

fake_network network;

namespace {

constexpr socket_handle handle = 5;

std::string dotted(std::uint32_t address) {
  return inet_ntoa({address});
}

// Puts it on record, and says whether it is done.
bool ask(socket_handle socket, const std::string &name, const std::string &value) {
  network.asked += name + "=" + value + " ";
  return socket == handle && !network.fails.contains(name);
}

}  // namespace

void share_room() {
  network = {};
  net_init(net_mode_multicast);
  network.asked = "";
  std::strcpy(netInfo.username, "Bob");
  std::strcpy(netInfo.peer_username, "Ada");
  std::strcpy(netInfo.peer_ip, peer_ip);
  std::strcpy(netInfo.room_id, "Rb4kT8mA");
  net_setup_p2p_struct();
}

std::string sent_to(const std::string &ip) {
  std::string texts;
  for (const datagram &each : network.sent)
    texts += each.ip == ip ? each.bytes.c_str() + std::string("|") : "";
  std::erase_if(network.sent, [&](const datagram &each) { return each.ip == ip; });
  return texts;
}

bool socket_start() {
  return !network.fails.contains("start");
}

int socket_last_error() {
  return socket_error;
}

socket_handle socket_open() {
  return handle;
}

int socket_close(socket_handle) {
  return 0;
}

bool socket_set_option(socket_handle socket, int level, int option, int value) {
  if (level == SOL_SOCKET)
    return ask(socket, option == SO_REUSEADDR ? "reuse" : "broadcast", std::to_string(value));
  if (option == IP_MULTICAST_LOOP) return ask(socket, "loop", std::to_string(value));
  return ask(socket, "from", dotted(static_cast<std::uint32_t>(value)));
}

bool socket_join_group(socket_handle socket, in_addr group, std::uint32_t address) {
  return ask(socket, "join", dotted(group.s_addr) + "@" + dotted(address));
}

bool socket_bind(socket_handle socket, const sockaddr_in &to) {
  return ask(socket, "bind", dotted(to.sin_addr.s_addr) + ":" + std::to_string(ntohs(to.sin_port)));
}

int socket_interfaces(socket_interface *list, int) {
  return static_cast<int>(std::ranges::copy(network.interfaces, list).out - list);
}

std::uint32_t socket_source(std::uint32_t to) {
  for (const socket_interface &own : network.interfaces)
    if (own.far_end == to || ((own.address ^ to) & own.mask) == 0) return own.address;
  return inet_addr(network.route.c_str());
}

int socket_send(socket_handle, const char *bytes, int count, const sockaddr_in &to) {
  if (network.fails.contains("send") || to.sin_port != htons(netInfo.port)) return -1;
  network.sent.push_back({dotted(to.sin_addr.s_addr), {bytes, static_cast<std::size_t>(count)}});
  return count;
}

bool socket_peek(socket_handle, sockaddr_in *from) {
  from->sin_addr.s_addr = inet_addr(network.inbox.front().ip.c_str());
  from->sin_port = htons(netInfo.port);
  return true;
}

int socket_receive(socket_handle socket, char *bytes, int most, sockaddr_in *from, socket_length *length) {
  if (network.fails.contains("receive") || network.inbox.empty() || *length != sizeof *from) return -1;
  socket_peek(socket, from);
  const std::string text = network.inbox.front().bytes;
  network.inbox.pop_front();
  return static_cast<int>(text.copy(bytes, static_cast<std::size_t>(most)));
}

int socket_wait(socket_handle, int sets, int seconds, int microseconds) {
  if (network.fails.contains("wait")) return -1;
  const int ready = sets & (socket_writable | (network.inbox.empty() ? 0 : socket_readable));
  if (ready == 0) world.ticks += static_cast<Uint32>(seconds * 1000 + microseconds / 1000);
  return ready;
}
