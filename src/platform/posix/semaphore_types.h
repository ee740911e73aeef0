// The library's own semaphores are what a host's are: sem_t asks the system only when somebody has to wait.

#pragma once

#include "cordelbox.h"

namespace platform {

using LockHandle = SemaphoreHandle;

} // namespace platform
