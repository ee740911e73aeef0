// Peers: other parsers over a document.

#pragma once

#include <libxml/tree.h>

#include <filesystem>
#include <memory>
#include <string_view>

/// Expat over bytes in memory, without a handler: nothing comes of it but that they are well-formed.
bool IsWellFormedForExpat(std::string_view bytes);

struct Libxml2Release {
    void operator()(xmlDoc* document) const noexcept { xmlFreeDoc(document); }
};
using Libxml2Tree = std::unique_ptr<xmlDoc, Libxml2Release>;

/// The tree of libxml2 without text that is only white space; null when it cannot be had.
Libxml2Tree ReadByLibxml2(const std::filesystem::path& file);
