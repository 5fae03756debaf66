#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace vpc {

/// The scans that a command line names: files, folders of scans, and lists of both ("@list.txt").
///
/// A folder stands for the files in it that are scans by their extension, sorted by name. A list
/// names a file or a folder a line, relative to the folder that it lies in; blank lines and lines
/// that begin with '#' say nothing.
class ScanList {
public:
    /// Throws CommandError where a list cannot be read and where a folder or a list holds no scan.
    explicit ScanList(const std::vector<std::string>& arguments);

    const std::vector<std::string>& Files() const { return files_; }
    /// What was left out: scans that were there already under the same or another name, and files
    /// of a folder that other programs can turn into scans.
    const std::vector<std::string>& Warnings() const { return warnings_; }

private:
    void AddList(const std::string& list);
    void AddFileOrFolder(const std::string& name);
    void AddFolder(const std::string& folder);
    void AddFile(const std::string& file);

    /// What tells a file from all others, whatever it is called: its disk and its number there.
    using Identity = std::pair<unsigned long long, unsigned long long>;

    std::vector<std::string> files_;
    /// The names under which files were given first.
    std::map<Identity, std::string> names_;
    std::vector<std::string> warnings_;
};

}  // namespace vpc
