#include "jobs/job_list.h"

#include "nodes/node_writers.h"
#include "store/collected_values.h"
#include "store/module_state.h"
#include "store/record_fields.h"

COutcome AddJob(CXmlObject* document, const JobRecord& job) {
    // Read back by position (ReadJobs): the order is part of the format.
    CXmlQuery query("Jobs", {});
    query.AddPair("Name", job.name);
    query.AddPair("ID", job.id);
    query.AddPair("Type", job.type);
    query.AddPair("Copies", job.copies);
    query.AddPair("Stored", job.stored);
    query.AddPair("checked", "0");
    COutcome outcome;
    WriteItem(document, &query, &outcome);
    return outcome;
}

std::vector<StoredJob> ReadJobs(CXmlObject* document) {
    const CCollectedValues ids(document, "Jobs", "ID");
    std::vector<StoredJob> jobs;
    jobs.reserve(static_cast<std::size_t>(ids.Count()));
    for (const AnsiString& id : ids) {
        CXmlQuery query("Jobs", "ID", id);
        ReadChild(document, &query);
        query.m_attrs.Rewind();
        StoredJob& job = jobs.emplace_back();
        job.name = query.m_attrs.TakeValue();
        job.id = query.m_attrs.TakeValue();
        job.type = query.m_attrs.TakeValue();
        job.copies = query.m_attrs.TakeValue();
        job.stored = query.m_attrs.TakeValue();
        job.checked = query.m_attrs.TakeValue();
    }
    return jobs;
}

uint32_t WriteJobList(const JobRecord* job) noexcept {
    if (job != nullptr) {
        AddJob(State().currentDocument, *job);
        SaveCurrentDocument();
    }
    return 1;
}

JobRecord* GetJobs(int32_t* count) noexcept {
    const std::vector<StoredJob> jobs = ReadJobs(State().currentDocument);
    if (count != nullptr) {
        *count = static_cast<int32_t>(jobs.size());
    }
    if (jobs.empty()) {
        return nullptr;
    }
    auto* const records = new JobRecord[jobs.size()];
    JobRecord* record = records;
    for (const StoredJob& job : jobs) {
        SetField(record->name, job.name, "Name");
        SetField(record->id, job.id, "ID");
        SetField(record->type, job.type, "Type");
        SetField(record->copies, job.copies, "Copies");
        SetField(record->stored, job.stored, "Stored");
        SetField(record->checked, job.checked, "checked");
        ++record;
    }
    return records;
}

void DelJobList(JobRecord* jobs) noexcept { delete[] jobs; }
