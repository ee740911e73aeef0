// What an ICC profile says of itself. All texts are UTF-8.

#pragma once

#include <filesystem>
#include <string>

struct ProfileFacts {
    std::string description;
    std::string colorSpace;  // as the profile spells it, without blanks: "RGB", "CMYK", "GRAY", "Lab", ...
    std::string deviceClass; // as the profile spells it: "mntr", "prtr", "link", ...
    std::string copyright;
    std::string manufacturer;
    std::string model;
};

/// Throws std::runtime_error with the reason when the file cannot be read as a profile.
ProfileFacts ReadProfileFacts(const std::filesystem::path& path);
