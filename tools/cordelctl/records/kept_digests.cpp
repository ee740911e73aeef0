#include "records/kept_digests.h"

#include "digests/digest.h"
#include "failure.h"
#include "transaction/history.h"

namespace {

std::filesystem::path DigestFile(const DocumentPlace& place) {
    auto file = CHistory::LockFile(place);
    return file.replace_extension(".digests");
}

} // namespace

DigestList KeptDigests(const DocumentPlace& place) {
    if (!place.IsKept()) {
        return {};
    }
    std::error_code error;
    const auto file = DigestFile(place);
    return std::filesystem::exists(file, error) ? ReadDigestList(host::ReadBytes(file)) : DigestList();
}

void KeepDigests(const DocumentPlace& place, const DigestList& digests) {
    if (!place.IsKept()) {
        throw CFailure(ExitCode::NotKept, "there is no copy of your own beside which digests could be kept",
                       "make one: cordelctl init");
    }
    DigestList all = KeptDigests(place);
    for (const auto& [path, digest] : digests) {
        all[path] = digest;
    }
    try {
        host::WriteWhole(DigestFile(place), DigestListText(all), place.Loaded());
    } catch (const std::filesystem::filesystem_error& error) {
        throw CFailure(ExitCode::NotKept, "the digests cannot be kept: " + error.code().message());
    }
}

DigestList RenewKeptDigests(const DocumentPlace& place, const std::vector<std::string>& localPaths, bool dryRun) {
    const DigestList kept = KeptDigests(place);
    DigestList renewed;
    for (const std::string& path : localPaths) {
        if (const auto known = kept.find(path); known != kept.end()) {
            std::string digest = Sha256OfFile(host::PathOf(path));
            if (digest != known->second) {
                renewed.emplace(path, std::move(digest));
            }
        }
    }
    if (!renewed.empty() && !dryRun) {
        KeepDigests(place, renewed);
    }
    return renewed;
}
