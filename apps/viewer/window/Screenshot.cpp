#include "viewer/window/Screenshot.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <new>
#include <optional>
#include <string>
#include <utility>

#include <wx/image.h>
#include <wx/mstream.h>

#include "viewer/panels/Text.h"

namespace vpc::viewer {

namespace {

constexpr const char* noMemory = "there is not enough memory; try a smaller picture";

/// \return why it failed, or an empty text
std::string writeFile(const std::string& file, const void* bytes, std::size_t count) {
    std::FILE* stream = std::fopen(file.c_str(), "wbe");
    if (stream == nullptr) return std::strerror(errno);
    const bool isWritten = std::fwrite(bytes, 1, count, stream) == count;
    const bool isClosed = std::fclose(stream) == 0;
    if (isWritten && isClosed) return {};
    std::string reason = std::strerror(errno);
    std::remove(file.c_str());
    return reason;
}

std::string savePng(const draw::Image& picture, const std::string& file) {
    auto* bytes =
        const_cast<unsigned char*>(reinterpret_cast<const unsigned char*>(picture.Data()));
    const wxImage image(picture.Size().width, picture.Size().height, bytes, true);
    wxMemoryOutputStream stream;
    if (!wxPNGHandler().SaveFile(const_cast<wxImage*>(&image), stream, false))
        return "it could not be written as PNG";
    const wxStreamBuffer* buffer = stream.GetOutputStreamBuffer();
    return writeFile(file, buffer->GetBufferStart(), static_cast<std::size_t>(stream.GetLength()));
}

/// As far as the system tells.
std::optional<double> freeBytes() {
    std::ifstream facts("/proc/meminfo");
    std::string name;
    double kibibytes = 0.0;
    for (std::string rest; facts >> name >> kibibytes; std::getline(facts, rest))
        if (name == "MemAvailable:") return kibibytes * 1024.0;
    return {};
}

std::string whyTooLarge(const draw::ImageSize& size, const PointRenderer& renderer) {
    const int side = renderer.LargestSide();
    if (std::max(size.width, size.height) > side)
        return "a picture may have " + std::to_string(side) + " pixels a side at most";
    const double wanted =
        static_cast<double>(size.Pixels()) * static_cast<double>(renderer.BytesPerPixel());
    const std::optional<double> free = freeBytes();
    return free && wanted > *free ? noMemory : "";
}

std::string drawAndSave(const Screenshot& shot, PointRenderer& renderer) {
    // Once more, as the points may have taken the memory.
    std::string reason = whyTooLarge(shot.size, renderer);
    if (!reason.empty()) return reason;
    try {
        renderer.Begin(shot.camera, shot.size, shot.style);
        renderer.Draw(0, 1);
        draw::Image picture = renderer.Picture();
        if (renderer.IsLost()) return "the graphics card has given up; try again";
        shot.overlay.LayOver(picture, shot.camera, shot.style, shot.window);
        return savePng(picture, shot.file);
    } catch (const std::bad_alloc&) {
        return noMemory;
    }
}

}  // namespace

void Screenshot::Take(const PointRenderer& renderer, UpdateLoop& updates,
                      std::function<void(const std::string& problem)> done) const {
    const auto end = [name = file, done = std::move(done)](const std::string& reason) {
        done(reason.empty() ? "" : "The picture " + name + " could not be saved: " + reason + ".");
    };
    // Before its points are fetched, which takes a while and puts the window's away.
    const std::string reason = whyTooLarge(size, renderer);
    if (!reason.empty()) return end(reason);
    updates.AskPicture(
        size, [shot = *this](PointRenderer& drawing) { return drawAndSave(shot, drawing); }, end);
}

}  // namespace vpc::viewer
