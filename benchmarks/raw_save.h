// Peers: replacing a file by bytes that are ready, and by a pugixml tree. Both write a new file, flush it to disk and
// rename it over the old one.

#pragma once

#include <pugixml.hpp>

#include <filesystem>
#include <string_view>

bool ReplaceByBytes(const std::filesystem::path& file, std::string_view bytes);
bool ReplaceByTree(const std::filesystem::path& file, const pugi::xml_document& tree);
