// One case run by both engines, step by step.

#pragma once

#include "random_case.h"

#include <string>

/// The first difference between the engine and the reference engine, in words, or nothing. After every step their
/// statuses, their queries and their documents are compared; and after the last one, when a path of a file is given,
/// what the library saves there and loads again.
std::string FindDifference(const Case& wanted, const char* savedTo = nullptr);

/// A part of the case that differs too, in which nothing can be left out any more.
Case Shrink(Case failed, const char* savedTo = nullptr);
