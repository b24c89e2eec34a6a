#include <poll.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstddef>

#include "tests/unit/faults/FailingCalls.h"

using tolvane::test::CallFails;

namespace {

int Opened(int file) {
    if (file >= 0) ++tolvane::test::OpenDescriptors();
    return file;
}

}  // namespace

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): the linker's own names
extern "C" {

int __real_socket(int domain, int type, int protocol);
int __real_bind(int socket, const sockaddr* address, socklen_t length);
int __real_connect(int socket, const sockaddr* address, socklen_t length);
int __real_setsockopt(int socket, int level, int name, const void* value, socklen_t length);
int __real_getsockopt(int socket, int level, int name, void* value, socklen_t* length);
int __real_ioctl(int file, unsigned long request, void* argument);
int __real_poll(pollfd* entries, nfds_t count, int timeout);
ssize_t __real_send(int socket, const void* buffer, std::size_t size, int flags);
ssize_t __real_sendmsg(int socket, const msghdr* message, int flags);
ssize_t __real_sendto(int socket, const void* buffer, std::size_t size, int flags,
                      const sockaddr* address, socklen_t length);
ssize_t __real_recv(int socket, void* buffer, std::size_t size, int flags);
ssize_t __real_recvmsg(int socket, msghdr* message, int flags);
ssize_t __real_recvfrom(int socket, void* buffer, std::size_t size, int flags, sockaddr* address,
                        socklen_t* length);
int __real_shutdown(int socket, int how);
int __real_close(int file);
int __real_epoll_create1(int flags);
int __real_epoll_ctl(int epoll, int operation, int file, epoll_event* event);
int __real_epoll_wait(int epoll, epoll_event* events, int most, int timeout);
int __real_eventfd(unsigned value, int flags);
int __real_pipe(int* files);
int __real_timerfd_create(int clock, int flags);
int __real_timerfd_settime(int timer, int flags, const itimerspec* value, itimerspec* before);

int __wrap_socket(int domain, int type, int protocol) {
    return Opened(CallFails("socket") ? -1 : __real_socket(domain, type, protocol));
}
int __wrap_bind(int socket, const sockaddr* address, socklen_t length) {
    return CallFails("bind") ? -1 : __real_bind(socket, address, length);
}
int __wrap_connect(int socket, const sockaddr* address, socklen_t length) {
    return CallFails("connect") ? -1 : __real_connect(socket, address, length);
}
int __wrap_setsockopt(int socket, int level, int name, const void* value, socklen_t length) {
    return CallFails("setsockopt") ? -1 : __real_setsockopt(socket, level, name, value, length);
}
int __wrap_getsockopt(int socket, int level, int name, void* value, socklen_t* length) {
    return CallFails("getsockopt") ? -1 : __real_getsockopt(socket, level, name, value, length);
}
int __wrap_ioctl(int file, unsigned long request, ...) {
    va_list arguments;
    va_start(arguments, request);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    return CallFails("ioctl") ? -1 : __real_ioctl(file, request, argument);
}
int __wrap_poll(pollfd* entries, nfds_t count, int timeout) {
    return CallFails("poll") ? -1 : __real_poll(entries, count, timeout);
}
ssize_t __wrap_send(int socket, const void* buffer, std::size_t size, int flags) {
    return CallFails("send") ? -1 : __real_send(socket, buffer, size, flags);
}
ssize_t __wrap_sendmsg(int socket, const msghdr* message, int flags) {
    return CallFails("sendmsg") ? -1 : __real_sendmsg(socket, message, flags);
}
ssize_t __wrap_sendto(int socket, const void* buffer, std::size_t size, int flags,
                      const sockaddr* address, socklen_t length) {
    return CallFails("sendto") ? -1 : __real_sendto(socket, buffer, size, flags, address, length);
}
ssize_t __wrap_recv(int socket, void* buffer, std::size_t size, int flags) {
    return CallFails("recv") ? -1 : __real_recv(socket, buffer, size, flags);
}
ssize_t __wrap_recvmsg(int socket, msghdr* message, int flags) {
    return CallFails("recvmsg") ? -1 : __real_recvmsg(socket, message, flags);
}
ssize_t __wrap_recvfrom(int socket, void* buffer, std::size_t size, int flags, sockaddr* address,
                        socklen_t* length) {
    return CallFails("recvfrom") ? -1
                                 : __real_recvfrom(socket, buffer, size, flags, address, length);
}
int __wrap_shutdown(int socket, int how) {
    return CallFails("shutdown") ? -1 : __real_shutdown(socket, how);
}
// The descriptor is gone all the same, as the system has it.
int __wrap_close(int file) {
    const bool fails = CallFails("close");
    const int result = __real_close(file);
    --tolvane::test::OpenDescriptors();
    if (!fails) return result;
    errno = EIO;
    return -1;
}
int __wrap_epoll_create1(int flags) {
    return Opened(CallFails("epoll_create1") ? -1 : __real_epoll_create1(flags));
}
int __wrap_epoll_ctl(int epoll, int operation, int file, epoll_event* event) {
    return CallFails("epoll_ctl") ? -1 : __real_epoll_ctl(epoll, operation, file, event);
}
int __wrap_epoll_wait(int epoll, epoll_event* events, int most, int timeout) {
    return CallFails("epoll_wait") ? -1 : __real_epoll_wait(epoll, events, most, timeout);
}
int __wrap_eventfd(unsigned value, int flags) {
    return Opened(CallFails("eventfd") ? -1 : __real_eventfd(value, flags));
}
// Stands in for an eventfd.
int __wrap_pipe(int* files) {
    if (CallFails("pipe")) return -1;
    const int result = __real_pipe(files);
    if (result == 0) tolvane::test::OpenDescriptors() += 2;
    return result;
}
int __wrap_timerfd_create(int clock, int flags) {
    return Opened(CallFails("timerfd_create") ? -1 : __real_timerfd_create(clock, flags));
}
int __wrap_timerfd_settime(int timer, int flags, const itimerspec* value, itimerspec* before) {
    return CallFails("timerfd_settime") ? -1 : __real_timerfd_settime(timer, flags, value, before);
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
