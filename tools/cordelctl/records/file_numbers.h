// The numbers of files that are added to a project: FileIDs, and the IDs under which a printer stores them. Each is
// looked for from where the last one was found, so that thousands of files take no longer than their number.

#pragma once

#include "document/document.h"

#include <map>
#include <set>
#include <string>
#include <vector>

class CFreeNumbers {
public:
    /// Of the files that the document lists now. It must be sound (RequireSound), and must not be edited otherwise.
    explicit CFreeNumbers(CDocument& document);

    /// A FileID that no file has.
    std::string TakeFileID();

    /// The lowest free ID for a file of this type, or slot when it is a profile (`profileType` as in its row). Throws
    /// CFailure (Refused) when there is none.
    std::string TakeID(const std::string& type, const std::string& profileType);

    /// Takes this ID, if it is free. False: it is not.
    bool TakeID(const std::string& type, const std::string& profileType, const std::string& id);

    /// Takes this FileID, if it is free.
    bool TakeFileID(const std::string& fileID);

private:
    /// Files of one group must not share an ID.
    static std::string GroupOf(const std::string& type, const std::string& profileType);

    CDocument& m_document;
    std::set<std::string> m_fileIDs;
    unsigned long long m_nLastFileID = 0;
    std::map<std::string, std::set<std::string>> m_taken; // by group
    std::set<std::string> m_takenByAny;
    std::map<std::string, int> m_next;          // by group: no ID below it is free
    std::map<std::string, std::string> m_slots; // by kind of profile
};
