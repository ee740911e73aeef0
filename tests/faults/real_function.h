// The C library's own function behind one of the same name that a test defines.

#pragma once

#include <dlfcn.h>

template <class Function>
Function Real(const char* name) {
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}
