// Writes the page: one XHTML file that needs nothing else.

#pragma once

#include "page/page_content.h"

/// The whole page in UTF-8. The same content gives the same bytes.
std::string WritePage(const PageContent& content);
