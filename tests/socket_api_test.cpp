// What the sockets make of the real system, on a network that only this program is on.

#include "net/socket_api.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>

namespace {

sockaddr_in on(const char *ip) {
  return {AF_INET, htons(5555), {inet_addr(ip)}, {}};
}

bool ip(const char *arguments) {
  return std::system(("PATH=$PATH:/sbin:/usr/sbin; ip " + std::string(arguments)).c_str()) == 0;
}

}  // namespace

TEST(socket_api, does_what_it_says) {
  const std::string user = std::to_string(getuid());
  if (unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0) GTEST_SKIP() << "no network can be made";
  std::ofstream("/proc/self/uid_map") << "0 " + user + " 1";  // root there, so that it can
  const socket_handle one = socket_open(), other = socket_open();
  const in_addr group = on("239.1.1.1").sin_addr, cable = on("10.1.0.2").sin_addr;
  EXPECT_TRUE(socket_join_group(one, group, INADDR_ANY)) << "on the loopback interface";
  EXPECT_FALSE(socket_join_group(other, group, cable.s_addr));
  EXPECT_EQ(socket_source(inet_addr("10.1.0.9")), 0u) << "there is no way";
  ASSERT_TRUE(ip("link set lo up") && ip("link add cable type veth peer name far") &&
              ip("link set cable up") && ip("addr add 10.1.0.2/24 dev cable"));
  EXPECT_TRUE(socket_join_group(other, group, cable.s_addr));

  socket_interface found[2];
  ASSERT_TRUE(socket_interfaces(found, 0) == 0 && socket_interfaces(found, 2) == 1);
  EXPECT_TRUE(found[0].address == cable.s_addr && found[0].mask == inet_addr("255.255.255.0"));
  EXPECT_TRUE(found[0].far_end == 0 && found[0].number > 1 && found[0].multicast);
  EXPECT_EQ(socket_source(inet_addr("10.1.0.9")), cable.s_addr);

  EXPECT_TRUE(socket_set_option(one, SOL_SOCKET, SO_REUSEADDR, 1) && socket_bind(one, on("127.0.0.1")));
  EXPECT_TRUE(!socket_bind(other, on("127.0.0.1")) && socket_last_error() == EADDRINUSE);
  EXPECT_EQ(socket_send(one, "datagram", 8, on("10.2.0.9")), -1);
  ASSERT_EQ(socket_send(other, "datagram", 8, on("127.0.0.1")), 8);
  sockaddr_in from = {};
  socket_length length = sizeof from;
  char bytes[9] = "........";
  EXPECT_TRUE(socket_peek(one, &from) && from.sin_addr.s_addr == inet_addr("127.0.0.1"));
  ASSERT_EQ(socket_wait(one, socket_readable, 1, 0), socket_readable) << "it is there still";
  EXPECT_TRUE(socket_receive(one, bytes, 4, &from, &length) == 4 && std::string(bytes) == "data....");
  EXPECT_TRUE(socket_close(one) == 0 && socket_close(one) == -1);
  for (const socket_handle invalid : {one, socket_none, FD_SETSIZE})
    EXPECT_EQ(socket_wait(invalid, socket_readable, 0, 0), -1);
}
