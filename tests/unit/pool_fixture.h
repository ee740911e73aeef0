// A pool owner, and documents beside this program for it to open.

#pragma once

#include "cordelbox.h"
#include "platform/folders.h"
#include "platform/semaphore.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

class PoolTest : public ::testing::Test {
protected:
    PoolTest() {
        m_owner.semaphore = platform::NewSemaphore();
        std::filesystem::remove_all(Folder());
        std::filesystem::create_directories(Folder());
        ::setenv("XDG_CONFIG_HOME", (Folder() / "PerUser").c_str(), 1);
    }
    ~PoolTest() override {
        platform::DeleteSemaphore(m_owner.semaphore);
        std::filesystem::remove_all(Folder());
    }

    static std::filesystem::path Folder() {
        return std::filesystem::path(platform::HostFolder().c_str()) / "documents";
    }
    static void Install(const std::string& name, const std::string& xml) { std::ofstream(Folder() / name) << xml; }
    static AnsiString Relative(const std::string& name) { return ("documents\\" + name).c_str(); }

    static int Value(SemaphoreHandle semaphore) {
        int value = -1;
        sem_getvalue(semaphore, &value);
        return value;
    }

    PoolOwner m_owner{};
};
