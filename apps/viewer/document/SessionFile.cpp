#include "viewer/document/SessionFile.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <system_error>

#include <unistd.h>

namespace vpc::viewer {

namespace {

constexpr std::uintmax_t longestSession = 8 << 20;

[[noreturn]] void fail(const std::string& file, const char* what, const std::string& why) {
    throw SessionError("The session " + file + " cannot be " + what + ": " + why + ".");
}

[[noreturn]] void failWithError(const std::string& file, const char* what) {
    fail(file, what, std::generic_category().message(errno));
}

struct Closing {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

bool writeWhole(const std::string& file, const std::string& text) {
    std::unique_ptr<std::FILE, Closing> stream(std::fopen(file.c_str(), "wxbe"));
    if (!stream || std::fwrite(text.data(), 1, text.size(), stream.get()) != text.size() ||
        std::fflush(stream.get()) != 0)
        return false;
    return std::fclose(stream.release()) == 0;
}

/// What a name stands for in the end: a link stays one when its file is written.
std::string linked(const std::string& file) {
    std::error_code ignored;
    const auto real = std::filesystem::canonical(file, ignored);
    return real.empty() ? file : real.string();
}

}  // namespace

void saveSession(const Session& session, const std::string& file) {
    const std::string text = sessionText(session, file);
    const std::string place = linked(file);
    const std::string beside = place + "." + std::to_string(getpid()) + ".part";
    if (!writeWhole(beside, text) || std::rename(beside.c_str(), place.c_str()) != 0) {
        const int problem = errno;
        std::remove(beside.c_str());
        errno = problem;
        failWithError(file, "saved");
    }
}

Session openSession(const std::string& file) {
    std::error_code problem;
    const auto status = std::filesystem::status(file, problem);
    if (status.type() == std::filesystem::file_type::not_found)
        fail(file, "opened", "there is no such file");
    if (!problem && !std::filesystem::is_regular_file(status))
        fail(file, "opened", "it is no file");
    const std::uintmax_t size = std::filesystem::file_size(file, problem);
    if (problem) fail(file, "opened", problem.message());
    if (size > longestSession) fail(file, "opened", "it is too large for a session");
    std::ifstream stream(file, std::ios::binary);
    std::string text(static_cast<std::size_t>(size), '\0');
    if (!stream || (size > 0 && !stream.read(text.data(), static_cast<std::streamsize>(size))))
        failWithError(file, "opened");
    return sessionFromText(text, file);
}

}  // namespace vpc::viewer
