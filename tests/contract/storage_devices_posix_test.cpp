// A device with more volumes than a signed number counts.

#include "host_test.h"

#include <sys/mman.h>
#include <unistd.h>

#include <chrono>
#include <thread>

class StorageDevicesDeathTest : public HostTest {};

TEST_F(StorageDevicesDeathTest, TheNumberOfVolumesIsWrittenWithASign) {
    OpenMain("<Storage/>");
    // The process ends as soon as the first volume was recorded: the report itself would take hours.
    const auto report = [] {
        constexpr std::size_t kMapped = std::size_t{8} << 30; // empty volumes, and no memory until they are read
        StorageRecord storage{};
        storage.volumes = static_cast<VolumeRecord*>(
            ::mmap(nullptr, kMapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0));
        storage.volumeCount = 0x80000000u;
        std::thread([&storage] {
            const PrinterInfo info{&storage, 1};
            PrinterInfoProc(&info);
        }).detach();
        AnsiString number;
        while ((number = GetAttrValue("Storage", "VolumeNum")).empty()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        ::_exit(number == "-2147483648" ? 0 : 1);
    };
    EXPECT_EXIT(report(), ::testing::ExitedWithCode(0), "");
}
