// What is sent to a printer so that it tells about its file system.

#include "replies/file_system_inquiry.h"

#include <gtest/gtest.h>

#include <stdexcept>

TEST(FileSystemInquiry, AsksForTheVolumes) {
    EXPECT_EQ(FileSystemInquiry({}), "\x1B%-12345X@PJL\r\n@PJL INFO FILESYS\r\n\x1B%-12345X");
}

TEST(FileSystemInquiry, AsksForEachFolder) {
    EXPECT_EQ(FileSystemInquiry({"0:fonts", "1:/pcl/macros", "0:"}),
              "\x1B%-12345X@PJL\r\n@PJL INFO FILESYS\r\n"
              "@PJL FSDIRLIST NAME=\"0:\\fonts\" ENTRY=1 COUNT=65535\r\n"
              "@PJL FSDIRLIST NAME=\"1:\\pcl\\macros\" ENTRY=1 COUNT=65535\r\n"
              "@PJL FSDIRLIST NAME=\"0:\\\" ENTRY=1 COUNT=65535\r\n\x1B%-12345X");
}

TEST(FileSystemInquiry, RefusesAFolderThatCannotBeAskedFor) {
    for (const char* const folder : {"fonts", ":fonts", "", "0:fo\"nts", "0:fonts\r\n@PJL RESET"}) {
        EXPECT_THROW(FileSystemInquiry({folder}), std::invalid_argument) << folder;
    }
}
