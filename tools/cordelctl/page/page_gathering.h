// What the page shows of the documents, gathered from them and from the files that they list.

#pragma once

#include "context.h"
#include "page/page_content.h"

struct PageWishes {
    std::string specimenText;
    std::vector<DocumentPlace> documents;
};

/// Reads the documents. One that cannot be read has its reason on the page.
PageContent GatherPage(Context& context, const PageWishes& wishes);
