#include "core/util/FileHandle.h"

#include <fcntl.h>

namespace vpc {

void startWriteBack(std::FILE* file) {
#ifdef SYNC_FILE_RANGE_WRITE
    // It only hastens what the system does anyway, so a failure changes nothing.
    sync_file_range(fileno(file), 0, 0, SYNC_FILE_RANGE_WRITE);
#else
    static_cast<void>(file);
#endif
}

bool readLine(std::FILE* file, std::string& line) {
    line.clear();
    int c = file == nullptr ? EOF : std::getc(file);
    if (c == EOF) return false;
    for (; c != EOF && c != '\n'; c = std::getc(file)) line += static_cast<char>(c);
    return true;
}

}  // namespace vpc
