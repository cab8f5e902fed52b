#pragma once

// What a machine of a LAN match takes in from its peer during a frame: the guest's controls on the host, the
// host's match on the guest. Outside of a LAN match all of this does nothing.

// The host's share of the frame, between its input and its update: reads what is there.
void match_drain_host();
// The guest's share, between its update and its picture: waits for the host until shortly before the frame is
// over, so that it keeps the host's pace.
void match_drain_guest();

// Sleeps out the rest of a frame, in ms. While other machines flood a match with datagrams, sleeps in short
// naps and throws those away in between: they would fill the system's queue, and the peer's would be lost.
void match_sleep(int rest);
