// What is recorded of a file on this computer: its kind, and the details that its own content gives.

#pragma once

#include "cordelbox.h"

#include <filesystem>
#include <string>
#include <vector>

/// The details of a file, as WritePrjFile takes them.
struct FileDetails {
    std::string type;
    std::string title;                   // what the file calls itself, as UTF-8, for messages
    std::string profileType;             // of a colour profile: which slots it takes
    std::vector<char> record;            // TrueTypeDetail, BitmapFontDetail, IcmProfileDetail, or nothing
    const char* folder;                  // where such files go on the printer's volume
    const char* component;               // to which component such files belong
    std::vector<std::string> notes = {}; // what had to be changed to fit
};

/// The type that the first bytes of a file tell, a font, a soft font or a colour profile; empty for any other file.
/// Throws when it cannot be read.
std::string FileTypeOf(const std::filesystem::path& path);

/// Whether a font or profile is taken whose content cannot be read: then its name is all that is told of it.
enum class Unreadable { Refused, Taken };

/// Reads a file of this type. `profileType` may be empty: then the content decides. Throws when the file cannot be
/// taken.
FileDetails ReadFileDetails(const std::filesystem::path& path, const std::string& type, const std::string& profileType,
                            Unreadable unreadable);
