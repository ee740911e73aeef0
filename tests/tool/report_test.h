// The page of report, for its tests.

#pragma once

#include "tool_test.h"

#include <string>
#include <vector>

inline std::size_t CountOf(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

class Report : public ToolTest {
protected:
    void SetUp() override {
        ToolTest::SetUp();
        Init();
    }

    std::string Page(const std::vector<std::string>& options = {}) const {
        const std::string file = (m_folder / "page.html").string();
        std::vector<std::string> arguments{"report", file};
        arguments.insert(arguments.end(), options.begin(), options.end());
        Output(arguments);
        return ReadBytes(file);
    }
};
