#include "kept_tree.h"

#include "fuzz_failure.h"

#include <algorithm>

namespace {

bool IsKept(const RefNode& before, const RefNode& after) {
    const auto same = [](const RefAttribute& left, const RefAttribute& right) {
        return left.name == right.name && left.text == right.text;
    };
    return before.kind == after.kind && before.name == after.name && before.text == after.text &&
           before.attributes.size() <= after.attributes.size() &&
           std::equal(before.attributes.begin(), before.attributes.end(), after.attributes.begin(), same) &&
           std::equal(before.children.begin(), before.children.end(), after.children.begin(), after.children.end(),
                      IsKept);
}

} // namespace

void RequireKept(RefNode before, RefNode after) {
    JoinTexts(before);
    JoinTexts(after);
    Require(IsKept(before, after), "not what was saved: " + WriteXml(before) + "\n  instead of " + WriteXml(after));
}
