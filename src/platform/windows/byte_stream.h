// A stream of COM that gathers what is written to it.

#pragma once

#include "cordelbox.h"

#include <objidl.h>

#include <string>
#include <string_view>

/// Lives where it is declared, and longer than whoever writes to it: references are not counted. It is written from
/// the start to the end and does nothing else.
class CByteStream final : public IStream {
public:
    CByteStream() = default;
    virtual ~CByteStream() = default;
    CByteStream(const CByteStream&) = delete;
    CByteStream& operator=(const CByteStream&) = delete;

    std::string_view View() const noexcept { return m_strBytes; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID interfaceId, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }

    HRESULT STDMETHODCALLTYPE Write(const void* bytes, ULONG count, ULONG* written) override;
    HRESULT STDMETHODCALLTYPE Commit(DWORD) override { return S_OK; }

    HRESULT STDMETHODCALLTYPE Read(void*, ULONG, ULONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER, DWORD, ULARGE_INTEGER*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetSize(ULARGE_INTEGER) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CopyTo(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*, ULARGE_INTEGER*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Revert() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Stat(STATSTG*, DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Clone(IStream**) override { return E_NOTIMPL; }

private:
    std::string m_strBytes;
};
