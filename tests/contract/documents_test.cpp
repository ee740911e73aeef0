// Opening and releasing the main, printer and strings documents, and which of them is the current one.

#include "named_document.h"

#include <string>

class Documents : public HostTest {
protected:
    void InstallAll() {
        InstallMain(Named("main"));
        InstallPrinter("first.xml", Named("first printer"));
        InstallPrinter("second.xml", Named("second printer"));
        InstallStrings("English", Named("English"));
        InstallStrings("Deutsch", Named("Deutsch"));
    }

    static AnsiString StringsName() { return GetXMLString("Info", "Name"); }
};

TEST_F(Documents, GetXmlObjOpensTheMainAndTheStringsDocument) {
    InstallAll();
    EXPECT_NE(Open("English"), nullptr);
    EXPECT_EQ(CurrentName(), "main");
    EXPECT_EQ(StringsName(), "English");
}

TEST_F(Documents, GetXmlObjReturnsTheStringsDocumentNotTheMainOne) {
    InstallAll();
    CXmlObject* const strings = Open("English");
    CXmlObject* const main = OpenPrinter("Cordelbox.xml");
    EXPECT_NE(main, nullptr);
    EXPECT_NE(strings, main);
}

TEST_F(Documents, AMissingLanguageGivesNullWhileTheMainDocumentIsUsable) {
    InstallAll();
    EXPECT_EQ(Open("Italiano"), nullptr);
    EXPECT_EQ(CurrentName(), "main");
    EXPECT_EQ(StringsName(), "");
}

TEST_F(Documents, AMissingMainDocumentStillGivesTheStringsDocument) {
    InstallStrings("English", Named("English"));
    EXPECT_NE(Open("English"), nullptr);
    EXPECT_EQ(CurrentName(), "");
    EXPECT_EQ(StringsName(), "English");
}

TEST_F(Documents, WithoutAnyDocumentNothingIsOpen) {
    EXPECT_EQ(Open("English"), nullptr);
    EXPECT_EQ(m_owner.head, nullptr);
    EXPECT_EQ(CurrentName(), "");
    EXPECT_EQ(StringsName(), "");
    EXPECT_EQ(ReleaseAll(), 0);
}

TEST_F(Documents, AFailedGetXmlObjLeavesNoCurrentDocumentOfAnEarlierOne) {
    InstallAll();
    Open("English");
    CloseAll();
    std::filesystem::remove(InstalledMainPath());
    std::filesystem::remove(InstalledStringsPath("English"));
    EXPECT_EQ(Open("English"), nullptr);
    EXPECT_EQ(CurrentName(), "");
    EXPECT_EQ(StringsName(), "");
}

TEST_F(Documents, ReleaseAllClosesTheMainAndTheStringsDocument) {
    InstallAll();
    Open("English");
    EXPECT_NE(m_owner.head, nullptr);
    EXPECT_EQ(ReleaseAll(), 0);
    EXPECT_EQ(m_owner.head, nullptr);
}

TEST_F(Documents, WhatIsOpenedLaterStandsBehindWhatWasOpenedBefore) {
    InstallAll();
    InstallPrinter("Later.xml", Document(""));
    Open("English");
    PoolNode* const first = m_owner.head;
    OpenPrinter("Later.xml");
    EXPECT_EQ(m_owner.head, first);
    EXPECT_EQ(ReleaseXmlObj("Later.xml"), 0);
    EXPECT_EQ(m_owner.head, first);
}

TEST_F(Documents, ReleaseAllTwiceIsNoError) {
    InstallAll();
    Open("English");
    EXPECT_EQ(ReleaseAll(), 0);
    EXPECT_EQ(ReleaseAll(), 0);
}

TEST_F(Documents, EveryGetXmlObjNeedsOneReleaseAll) {
    InstallAll();
    CXmlObject* const strings = Open("English");
    EXPECT_EQ(Open("English"), strings);
    EXPECT_EQ(ReleaseAll(), 0);
    EXPECT_EQ(CurrentName(), "main");
    EXPECT_EQ(StringsName(), "English");
    EXPECT_EQ(ReleaseAll(), 0);
    EXPECT_EQ(m_owner.head, nullptr);
}

TEST_F(Documents, ReleaseAllReleasesTheStringsOfTheLastLanguageOnly) {
    InstallAll();
    CXmlObject* const english = Open("English");
    EXPECT_NE(Open("Deutsch"), english);
    EXPECT_EQ(StringsName(), "Deutsch");
    ReleaseAll();
    ReleaseAll();
    EXPECT_NE(m_owner.head, nullptr) << "the English strings were opened once and never released";
    EXPECT_EQ(Open("English"), english);
}

