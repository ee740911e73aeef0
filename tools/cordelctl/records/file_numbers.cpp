// The numbers of files that are added to a project.

#include "records/file_numbers.h"

#include "failure.h"
#include "ids/icm_profile_ids.h"
#include "schema/schema.h"

#include <algorithm>

namespace {

constexpr int kLargestID = 32767;
constexpr std::size_t kMostDigits = 18;

} // namespace

CFreeNumbers::CFreeNumbers(CDocument& document) : m_document(document) {
    for (const Row& row : document.Rows("Files")) {
        TakeFileID(row.Value("FileID"));
        m_taken[GroupOf(row.Value("Type"), row.Value("ProfileType"))].insert(row.Value("ID"));
        m_takenByAny.insert(row.Value("ID"));
    }
}

std::string CFreeNumbers::GroupOf(const std::string& type, const std::string& profileType) {
    return type == "1" || type == "5" ? "fonts" : type == "6" ? "profiles " + profileType : type;
}

std::string CFreeNumbers::TakeFileID() {
    std::string fileID = std::to_string(++m_nLastFileID);
    m_fileIDs.insert(fileID);
    return fileID;
}

bool CFreeNumbers::TakeFileID(const std::string& fileID) {
    if (!m_fileIDs.insert(fileID).second) {
        return false;
    }
    if (IsPlainNumber(fileID) && fileID.size() <= kMostDigits) {
        m_nLastFileID = std::max(m_nLastFileID, std::stoull(fileID));
    }
    return true;
}

std::string CFreeNumbers::TakeID(const std::string& type, const std::string& profileType) {
    const std::string group = GroupOf(type, profileType);
    if (type == "6") {
        auto known = m_slots.find(profileType);
        if (known == m_slots.end()) {
            const auto kind = profileType.size() == 1 ? static_cast<std::uint32_t>(profileType[0] - '0') : 1U;
            known = m_slots.emplace(profileType, ReadIcmSlots(m_document.Object(), kind).value_or("")).first;
        }
        const int slot = FindFreeSlot(known->second);
        if (slot == 0) {
            throw CFailure(ExitCode::Refused, "no slot for a colour profile of this kind is free",
                           "the slots stand in IDArray of RGBSource, PrinterProfile and LinkedProfile");
        }
        known->second[static_cast<std::size_t>(slot) - 1] = '2';
        return std::to_string(slot);
    }
    // As GetValidID has it: once a file of the group was met, an ID of a file of any Type counts as taken.
    int& next = m_next[group];
    bool met = next > 0;
    for (; next <= kLargestID; ++next) {
        std::string id = std::to_string(next);
        const bool own = m_taken[group].count(id) != 0;
        if (!own && !(met && group != "8" && m_takenByAny.count(id) != 0)) {
            m_taken[group].insert(id);
            m_takenByAny.insert(id);
            ++next;
            return id;
        }
        met = met || own;
    }
    throw CFailure(ExitCode::Refused, "all IDs from 0 to 32767 are taken in this group");
}

bool CFreeNumbers::TakeID(const std::string& type, const std::string& profileType, const std::string& id) {
    const std::string group = GroupOf(type, profileType);
    if (!IsPlainNumber(id) || !m_taken[group].insert(id).second) {
        return false;
    }
    m_takenByAny.insert(id);
    m_slots.erase(profileType);
    return true;
}
