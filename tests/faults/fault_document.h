// A document with a per-user copy, opened from it, and changed in memory: what the tests of failing saves start from.

#pragma once

#include "cordelbox.h"
#include "file_bytes.h"
#include "scratch_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

/// True when a file holds just these bytes; takes no memory for those of the file.
bool Holds(const std::filesystem::path& path, const std::string& bytes);

/// How much text each of the document's forty elements holds.
enum class DocumentSize : std::size_t {
    Everyday = 20,    // a save writes it at once
    Large = 52 << 10, // a save writes it in three pieces
};

class FaultTest : public ::testing::Test {
protected:
    explicit FaultTest(DocumentSize size = DocumentSize::Everyday);
    ~FaultTest() override;

    /// Puts the old document in the place of the per-user copy, with an owner, permissions and, where the file system
    /// knows them, an access control list and an attribute of its own.
    void RestoreCopy();

    /// Saves the changed document to the per-user copy. 0 when that is done.
    int32_t Save() const;

    /// What lies in the folder of the per-user copy.
    std::set<std::string> Names() const;

    /// True when the copy is one of the two documents and has its owner and its rights; none beyond them when these
    /// could not be kept.
    ::testing::AssertionResult CopyIsWhole(bool bRightsKept = true) const;

    std::filesystem::path CopyPath() const { return m_copyFolder / "Faults.xml"; }
    static bool IsTemporary(const std::filesystem::path& path) {
        return path.filename().string().starts_with(".cordelbox-");
    }

    PoolOwner m_owner{};
    CXmlObject* m_pDocument = nullptr;
    std::string m_strOld; // the per-user copy as it was
    std::string m_strNew; // what a save makes of it

private:
    const CScratchFolder m_folder;
    const std::filesystem::path m_copyFolder;
    std::string m_strList; // of the copy, as it was restored
    std::string m_strNote;
};

/// What must hold for documents of both sizes.
template <class Test>
class CWithEachSize : public Test, public ::testing::WithParamInterface<DocumentSize> {
protected:
    CWithEachSize() : Test(GetParam()) {}
};

inline auto EachSize() { return ::testing::Values(DocumentSize::Everyday, DocumentSize::Large); }

inline std::string SizeName(const ::testing::TestParamInfo<DocumentSize>& info) {
    return info.param == DocumentSize::Large ? "LargeDocument" : "EverydayDocument";
}
