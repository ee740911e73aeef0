// Random bytes and special characters as values of single attributes, and as names: what was saved always opens again,
// and each value reads back as it was stored, or was refused and left the old one.

#include "host_test.h"
#include "random_values.h"
#include "stored_text.h"

#include <string>

namespace {

const char* const kContainers = "<One><Item V=\"before\"/></One><Two><Item V=\"\"/></Two><List/>"
                                "<Source><Item Key=\"\" A=\"\" B=\"\" C=\"\" D=\"\"/></Source>"
                                "<Target><Item D=\"d\" C=\"\" B=\"\" A=\"\" Key=\"\"/></Target>"
                                "<CurrentChosePartition><Item Name=\"\"/></CurrentChosePartition>"
                                "<CurrentDisk><Item Partition=\"\"/></CurrentDisk>"
                                "<DefaultDisk><Item Image=\"\" Partition=\"\" Size=\"\" Percent=\"\"/></DefaultDisk>";

std::string Read(const char* element, const char* attribute) { return GetAttrValue(element, attribute).c_str(); }

} // namespace

class Values : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        CopyMainForUser(Document(kContainers));
        Open();
        ASSERT_EQ(Read("One", "V"), "before");
    }

    /// Opens anew what was saved.
    void Reopen() {
        CloseAll();
        Open();
    }

    /// Writes the value over the attribute, and notes what the attribute holds from then on.
    void Write(const char* element, const char* attribute, const std::string& value) {
        WriteAttr(element, attribute, Text(value));
        const std::optional<StoredText> stored = StoreText(value);
        if (stored) {
            m_held = *stored;
        }
        (stored ? m_nWritten : m_nRefused) += 1;
    }

    /// Whether a document, in memory or on disk, holds the last value that was not refused.
    void ExpectHeld(const char* element, const char* attribute) {
        ASSERT_EQ(Read(element, attribute), m_held.readBack);
    }
    void ExpectSaved(const char* element, const char* attribute) {
        ASSERT_EQ(SavedItems(element), (Records{Record{{attribute, m_held.inDocument}}}));
        Reopen();
        ExpectHeld(element, attribute);
    }

    StoredText m_held{"before", "before"};
    int m_nWritten = 0;
    int m_nRefused = 0;
};

TEST_F(Values, OfOneAttributeReadBackOrAreRefused) {
    CRandomValues values(1);
    for (int round = 0; round < 600; ++round) {
        Write("One", "V", values.Any(1000));
        ASSERT_NO_FATAL_FAILURE(ExpectHeld("One", "V"));
        if (round % 3 == 0) {
            ASSERT_NO_FATAL_FAILURE(ExpectSaved("One", "V"));
        }
    }
    EXPECT_GT(m_nWritten, 300);
    EXPECT_GT(m_nRefused, 50);
}

TEST_F(Values, OfEverySingleByteReadBackOrAreRefused) {
    for (int byte = 1; byte < 256; ++byte) {
        Write("One", "V", std::string("a") + static_cast<char>(byte) + "z");
        ASSERT_NO_FATAL_FAILURE(ExpectSaved("One", "V")) << byte;
    }
    EXPECT_EQ(m_nRefused, 0x1F - 3) << "the control characters but tab, newline and carriage return";
}

TEST_F(Values, OfEveryTwoBytesReadBack) {
    for (int first = 0x20; first < 0x100; ++first) {
        std::string value;
        for (int second = 0x20; second < 0x100; ++second) {
            value += static_cast<char>(first);
            value += static_cast<char>(second);
            value += ' ';
        }
        Write("One", "V", value);
        ASSERT_NO_FATAL_FAILURE(ExpectSaved("One", "V")) << first;
    }
    EXPECT_EQ(m_nRefused, 0);
}

