/// \file
/// LoadAppletCommand: loads an applet onto a board.
#pragma once

#include "gui-core/Export.h"

#include "ovra-core/Command.h"

#include <boost/shared_ptr.hpp>

#include <string>

namespace ovra::gui::commands {

/// Unloads what the board holds, initialises the board with the applet, and publishes processes, DMA
/// channels, camera ports, parameters, frame-buffer groups and display scenes in the environment model and
/// the global resources. Then, if an MCF file is given, has the runtime apply it. Looks for applets again at
/// the end.
///
/// One load runs at a time in a process: a command that comes while another is under way does nothing at all.
/// Progress, warnings and errors go to the Views operations with "LoadApplet" in their names. An unknown
/// board or file changes nothing; after any other error the board is empty, unless already the unload failed;
/// an MCF that cannot be applied is a warning, and the applet stays.
///
/// Arguments: the board's serial; path of the applet file as the environment keeps it; path of the MCF file,
/// empty for none. To be submitted once; copies share one request.
class OVRA_GUI_CORE_API LoadAppletCommand : public ovra::core::Command
{
public:
    static boost::shared_ptr<LoadAppletCommand> create(int boardSerial, const std::string& appletFile,
                                                       const std::string& mcfFile);

    LoadAppletCommand(int boardSerial, const std::string& appletFile, const std::string& mcfFile);
    LoadAppletCommand(const LoadAppletCommand& other);
    LoadAppletCommand& operator=(const LoadAppletCommand& other);
    ~LoadAppletCommand() override;

    void executeSync() override;
    void executeAsync() override;
    void executePostAsync() override;

private:
    struct Request;
    boost::shared_ptr<Request> m_request;
};

} // namespace ovra::gui::commands
