// SPDX-License-Identifier: MIT
#include "ovra-core/reference/Application.h"

#include "ApplicationState.h"

#include <ranges>
#include <stdexcept>
#include <utility>

namespace ovra::reference {

using core::Plugin;

namespace {

void requireGuiThread(const ApplicationState& state, const char* operation)
{
    if (!state.processor.onGuiThread())
        throw std::logic_error(std::string("Application::") + operation + ": for the GUI thread only");
}

} // namespace

Application::Application(const ApplicationOptions& options) : m_state(new ApplicationState(options))
{
    try {
        setCurrentApplication(m_state);
    } catch (...) {
        m_state->processor.shutDown();
        throw;
    }
}

Application::~Application()
{
    m_state->processor.finishAll(); // while its commands still find the application
    // From here on lookups find no application; parts that callers still hold stay allocated but inert.
    clearCurrentApplication();
    m_state->processor.shutDown();
    m_state->queue.close();
    m_state->plugins.clear();
}

void Application::exec()
{
    requireGuiThread(*m_state, "exec");
    m_state->queue.exec();
}

void Application::processEvents()
{
    requireGuiThread(*m_state, "processEvents");
    m_state->queue.processEvents();
}

bool Application::pumpUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit)
{
    requireGuiThread(*m_state, "pumpUntil");
    return m_state->queue.pumpUntil(condition, limit);
}

void Application::quit()
{
    m_state->queue.quit();
}

void Application::post(std::function<void()> work)
{
    m_state->queue.post(std::move(work));
}

void Application::setWakeUpCallback(std::function<void()> callback)
{
    m_state->queue.setWakeUpCallback(std::move(callback));
}

void Application::setErrorHandler(std::function<void(const PhaseFailure&)> handler)
{
    requireGuiThread(*m_state, "setErrorHandler");
    m_state->processor.setErrorHandler(std::move(handler));
}

bool Application::idle() const
{
    return m_state->processor.idle();
}

bool Application::terminating() const
{
    return m_state->processor.terminating();
}

void Application::addPlugin(const boost::shared_ptr<Plugin>& plugin,
                            const std::map<std::string, boost::any>& dependencies)
{
    requireGuiThread(*m_state, "addPlugin");
    plugin->postConstruct();
    for (const auto& [key, value] : dependencies)
        plugin->injectDependency(key, value);
    plugin->postInjection();
    m_state->plugins.push_back(plugin);
}

std::vector<boost::shared_ptr<Plugin>> Application::plugins() const
{
    return m_state->plugins;
}

void Application::startPlugins()
{
    requireGuiThread(*m_state, "startPlugins");
    for (const auto& plugin : plugins())
        if (const auto command = plugin->createInitializationApplicationCommand())
            m_state->processor.executeCommand(command);
}

void Application::stopPlugins()
{
    requireGuiThread(*m_state, "stopPlugins");
    const auto plugins = this->plugins();
    for (const auto& plugin : std::views::reverse(plugins))
        if (const auto command = plugin->createCleanupApplicationCommand())
            m_state->processor.executeCommand(command);
}

bool Application::isMonitoringPlugins() const
{
    return m_state->pluginFolder.isMonitoring();
}

} // namespace ovra::reference
