#include <cstdarg>
#include <dlfcn.h>
#include <sys/types.h>

/// The thread sanitizer of LLVM 16 takes a child that shares our memory, as the toolkit begins its processes,
/// for a second return of one call, and aborts. So for programs under it clone() is the system's alone.
extern "C" __attribute__((no_sanitize("thread"))) int clone(
    int (*function)(void *), void *stack, int flags, void *argument, ...)
{
    using Clone = int (*)(int (*)(void *), void *, int, void *, ...);
    static const auto plain = reinterpret_cast<Clone>(dlsym(RTLD_NEXT, "clone"));
    va_list more;
    va_start(more, argument);
    auto *parent = va_arg(more, pid_t *);
    void *locals = va_arg(more, void *);
    auto *child = va_arg(more, pid_t *);
    va_end(more);
    return plain(function, stack, flags, argument, parent, locals, child);
}
