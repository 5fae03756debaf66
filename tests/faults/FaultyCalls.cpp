// Comes before the C library (LD_PRELOAD) and lets calls of a program fail. The variable FAULTS
// says which: KIND WAY N REPORT FOLDER. Of the calls of that kind (open, read, write, rename,
// punch) that are about files below the folder, the N-th fails: "once", "lasting" (those after it
// as well) or "half" (after half of its bytes). Of the kind "garble", which are calls that read
// from a place that they name, it gives zeros. Writes that the program does not wait for may be
// refused (the kind "submit"), or fail later ("complete"). How many calls there were is written to
// the file REPORT at the end.
//
// A file below the folder that is opened for the programs that this one might start, too, ends it.
//
// The C library's calls within itself cannot be met: a buffered file fails where a program reads
// it, writes it, or has its buffer written by a seek or by closing it.

#include <dlfcn.h>
#include <fcntl.h>
#include <linux/aio_abi.h>
#include <stdio_ext.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>

namespace {

struct Plan {
    Plan() {
        const char* text = std::getenv("FAULTS");
        std::istringstream(text != nullptr ? text : "") >> kind >> way >> call >> report >> folder;
    }
    ~Plan() { std::ofstream(report) << seen; }
    std::string kind, way, report, folder;
    long call = 0, seen = 0;
};

Plan& plan() {
    static Plan instance;
    return instance;
}
[[maybe_unused]] const Plan& fromTheStart = plan();

std::string target(const std::string& link) {
    char path[PATH_MAX];
    const ssize_t size = readlink(link.c_str(), path, sizeof path);
    return {path, size > 0 ? static_cast<std::size_t>(size) : 0};
}
std::string fileOf(int descriptor) {
    return target("/proc/self/fd/" + std::to_string(descriptor));
}
std::string fileOf(int folder, const char* path) {
    if (path[0] == '/') return path;
    return (folder == AT_FDCWD ? target("/proc/self/cwd") : fileOf(folder)) + "/" + path;
}

/// Counts a call that is to move `bytes` bytes. Returns false, with the error set, when it fails;
/// `bytes` is then what it moves all the same.
bool succeeds(const char* kind, const std::string& file, std::size_t& bytes) {
    Plan& p = plan();
    // Half of a single value is no other case than none of it.
    const bool counts = p.kind == kind && file.rfind(p.folder + "/", 0) == 0 &&
                        (p.way != "half" || bytes > sizeof(double));
    if (!counts) return true;
    ++p.seen;
    if (p.seen < p.call || (p.seen > p.call && p.way != "lasting")) return true;
    bytes = p.way == "half" ? bytes / 2 : 0;
    errno = p.kind == "write"    ? ENOSPC
            : p.kind == "read"   ? EIO
            : p.kind == "punch"  ? EOPNOTSUPP
            : p.kind == "submit" ? EAGAIN
                                 : EACCES;
    return false;
}

/// What the C library has under a name.
template <class Function>
Function* real(Function*, const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}
#define REAL(function) real(&function, #function)

template <class Call>
auto unlessFails(const char* kind, const std::string& file, const Call& call,
                 decltype(call()) failure) {
    std::size_t none = 0;
    return succeeds(kind, file, none) ? call() : failure;
}

/// A call on a descriptor, which says itself how many bytes it has moved.
template <class Call>
ssize_t moved(const char* kind, int descriptor, std::size_t bytes, const Call& call) {
    if (!succeeds(kind, fileOf(descriptor), bytes) && bytes == 0) return -1;
    return call(bytes);
}

template <class Call>
std::size_t movedBuffered(const char* kind, std::FILE* file, std::size_t bytes, const Call& call) {
    if (succeeds(kind, fileOf(fileno(file)), bytes)) return call(bytes);
    const int reason = errno;
    const std::size_t done = bytes != 0 ? call(bytes) : 0;
    file->_flags |= _IO_ERR_SEEN;
    errno = reason;
    return done;
}

/// A write that nobody waits for, as it is submitted: is it taken? One that is to fail later is cut
/// so that what it leaves out is missing indeed.
bool isTaken(iocb& request) {
    const std::string file = fileOf(static_cast<int>(request.aio_fildes));
    std::size_t bytes = request.aio_nbytes;
    constexpr std::size_t page = 4096;
    if (!succeeds("complete", file, bytes)) request.aio_nbytes = bytes / page * page;
    std::size_t none = 0;
    return succeeds("submit", file, none);
}

int uninherited(int descriptor, const std::string& file) {
    const bool isChecked = descriptor >= 0 && file.rfind(plan().folder + "/", 0) == 0;
    if (isChecked && (fcntl(descriptor, F_GETFD) & FD_CLOEXEC) == 0) {
        std::fprintf(stderr, "%s would be inherited\n", file.c_str());
        std::abort();
    }
    return descriptor;
}

bool canFlush(std::FILE* file) {
    std::size_t none = 0;
    if (__fpending(file) == 0 || succeeds("write", fileOf(fileno(file)), none)) return true;
    file->_flags |= _IO_ERR_SEEN;
    return false;
}

}  // namespace

