// The digests that are kept beside the documents: a line for each file, as the usual tools write and check them.

#pragma once

#include <map>
#include <string>
#include <string_view>

/// Digests by path.
using DigestList = std::map<std::string, std::string>;

/// Lines that are none are left out: what cannot be read is as good as never kept.
DigestList ReadDigestList(std::string_view text);

std::string DigestListText(const DigestList& list);
