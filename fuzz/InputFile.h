#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>

#include <unistd.h>

#include <wx/string.h>

namespace vpc::fuzz {

/// The fuzzer's input as a file, since the library reads files. It is in memory, has one name in
/// every process, and is removed at the end of the run.
class InputFile {
public:
    InputFile(const std::uint8_t* data, std::size_t size, const char* extension)
        : bytes_(reinterpret_cast<const char*>(data), size),
          path_(Folder() + "/vpc-fuzz-" + std::to_string(getpid()) + "." + extension) {
        std::FILE* const file = std::fopen(path_.c_str(), "wb");
        if (file == nullptr) throw std::runtime_error("cannot write " + path_);
        const bool written = std::fwrite(data, 1, size, file) == size;
        if (std::fclose(file) != 0 || !written) throw std::runtime_error("cannot fill " + path_);
    }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    ~InputFile() { std::remove(path_.c_str()); }

    wxString name() const { return wxString::FromUTF8(path_); }
    /// True for one input in `count`, and always for the same ones: for checks that take long.
    bool IsOneIn(std::size_t count) const {
        return std::hash<std::string_view>()(bytes_) % count == 0;
    }

private:
    /// script/fuzz gives one that it removes, so that a crash leaves nothing behind either.
    static std::string Folder() {
        const char* const given = std::getenv("VPC_FUZZ_FOLDER");
        return given == nullptr ? "/dev/shm" : given;
    }

    std::string_view bytes_;
    std::string path_;
};

}  // namespace vpc::fuzz
