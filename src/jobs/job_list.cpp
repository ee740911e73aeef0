// The print jobs stored on a printer.

#include "cordelbox.h"
#include "nodes/node_writers.h"
#include "store/collected_values.h"
#include "store/current_document.h"
#include "store/record_fields.h"

uint32_t WriteJobList(const JobRecord* job) noexcept {
    if (job == nullptr) {
        return 1;
    }
    // Read back by position (GetJobs): the order is part of the format.
    CXmlQuery query("Jobs", {});
    query.AddPair("Name", job->name);
    query.AddPair("ID", job->id);
    query.AddPair("Type", job->type);
    query.AddPair("Copies", job->copies);
    query.AddPair("Stored", job->stored);
    query.AddPair("checked", "0"); // whatever the record says: a new job is not ticked
    WriteItem(&query);
    SaveCurrentDocument();
    return 1;
}

JobRecord* GetJobs(int32_t* count) noexcept {
    const CCollectedValues ids("Jobs", "ID");
    if (count != nullptr) {
        *count = ids.Count();
    }
    if (ids.Count() < 1) {
        return nullptr;
    }
    auto* const jobs = new JobRecord[static_cast<std::size_t>(ids.Count())];
    JobRecord* job = jobs;
    for (const AnsiString& id : ids) {
        CXmlQuery query("Jobs", "ID", id);
        ReadChild(&query);
        query.m_attrs.Rewind();
        TakeField(query.m_attrs, job->name, "Name");
        TakeField(query.m_attrs, job->id, "ID");
        TakeField(query.m_attrs, job->type, "Type");
        TakeField(query.m_attrs, job->copies, "Copies");
        TakeField(query.m_attrs, job->stored, "Stored");
        TakeField(query.m_attrs, job->checked, "checked");
        ++job;
    }
    return jobs;
}

void DelJobList(JobRecord* jobs) noexcept { delete[] jobs; }
