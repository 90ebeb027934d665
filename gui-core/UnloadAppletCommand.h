/// \file
/// UnloadAppletCommand: takes the applet off a board.
#pragma once

#include "gui-core/Export.h"

#include "ovra-core/Command.h"

#include <boost/shared_ptr.hpp>

namespace ovra::gui::commands {

/// Stops and detaches all that LoadAppletCommand put on the board, removes its global resources, and frees
/// its handle, all in the synchronous phase. A serial without a board: nothing happens, and the front end is
/// not told.
///
/// A host exception passes to the command processor; the steps before it stay done. Not for a
/// board that is being loaded. Copies share one request.
class OVRA_GUI_CORE_API UnloadAppletCommand : public ovra::core::Command
{
public:
    static boost::shared_ptr<UnloadAppletCommand> create(int boardSerial);

    explicit UnloadAppletCommand(int boardSerial);
    UnloadAppletCommand(const UnloadAppletCommand& other);
    UnloadAppletCommand& operator=(const UnloadAppletCommand& other);
    ~UnloadAppletCommand() override;

    void executeSync() override;

private:
    struct Request;
    boost::shared_ptr<Request> m_request;
};

} // namespace ovra::gui::commands