TEST_F(Documents, GetPrinterXmlObjMakesThePrinterDocumentCurrent) {
    InstallAll();
    Open("English");
    EXPECT_NE(OpenPrinter("first.xml"), nullptr);
    EXPECT_EQ(CurrentName(), "first printer");
    EXPECT_NE(OpenPrinter("second.xml"), nullptr);
    EXPECT_EQ(CurrentName(), "second printer");
}

TEST_F(Documents, GetPrinterXmlObjLeavesTheStringsDocumentAsItIs) {
    InstallAll();
    Open("English");
    OpenPrinter("first.xml");
    EXPECT_EQ(StringsName(), "English");
}

TEST_F(Documents, APrinterDocumentThatCannotBeOpenedLeavesNoCurrentDocument) {
    InstallAll();
    Open("English");
    EXPECT_EQ(OpenPrinter("missing.xml"), nullptr);
    EXPECT_EQ(CurrentName(), "");
    EXPECT_EQ(GetAttrValue1("Info", "Name", "main", "Name"), "main") << "a miss gives the filter value";
}

TEST_F(Documents, OnlyAnotherGetXmlObjMakesTheMainDocumentCurrentAgain) {
    InstallAll();
    Open("English");
    OpenPrinter("first.xml");
    EXPECT_EQ(ReleaseXmlObj("second.xml"), 0);
    EXPECT_EQ(CurrentName(), "first printer");
    Open("English");
    EXPECT_EQ(CurrentName(), "main");
}

TEST_F(Documents, TheSamePrinterDocumentIsOpenedOnce) {
    InstallAll();
    Open("English");
    CXmlObject* const printer = OpenPrinter("first.xml");
    EXPECT_EQ(OpenPrinter("first.xml"), printer);
    EXPECT_EQ(ReleaseXmlObj("first.xml"), 0);
    EXPECT_EQ(CurrentName(), "first printer") << "one of two references is left";
}

TEST_F(Documents, ReleasingAPrinterDocumentThatWasNeverOpenedIsNoError) {
    InstallAll();
    Open("English");
    EXPECT_EQ(ReleaseXmlObj("first.xml"), 0);
    EXPECT_EQ(ReleaseXmlObj("missing.xml"), 0);
    EXPECT_EQ(CurrentName(), "main");
}

TEST_F(Documents, ReleasingAnotherPrinterDocumentKeepsTheCurrentOne) {
    InstallAll();
    Open("English");
    OpenPrinter("first.xml");
    OpenPrinter("second.xml");
    EXPECT_EQ(ReleaseXmlObj("first.xml"), 0);
    EXPECT_EQ(CurrentName(), "second printer");
}

TEST_F(Documents, ReleaseAllLeavesPrinterDocumentsOpen) {
    InstallAll();
    Open("English");
    CXmlObject* const printer = OpenPrinter("first.xml");
    EXPECT_EQ(ReleaseAll(), 0);
    EXPECT_NE(m_owner.head, nullptr);
    EXPECT_EQ(OpenPrinter("first.xml"), printer);
    EXPECT_EQ(ReleaseXmlObj("first.xml"), 0);
    EXPECT_EQ(ReleaseXmlObj("first.xml"), 0);
    EXPECT_EQ(m_owner.head, nullptr);
}

TEST_F(Documents, ReleaseAllReleasesTheMainDocumentAlsoWhenAPrinterDocumentIsCurrent) {
    InstallAll();
    Open("English");
    OpenPrinter("first.xml");
    ReleaseAll();
    ReleaseXmlObj("first.xml");
    EXPECT_EQ(m_owner.head, nullptr);
}

TEST_F(Documents, TheMainDocumentIsSharedUnderItsFileName) {
    InstallAll();
    Open("English");
    OpenPrinter("first.xml");
    EXPECT_NE(OpenPrinter("Cordelbox.xml"), nullptr);
    EXPECT_EQ(CurrentName(), "main");
    ReleaseXmlObj("first.xml");
    ReleaseAll();
    EXPECT_EQ(CurrentName(), "main") << "the reference by file name is left";
    ReleaseXmlObj("Cordelbox.xml");
    EXPECT_EQ(m_owner.head, nullptr);
}

