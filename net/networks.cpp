#include "net/networks.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "net/socket_api.h"

namespace {

using interface_list = std::span<const socket_interface>;

bool is_own(std::uint32_t address, interface_list list) {
  return std::ranges::any_of(list, [address](const auto &one) { return one.address == address; });
}

// An address that another machine of the network may have. It is as close to the own one as can be, since a
// part of a network can have a route of its own. An address that has its network for itself is asked about
// the group.
std::uint32_t another_machine(const socket_interface &one, interface_list list, std::uint32_t group) {
  if (one.far_end != 0 && one.far_end != one.address) return one.far_end;
  const std::uint32_t hosts = ~ntohl(one.mask);
  for (std::uint32_t bits = 1; bits < hosts + 1; ++bits) {
    const std::uint32_t other = ntohl(one.address) ^ bits;
    const bool is_machine = (other & hosts) != 0 && (other & hosts) != hosts;
    if (is_machine && !is_own(htonl(other), list)) return htonl(other);
  }
  return group;
}

// The order among an interface's addresses: first the system's own choice, last one that the machine has
// given to itself for want of another.
int rank(const socket_interface &one, std::uint32_t route) {
  const bool self_given = ntohl(one.address) >> 16 == 0xA9FE;  // 169.254.0.0/16
  if (one.address == route) return 0;
  return self_given ? 2 : 1;
}

}  // namespace

std::span<const local_network> networks_find(std::uint32_t group, local_network (&found)[network_limit]) {
  socket_interface all[network_limit];
  const std::span list(all, static_cast<std::size_t>(socket_interfaces(all, network_limit)));
  const std::uint32_t route = socket_source(group);
  std::ranges::stable_sort(list, {},
                           [route](const auto &one) { return std::pair(one.number, rank(one, route)); });
  unsigned announced = 0;  // number of the last interface that is announced from
  std::size_t count = 0;
  for (const socket_interface &one : list) {
    const bool routed = one.address == route;
    const bool announces = (one.multicast || routed) && one.number != announced &&
                           socket_source(another_machine(one, list, group)) == one.address;
    if (announces) announced = one.number;
    found[count++] = {one.address, one.multicast, routed, announces};
  }
  return std::span(found, count);
}