TEST_F(Values, OfWhiteSpaceAloneReadBack) {
    for (const char* const value : {" ", "  ", "\t", "\n", "\r", "\r\n", " \n\t "}) {
        Write("One", "V", value);
        ASSERT_NO_FATAL_FAILURE(ExpectHeld("One", "V"));
        ASSERT_NO_FATAL_FAILURE(ExpectSaved("One", "V"));
    }
    EXPECT_EQ(m_nRefused, 0);
}

TEST_F(Values, OfAMillionBytesReadBack) {
    CRandomValues values(8);
    std::string value;
    while (value.size() < 1000000) {
        value += values.Storable(1000);
        value += ' '; // so that no two parts become one character
    }
    Write("One", "V", value);
    EXPECT_EQ(m_nWritten, 1);
    ExpectSaved("One", "V");
}

TEST_F(Values, CopiedFromOneContainerToAnotherAreTheSame) {
    CRandomValues values(7);
    for (int round = 0; round < 150; ++round) {
        Write("One", "V", values.Any(200));
        CopyProperty("One", "Two", "V");
        ASSERT_NO_FATAL_FAILURE(ExpectHeld("Two", "V"));
    }
    ExpectSaved("Two", "V");
}

TEST_F(Values, CopiedByAKeyAreTheSameAndFindTheirKey) {
    CRandomValues values(9);
    for (int round = 0; round < 80; ++round) {
        const std::string key = values.Storable(100);
        WriteAttr("Source", "Key", Text(key));
        WriteAttr("Target", "Key", Text(key));
        const std::string names[] = {"A", "B", "C"};
        Record expected{{"D", "d"}}; // the fifth attribute is not copied
        for (int name = 2; name >= 0; --name) {
            const std::string value = values.Storable(100);
            WriteAttr("Source", names[name].c_str(), Text(value));
            expected.emplace_back(names[name], StoreText(value)->inDocument);
        }
        expected.emplace_back("Key", StoreText(key)->inDocument);
        if (round % 2 == 0) {
            Reopen();
        }
        CopyElement("Source", "Target", "Key");
        ASSERT_EQ(SavedItems("Target"), Records{expected});
    }
}

TEST_F(Values, CopiedBetweenPartitionsAreTheSame) {
    // A value that the current layout lacks is replaced by the partition's name, which so lands in every attribute.
    CRandomValues values(10);
    m_held = {};
    for (int round = 0; round < 80; ++round) {
        const std::string name = values.Any(100);
        Write("CurrentChosePartition", "Name", name);
        WriteAttr("CurrentDisk", "Partition", Text(name));
        WriteAttr("DefaultDisk", "Partition", Text(name));
        if (round % 2 == 0) {
            Reopen();
        }
        CopyPatition(0);
        CopyPatition(1);
        const std::string& stored = m_held.inDocument;
        ASSERT_EQ(SavedItems("DefaultDisk"),
                  (Records{Record{{"Image", stored}, {"Partition", stored}, {"Size", stored}, {"Percent", stored}}}));
        ASSERT_EQ(GetDiskPercent(), Text(m_held.readBack + " "));
    }
    EXPECT_GT(m_nRefused, 5);
}

TEST_F(Values, AsNamesOfElementsAndAttributesDoNoHarm) {
    CRandomValues values(6);
    for (int round = 0; round < 80; ++round) {
        const std::string name = values.Any(100);
        WriteAttr(Text(name), "V", "x");
        WriteAttr("One", Text(name), "x");
        WriteTestFileName(Text(name), "1", "2");
        DelAllElem(Text(name));
        CopyProperty(name.c_str(), "Three", "V");
        CopyProperty("One", "Two", name.c_str());
        CopyElement("One", name.c_str(), "V");
        CopyElement("One", "Two", name.c_str());
        GetAttrValue1(Text(name), Text(name), Text(name), Text(name));
    }
    EXPECT_EQ(SavedItems("One"), (Records{Record{{"V", "before"}}}));
    EXPECT_EQ(SavedItems("Two"), (Records{Record{{"V", ""}}}));
    Reopen();
    EXPECT_EQ(Read("One", "V"), "before");
}