extern "C" {

int openat(int folder, const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    const auto call = [&] { return REAL(openat)(folder, path, flags, mode); };
    const std::string file = fileOf(folder, path);
    return uninherited(unlessFails("open", file, call, -1), file);
}
int open64(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return openat(AT_FDCWD, path, flags, mode);
}
std::FILE* fopen64(const char* path, const char* mode) {
    const auto call = [&] { return REAL(fopen64)(path, mode); };
    const std::string name = fileOf(AT_FDCWD, path);
    std::FILE* const file = unlessFails("open", name, call, nullptr);
    if (file != nullptr) uninherited(fileno(file), name);
    return file;
}
char* mkdtemp(char* path) noexcept {
    const auto call = [&] { return REAL(mkdtemp)(path); };
    return unlessFails("open", fileOf(AT_FDCWD, path), call, nullptr);
}
int rename(const char* from, const char* to) noexcept {
    const auto call = [&] { return REAL(rename)(from, to); };
    return unlessFails("rename", fileOf(AT_FDCWD, to), call, -1);
}

ssize_t read(int file, void* data, std::size_t size) {
    return moved("read", file, size, [&](std::size_t n) { return REAL(read)(file, data, n); });
}
ssize_t pread64(int file, void* data, std::size_t size, off64_t at) {
    const ssize_t got =
        moved("read", file, size, [&](std::size_t n) { return REAL(pread64)(file, data, n, at); });
    std::size_t none = 0;
    if (got > 0 && !succeeds("garble", fileOf(file), none))
        std::memset(data, 0, static_cast<std::size_t>(got));
    return got;
}
int fallocate64(int file, int mode, off64_t at, off64_t size) {
    const auto call = [&] { return REAL(fallocate64)(file, mode, at, size); };
    return unlessFails("punch", fileOf(file), call, -1);
}
ssize_t write(int file, const void* data, std::size_t size) {
    return moved("write", file, size, [&](std::size_t n) { return REAL(write)(file, data, n); });
}
ssize_t pwrite64(int file, const void* data, std::size_t size, off64_t at) {
    return moved("write", file, size,
                 [&](std::size_t n) { return REAL(pwrite64)(file, data, n, at); });
}
long syscall(long number, ...) noexcept {
    va_list arguments;
    va_start(arguments, number);
    long values[6];
    for (long& value : values) value = va_arg(arguments, long);
    va_end(arguments);
    if (number == SYS_io_submit && !isTaken(**reinterpret_cast<iocb**>(values[2]))) return -1;
    const long result =
        REAL(syscall)(number, values[0], values[1], values[2], values[3], values[4], values[5]);
    auto* const events = reinterpret_cast<io_event*>(values[3]);
    for (long i = 0; number == SYS_io_getevents && i < result; ++i)
        if (events[i].res == 0) events[i].res = -EIO;
    return result;
}
std::size_t fread(void* data, std::size_t size, std::size_t count, std::FILE* file) {
    const auto call = [&](std::size_t n) { return REAL(fread)(data, 1, n, file); };
    return movedBuffered("read", file, size * count, call) / size;
}
std::size_t fwrite(const void* data, std::size_t size, std::size_t count, std::FILE* file) {
    const auto call = [&](std::size_t n) { return REAL(fwrite)(data, 1, n, file); };
    return movedBuffered("write", file, size * count, call) / size;
}
int fseek(std::FILE* file, long offset, int whence) {
    return canFlush(file) ? REAL(fseek)(file, offset, whence) : -1;
}
int fseeko64(std::FILE* file, off64_t offset, int whence) {
    return canFlush(file) ? REAL(fseeko64)(file, offset, whence) : -1;
}
int fclose(std::FILE* file) {
    const bool whole = canFlush(file);
    const int reason = errno;
    if (!whole) __fpurge(file);
    const int result = REAL(fclose)(file);
    if (!whole) errno = reason;
    return whole ? result : EOF;
}

}  // extern "C"
