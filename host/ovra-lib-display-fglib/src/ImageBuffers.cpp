// SPDX-License-Identifier: MIT
#include "ImageBuffers.h"

#include "ovra_log/reference/Log.h"

#include <algorithm>
#include <mutex>
#include <stdexcept>
#include <string>

namespace ovra::display {

namespace {

// The client's functions share one unsynchronised number for all groups. This lock makes reading the
// remaining memory, allocating and updating the number one step.
std::mutex budgetMutex;

unsigned int affordable(const MemoryBudget& budget, std::size_t imageBytes, unsigned int wanted)
{
    const unsigned long long used = budget.used();
    const unsigned long long total = budget.total();
    const unsigned long long left = total > used ? total - used : 0;
    const unsigned long long fitting = imageBytes == 0 ? wanted : left / imageBytes;
    return static_cast<unsigned int>(std::max(1ULL, std::min<unsigned long long>(wanted, fitting)));
}

} // namespace

ImageBuffers::ImageBuffers(boost::shared_ptr<const reference::RuntimeEntries> runtime, Fg_Struct_s* handle,
                           Geometry geometry, unsigned int wanted, MemoryBudget budget)
    : m_runtime(std::move(runtime)),
      m_handle(handle),
      m_geometry(geometry),
      m_budget(budget)
{
    const std::lock_guard lock(budgetMutex);
    // NOLINTBEGIN(cppcoreguidelines-prefer-member-initializer): under the lock
    m_count = affordable(m_budget, m_geometry.bytes(), wanted);
    m_ring = m_runtime->Fg_AllocMemEx(m_handle, m_geometry.bytes() * m_count, m_count);
    // NOLINTEND(cppcoreguidelines-prefer-member-initializer)
    if (!m_ring)
        throw std::runtime_error(std::to_string(m_count) + " image buffers of " +
                                 std::to_string(m_geometry.width) + " x " +
                                 std::to_string(m_geometry.height) +
                                 " could not be allocated: " + reference::lastFailureText(*m_runtime));
    m_budget.update(bytes());
}

ImageBuffers::~ImageBuffers()
{
    int code = FG_OK;
    {
        const std::lock_guard lock(budgetMutex);
        code = m_runtime->Fg_FreeMemEx(m_handle, m_ring);
        m_budget.update(-bytes());
    }
    if (code != FG_OK && code != FG_DEVICE_LOST) // the buffers of a lost board are released, too
        reference::log(reference::LogLevel::Error,
                       reference::failureText(*m_runtime, "Image buffers could not be released", code));
}

long long ImageBuffers::bytes() const
{
    return static_cast<long long>(m_geometry.bytes()) * m_count;
}

} // namespace ovra::display
