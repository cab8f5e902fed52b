#include "core/version.h"

const char *const program_version = PUGNADO_VERSION;
const char *const menu_version = PUGNADO_MENU_VERSION;
