// Documents that a test tells apart by a name in them.

#pragma once

#include "host_test.h"

#include <string>

inline std::string Named(const std::string& name) { return Document("<Info><Item Name=\"" + name + "\"/></Info>"); }

/// The name in the current document.
inline AnsiString CurrentName() { return GetAttrValue("Info", "Name"); }
