/// \file
/// Environment: boards, applet files and cameras of the machine, and the monitors that keep them up to date.
#pragma once

#include "ovra-lib-environment/Export.h"

#include <boost/any.hpp>
#include <boost/shared_ptr.hpp>

#include <memory>
#include <string>

namespace ovra::reference {
class EnvironmentObserver;
}

namespace ovra::core {

namespace models {
class HlEnvironmentModel;
class HlEnvironmentGlobalResourceModel;
} // namespace models

/// Boards come from the frame-grabber runtime, applet files from the folders "Hardware Applets" and "dll"
/// below the runtime directory, cameras from the runtime's camera control. All operations are safe from any
/// thread.
class OVRA_ENVIRONMENT_API Environment
{
public:
    /// What a global resource stands for.
    enum GlobalResourceType : int
    {
        ResourceBoard = 0,
        ResourceDma = 1,
        ResourceCamera = 2,
        ResourceProcess = 3,
        ResourceLogicalPort = 4,
        ResourceBoardCommon = 5,
        ResourceBoardEvents = 6,
        ResourceNoDmaDllProcess = 7,
        ResourceNoDmaHapApplet = 8,
        ResourceBoardDmaGroup = 9,
        ResourceBoardPortGroup = 10,
        ResourceNoDmaDllProcessGroup = 11,
        ResourceNoDmaHapAppletGroup = 12,
    };

    static boost::shared_ptr<Environment> create();
    ~Environment();
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

    /// Takes "connector"; other keys are ignored.
    void injectDependency(const std::string& key, const boost::any& value);

    boost::shared_ptr<models::HlEnvironmentModel> model();
    boost::shared_ptr<models::HlEnvironmentGlobalResourceModel> globalResourceModel();

    /// On: a file that is added is scanned at once. Off at first.
    void enableAutoScan(bool enable);

    /// One pass over boards, cameras and applet files. Blocks. Throws std::runtime_error when the runtime or
    /// the hardware description cannot be used; the model keeps what it had.
    void discoverResourcesOnce();

    /// As discoverResourcesOnce, until two passes find the same.
    void discoverResources();

    /// Watches the applet folders: files that come appear in the model, files that go disappear. So do boards
    /// and cameras, where the runtime tells of them.
    void startMonitor();
    void stopMonitor();

    /// Adds one file to the file collection, wherever it lies. Without effect when there is no such file.
    void forceSingleFileAddition(const std::string& path);

private:
    friend class reference::EnvironmentObserver;

    Environment();

    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace ovra::core
