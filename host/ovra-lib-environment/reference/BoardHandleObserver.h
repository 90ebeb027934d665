// SPDX-License-Identifier: MIT
/// \file
/// BoardHandleObserver: signals changes of board handles, as the application's views would see them.
#pragma once

#include "ovra-lib-environment/Export.h"

#include <boost/shared_ptr.hpp>
#include <boost/signals2/signal.hpp>

struct Fg_Struct_s;

namespace ovra::core::models {
class HlEnvironmentBoardNode;
}

namespace ovra::reference {

class OVRA_ENVIRONMENT_API BoardHandleObserver
{
public:
    using Signal = boost::signals2::signal<void(Fg_Struct_s* handle)>;

    /// Calls \p slot once for each change that leaves another handle than before: in endHandleChange, on that
    /// thread, after the physical ports were created.
    static boost::signals2::connection
    connect(const boost::shared_ptr<core::models::HlEnvironmentBoardNode>& board,
            const Signal::slot_type& slot);
};

} // namespace ovra::reference
