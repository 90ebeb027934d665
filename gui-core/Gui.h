// SPDX-License-Identifier: MIT
/// \file
/// Gui: the plug-in object, and access to the state that all commands share.
///
/// A host's plug-in manager creates one with Gui::createInstance, injects
///
///   | key         | value                       |                                       |
///   |-------------|-----------------------------|---------------------------------------|
///   | "views"     | boost::shared_ptr<Views>    | the front end                         |
///   | "connector" | defined by the host         | passed on to the environment          |
///
/// (gui-core/keys/Keys.h has both as constants) and submits the commands for the application's start and end,
/// which the Gui creates. In a program that makes its own application:
///
/// \code
/// OvraGuiCoreInit();
/// {
///     ovra::reference::Application application;
///     const boost::shared_ptr<gui::Views> views = boost::make_shared<MyViews>();
///     const boost::shared_ptr<gui::Gui> plugin(gui::Gui::createInstance(), gui::Gui::destroyInstance);
///     application.addPlugin(plugin, {{gui::keys::VIEWS, views}});
///     application.startPlugins(); // runs the command for the start
///     application.exec();         // until quit()
///     application.stopPlugins();  // runs the command for the end
/// }
/// OvraGuiCoreDeinit();
/// \endcode
#pragma once

#include "gui-core/Export.h"

#include "ovra-core/Plugin.h"

#include <boost/any.hpp>
#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>

namespace ovra::core {
class Environment;
}

namespace ovra::gui {

class Views;

/// Shares the front end and the environment with its callers, and holds the settings below. The static
/// functions act on the most recently created Gui. While that one does not exist, getters return the value
/// given as "Without a Gui" and setters do nothing; they do not go back to an earlier Gui.
///
/// Threads: create and inject the Gui on the GUI thread, while no other thread uses the library. From then on
/// until the last OvraGuiCoreDeinit any thread may call the static functions, even while the Gui is being
/// destroyed. The shared pointers that they return keep their objects alive. The settings are atomic.
class OVRA_GUI_CORE_API Gui : public ovra::core::Plugin
{
public:
    /// How far the start or stop of an acquisition reaches.
    enum SyncMode : std::uint32_t
    {
        SyncNone = 0,      ///< only the DMA channel or camera that was named
        SyncProcess = 1,   ///< everything on the same board and process (a new Gui starts in this mode)
        SyncBoard = 2,     ///< everything on the same board
        SyncAllBoards = 3, ///< everything
    };

    /// Creates a Gui. The caller owns it and passes it to destroyInstance, because the library that allocated
    /// it has to free it. Throws std::bad_alloc, or an exception from the host's Environment::create.
    [[nodiscard]] static Gui* createInstance();
    /// GUI thread. Ignores null. Front end and environment stay alive while others share them.
    static void destroyInstance(Gui* gui);

    /// From now on the static functions act on this Gui instead of an earlier one.
    Gui();
    Gui(const Gui&) = delete;
    Gui& operator=(const Gui&) = delete;
    ~Gui() override;

    /// Accepts "views" and "connector", ignores other keys. Throws boost::bad_any_cast if the value of
    /// "views" is not a boost::shared_ptr<Views>; then the previous front end stays.
    void injectDependency(const std::string& key, const boost::any& value) override;
    /// A new InitializeApplicationCommand and a new CleanupApplicationCommand, for the application, which
    /// runs each once. Inject "views" before: the commands do not check it.
    boost::shared_ptr<ovra::core::Command> createInitializationApplicationCommand() override;
    boost::shared_ptr<ovra::core::Command> createCleanupApplicationCommand() override;

    /// The front end. Without a Gui: empty.
    static boost::shared_ptr<Views> views();
    /// The host's model of boards, applet files and cameras. Without a Gui: empty.
    static boost::shared_ptr<ovra::core::Environment> environment();

    /// Each phase of a start or stop reads the mode when it begins: a change applies to the phases that begin
    /// later. With any other value than these four, starts and stops do nothing.
    static void setSyncMode(SyncMode mode);
    /// Without a Gui: SyncNone.
    static SyncMode getSyncMode();

    /// A value that front ends may share; the library does not read it. Kept for the binary interface. A new
    /// Gui, and without a Gui: false.
    static void setStreamChannelManagementEnabled(bool enabled);
    static bool isStreamChannelManagementEnabled();

    /// Memory of the image buffers of all channels of all boards, in bytes. Without a Gui: 0.
    static unsigned long long getUsedDmaMemory();
    /// Limit of that memory in bytes. Each call reads the host's entry "gui.preferences.max_dma_buffersize",
    /// which is in MiB; 1024 if it is missing. Without a Gui: 0.
    static unsigned long long getTotalDmaMemory();
    /// Adds \p delta bytes to the memory in use, or subtracts them if it is negative. For the host's buffer
    /// groups, which the library gives this function; a front end does not call it. Neither compares the sum
    /// with the limit nor calls Views; a sum below 0 wraps around.
    static void updateUsedMemory(long long delta);

    struct State;

private:
    boost::shared_ptr<State> m_state;
};

} // namespace ovra::gui
