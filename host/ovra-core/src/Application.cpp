#include "ovra-core/reference/Application.h"

#include "ApplicationParts.h"

#include <stdexcept>
#include <utility>

namespace ovra::reference {

using core::Plugin;

namespace {

void requireGuiThread(const ApplicationParts& parts, const char* operation)
{
    if (!parts.processor.onGuiThread())
        throw std::logic_error(std::string("Application::") + operation + ": for the GUI thread only");
}

} // namespace

Application::Application(const ApplicationOptions& options) : m_parts(new ApplicationParts(options))
{
    try {
        setCurrentApplication(m_parts);
    } catch (...) {
        m_parts->processor.shutDown();
        throw;
    }
}

Application::~Application()
{
    m_parts->processor.finishAll(); // while its commands still find the application
    // Who asks from now on finds no application; who holds a part of it keeps that part, without life.
    clearCurrentApplication();
    m_parts->processor.shutDown();
    m_parts->queue.close();
    m_parts->plugins.clear();
}

void Application::exec()
{
    requireGuiThread(*m_parts, "exec");
    m_parts->queue.exec();
}

void Application::processEvents()
{
    requireGuiThread(*m_parts, "processEvents");
    m_parts->queue.processEvents();
}

bool Application::pumpUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit)
{
    requireGuiThread(*m_parts, "pumpUntil");
    return m_parts->queue.pumpUntil(condition, limit);
}

void Application::quit()
{
    m_parts->queue.quit();
}

void Application::post(std::function<void()> work)
{
    m_parts->queue.post(std::move(work));
}

void Application::setWakeUpCallback(std::function<void()> callback)
{
    m_parts->queue.setWakeUpCallback(std::move(callback));
}

void Application::setErrorHandler(std::function<void(const PhaseFailure&)> handler)
{
    requireGuiThread(*m_parts, "setErrorHandler");
    m_parts->processor.setErrorHandler(std::move(handler));
}

bool Application::idle() const
{
    return m_parts->processor.idle();
}

bool Application::terminating() const
{
    return m_parts->processor.terminating();
}

void Application::addPlugin(const boost::shared_ptr<Plugin>& plugin,
                            const std::map<std::string, boost::any>& dependencies)
{
    requireGuiThread(*m_parts, "addPlugin");
    plugin->postConstruct();
    for (const auto& [key, value] : dependencies)
        plugin->injectDependency(key, value);
    plugin->postInjection();
    m_parts->plugins.push_back(plugin);
}

std::vector<boost::shared_ptr<Plugin>> Application::plugins() const
{
    return m_parts->plugins;
}

void Application::startPlugins()
{
    requireGuiThread(*m_parts, "startPlugins");
    for (const auto& plugin : plugins())
        if (const auto command = plugin->createInitializationApplicationCommand())
            m_parts->processor.executeCommand(command);
}

void Application::stopPlugins()
{
    requireGuiThread(*m_parts, "stopPlugins");
    const auto plugins = this->plugins();
    for (auto plugin = plugins.rbegin(); plugin != plugins.rend(); ++plugin)
        if (const auto command = (*plugin)->createCleanupApplicationCommand())
            m_parts->processor.executeCommand(command);
}

bool Application::isMonitoringPlugins() const
{
    return m_parts->pluginFolder.isMonitoring();
}

} // namespace ovra::reference
