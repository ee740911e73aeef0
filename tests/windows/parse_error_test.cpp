// What the DOM says of a document that it does not load, handed up as the reason. The DOM of Wine says nothing: what is
// said here comes from a DOM that does.

#include "dom_calls_windows.h"

#include "host_test.h"
#include "platform/dom.h"

#include <oleauto.h>

namespace {

class CParseError final : public IXMLDOMParseError {
public:
    CParseError(long code, long line, long column, const wchar_t* words) noexcept
        : m_nCode(code), m_nLine(line), m_nColumn(column), m_pWords(words) {
        GiveParseError(this);
    }
    virtual ~CParseError() { GiveParseError(nullptr); }
    CParseError(const CParseError&) = delete;
    CParseError& operator=(const CParseError&) = delete;

    int Holders() const noexcept { return m_nHolders; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++m_nHolders); }
    ULONG STDMETHODCALLTYPE Release() override { return static_cast<ULONG>(--m_nHolders); }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
        return E_NOTIMPL;
    }

    HRESULT STDMETHODCALLTYPE get_errorCode(LONG* code) override { return Give(code, m_nCode); }
    HRESULT STDMETHODCALLTYPE get_line(LONG* line) override { return Give(line, m_nLine); }
    HRESULT STDMETHODCALLTYPE get_linepos(LONG* column) override { return Give(column, m_nColumn); }
    HRESULT STDMETHODCALLTYPE get_reason(BSTR* words) override { return Give(words, ::SysAllocString(m_pWords)); }
    HRESULT STDMETHODCALLTYPE get_url(BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_srcText(BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_filepos(LONG*) override { return E_NOTIMPL; }

private:
    template <class Value>
    static HRESULT Give(Value* place, Value value) noexcept {
        *place = value;
        return S_OK;
    }

    const long m_nCode;
    const long m_nLine;
    const long m_nColumn;
    const wchar_t* const m_pWords;
    int m_nHolders = 0;
};

} // namespace

class ParseErrors : public HostTest {
protected:
    CReason OfAMalformedDocument() const {
        WriteFile(UserMainPath(), "<r>");
        CReason reason;
        EXPECT_FALSE(DomDocument::Create()->Load(UserMainPath().string().c_str(), &reason));
        return reason;
    }
};

TEST_F(ParseErrors, SayWhereAndWhyADocumentIsRefused) {
    const CParseError error(static_cast<long>(0xC00CE56D), 3, 7, L"End tag does not match.");
    const CReason reason = OfAMalformedDocument();
    EXPECT_EQ(reason.m_kind, ReasonKind::Malformed);
    EXPECT_EQ(reason.m_nLine, 3u);
    EXPECT_EQ(reason.m_nColumn, 7u);
    EXPECT_EQ(reason.m_strWords, "End tag does not match.");
    EXPECT_EQ(error.Holders(), 0);
}

TEST_F(ParseErrors, OfTheSystemAreErrorsOfTheLoad) {
    const CParseError error(E_OUTOFMEMORY, 3, 7, L"Not enough storage is available.");
    const CReason reason = OfAMalformedDocument();
    EXPECT_EQ(reason.m_kind, ReasonKind::OutOfMemory);
    EXPECT_STREQ(reason.m_pCall, "IXMLDOMDocument::load");
    EXPECT_EQ(reason.m_nError, static_cast<std::uint32_t>(E_OUTOFMEMORY));
    EXPECT_EQ(reason.m_nLine, 0u);
}

TEST_F(ParseErrors, ThatCannotBeHadLeaveTheDocumentMalformed) {
    for (const DomAnswer answer : {DomAnswer::Failure, DomAnswer::Success}) {
        const CDomCallWatch watch([&](std::size_t, const std::string& name) {
            return name == "get_parseError" ? answer : DomAnswer::ItsOwn;
        });
        const CReason reason = OfAMalformedDocument();
        EXPECT_EQ(reason.m_kind, ReasonKind::Malformed);
        EXPECT_EQ(reason.m_nLine, 0u);
        EXPECT_TRUE(reason.m_strWords.empty());
    }
}
