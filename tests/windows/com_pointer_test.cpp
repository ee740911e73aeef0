// The owners of what COM hands out: nothing is released twice, and nothing is kept.

#include "com_pointer.h"

#include "lacking_system.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

/// An object that counts who holds it, itself not.
class CCounted final : public IUnknown {
public:
    CCounted() = default;
    virtual ~CCounted() = default;
    CCounted(const CCounted&) = delete;
    CCounted& operator=(const CCounted&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_nHolders; }
    ULONG STDMETHODCALLTYPE Release() override { return --m_nHolders; }

    ULONG Holders() const noexcept { return m_nHolders; }

private:
    ULONG m_nHolders = 0;
};

/// As a call of COM gives an object.
void Give(CCounted& object, IUnknown** given) {
    object.AddRef();
    *given = &object;
}

} // namespace

TEST(ComPointer, HoldsNothingWhenItIsNew) {
    const CComPointer<IUnknown> none;
    EXPECT_FALSE(none);
    EXPECT_EQ(none.Get(), nullptr);
}

TEST(ComPointer, ReleasesWhatItReceivedOnce) {
    CCounted object;
    {
        CComPointer<IUnknown> pointer;
        Give(object, pointer.Receive());
        EXPECT_TRUE(pointer);
        EXPECT_EQ(pointer.Get(), &object);
        EXPECT_EQ(pointer.operator->(), &object);
        EXPECT_EQ(object.Holders(), 1u);
    }
    EXPECT_EQ(object.Holders(), 0u);
}

TEST(ComPointer, SharesWhatItHoldsWithACopy) {
    CCounted object;
    {
        CComPointer<IUnknown> pointer;
        Give(object, pointer.Receive());
        const CComPointer<IUnknown> copy = pointer;
        EXPECT_EQ(copy.Get(), &object);
        EXPECT_EQ(object.Holders(), 2u);
        const CComPointer<IUnknown> none;
        const CComPointer<IUnknown> copyOfNone = none;
        EXPECT_FALSE(copyOfNone);
    }
    EXPECT_EQ(object.Holders(), 0u);
}

TEST(ComPointer, GivesWhatItHoldsToTheOneThatItIsMovedTo) {
    CCounted object;
    {
        CComPointer<IUnknown> pointer;
        Give(object, pointer.Receive());
        CComPointer<IUnknown> other = std::move(pointer);
        EXPECT_EQ(other.Get(), &object);
        EXPECT_EQ(object.Holders(), 1u);
    }
    EXPECT_EQ(object.Holders(), 0u);
}

TEST(ComPointer, ReleasesWhatItHeldWhenItIsAssignedOrReceivesAnother) {
    CCounted first;
    CCounted second;
    CComPointer<IUnknown> pointer;
    Give(first, pointer.Receive());
    Give(second, pointer.Receive());
    EXPECT_EQ(pointer.Get(), &second);
    EXPECT_EQ(first.Holders(), 0u);
    EXPECT_EQ(second.Holders(), 1u);
    CComPointer<IUnknown> other;
    Give(first, other.Receive());
    pointer = other;
    EXPECT_EQ(pointer.Get(), &first);
    EXPECT_EQ(first.Holders(), 2u);
    EXPECT_EQ(second.Holders(), 0u);
    pointer = {};
    other = {};
    EXPECT_EQ(first.Holders(), 0u);
}

TEST(ComText, HoldsTheTextAndFreesIt) {
    const int before = ComTexts();
    {
        const CComText text(L"a\0b");
        EXPECT_EQ(text.View(), L"a");
        EXPECT_EQ(CComText(std::wstring_view(L"a\0b", 3)).View(), std::wstring_view(L"a\0b", 3));
        EXPECT_EQ(text.AsVariant().vt, VT_BSTR);
        EXPECT_EQ(text.AsVariant().bstrVal, text.Get());
        EXPECT_EQ(ComTexts(), before + 1);
    }
    EXPECT_EQ(ComTexts(), before);
}

TEST(ComText, IsEmptyWithoutOne) {
    const CComText none;
    EXPECT_EQ(none.View(), L"");
    EXPECT_EQ(none.Get(), nullptr);
}

TEST(ComText, FreesWhatItHeldWhenItIsAssignedOrReceivesAnother) {
    const int before = ComTexts();
    {
        CComText text(L"first");
        CComText moved = std::move(text);
        EXPECT_EQ(moved.View(), L"first");
        text = CComText(L"second");
        EXPECT_EQ(text.View(), L"second");
        moved = std::move(text);
        EXPECT_EQ(moved.View(), L"second");
        *moved.Receive() = ::SysAllocStringLen(L"third", 5);
        EXPECT_EQ(moved.View(), L"third");
    }
    EXPECT_EQ(ComTexts(), before);
}

TEST(ComText, WithoutMemoryThrows) {
    bool bThrown = false;
    {
        const CLackingSystem lacking({.nAllocations = 0});
        try {
            const CComText text(L"text");
        } catch (const std::bad_alloc&) {
            bThrown = true;
        }
    }
    EXPECT_TRUE(bThrown);
}
