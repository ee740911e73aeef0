// A host that counts in the main document, and so saves it after each step, until it is killed.

#include "cordelbox.h"

#include <cstdio>
#include <string>

int main() {
    PoolOwner owner{nullptr, nullptr, ::CreateSemaphoreA(nullptr, 1, 1, nullptr)};
    GetXmlObj(&owner, "English");
    std::puts("saving");
    std::fflush(stdout);
    for (unsigned int change = 1;; ++change) {
        WriteAttr("Counter", "Value", std::to_string(change).c_str());
    }
}
