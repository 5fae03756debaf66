#include "Viewport.h"

#include <charconv>

#include "CommandError.h"

namespace vpc {

namespace {

bool scanSide(const char*& cursor, const char* end, int& side) {
    const auto result = std::from_chars(cursor, end, side);
    cursor = result.ptr;
    return result.ec == std::errc() && side >= 1 && side <= Viewport::largestSide;
}

}  // namespace

Viewport Viewport::Parse(const std::string& text, const std::string& option) {
    Viewport viewport;
    const char* cursor = text.data();
    const char* const end = cursor + text.size();
    const auto separator = [&] { return cursor != end && (*cursor == 'x' || *cursor == ','); };
    if (scanSide(cursor, end, viewport.width) && separator() &&
        scanSide(++cursor, end, viewport.height) && cursor == end)
        return viewport;
    throw CommandUsageError(option + " takes a width and a height in pixels, each from 1 to " +
                            std::to_string(largestSide) + "; '" + text + "' is not that");
}

}  // namespace vpc
