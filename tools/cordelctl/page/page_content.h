// What the page to look at shows: texts and numbers, ready to be drawn. Texts are UTF-8 as the documents hold them;
// what draws them takes care of marks and control characters.

#pragma once

#include "page/gamut.h"
#include "page/specimen.h"

#include <optional>
#include <string>
#include <vector>

/// A remark of the doctor, or of the page itself.
struct PageFinding {
    std::string severity; // "error", "warning" or "note"
    std::string where;
    std::string text;
    std::string advice;
    std::string anchor; // of the row that it is about; empty for none
};

/// A horizontal bar: what is used, what would be added, of a whole.
struct PageBar {
    double used = 0;  // of the whole, 0 to 1; likewise below
    double added = 0; // on top of what is used
    bool isTooMuch = false;
    std::string text; // the same in words and numbers
};

struct PageVolume {
    std::string anchor;
    std::string name;
    std::string description; // label, location and status
    std::string total;
    std::string free;
    std::optional<PageBar> bar; // none when the sizes are no numbers
};

struct PageDevice {
    std::string name;
    std::vector<PageVolume> volumes;
};

/// What sending the ticked files takes of one volume.
struct PageSending {
    std::string volume;
    std::string files; // their size
    std::string before;
    std::string after;
    std::optional<PageBar> bar;
    bool fits = true;
};

struct PagePartition {
    std::string anchor;
    std::string name;
    std::string size;
    std::string percent; // empty where there is none
    double share = 0;    // of the whole map, 0 to 1
};

struct PagePartitionMap {
    std::string title;
    std::vector<PagePartition> partitions;
};

struct PageFile {
    std::string anchor;
    std::string id;
    std::string title;
    std::string target; // volume and path on the printer
    std::string size;
    bool isTicked = false;
    std::string clash; // the reason, or empty
    std::optional<Specimen> specimen;
    std::optional<Gamut> gamut;
    std::string notShown; // why there is neither, or empty
};

struct PageFileGroup {
    std::string title;
    std::vector<PageFile> files;
};

struct PageSlot {
    std::string number;
    std::string state; // "free", "taken" or "clashing"
    std::string owner; // names of the files in it
};

struct PageSlotGrid {
    std::string title;
    std::vector<PageSlot> slots;
};

struct PageRow {
    std::string anchor; // empty for none
    std::vector<std::string> cells;
};

/// A table without pictures: jobs, settings.
struct PageTable {
    std::string title;
    std::vector<std::string> headings;
    std::vector<PageRow> rows;
};

/// One document.
struct PageSection {
    std::string anchor;
    std::string title;
    std::string source;  // the file it was read from
    std::string problem; // why it cannot be shown, or empty
    std::vector<PageDevice> devices;
    std::vector<PagePartitionMap> partitions;
    std::vector<PageSending> sending;
    std::vector<PageFileGroup> files;
    std::vector<PageSlotGrid> slots;
    std::vector<PageTable> tables;
};

struct PageContent {
    std::string title;
    std::string made; // when, where that was asked for; else empty
    std::string specimenText;
    std::vector<PageFinding> findings;
    std::vector<PageSection> sections;
};
