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
auto pass(Function *, const char *function, const char *name, const std::string &on, Arguments... arguments)
{
    const auto real = reinterpret_cast<Function *>(dlsym(RTLD_NEXT, function));
    return injector().fails(name, on) ? -1 : real(arguments...);
}

/// @param own this library's function of the same name and type.
template <typename Function, typename... Arguments>
auto passOn(Function *own, const char *name, int fd, Arguments... arguments)
{
    const std::string *target = injector().targetOf(fd);
    return pass(own, name, name, target ? *target : std::string(), fd, arguments...);
}

} // namespace

extern "C" {

int open64(const char *path, int flags, ...)
{
    va_list list;
    va_start(list, flags);
    const unsigned mode = va_arg(list, unsigned);
    va_end(list);
    return injector().opened(pass(open64, "open64", "open", path, path, flags, mode), path);
}

[[gnu::alias("open64")]] int open(const char *path, int flags, ...);

int close(int fd)
{
    injector().opened(fd, {});
    return pass(close, "close", "close", {}, fd);
}

ssize_t read(int fd, void *data, size_t size) { return passOn(read, "read", fd, data, size); }

ssize_t write(int fd, const void *data, size_t size) { return passOn(write, "write", fd, data, size); }

int ioctl(int fd, unsigned long request, ...) noexcept
{
    va_list list;
    va_start(list, request);
    void *const argument = va_arg(list, void *);
    va_end(list);
    return passOn(ioctl, "ioctl", fd, request, argument);
}

int socket(int domain, int type, int protocol) noexcept
{
    return injector().opened(pass(socket, "socket", "socket", "socket", domain, type, protocol), "socket");
}

int connect(int fd, const sockaddr *to, socklen_t size) { return passOn(connect, "connect", fd, to, size); }

ssize_t send(int fd, const void *data, size_t size, int flags) { return passOn(send, "send", fd, data, size, flags); }

int setsockopt(int fd, int level, int option, const void *value, socklen_t size) noexcept
{
    return passOn(setsockopt, "setsockopt", fd, level, option, value, size);
}

int getsockopt(int fd, int level, int option, void *value, socklen_t *size) noexcept
{
    return passOn(getsockopt, "getsockopt", fd, level, option, value, size);
}

int getsockname(int fd, sockaddr *name, socklen_t *size) noexcept
{
    return passOn(getsockname, "getsockname", fd, name, size);
}

int getpeername(int fd, sockaddr *name, socklen_t *size) noexcept
{
    return passOn(getpeername, "getpeername", fd, name, size);
}

} // extern "C"
