/// \file
/// Tells that boards, cameras and applet files have come or gone.
///
///   EnvironmentChange    what came, went or changed
///   EnvironmentObserver  tells of the changes of an environment
#pragma once

#include "ovra-lib-environment/Export.h"

#include <boost/shared_ptr.hpp>
#include <boost/signals2/signal.hpp>

#include <string>

namespace ovra::core {
class Environment;
}

namespace ovra::reference {

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
        Changed ///< an applet file was read anew
    };

    Subject subject = Subject::Board;
    Kind kind = Kind::Came;
    int board = -1;          ///< of a board, and of a camera: the board's index
    int port = -1;           ///< of a camera: the physical port that it is plugged into
    unsigned int serial = 0; ///< of a board
    std::string name;        ///< a board's model, a camera's model and serial number, a file's path

    bool operator==(const EnvironmentChange&) const = default;
};

class OVRA_ENVIRONMENT_API EnvironmentObserver
{
public:
    using Signal = boost::signals2::signal<void(const EnvironmentChange&)>;

    /// Calls \p slot for each change when the model has it: on the thread that asked the environment to look,
    /// or on the monitor's own thread. The slot may ask the environment and its model, but not start or stop
    /// the monitor, nor wait for a thread that may. What it throws is logged. A board that goes while an
    /// applet is on it is told as gone and stays in the model until it is unloaded.
    static boost::signals2::connection connect(const boost::shared_ptr<core::Environment>& environment,
                                               const Signal::slot_type& slot);
};

} // namespace ovra::reference
