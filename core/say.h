#pragma once

// Lines for the player: on standard output, and kept for whoever has none to look at.

// Prints as std::printf does, up to 999 bytes at once, and keeps what it prints.
[[gnu::format(printf, 1, 2)]] void say(const char *format, ...);
// The last 4000 bytes that were said; valid until the next `say`.
const char *said_lines();
