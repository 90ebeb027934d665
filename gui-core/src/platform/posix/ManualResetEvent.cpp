// SPDX-License-Identifier: MIT
#include "platform/ManualResetEvent.h"

namespace ovra::templates::platform {

void ManualResetEvent::sleep()
{
    m_waiters.fetch_add(1);
    while (m_signalled.load() == 0)
        m_signalled.wait(0);
    m_waiters.fetch_sub(1);
}

} // namespace ovra::templates::platform
