// Moments as texts.

#pragma once

#include <chrono>
#include <string>

/// "2026-11-20 16:42:02", in UTC.
std::string TextOfTime(std::chrono::sys_seconds time);
