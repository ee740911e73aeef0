// All verbs of the tool.

#include "verbs/verbs.h"

std::span<const Verb> AllVerbs() {
    static const std::vector<Verb> verbs = [] {
        std::vector<Verb> all;
        for (const auto& table : {DocumentVerbs(), DoctorVerbs(), HistoryVerbs(), LookVerbs(), RowVerbs(), TextVerbs(),
                                  FilesVerbs(), VerifyVerbs(), ProjectVerbs(), IdVerbs(), StorageVerbs(), PlanVerbs(),
                                  PartitionVerbs(), JobVerbs(), SettingVerbs(), ReportVerbs(), SelfVerbs()}) {
            all.insert(all.end(), table.begin(), table.end());
        }
        return all;
    }();
    return verbs;
}
