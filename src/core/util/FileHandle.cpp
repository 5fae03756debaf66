#include "core/util/FileHandle.h"

#include <limits>

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

void preallocate(std::FILE* file, unsigned long long begin, unsigned long long end) {
#ifdef FALLOC_FL_KEEP_SIZE
    // Without it the system sets room aside as the file is written, so a failure changes nothing.
    if (begin < end && end <= static_cast<unsigned long long>(std::numeric_limits<off_t>::max()))
        static_cast<void>(
            fallocate(fileno(file), 0, static_cast<off_t>(begin), static_cast<off_t>(end - begin)));
#else
    static_cast<void>(file);
    static_cast<void>(begin);
    static_cast<void>(end);
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
