#include "platform/RecursiveMutex.h"

#include <memory>
#include <system_error>

#include <pthread.h>

namespace ovra::templates::platform {

namespace {

pthread_mutex_t* native(void* handle)
{
    return static_cast<pthread_mutex_t*>(handle);
}

} // namespace

RecursiveMutex::RecursiveMutex() : m_handle(nullptr)
{
    auto mutex = std::make_unique<pthread_mutex_t>();
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    const int error = pthread_mutex_init(mutex.get(), &attributes);
    pthread_mutexattr_destroy(&attributes);
    if (error != 0)
        throw std::system_error(error, std::system_category(), "RecursiveMutex");
    m_handle = mutex.release();
}

RecursiveMutex::~RecursiveMutex()
{
    const std::unique_ptr<pthread_mutex_t> mutex(native(m_handle));
    pthread_mutex_destroy(mutex.get());
}

void RecursiveMutex::lock()
{
    pthread_mutex_lock(native(m_handle));
    ++m_lockCount;
}

void RecursiveMutex::unlock()
{
    // Counted while the mutex is still held, so that no other thread counts at the same time.
    --m_lockCount;
    pthread_mutex_unlock(native(m_handle));
}

} // namespace ovra::templates::platform
