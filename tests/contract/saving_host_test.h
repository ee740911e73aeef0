// A host that sees whether a call saves the main document.

#pragma once

#include "host_test.h"

#include <string>
#include <vector>

class SavingHostTest : public HostTest {
protected:
    using Items = std::vector<Record>;

    /// True when the call saves the main document. The per-user copy is other text before the call, so that every
    /// save shows, also one that changes nothing.
    template <class Call>
    bool Saves(Call call) {
        const std::string other = "<Other/>";
        CopyMainForUser(other);
        call();
        return UserMainText() != other;
    }
};
