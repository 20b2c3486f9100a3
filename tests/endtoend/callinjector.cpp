// Preloaded into a program, it makes one call of the program or its libraries fail, as the environment says:
//   FAIL_CALL, FAIL_TARGET, FAIL_AT   the n-th such call on what this path was opened for, or on a "socket"
//   FAIL_WITH                         its errno
//   FAIL_REPORT                       a file that is told of it; without FAIL_AT, at the end, how often each call
//                                     was made on each target, as "COUNT CALL TARGET"

#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <map>
#include <string>
#include <sys/socket.h>
#include <unistd.h>

namespace {

std::string setting(const char *name)
{
    const char *value = std::getenv(name);
    return value ? value : "";
}

/// The program has one thread.
struct Injector
{
    const std::string call = setting("FAIL_CALL"), target = setting("FAIL_TARGET"), report = setting("FAIL_REPORT");
    const int at = std::atoi(setting("FAIL_AT").c_str()), error = std::atoi(setting("FAIL_WITH").c_str());
    bool reporting = false; // which makes calls as well
    std::map<std::string, int> counts;
    std::array<std::string, 1024> targets; // by descriptor

    void tell()
    {
        reporting = true;
        if (std::FILE *file = std::fopen(report.c_str(), "a")) {
            for (const auto &[name, count] : counts)
                std::fprintf(file, "%d %s\n", count, name.c_str());
            std::fclose(file);
        }
        reporting = false;
    }
    bool fails(const char *name, const std::string &on)
    {
        if (reporting || on.empty() || on.ends_with(".gcda")) // a count of the lines that were run
            return false;
        const int count = ++counts[name + (' ' + on)];
        if (count != at || call != name || target != on)
            return false;
        tell();
        errno = error;
        return true;
    }
    std::string *targetOf(int fd) { return fd >= 0 && size_t(fd) < targets.size() ? &targets[size_t(fd)] : nullptr; }
    int opened(int fd, const std::string &on)
    {
        if (std::string *place = targetOf(fd))
            *place = on;
        return fd;
    }
};

Injector &injector()
{
    static auto &only = *new Injector; // calls are made up to the end
    return only;
}

[[gnu::destructor]] void reportAll()
{
    if (injector().at == 0)
        injector().tell();
}

/// Makes the call that the program meant, unless it is to fail.
template <typename Function, typename... Arguments>
auto pass(const char *function, const char *name, const std::string &on, Arguments... arguments)
{
    const auto real = reinterpret_cast<Function *>(dlsym(RTLD_NEXT, function));
    return injector().fails(name, on) ? -1 : real(arguments...);
}

template <typename Function, typename... Arguments> auto passOn(const char *name, int fd, Arguments... arguments)
{
    const std::string *target = injector().targetOf(fd);
    return pass<Function>(name, name, target ? *target : std::string(), fd, arguments...);
}

} // namespace

extern "C" {

using Open = int(const char *, int, ...);
using Ioctl = int(int, unsigned long, ...) noexcept;
using SetOption = int(int, int, int, const void *, socklen_t) noexcept;
using GetName = int(int, sockaddr *, socklen_t *) noexcept;
using GetOption = int(int, int, int, void *, socklen_t *) noexcept;

int open64(const char *path, int flags, ...)
{
    va_list list;
    va_start(list, flags);
    const unsigned mode = va_arg(list, unsigned);
    va_end(list);
    return injector().opened(pass<Open>("open64", "open", path, path, flags, mode), path);
}

int open(const char *path, int flags, ...)
{
    va_list list;
    va_start(list, flags);
    const unsigned mode = va_arg(list, unsigned);
    va_end(list);
    return open64(path, flags, mode);
}

int close(int fd)
{
    injector().opened(fd, {});
    return pass<int(int)>("close", "close", {}, fd);
}

ssize_t read(int fd, void *data, size_t size) { return passOn<ssize_t(int, void *, size_t)>("read", fd, data, size); }

ssize_t write(int fd, const void *data, size_t size)
{
    return passOn<ssize_t(int, const void *, size_t)>("write", fd, data, size);
}

int ioctl(int fd, unsigned long request, ...) noexcept
{
    va_list list;
    va_start(list, request);
    void *const argument = va_arg(list, void *);
    va_end(list);
    return passOn<Ioctl>("ioctl", fd, request, argument);
}

int socket(int domain, int type, int protocol) noexcept
{
    return injector().opened(pass<int(int, int, int)>("socket", "socket", "socket", domain, type, protocol), "socket");
}

int connect(int fd, const sockaddr *address, socklen_t length)
{
    return passOn<int(int, const sockaddr *, socklen_t)>("connect", fd, address, length);
}

ssize_t send(int fd, const void *data, size_t size, int flags)
{
    return passOn<ssize_t(int, const void *, size_t, int)>("send", fd, data, size, flags);
}

int setsockopt(int fd, int level, int option, const void *value, socklen_t length) noexcept
{
    return passOn<SetOption>("setsockopt", fd, level, option, value, length);
}

int getsockopt(int fd, int level, int option, void *value, socklen_t *length) noexcept
{
    return passOn<GetOption>("getsockopt", fd, level, option, value, length);
}

int getsockname(int fd, sockaddr *address, socklen_t *length) noexcept
{
    return passOn<GetName>("getsockname", fd, address, length);
}

int getpeername(int fd, sockaddr *address, socklen_t *length) noexcept
{
    return passOn<GetName>("getpeername", fd, address, length);
}

} // extern "C"
