#include "records/kept_digests.h"

#include "digests/digest.h"
#include "failure.h"
#include "transaction/history.h"

namespace {

std::filesystem::path DigestFile(const DocumentPlace& place) {
    auto file = CHistory::LockFile(place.perUser);
    return file.replace_extension(".digests");
}

DigestList Read(const DocumentPlace& place) {
    const auto file = DigestFile(place);
    std::error_code error;
    return std::filesystem::exists(file, error) ? ReadDigestList(host::ReadBytes(file)) : DigestList();
}

void Keep(const DocumentPlace& place, const DigestList& digests) {
    DigestList all = Read(place);
    for (const auto& [path, digest] : digests) {
        all[path] = digest;
    }
    try {
        host::WriteWhole(DigestFile(place), DigestListText(all), place.Loaded());
    } catch (const std::filesystem::filesystem_error& error) {
        throw CFailure(ExitCode::NotKept, "the digests cannot be kept: " + error.code().message());
    }
}

} // namespace

DigestList KeptDigests(const DocumentPlace& place) { return place.IsKept() ? Read(place) : DigestList(); }

void KeepDigests(CSession& session, const DocumentPlace& place, const DigestList& digests) {
    if (!place.IsKept()) {
        throw CFailure(ExitCode::NotKept, "there is no copy of your own beside which digests could be kept",
                       "make one: cordelctl init");
    }
    if (session.Mode() == Access::Change) {
        session.AfterSave([place, digests] { Keep(place, digests); });
    } else {
        Keep(place, digests);
    }
}

DigestList ChangedDigests(const DocumentPlace& place, const std::vector<std::string>& localPaths) {
    const DigestList kept = KeptDigests(place);
    DigestList changed;
    for (const std::string& path : localPaths) {
        if (const auto known = kept.find(path); known != kept.end()) {
            std::string digest = Sha256OfFile(host::PathOf(path));
            if (digest != known->second) {
                changed.emplace(path, std::move(digest));
            }
        }
    }
    return changed;
}

void MoveDigests(const DocumentPlace& from, const DocumentPlace& to) {
    ForgetDigests(to); // of a document that once had the name
    std::error_code none;
    std::filesystem::rename(DigestFile(from), DigestFile(to), none);
}

bool ForgetDigests(const DocumentPlace& place) {
    std::error_code none;
    return std::filesystem::remove(DigestFile(place), none);
}
