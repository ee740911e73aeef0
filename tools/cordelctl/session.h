// The library in use: opens the documents that the command line asks for, and releases all of them at the end.

#pragma once

#include "cordelbox.h"
#include "document_places.h"
#include "globals.h"
#include "platform/platform.h"

#include <string>
#include <vector>

class CSession {
public:
    /// Opens the strings and the main document, and the printer document when one is asked for. Throws when the
    /// current document could not be opened.
    explicit CSession(const Globals& globals);
    ~CSession();
    CSession(const CSession&) = delete;
    CSession& operator=(const CSession&) = delete;

    /// Throws when the strings document could not be opened.
    void RequireStrings() const;
    const DocumentPlace& Strings() const noexcept { return m_strings; }

    /// Opens another printer's document for a look at it; Return makes the former document the current one again.
    void Visit(const std::string& printer);
    void Return();

    /// Throws unless what was changed in the current document has been saved.
    void RequireKept() const;

private:
    void Open(const std::string& fileName, const DocumentPlace& place);
    void Release() noexcept;

    class CPoolOwner {
    public:
        CPoolOwner() : m_owner{nullptr, nullptr, platform::NewSemaphore()} {}
        ~CPoolOwner() { platform::DeleteSemaphore(m_owner.semaphore); }
        CPoolOwner(const CPoolOwner&) = delete;
        CPoolOwner& operator=(const CPoolOwner&) = delete;
        PoolOwner m_owner;
    };

    CPoolOwner m_pool;
    std::vector<std::string> m_opened; // file names, one for each reference
    DocumentPlace m_strings;
    bool m_bStringsOpen = false;
    std::string m_strCurrent; // file name of the current document
    DocumentPlace m_current;
    platform::FileStamp m_stamp; // of the current document's per-user copy, as it was opened
};