TEST_F(Documents, PrinterDocumentsMayLieInFoldersBelow) {
    InstallAll();
    InstallPrinter("office/third.xml", Named("third printer"));
    Open("English");
    EXPECT_NE(OpenPrinter("office\\third.xml"), nullptr);
    EXPECT_EQ(CurrentName(), "third printer");
}

TEST_F(Documents, LanguageFoldersMayLieInFoldersBelow) {
    InstallAll();
    InstallStrings("European/Dansk", Named("Dansk"));
    EXPECT_NE(Open("European\\Dansk"), nullptr);
    EXPECT_EQ(StringsName(), "Dansk");
}

TEST_F(Documents, ANullLanguageCountsAsTheEmptyName) {
    InstallMain(Named("main"));
    EXPECT_EQ(GetXmlObj(&m_owner, nullptr), nullptr);
    EXPECT_EQ(CurrentName(), "main");
    EXPECT_EQ(ReleaseAll(), 0);
    EXPECT_EQ(m_owner.head, nullptr);
}

TEST_F(Documents, ANullFileNameCountsAsTheEmptyName) {
    InstallAll();
    Open("English");
    EXPECT_EQ(GetPrinterXmlObj(nullptr), nullptr);
    EXPECT_EQ(CurrentName(), "");
    EXPECT_EQ(ReleaseXmlObj(nullptr), 0);
}

TEST_F(Documents, WithoutAPoolSemaphoreNothingOpensAndEveryReleaseFails) {
    InstallAll();
    PoolOwner bare{};
    EXPECT_EQ(GetXmlObj(&bare, "English"), nullptr);
    EXPECT_EQ(CurrentName(), "");
    EXPECT_EQ(GetPrinterXmlObj("first.xml"), nullptr);
    EXPECT_EQ(ReleaseXmlObj("first.xml"), 1);
    EXPECT_EQ(ReleaseAll(), 1);
    EXPECT_EQ(bare.head, nullptr);
}

TEST_F(Documents, TheOwnerOfTheLastGetXmlObjHoldsWhatIsOpenedFromThenOn) {
    InstallAll();
    CXmlObject* const strings = Open("English");
    PoolOwner other{};
    other.semaphore = NewHostSemaphore();
    EXPECT_NE(GetXmlObj(&other, "English"), strings);
    GetPrinterXmlObj("first.xml");
    EXPECT_NE(other.head, nullptr);
    ReleaseXmlObj("first.xml");
    ReleaseAll();
    EXPECT_EQ(other.head, nullptr);
    EXPECT_NE(m_owner.head, nullptr);
    DeleteHostSemaphore(other.semaphore);
    Open("English");
}

TEST_F(Documents, TheHostsOwnFieldOfThePoolOwnerIsNeverTouched) {
    InstallAll();
    int nMarker = 0;
    m_owner.host = &nMarker;
    Open("English");
    OpenPrinter("first.xml");
    CloseAll();
    EXPECT_EQ(m_owner.host, &nMarker);
}

TEST_F(Documents, TooLongALanguageNameOpensNoStringsDocument) {
    InstallAll();
    for (const std::size_t nLength : {229u, 230u, 231u, 259u, 260u, 261u, 100000u}) {
        EXPECT_EQ(Open(std::string(nLength, 'l').c_str()), nullptr) << nLength;
        EXPECT_EQ(CurrentName(), "main") << nLength;
        EXPECT_EQ(StringsName(), "") << nLength;
        EXPECT_EQ(ReleaseAll(), 0) << nLength;
        EXPECT_EQ(m_owner.head, nullptr) << nLength;
    }
}

TEST_F(Documents, TooLongAFileNameOpensNothingAndIsReleasedWithoutError) {
    InstallAll();
    Open("English");
    for (const std::size_t nLength : {244u, 245u, 246u, 259u, 260u, 261u, 100000u}) {
        const std::string name(nLength, 'p');
        EXPECT_EQ(OpenPrinter(name.c_str()), nullptr) << nLength;
        EXPECT_EQ(CurrentName(), "") << nLength;
        EXPECT_EQ(ReleaseXmlObj(name.c_str()), 0) << nLength;
    }
    EXPECT_NE(OpenPrinter("first.xml"), nullptr);
}

TEST_F(Documents, TooLongAFileNameDoesNotReleaseTheDocumentBuiltBefore) {
    InstallAll();
    Open("English");
    OpenPrinter("first.xml");
    EXPECT_EQ(ReleaseXmlObj(std::string(300, 'p').c_str()), 0);
    EXPECT_EQ(CurrentName(), "first printer");
}
