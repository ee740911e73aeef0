// A document with a per-user copy, opened from it, and changed in memory: what the tests of failing saves start from.

#pragma once

#include "host_test.h"
#include "system_calls_windows.h"

#include <filesystem>
#include <set>
#include <string>
#include <vector>

class SaveFaultTest : public HostTest {
protected:
    void SetUp() override;

    /// Puts the old document in the place of the per-user copy, hidden and with access rights of its own, and nothing
    /// else in the folder.
    void RestoreCopy() const;

    /// Saves the changed document to the per-user copy. 0 when that is done.
    static int32_t Save();
    /// The same, with a judge on its calls.
    static int32_t SaveWatched(const CSystemCallWatch::Judge& judge);

    /// The calls of a save that nothing disturbs, with writes of at most so many bytes.
    static std::vector<SystemCall> CallsOfASave(DWORD nAtMost = Fate().nAtMost);

    /// What lies in the folder of the per-user copy.
    std::set<std::wstring> Names() const;
    std::filesystem::path LeftoverPath() const { return UserMainPath().parent_path() / "~cordelbox-1-1.tmp"; }

    /// The copy is the old document or the new one, as the status says, and is hidden and has its access rights as long
    /// as these could be had.
    void ExpectWholeAfter(int32_t status, bool bAttributesKept = true, bool bRightsKept = true) const;
    void ExpectNextSaveToWork() const;

    std::string m_strOld; // the per-user copy as it was
    std::string m_strNew; // what a save makes of it

private:
    std::vector<char> m_rights; // of the copy
};

/// The copy and nothing else.
extern const std::set<std::wstring> kCopyAlone;
