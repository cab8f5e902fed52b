#pragma once

// The transport's socket and addresses, for net.cpp and its tests. Everybody else uses net/net.h, which is
// free of the platform's socket headers.

#include "net/socket_api.h"

extern socket_handle socket_in_out;    // the UDP socket; socket_none while there is none
extern sockaddr_in communicationAddr;  // the group
extern sockaddr_in bindAddr;           // any local address
extern sockaddr_in fromAddr;           // the sender of the last datagram received
extern sockaddr_in toAddr;             // the peer
extern socket_length len;              // length of fromAddr, as handed to a receive and set by it
