// SPDX-License-Identifier: MIT
#include "ApplicationSession.h"

#include "Lookup.h"
#include "Process.h"
#include "Rehearsal.h"

#include "gui-core/EntryPoints.h"
#include "gui-core/Gui.h"
#include "gui-core/UnloadAppletCommand.h"
#include "gui-core/Views.h"
#include "gui-core/keys/Keys.h"
#include "ovra-core/CommandProcessor.h"
#include "ovra-core/HarloApplication.h"
#include "ovra-core/reference/Application.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"

#include <exception>
#include <utility>

namespace ovra::frontend {

namespace {

/// A start-up of the library, which counts even if it fails, and its shut-down.
class LibraryUse
{
public:
    explicit LibraryUse(const ApplicationSession::ErrorHandler& onError) : m_onError(onError) {}
    ~LibraryUse()
    {
        if (!m_counted)
            return;
        try {
            OvraGuiCoreDeinit();
        } catch (const std::exception& error) {
            m_onError(error.what());
        }
    }
    LibraryUse(const LibraryUse&) = delete;
    LibraryUse& operator=(const LibraryUse&) = delete;

    void begin()
    {
        m_counted = true;
        OvraGuiCoreInit();
    }

private:
    const ApplicationSession::ErrorHandler& m_onError;
    bool m_counted = false;
};

// The runtime and the log dispatcher read these when they are loaded, which may happen in the library's
// start-up.
void exportOptions(const SessionOptions& options)
{
    if (!options.machine.empty())
        setEnvironmentVariable("OVRA_MACHINE", options.machine);
    if (options.logLevel)
        setEnvironmentVariable("OVRA_LOG_LEVEL", std::to_string(*options.logLevel));
}

} // namespace

// Members are destroyed in reverse order: first the plug-in, then the application, then the library shuts
// down.
struct ApplicationSession::State
{
    State(const SessionOptions& options, ErrorHandler handler)
        : scenario(options.scenario),
          onError(std::move(handler)),
          application({.runtimeDirectory = options.runtimeFolder,
                       .runtimeLibrary = {},
                       .configurationFile = options.configurationFile})
    {
        library.begin();
    }

    bool beginScenario()
    {
        if (scenario.empty())
            return true;
        try {
            rehearse("scenario " + scenario);
            return true;
        } catch (const std::exception& error) {
            onError(error.what());
            return false;
        }
    }

    bool pumpUntilIdle(std::chrono::milliseconds limit)
    {
        return application.pumpUntil([this] { return application.idle(); }, limit);
    }

    void unload(const BoardNode& board, std::chrono::milliseconds limit)
    {
        try {
            core::HarloApplication::commandprocessor()->executeCommand(
                gui::commands::UnloadAppletCommand::create(static_cast<int>(board->getSerial())));
            if (!pumpUntilIdle(limit))
                onError("board " + std::to_string(board->getIndex()) + " was not unloaded in time");
        } catch (const std::exception& error) {
            onError(error.what());
        }
    }

    /// Needed, because the clean-up command does not unload boards.
    void unloadAll(std::chrono::milliseconds limit)
    {
        for (const auto& board : allBoards())
            if (board->getLoadedAppletEntry())
                unload(board, limit);
    }

    const std::string scenario; ///< file; empty: none
    ErrorHandler onError;
    LibraryUse library{onError};
    reference::Application application;
    boost::shared_ptr<gui::Gui> plugin;
};

ApplicationSession::ApplicationSession(const SessionOptions& options, ErrorHandler onError)
{
    exportOptions(options);
    m_state = std::make_unique<State>(options, std::move(onError));
    m_state->application.setErrorHandler(
        [handler = m_state->onError](const reference::PhaseFailure& failure) { handler(failure.message); });
}

ApplicationSession::~ApplicationSession() = default;

reference::Application& ApplicationSession::application()
{
    return m_state->application;
}

bool ApplicationSession::start(const boost::shared_ptr<gui::Views>& views, std::chrono::milliseconds limit)
{
    m_state->plugin.reset(gui::Gui::createInstance(), gui::Gui::destroyInstance);
    m_state->application.addPlugin(m_state->plugin, {{gui::keys::VIEWS, views}});
    m_state->application.startPlugins();
    if (!m_state->pumpUntilIdle(limit)) {
        m_state->onError("the application is not ready after " +
                         std::to_string(std::chrono::round<std::chrono::seconds>(limit).count()) + " s");
        return false;
    }
    return m_state->beginScenario();
}

void ApplicationSession::stop(std::chrono::milliseconds limit)
{
    try {
        if (m_state->pumpUntilIdle(limit))
            m_state->unloadAll(limit);
        else
            m_state->onError("a command is still under way; the boards keep their applets");
    } catch (const std::exception& error) {
        m_state->onError(error.what());
    }
    m_state->application.stopPlugins();
}

} // namespace ovra::frontend
