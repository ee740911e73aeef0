// What a verb gets to work with, and what it leaves behind.

#pragma once

#include "failure.h"
#include "globals.h"

struct Host {
    Globals globals;
    ExitCode exit = ExitCode::Done;
};
