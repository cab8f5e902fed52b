#pragma once

// What a received message does on this machine: fills the room list, pairs host and guest, starts the match
// on both, mirrors the host's match on the guest, feeds the guest's controls into the host's match, and ends
// pairings.

// Takes in the NUL-terminated text of one datagram of `length` bytes. What does not concern this machine
// now, by screen, role, sender or room, is ignored, and so is what cannot be read. Sends nothing but the
// acknowledgement of a start.
void interpret_message(const char *text, int length);
