#pragma once

// The one place that lists every screen with its record and its operations.

#include <span>

#include "core/state_machine.h"

// All screens, for the state machine to change between.
std::span<const screen_entry> screen_table();
