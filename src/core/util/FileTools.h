#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include <wx/string.h>

#include "core/util/VpcDefinitions.h"

/// Tools for files and folders. None of them throws for a file that cannot be used or logs
/// anything; file names may hold any character.
class FileTools {
public:
    /// A path as the system's calls take it: through the C library's conversion, or as UTF-8 where
    /// the process locale cannot represent the name.
    static std::string ToNativePath(const wxString& path);
    /// The reverse: through the C library's conversion, else from UTF-8, else from Latin-1.
    static wxString FromNativePath(const std::string& path);

    /// Whether there is a file, of any kind but a folder.
    static bool FileExists(const wxString& path);
    static bool RemoveFile(const wxString& path);
    /// Renames a file, replacing a file that has the new name already.
    static bool RenameFile(const wxString& from, const wxString& to);

    /// How many tokens, separated by blanks and tabs, the line with this number (from 0) holds;
    /// 0 where the file cannot be opened or has no such line. UTF-16 and UTF-32 are told by their
    /// byte order mark. Reads in pieces, however long a line is.
    static unsigned long long CountTokensOnLine(const wxString& path, unsigned long long lineIndex);
    /// The same for an open file from its position on. A read error shows in the state of `file`.
    static unsigned long long CountTokensOnLine(std::FILE* file, unsigned long long lineIndex);
    /// How many lines a text file has, a last one without line end included; 0 where it cannot
    /// be opened.
    static unsigned long long CountLinesInFile(const wxString& path);

    /// How many files a folder and its subfolders hold, hidden ones included. Links to folders are
    /// not followed; folders that cannot be read hold none.
    static unsigned long long GetNrFilesInDir(const wxString& folder);
    /// Deletes files, never folders, in a folder and its subfolders, as `mode` tells: all but those
    /// named in `names`, those whose names begin with one of `names`, or all. Files that cannot be
    /// deleted stay.
    static void DeleteFilesInFolder(const wxString& folder, VpcCleanFolderMode mode,
                                    const std::vector<wxString>& names);
};
