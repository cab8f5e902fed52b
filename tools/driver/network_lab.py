"""A small network inside this machine: computers that know only each other, joined by one switch, and a capture of
what they send to the game's port.

Every computer is a network namespace of its own, and the switch is a bridge in one more, beside that of a second
network for further cards. None has a name outside this process and no existing interface is touched; all is gone
when the process ends, however it ends. Needs iproute2 and either root or a kernel that grants namespaces to every
user."""

import ctypes
import os
import select
import socket
import struct
import subprocess
import threading
from contextlib import contextmanager
from pathlib import Path
from typing import NamedTuple

GAME_PORT = 5555

CLONE_NEWUSER, CLONE_NEWNET = 0x10000000, 0x40000000
ETH_P_ALL, ETH_P_IP = 0x0003, 0x0800
SOL_PACKET, PACKET_IGNORE_OUTGOING = 263, 23
SO_TIMESTAMPNS = 35

libc = ctypes.CDLL(None, use_errno=True)


def call(function, *arguments):
    if function(*arguments) != 0:
        error = ctypes.get_errno()
        raise OSError(error, f"{function.__name__}: {os.strerror(error)}")


def become_root_of_own():
    """Gives an ordinary user the rights over networks made from now on, and over nothing else."""
    user, group = os.geteuid(), os.getegid()
    if user == 0:
        return
    call(libc.unshare, CLONE_NEWUSER | CLONE_NEWNET)
    for name, text in (("setgroups", "deny"), ("uid_map", f"0 {user} 1"), ("gid_map", f"0 {group} 1")):
        Path(f"/proc/self/{name}").write_text(text)


@contextmanager
def coming_back():
    """Returns to the present network."""
    home = os.open("/proc/thread-self/ns/net", os.O_RDONLY)
    try:
        yield
    finally:
        call(libc.setns, home, CLONE_NEWNET)
        os.close(home)


class Machine:
    """A network namespace, which lasts as long as this process and what was started in it."""

    def __init__(self, address=None):
        self.address = address
        with coming_back():
            call(libc.unshare, CLONE_NEWNET)
            self._file = os.open("/proc/thread-self/ns/net", os.O_RDONLY)
        self.path = f"/proc/{os.getpid()}/fd/{self._file}"

    @contextmanager
    def entered(self):
        """Sockets opened and programs started here belong to this machine, then and later."""
        with coming_back():
            call(libc.setns, self._file, CLONE_NEWNET)
            yield

    def ip(self, *commands):
        with self.entered():
            done = subprocess.run(["ip", "-batch", "-"], input="\n".join(commands), capture_output=True, text=True)
        if done.returncode != 0:
            raise OSError(done.stderr.strip())


class Datagram(NamedTuple):
    time: float       # s, as time.time(), when it came to the switch
    source: str       # address
    payload: bytes


class Lab:
    """The network of these machines, by their names of at most eight letters; `lab[name]` is a machine. What
    those in `watched` send to the game's port is kept in `datagrams`. Raises OSError where it cannot be made."""

    def __init__(self, watched, others=()):
        self.datagrams = []
        become_root_of_own()
        self._switch = Machine()
        self._switch.ip(*[f"link add switch{network} up type bridge mcast_snooping 0" for network in (0, 1)])
        self._machines = {name: Machine(f"10.55.0.{number}") for number, name in enumerate((*watched, *others), 1)}
        self._watched, self._ports = watched, []
        for name in self._machines:
            self.add_card(name, 0)
            self.route_group(name, 0)
        threading.Thread(target=self._watch, daemon=True).start()

    def add_card(self, name, card):
        """The machine's next card, in the network of the same number."""
        address = f"10.{55 + card}.{card}.{self[name].address.split('.')[3]}"
        self._switch.ip(f"link add port{card}-{name} up master switch{card} type veth "
                        f"peer name veth{card} netns {self[name].path}")
        self[name].ip("link set lo up", f"link set veth{card} up", f"address add {address}/16 dev veth{card}")
        if name in self._watched:
            with self._switch.entered():
                self._ports.append(open_capture(f"port{card}-{name}"))

    def route_group(self, name, card):
        """Without a route the system chooses no card for the group."""
        self[name].ip(f"route replace 239.0.0.0/8 dev veth{card}")

    def __getitem__(self, name):
        return self._machines[name]

    def put_cable(self, name, card, state):
        """In ("up") or out ("down"), at the switch, so that the machine keeps its address and its routes."""
        self._switch.ip(f"link set port{card}-{name} {state}")

    def sent(self, letter, since=0.0):
        """The datagrams that begin with this letter, in their order, from a time on."""
        return [one for one in list(self.datagrams) if one.time >= since and one.payload[:1] == letter.encode()]

    def _watch(self):
        while True:
            for port in select.select(list(self._ports), [], [], 0.1)[0]:  # a card may have been added
                try:
                    datagram = read_datagram(port)
                except OSError:  # once, when the cable is pulled
                    continue
                if datagram:
                    self.datagrams.append(datagram)


def open_capture(port):
    """A socket that receives what comes into this port of the switch, and when."""
    receiver = socket.socket(socket.AF_PACKET, socket.SOCK_DGRAM, 0)
    receiver.setsockopt(SOL_PACKET, PACKET_IGNORE_OUTGOING, 1)
    receiver.setsockopt(socket.SOL_SOCKET, SO_TIMESTAMPNS, 1)
    receiver.bind((port, ETH_P_ALL))
    return receiver


def read_datagram(receiver):
    """The next datagram for the game's port; None when it was something else."""
    packet, ancillary, _, origin = receiver.recvmsg(2048, 128)
    if origin[1] != ETH_P_IP or packet[9] != socket.IPPROTO_UDP:
        return None
    header = 4 * (packet[0] & 15)
    port, length = struct.unpack_from("!HH", packet, header + 2)
    if port != GAME_PORT:
        return None
    seconds, nanoseconds = struct.unpack("qq", ancillary[0][2])
    return Datagram(seconds + nanoseconds / 1e9, socket.inet_ntoa(packet[12:16]), packet[header + 8:header + length])
