// The print jobs stored on a printer.

#pragma once

#include "store/outcome.h"

#include <vector>

/// One job as it is listed: the attributes of its row by position.
struct StoredJob {
    AnsiString name;
    AnsiString id;
    AnsiString type;
    AnsiString copies;
    AnsiString stored;
    AnsiString checked;
};

/// Adds a job, not ticked, whatever the record says.
COutcome AddJob(CXmlObject* document, const JobRecord& job);

/// A job for every ID that is listed. Of several rows with one ID each time the first: hosts rely on it.
std::vector<StoredJob> ReadJobs(CXmlObject* document);
