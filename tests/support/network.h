#pragma once

// The network that the game under test is on. The functions of net/socket_api are defined here in its place,
// so that nothing is sent, nothing is waited for and every failure can be had.

#include <deque>
#include <set>
#include <string>
#include <vector>

#include "net/socket_api.h"

inline constexpr const char *group_ip = "239.1.1.1", *peer_ip = "10.0.0.1", *stranger_ip = "10.0.0.7";
inline constexpr int socket_error = 77;  // the code of every failure

struct datagram {
  std::string ip;     // the other end's dotted address
  std::string bytes;  // of the game's own datagrams, as of all others: up to 150
};

struct fake_network {
  std::deque<datagram> inbox;   // for the game to receive
  std::vector<datagram> sent;   // by the game
  std::string asked;            // what was asked of the socket, such as "loop=0 bind=0.0.0.0:5555 "
  std::set<std::string> fails;  // names of what fails, such as "bind"
  std::vector<socket_interface> interfaces;
  std::string route = "0.0.0.0";  // the own address on the way to whatever is on no interface's network
};
extern fake_network network;

// Makes netInfo Bob's, who shares the room Rb4kT8mA with Ada on an otherwise empty network; she is the peer.
void share_room();
// Takes out what was sent to an address: the texts, with a bar behind each.
std::string sent_to(const std::string &ip);
