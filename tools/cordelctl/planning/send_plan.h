// What sending the ticked files of a project to a printer would do, volume by volume: what is new there, what takes
// another's place, what is there already, what does not fit, and in which order it fits.

#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// A file of the project.
struct ProjectFile {
    std::string fileID;
    std::string type;
    std::string profileType; // of a colour profile: which slots it takes
    std::string id;
    std::string volume;
    std::string path; // on the volume
    std::string localPath;
    std::int64_t size = 0;
    bool ticked = false;
};

/// A volume as the printer reported it.
struct ReportedVolume {
    std::string volume;
    std::int64_t freeSpace = 0;
};

/// A file on the printer.
struct PrinterFile {
    std::string volume;
    std::string path;
    std::int64_t size = 0;
};

enum class Standing {
    New,      // nothing is there, as far as is known
    Replaces, // another file is there
    IsThere   // a file of the same path and size is there
};

/// A ticked file.
struct PlanStep {
    ProjectFile file;
    Standing standing = Standing::New;
    std::int64_t sizeThere = 0; // of what it replaces
    bool fits = true;
    std::int64_t freeAfter = 0; // on the volume when this step is done
};

struct VolumePlan {
    std::string volume;
    std::int64_t freeSpace = 0;
    std::int64_t filesSize = 0;          // of all ticked files, whether they are there or not
    std::int64_t freeSpaceAfterSend = 0; // free space less that; negative when it does not fit so
    std::int64_t bytesToSend = 0;        // of those that are not there
    std::int64_t bytesReplaced = 0;      // that become free on the way
    std::int64_t bytesMissing = 0;       // for all to fit
    std::vector<PlanStep> steps;         // in an order in which as many fit as can
    std::vector<PrinterFile> inNoProject;
};

/// Files that would have one number, or one path, on the printer.
struct PlanClash {
    enum class Kind { SentTogether, WithPrinter, OnePath };
    Kind kind = Kind::SentTogether;
    std::string group; // "macros", "overlays", "fonts", "profiles"; of paths the volume
    std::string id;    // or the path
    std::vector<std::string> fileIDs;
};

struct SendPlan {
    std::vector<VolumePlan> volumes; // those for which files are ticked, or on which there are files, by name
    std::vector<PlanClash> clashes;
    bool Fits() const noexcept;
};

/// `listing` is what the printer holds; nothing when that is not known. Every volume of a ticked file has to be among
/// the volumes; sizes add up within 63 bits, or std::overflow_error is thrown. Paths are compared without regard to
/// case and kind of slash.
SendPlan MakePlan(const std::vector<ProjectFile>& files, const std::vector<ReportedVolume>& volumes,
                  const std::vector<PrinterFile>& listing);
