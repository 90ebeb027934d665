/// \file
/// Gui: the plug-in object, and the way to the state that all commands share.
///
/// A host's plug-in manager creates one with Gui::createInstance, injects
///
///   | key         | value                       |                                       |
///   |-------------|-----------------------------|---------------------------------------|
///   | "views"     | boost::shared_ptr<Views>    | the front end                         |
///   | "connector" | the host's own              | passed on to the environment, unread  |
///
/// and runs the two application commands it gives at the start and at the end. In a program that makes its
/// own application:
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

/// Owns the front end, the environment and the settings below. The static functions reach those of the Gui
/// that was created last; without one they return the stated default and change nothing, so they are safe at
/// any time.
///
/// Threads: created and injected on the GUI thread, while no other thread uses the library. From then on
/// until the last OvraGuiCoreDeinit, also while it is destroyed, the static functions may be called on any
/// thread: they see the Gui or none, and pointers are handed out as shared copies, which keep what they point
/// at alive. The memory figures may be read and changed on any thread; sync mode and switch are plain values
/// that the front end sets while no command runs that reads them.
class OVRA_GUI_CORE_API Gui : public ovra::core::Plugin
{
public:
    /// How far the start or stop of an acquisition reaches.
    enum SyncMode : std::uint32_t
    {
        SyncNone = 0,      ///< only the DMA channel or camera that was named
        SyncProcess = 1,   ///< all of the same board and process; of a new Gui
        SyncBoard = 2,     ///< all of the same board
        SyncAllBoards = 3, ///< all
    };

    /// A new Gui, which the caller owns and gives back to destroyInstance: the library that made it frees it.
    /// Throws std::bad_alloc, or what the host throws when it makes the environment.
    [[nodiscard]] static Gui* createInstance();
    /// GUI thread. Null is ignored. Front end and environment live on while others hold them.
    static void destroyInstance(Gui* gui);

    /// Takes the static functions over from a Gui created before.
    Gui();
    Gui(const Gui&) = delete;
    Gui& operator=(const Gui&) = delete;
    ~Gui() override;

    /// Takes "views" and "connector", ignores any other key. Throws boost::bad_any_cast when "views" holds
    /// anything but a boost::shared_ptr<Views>; the front end before it stays.
    void injectDependency(const std::string& key, const boost::any& value) override;
    /// A new InitializeApplicationCommand, a new CleanupApplicationCommand: for the application, which runs
    /// each once. "views" must be injected before the first runs; the commands do not look whether it is.
    boost::shared_ptr<ovra::core::Command> createInitializationApplicationCommand() override;
    boost::shared_ptr<ovra::core::Command> createCleanupApplicationCommand() override;

    /// The front end. Default: empty.
    static boost::shared_ptr<Views> views();
    /// The host's model of boards, applet files and cameras. Default: empty.
    static boost::shared_ptr<ovra::core::Environment> environment();

    /// Holds for commands whose phases begin from now on. A number that is none of the four makes starts and
    /// stops do nothing.
    static void setSyncMode(SyncMode mode);
    /// Default: SyncNone.
    static SyncMode getSyncMode();

    /// A switch that the front end sets and reads; the library itself does not look at it. Default: false.
    static void setStreamChannelManagementEnabled(bool enabled);
    static bool isStreamChannelManagementEnabled();

    /// Memory of all DMA buffers, in bytes. Default: 0.
    static unsigned long long getUsedDmaMemory();
    /// Its limit in bytes: the host's entry "gui.preferences.max_dma_buffersize", which is in MiB and 1024 if
    /// missing, read anew at each call. Default: 0.
    static unsigned long long getTotalDmaMemory();
    /// Adds \p delta bytes, which may be negative. The sum is neither clamped nor held against the limit.
    static void updateUsedMemory(long long delta);

    struct State;

private:
    boost::shared_ptr<State> m_state;
};

} // namespace ovra::gui
