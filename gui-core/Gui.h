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
/// and runs the two application commands it gives at the start and at the end.
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
/// Threads: created, injected and destroyed on the GUI thread, while no other thread uses the library.
/// Between, pointers are handed out as shared copies on any thread. The memory figures may be read and
/// changed on any thread; sync mode and switch are plain values that the front end sets while no command runs
/// that reads them.
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

    static Gui* createInstance();
    /// Null is ignored.
    static void destroyInstance(Gui* gui);

    /// Takes the static functions over from a Gui created before.
    Gui();
    Gui(const Gui&) = delete;
    Gui& operator=(const Gui&) = delete;
    ~Gui() override;

    /// Takes "views" and "connector", ignores any other key. Throws boost::bad_any_cast when "views" holds
    /// anything but a boost::shared_ptr<Views>; the front end before it stays.
    void injectDependency(const std::string& key, const boost::any& value) override;
    boost::shared_ptr<ovra::core::Command> createInitializationApplicationCommand() override;
    boost::shared_ptr<ovra::core::Command> createCleanupApplicationCommand() override;

    /// The front end. Default: empty.
    static boost::shared_ptr<Views> views();
    /// The host's model of boards, applet files and cameras. Default: empty.
    static boost::shared_ptr<ovra::core::Environment> environment();

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
