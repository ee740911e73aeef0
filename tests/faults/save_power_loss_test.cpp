// The power fails, and everything is lost that was not flushed to disk. A model of the disk follows the calls of a
// save: what was written is lost unless its file was flushed afterwards; a new name may be on disk at once, or not.
// Nothing that was lost may ever stand under the document's name.

#include "fault_document.h"
#include "system_calls.h"

#include <algorithm>
#include <map>

namespace {

struct DiskFile {
    std::string written;
    std::string flushed;
};

/// What a file holds after a power failure may be any beginning of what was not flushed; the model takes nothing of it,
/// which is the worst for a document that has been given its name too early.
class CDisk {
public:
    explicit CDisk(const std::filesystem::path& path, const std::string& bytes) { m_files[path] = {bytes, bytes}; }
    void Apply(const SystemCall& call) {
        if (call.bCreates) {
            m_files.try_emplace(call.path);
        } else if (call.name == "write") {
            m_files[call.path].written += call.bytes;
        } else if (call.name == "fsync") {
            m_files[call.path].flushed = m_files[call.path].written;
        } else if (call.name == "renameat") {
            m_files[call.target] = m_files[call.path];
            m_files.erase(call.path);
        } else if (call.name == "unlinkat") {
            m_files.erase(call.path);
        }
    }
    std::string AfterPowerFailure(const std::filesystem::path& path) const { return m_files.at(path).flushed; }

private:
    std::map<std::string, DiskFile> m_files;
};

} // namespace

class SavePowerLoss : public CWithEachSize<FaultTest> {
protected:
    std::vector<SystemCall> CallsOfASave() {
        const std::size_t nAtMost = m_strNew.size() / 8;
        std::vector<SystemCall> calls;
        CSystemCallWatch watch([&](std::size_t, const SystemCall& call) {
            calls.push_back(call);
            calls.back().bytes += call.written.substr(0, nAtMost);
            return Fate{0, false, nAtMost};
        });
        EXPECT_EQ(Save(), 0);
        return calls;
    }

    static std::string TemporaryOf(const std::vector<SystemCall>& calls) {
        const auto found =
            std::find_if(calls.begin(), calls.end(), [](const SystemCall& call) { return call.bCreates; });
        return found != calls.end() ? found->path : "(none)";
    }

    static std::size_t Position(const std::vector<SystemCall>& calls, const char* name, const std::string& path) {
        const auto found = std::find_if(calls.begin(), calls.end(),
                                        [&](const SystemCall& call) { return call.name == name && call.path == path; });
        EXPECT_NE(found, calls.end()) << name << " " << path;
        return static_cast<std::size_t>(found - calls.begin());
    }
};

INSTANTIATE_TEST_SUITE_P(Of, SavePowerLoss, EachSize(), SizeName);

TEST_P(SavePowerLoss, AtAnyMomentLeavesTheOldDocumentOrTheNewOne) {
    CDisk disk(CopyPath(), m_strOld);
    bool bReplaced = false;
    for (const SystemCall& call : CallsOfASave()) {
        disk.Apply(call);
        const std::string left = disk.AfterPowerFailure(CopyPath());
        ASSERT_TRUE(left == m_strOld || left == m_strNew) << "after " << call.name << " of " << call.path;
        bReplaced = left == m_strNew;
    }
    EXPECT_TRUE(bReplaced) << "a save that is done is on disk";
}

TEST_P(SavePowerLoss, TheFileIsFlushedWithItsPermissionsBeforeItGetsItsName) {
    const std::vector<SystemCall> calls = CallsOfASave();
    const std::string temporary = TemporaryOf(calls);
    const std::size_t flushed = Position(calls, "fsync", temporary);
    EXPECT_LT(Position(calls, "fchown", temporary), flushed);
    EXPECT_LT(Position(calls, "fchmod", temporary), flushed);
    EXPECT_LT(Position(calls, "fsetxattr", temporary), flushed);
    EXPECT_LT(Position(calls, "write", temporary), flushed);
    EXPECT_LT(flushed, Position(calls, "renameat", temporary));
}

TEST_P(SavePowerLoss, TheFolderIsFlushedAfterwards) {
    const std::vector<SystemCall> calls = CallsOfASave();
    EXPECT_LT(Position(calls, "renameat", TemporaryOf(calls)), Position(calls, "fsync", CopyPath().parent_path()));
}

TEST_P(SavePowerLoss, TheModelSeesASaveThatDoesNotFlush) {
    CDisk disk(CopyPath(), m_strOld);
    for (const SystemCall& call : CallsOfASave()) {
        if (call.name != "fsync") {
            disk.Apply(call);
        }
    }
    EXPECT_EQ(disk.AfterPowerFailure(CopyPath()), "");
}
