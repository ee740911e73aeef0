// The checks of the doctor, a family in each source. Each adds what it finds.

#pragma once

#include "document_places.h"
#include "document_reader.h"
#include "finding.h"

enum class DocumentKind { Main, Printer, Strings };

/// Which file is loaded and which is saved.
void CheckPlace(const DocumentPlace& place, DocumentKind kind, Findings& findings);

/// Whether the file is a document at all, and its encoding.
void CheckForm(const DocumentContent& content, Findings& findings);

/// Containers that are missing or repeated, nodes that stop reads, and what holds for every attribute.
void CheckStructure(const DocumentNode& root, DocumentKind kind, Findings& findings);

void CheckFiles(const DocumentNode& root, Findings& findings);
void CheckIds(const DocumentNode& root, Findings& findings);
void CheckProfileSlots(const DocumentNode& root, Findings& findings);
void CheckJobs(const DocumentNode& root, Findings& findings);
void CheckPartitions(const DocumentNode& root, Findings& findings);
void CheckSettings(const DocumentNode& root, Findings& findings);
void CheckStrings(const DocumentNode& root, Findings& findings);
