// Damaged copies of fonts and colour profiles that Debian packages install, each with the cause that has to be named.

#pragma once

#include "verification/file_finding.h"

#include <string>
#include <vector>

enum class FileKind { Font, SoftFont, Profile };

struct Damage {
    std::string name;
    FileKind kind;
    std::string bytes;
    Cause cause; // to be found
};

/// The fonts and profiles that are damaged, before they are.
const std::vector<std::string>& UndamagedFonts();
const std::vector<std::string>& UndamagedProfiles();

/// Throws when one of these files cannot be read.
std::vector<Damage> MakeDamages();

/// A small soft font without a fault.
std::string WholeSoftFont();
