// Rows of a project's file list, as XML.

#pragma once

#include <string>

/// One file of the list. `details` are further attributes.
inline std::string FileRow(const std::string& fileId, const std::string& type, const std::string& id,
                           const std::string& checked = "1", const std::string& details = "") {
    return "<Item FileID='" + fileId + "' Component='c' ID='" + id + "' Type='" + type +
           "' Volume='v' Path='p' LocalPath='l' Size='1' CreateDate='d' checked='" + checked + "' " + details + "/>";
}

/// The file list with these rows.
inline std::string Files(const std::string& rows) { return "<Files>" + rows + "</Files>"; }
