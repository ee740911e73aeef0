// What to send to a printer so that it tells about its file system.

#pragma once

#include <string>
#include <vector>

/// The bytes to send. Asks for the volumes and for the files in each of these folders, given as VOLUME:FOLDER,
/// "0:fonts" say. Throws std::invalid_argument for a folder that cannot be asked for.
std::string FileSystemInquiry(const std::vector<std::string>& folders);
