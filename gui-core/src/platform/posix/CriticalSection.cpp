#include "platform/CriticalSection.h"

#include <new>

#include <pthread.h>

namespace ovra::templates::platform {

namespace {

static_assert(sizeof(pthread_mutex_t) <= 8 * sizeof(void*) && alignof(pthread_mutex_t) <= alignof(void*));

pthread_mutex_t* native(unsigned char* storage)
{
    return std::launder(reinterpret_cast<pthread_mutex_t*>(storage));
}

} // namespace

CriticalSection::CriticalSection() : m_storage{}
{
    pthread_mutex_init(::new (m_storage) pthread_mutex_t, nullptr);
}

CriticalSection::~CriticalSection()
{
    pthread_mutex_destroy(native(m_storage));
}

void CriticalSection::enter()
{
    pthread_mutex_lock(native(m_storage));
}

void CriticalSection::leave()
{
    pthread_mutex_unlock(native(m_storage));
}

} // namespace ovra::templates::platform
