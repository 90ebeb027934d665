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

/// For a program that has to know of loads and unloads whoever causes them; a front end usually waits for
/// Views::onLoadAppletFinished and Views::applet_unloaded.
class OVRA_ENVIRONMENT_API BoardHandleObserver
{
public:
    using Signal = boost::signals2::signal<void(Fg_Struct_s* handle)>;

    /// Calls \p slot once for each change that leaves another handle than before: in endHandleChange, on that
    /// thread, after the physical ports were created. The slot gets null after an unload. An exception from
    /// it propagates to the code that changes the handle. The caller disconnects; the board may be destroyed
    /// before.
    static boost::signals2::connection
    connect(const boost::shared_ptr<core::models::HlEnvironmentBoardNode>& board,
            const Signal::slot_type& slot);
};

} // namespace ovra::reference
