#include "viewer/window/Screenshot.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include <wx/image.h>
#include <wx/mstream.h>

#include "viewer/panels/Text.h"

namespace vpc::viewer {

namespace {

std::string failure(const std::string& file, const std::string& reason) {
    return "The picture " + file + " could not be saved: " + reason + ".";
}

/// \return a sentence where it failed
std::string writeFile(const std::string& file, const void* bytes, std::size_t count) {
    std::FILE* stream = std::fopen(file.c_str(), "wbe");
    if (stream == nullptr) return failure(file, std::strerror(errno));
    const bool isWritten = std::fwrite(bytes, 1, count, stream) == count;
    const bool isClosed = std::fclose(stream) == 0;
    if (isWritten && isClosed) return {};
    const std::string reason = std::strerror(errno);
    std::remove(file.c_str());
    return failure(file, reason);
}

std::string savePng(const draw::Image& picture, const std::string& file) {
    auto* bytes =
        const_cast<unsigned char*>(reinterpret_cast<const unsigned char*>(picture.Data()));
    const wxImage image(picture.Size().width, picture.Size().height, bytes, true);
    wxMemoryOutputStream stream;
    if (!wxPNGHandler().SaveFile(const_cast<wxImage*>(&image), stream, false))
        return failure(file, "it could not be written as PNG");
    const wxStreamBuffer* buffer = stream.GetOutputStreamBuffer();
    return writeFile(file, buffer->GetBufferStart(), static_cast<std::size_t>(stream.GetLength()));
}

std::string drawAndSave(const Screenshot& shot, PointRenderer& renderer) {
    try {
        renderer.Begin(shot.camera, shot.size, shot.style);
        renderer.Draw(0, 1);
        draw::Image picture = renderer.Picture();
        shot.overlay.LayOver(picture, shot.camera, shot.style, shot.window);
        return savePng(picture, shot.file);
    } catch (const std::bad_alloc&) {
        return failure(shot.file, "there is not enough memory; try a smaller picture");
    }
}

}  // namespace

void Screenshot::Take(UpdateLoop& updates,
                      std::function<void(const std::string& problem)> done) const {
    const auto problem = std::make_shared<std::string>();
    updates.AskPicture(
        size,
        [shot = *this, problem](PointRenderer& renderer) {
            *problem = drawAndSave(shot, renderer);
        },
        [problem, done = std::move(done)] { done(*problem); });
}

}  // namespace vpc::viewer
