// Lets the doctor look at documents that are made for one finding each.

#pragma once

#include "tool_test.h"

class DoctorTest : public ToolTest {
protected:
    void SetUp() override {
        ToolTest::SetUp();
        Init();
    }

    /// A document of these containers.
    static std::string Document(const std::string& containers) {
        return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Cordelbox>\n" + containers + "\n</Cordelbox>\n";
    }

    /// The row of a file; `more` stands behind its ten attributes.
    static std::string File(const std::string& fileID, const std::string& type, const std::string& id,
                            bool ticked = false, const std::string& more = {}) {
        return "<Item FileID='" + fileID + "' Component='' ID='" + id + "' Type='" + type +
               "' Volume='0:' Path='p' LocalPath='/f/" + fileID + "' Size='1' CreateDate='' checked='" +
               (ticked ? "1" : "0") + "' " + more + "/>";
    }

    static std::string Profile(const std::string& fileID, const std::string& slot) {
        return File(fileID, "6", slot, false, "ProfileType='0'");
    }

    static std::string Files(const std::string& rows) { return "<Files>" + rows + "</Files>"; }

    /// All findings in a document with these bytes, looked at by itself.
    nlohmann::json FindingsIn(const std::string& bytes) const {
        const ToolRun run = Run({"--json", "doctor", UserFile("document.xml", bytes)});
        EXPECT_EQ(run.errors, "");
        return run.Json()["documents"][0]["findings"];
    }

    /// All findings in the main document and which file it is.
    nlohmann::json MainFindings() const { return Run({"--json", "doctor", "main"}).Json()["documents"][0]; }

    static const nlohmann::json* Find(const nlohmann::json& findings, const std::string& check,
                                      const std::string& container = {}) {
        for (const auto& finding : findings) {
            if (finding["check"] == check && (container.empty() || finding["place"]["container"] == container)) {
                return &finding;
            }
        }
        return nullptr;
    }

    static void ExpectIn(const nlohmann::json& findings, const std::string& check, const std::string& level,
                         const std::string& container, const std::string& item = {}) {
        const nlohmann::json* const finding = Find(findings, check, container);
        ASSERT_NE(finding, nullptr) << check << " is not among " << findings.dump(1);
        EXPECT_EQ((*finding)["level"], level);
        EXPECT_EQ((*finding)["place"]["container"], container);
        EXPECT_EQ((*finding)["place"]["item"], item);
        EXPECT_NE((*finding)["consequence"], "");
        EXPECT_NE((*finding)["mend"], "");
    }

    /// Looks at a document of these containers.
    void ExpectFinding(const std::string& containers, const std::string& check, const std::string& level,
                       const std::string& container, const std::string& item = {}) const {
        ExpectIn(FindingsIn(Document(containers)), check, level, container, item);
    }

    void ExpectNoFinding(const std::string& containers, const std::string& check) const {
        EXPECT_EQ(Find(FindingsIn(Document(containers)), check), nullptr) << check;
    }
};
