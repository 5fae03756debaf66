#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <string>

#include <wx/string.h>

namespace vpc::test {

/// An empty folder of its own for one test, removed with all that is in it at the end.
class TempFolder {
public:
    explicit TempFolder(const std::string& suffix = "") {
        std::string name = (std::filesystem::temp_directory_path() / "vpc-test-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
        top_ = name;
        path_ = suffix.empty() ? top_ : top_ / suffix;
        std::filesystem::create_directories(path_);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(top_, ignored);
    }

    const std::filesystem::path& path() const { return path_; }
    std::string file(const std::string& name) const { return (path_ / name).string(); }

    /// The names of everything below the folder, with the folders that hold them.
    std::set<std::string> names() const {
        std::set<std::string> found;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(path_))
            found.insert(entry.path().lexically_relative(path_).string());
        return found;
    }

private:
    std::filesystem::path top_;
    std::filesystem::path path_;
};

/// A path as the library takes it, whatever the process's locale is.
inline wxString toWx(const std::filesystem::path& path) {
    return wxString::FromUTF8(path.string());
}

inline std::string readBytes(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void writeBytes(const std::filesystem::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

}  // namespace vpc::test
