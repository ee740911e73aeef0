// When a file was last changed, as it is recorded.

#pragma once

#include <filesystem>
#include <string>

/// "2026-11-20 16:42:02", in UTC. Throws std::filesystem::filesystem_error.
std::string ChangeTime(const std::filesystem::path& path);
