// A host whose tests hold for one code page only.

#pragma once

#include "host_test.h"

/// Skips the tests under any other code page.
template <UINT codePage>
class CodePageTest : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        if (::GetACP() != codePage) {
            GTEST_SKIP() << "the code page is " << ::GetACP();
        }
    }

    void Reopen() {
        CloseAll();
        Open();
    }
};
