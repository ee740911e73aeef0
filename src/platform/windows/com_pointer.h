// Owners of what COM hands out: interfaces and texts.

#pragma once

#include "cordelbox.h"

#include <oleauto.h>

#include <new>
#include <string_view>
#include <utility>

/// A counted reference to a COM interface, or none.
template <typename Interface>
class CComPointer {
public:
    CComPointer() noexcept = default;
    CComPointer(const CComPointer& other) noexcept : m_pInterface(other.m_pInterface) {
        if (m_pInterface != nullptr) {
            m_pInterface->AddRef();
        }
    }
    CComPointer(CComPointer&& other) noexcept : m_pInterface(std::exchange(other.m_pInterface, nullptr)) {}
    CComPointer& operator=(CComPointer other) noexcept {
        std::swap(m_pInterface, other.m_pInterface);
        return *this;
    }
    ~CComPointer() {
        if (m_pInterface != nullptr) {
            m_pInterface->Release();
        }
    }

    explicit operator bool() const noexcept { return m_pInterface != nullptr; }
    Interface* operator->() const noexcept { return m_pInterface; }
    Interface* Get() const noexcept { return m_pInterface; }

    /// Where a COM call stores the reference that it returns; what was held before is released.
    Interface** Receive() noexcept {
        *this = CComPointer();
        return &m_pInterface;
    }

private:
    Interface* m_pInterface = nullptr;
};

/// Owner of a text of COM. No text counts as the empty one.
class CComText {
public:
    CComText() noexcept = default;
    explicit CComText(std::wstring_view text)
        : m_bstrText(::SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {
        if (m_bstrText == nullptr) {
            throw std::bad_alloc();
        }
    }
    CComText(CComText&& other) noexcept : m_bstrText(std::exchange(other.m_bstrText, nullptr)) {}
    CComText& operator=(CComText&& other) noexcept {
        std::swap(m_bstrText, other.m_bstrText);
        return *this;
    }
    ~CComText() { ::SysFreeString(m_bstrText); }

    std::wstring_view View() const noexcept { return {m_bstrText, ::SysStringLen(m_bstrText)}; }
    BSTR Get() const noexcept { return m_bstrText; }

    /// The text as a variant that borrows it.
    VARIANT AsVariant() const noexcept {
        VARIANT value{};
        value.vt = VT_BSTR;
        value.bstrVal = m_bstrText;
        return value;
    }

    /// Where a COM call stores the text that it returns; what was held before is freed.
    BSTR* Receive() noexcept {
        *this = CComText();
        return &m_bstrText;
    }

private:
    BSTR m_bstrText = nullptr;
};
