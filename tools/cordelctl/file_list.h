// The files of the current document's "Files".
//
// The library hands out only the ticked files. To find all of them, this tool gives its files the FileIDs 1, 2, 3 and
// so on, and looks these up one by one; a gap of kLargestGap numbers ends the search. Files with other FileIDs (of
// another host) are found when they are ticked, or first in the list, or first of those that are not ticked.

#pragma once

#include <string>
#include <vector>

/// What the row of every file carries.
struct ListedFile {
    std::string fileID;
    std::string component;
    std::string id;
    std::string type;
    std::string volume;
    std::string path;
    std::string localPath;
    std::string size;
    std::string createDate;
    bool ticked = false;
};

/// The files that would be sent, in document order.
std::vector<ListedFile> ReadTickedFiles();

/// All files that can be found, by rising FileID; others after them.
std::vector<ListedFile> ReadAllFiles();

/// The file of this FileID, which exists.
ListedFile ReadFile(const std::string& fileID);

/// One attribute of a file, which may be empty.
std::string FileValue(const std::string& fileID, const std::string& attribute);

/// A number that is no file's FileID; `above` is the last one that is known to be taken.
int NextFileID(int above);

/// The highest number that is a file's FileID; 0 for none.
int LastFileID();

/// The FileID of the file that the user means by a FileID or a path. Throws when there is none.
std::string ResolveFile(const std::string& nameOrPath);

/// The lowest ID from 0 that no file of this type has.
int LowestFreeID(const std::string& type);
