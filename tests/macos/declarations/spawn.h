// What the Mac's C library adds to the starting of processes.
#pragma once

#include_next <spawn.h>

#include "Availability.h"

#define POSIX_SPAWN_CLOEXEC_DEFAULT 0x4000

HARBOR_EXPORT int posix_spawn_file_actions_addinherit_np(posix_spawn_file_actions_t* actions, int descriptor)
    HARBOR_SINCE(10.7);
HARBOR_EXPORT int posix_spawn_file_actions_addfchdir_np(posix_spawn_file_actions_t* actions, int descriptor)
    HARBOR_SINCE(10.15);
HARBOR_EXPORT int posix_spawn_file_actions_addfchdir_np(posix_spawn_file_actions_t* actions, int descriptor)
    HARBOR_SINCE(10.15);
HARBOR_EXPORT int posix_spawn_file_actions_addchdir_np(posix_spawn_file_actions_t* actions, const char* path)
    HARBOR_SINCE(10.15);
