#include <sys/stat.h>
#include <sys/types.h>

#include <cstdarg>
#include <cstddef>

#include "tests/unit/faults/FailingCalls.h"

using tolvane::test::CallFails;

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): the linker's own names
extern "C" {

int __real_open(const char* path, int flags, ...);
ssize_t __real_read(int file, void* buffer, std::size_t size);
ssize_t __real_write(int file, const void* buffer, std::size_t size);
int __real_fsync(int file);
int __real_fchmod(int file, mode_t mode);
int __real_fchown(int file, uid_t user, gid_t group);
int __real_flock(int file, int operation);
int __real_rename(const char* from, const char* to);
int __real_unlink(const char* path);
int __real_access(const char* path, int mode);
int __real_stat(const char* path, struct stat* status);

int __wrap_open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = va_arg(arguments, mode_t);
    va_end(arguments);
    return CallFails("open") ? -1 : __real_open(path, flags, mode);
}
ssize_t __wrap_read(int file, void* buffer, std::size_t size) {
    return CallFails("read") ? -1 : __real_read(file, buffer, size);
}
ssize_t __wrap_write(int file, const void* buffer, std::size_t size) {
    return CallFails("write") ? -1 : __real_write(file, buffer, tolvane::test::MostToWrite(size));
}
int __wrap_fsync(int file) {
    return CallFails("fsync") ? -1 : __real_fsync(file);
}
int __wrap_fchmod(int file, mode_t mode) {
    return CallFails("fchmod") ? -1 : __real_fchmod(file, mode);
}
int __wrap_fchown(int file, uid_t user, gid_t group) {
    return CallFails("fchown") ? -1 : __real_fchown(file, user, group);
}
int __wrap_flock(int file, int operation) {
    return CallFails("flock") ? -1 : __real_flock(file, operation);
}
int __wrap_rename(const char* from, const char* to) {
    return CallFails("rename") ? -1 : __real_rename(from, to);
}
int __wrap_unlink(const char* path) {
    return CallFails("unlink") ? -1 : __real_unlink(path);
}
int __wrap_access(const char* path, int mode) {
    return CallFails("access") ? -1 : __real_access(path, mode);
}
int __wrap_stat(const char* path, struct stat* status) {
    return CallFails("stat") ? -1 : __real_stat(path, status);
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
