// Documents of the size and shape that hosts keep: texts as long as real ones, every row different.

#pragma once

#include <cstddef>
#include <string>

struct FileItem;
struct TrueTypeDetail;

/// The numbers of rows that the workloads are measured with.
inline constexpr int kEveryday = 96; // about 35 KB
inline constexpr int kSmall = 1000;
inline constexpr int kMedium = 4096;
inline constexpr int kLarge = 32768;  // about 12 MB, and as many files as there are IDs
inline constexpr int kHostile = 8192; // and twice as many

/// A project of TrueType fonts: "Files" with `rows` rows of 16 attributes, all ticked, each with an ID of its own, and
/// "Property" naming the one in the middle as the file being edited.
std::string FontProject(int rows);

/// A project of ICM profiles of kind 0, which take all but the last of their slots.
std::string ProfileProject(int rows);

// Projects that are made to be slow, all files ticked.

/// Files that share one "FileID" and have no "ID".
std::string ProjectWithoutIds(int rows);

/// Files of which one has two attributes with the base name "Size".
std::string ProjectWithATwin(int rows);

/// Files whose "FileID" would meet in a few places of a table under a hash that everybody knows.
std::string ProjectOfCollisions(int rows);

/// A printer's document with this many stored jobs.
std::string PrinterWithJobs(int rows);

/// The key and the local path of a row of FontProject.
std::string FontFileId(int row);
std::string FontLocalPath(int row);

/// Row number `row` of FontProject as a record for WritePrjFile. `detail` must live as long as the record.
FileItem FontRecord(int row, TrueTypeDetail& detail);
