// A host with several documents, for tests that work on them from several threads.

#pragma once

#include "cordelbox.h"
#include "file_bytes.h"
#include "platform/semaphore.h"
#include "saved_document.h"
#include "scratch_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <thread>
#include <vector>

class ThreadTest : public ::testing::Test {
protected:
    ThreadTest() {
        ::setenv("XDG_CONFIG_HOME", m_folder.Path().c_str(), 1);
        std::filesystem::create_directories(CopyPath("any.xml").parent_path());
        m_owner.semaphore = platform::NewSemaphore();
    }
    ~ThreadTest() override { platform::DeleteSemaphore(m_owner.semaphore); }

    std::filesystem::path CopyPath(const std::string& name) const {
        return m_folder.Path() / "Marvane" / "Hollivet" / "Cordelbox" / "xml" / name;
    }
    std::filesystem::path StringsPath() const {
        return m_folder.Path() / "Marvane" / "Hollivet" / "Cordelbox" / "language" / "English" / "Strings.xml";
    }
    static void WriteDocument(const std::filesystem::path& path, const std::string& containers) {
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::trunc) << "<Cordelbox>" + containers + "</Cordelbox>";
    }

    /// The values of an attribute of all rows of a container in a per-user copy; a value that stands there twice is a
    /// failure.
    std::set<std::string> SavedValues(const std::string& name, const char* container, const char* attribute) const {
        const std::string bytes = ReadBytes(CopyPath(name));
        std::set<std::string> values;
        for (const Record& row : RecordsBelow(ReadSavedDocument(bytes), container)) {
            for (const auto& [itsName, value] : row) {
                if (itsName == attribute) {
                    EXPECT_TRUE(values.insert(value).second) << value << " twice";
                }
            }
        }
        return values;
    }

    /// Runs `work(thread)` in so many threads at once.
    template <class Work>
    static void RunInThreads(int threads, Work work) {
        std::vector<std::thread> running;
        for (int thread = 0; thread < threads; ++thread) {
            running.emplace_back(work, thread);
        }
        for (std::thread& thread : running) {
            thread.join();
        }
    }

    const CScratchFolder m_folder;
    PoolOwner m_owner{};
};
