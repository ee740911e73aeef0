// A host that opens the documents beside itself, counts in the main one, and prints what it reads.

#include "cordelbox.h"

#include <cstdio>
#include <string>

int main() {
    PoolOwner owner{nullptr, nullptr, ::CreateSemaphoreA(nullptr, 1, 1, nullptr)};
    if (GetXmlObj(&owner, "English") == nullptr || GetAttrValue("Counter", "Value").empty()) {
        return 1;
    }
    const int count = std::stoi(GetAttrValue("Counter", "Value").c_str()) + 1;
    WriteAttr("Counter", "Value", std::to_string(count).c_str());
    const bool bPrinter = GetPrinterXmlObj("\x83\x5C.xml") != nullptr;
    return bPrinter && GetAttrValue("Info", "Name") == "printer" && ReleaseAll() == 0 ? 0 : 2;
}
