// SPDX-License-Identifier: MIT
/// \file
/// Signals that boards, cameras and applet files have appeared, disappeared or changed.
///
///   EnvironmentChange    one change
///   EnvironmentObserver  signals the changes of an environment
///
/// \code
/// const auto connection = reference::EnvironmentObserver::connect(
///     gui::Gui::environment(), [&application](const reference::EnvironmentChange& change) {
///         application.post([change] { std::cout << change.name << '\n'; }); // on the GUI thread
///     });
/// \endcode
#pragma once

#include "ovra-lib-environment/Export.h"

#include <boost/shared_ptr.hpp>
#include <boost/signals2/signal.hpp>

#include <string>

namespace ovra::core {
class Environment;
}

namespace ovra::reference {

/// One change of the model.
struct EnvironmentChange
{
    enum class Subject
    {
        Board,
        Camera,
        AppletFile
    };
    enum class Kind
    {
        Came,
        Went,
        Changed ///< an applet file was scanned again
    };

    Subject subject = Subject::Board;
    Kind kind = Kind::Came;
    int board = -1;          ///< for a board or a camera: the board's index
    int port = -1;           ///< for a camera: the physical port that it is plugged into
    unsigned int serial = 0; ///< for a board: its serial number
    std::string name;        ///< a board's model, a camera's model and serial number, a file's path

    bool operator==(const EnvironmentChange&) const = default;
};

class OVRA_ENVIRONMENT_API EnvironmentObserver
{
public:
    using Signal = boost::signals2::signal<void(const EnvironmentChange&)>;

    /// Calls \p slot for each change after the model has been updated: on the thread that called a discover
    /// function, or on the monitor's own thread. The slot may read the environment and its model. It must not
    /// start or stop the monitor, nor wait for a thread that may. Exceptions from the slot are logged.
    ///
    /// A board that is unplugged while it carries an applet signals Went, but stays in the model until it is
    /// unloaded.
    static boost::signals2::connection connect(const boost::shared_ptr<core::Environment>& environment,
                                               const Signal::slot_type& slot);
};

} // namespace ovra::reference
