// The lowest ID that no file of a kind uses.

#pragma once

#include "ids/file_list_names.h"
#include "store/xml_query.h"

/// Looks through the IDs from 0 on. Looks for files with a certain ID and Type, until the first hit: from then on for
/// files with that ID of any Type. A read that finds something leaves its own count of one in the query, and only that
/// many pairs count in the next. Hosts rely on it.
class CFreeIdSearch {
public:
    /// `kind` as for GetValidID: 0 for fonts.
    CFreeIdSearch(CXmlObject* document, int32_t kind);

    /// The lowest free ID from the last one on, that one included; -1 when there is none. While nothing but files are
    /// added, that is the lowest of all.
    int32_t Find();

private:
    /// Of one Type.
    class CUsers {
    public:
        CUsers(CXmlObject* document, const FileListNames& names, const char* type);
        bool Have(const AnsiString& id);

    private:
        CXmlObject* const m_pDocument;
        const FileListNames& m_names;
        const AnsiString m_strType;
        CXmlQuery m_query;
    };

    const FileListNames m_names;
    CUsers m_first;
    CUsers m_second; // fonts only
    const bool m_bFonts;
    int32_t m_nNext = 0;
};
