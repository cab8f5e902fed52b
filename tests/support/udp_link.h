#pragma once

// The game's socket and three others beside it, on the loopback interface: whoever is behind the group's
// address, the peer's and the last sender's. What is sent has arrived when the call returns.

#include <string>

#include "net/net_socket.h"

struct udp_link {
  // Fills netInfo with its defaults, opens the sockets on free ports and aims the three addresses at them.
  // The peer is at 127.0.0.1.
  udp_link();
  ~udp_link();
  // The next datagram that the game sent to a net_destination; empty when there is none.
  std::string sent_to(char destination);
  // Sends a datagram from the peer to the game.
  void send(const std::string &bytes);

  socket_handle others[3];
};
