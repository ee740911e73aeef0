#include "records/change_time.h"

#include "text/time_text.h"

std::string ChangeTime(const std::filesystem::path& path) {
    const auto time = std::chrono::file_clock::to_sys(std::filesystem::last_write_time(path));
    return TextOfTime(std::chrono::floor<std::chrono::seconds>(time));
}
