#include "platform/Thread.h"

#include <sys/syscall.h>
#include <unistd.h>

namespace ovra::templates::platform {

namespace {

// Kept per thread because the kernel is slow to ask and spin locks ask at each turn. Static TLS saves the
// look-up that a library's thread-local variable costs otherwise.
[[gnu::tls_model("initial-exec")]] thread_local std::uint32_t cachedId = 0;

} // namespace

std::uint32_t currentThreadId()
{
    if (cachedId == 0) [[unlikely]]
        cachedId = static_cast<std::uint32_t>(syscall(SYS_gettid));
    return cachedId;
}

} // namespace ovra::templates::platform
