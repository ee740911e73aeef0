// A list of one row, before and after a change that is to be saved.

#pragma once

#include "host_test.h"

inline const char* const kInfo = "<Info><Item Name=\"before\"/></Info>";
inline const Records kBefore{Record{{"Name", "before"}}};
inline const Records kAfter{Record{{"Name", "after"}}};
