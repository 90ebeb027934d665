// SPDX-License-Identifier: MIT
#include "ovra-lib-environment/Environment.h"
#include "gui-core/keys/Keys.h"

#include "AppletFolders.h"
#include "FolderMonitor.h"
#include "HardwareDiscovery.h"
#include "ovra-core/reference/RuntimeEntries.h"
#include "ovra-lib-environment/HlEnvironmentGlobalResourceModel.h"
#include "ovra-lib-environment/HlEnvironmentModel.h"
#include "ovra-lib-environment/reference/EnvironmentObserver.h"
#include "ovra_log/reference/Journal.h"
#include "ovra_log/reference/LiveObjects.h"
#include "ovra_log/reference/Log.h"

#include <atomic>
#include <exception>
#include <mutex>
#include <set>
#include <utility>

namespace ovra::core {

using reference::probe;
using reference::Unrecorded;

namespace {
// Limits the start if no two searches find the same hardware.
constexpr int MAX_PASSES = 10;
} // namespace

struct Environment::State
{
    State();

    void pass();
    void look();
    void lookAtHardwareSoon();
    static int onHardware(int board, unsigned int notification, std::uint64_t argument, void* state);
    void startMonitor();
    void stopMonitor();
    /// Runs \p look, which collects changes, under passMutex, and signals them outside it.
    template <class Look>
    void observe(Look look);
    void tell(const models::Changes& changes) const;
    std::set<std::string> found() const;

    const boost::shared_ptr<models::HlEnvironmentModel> model;
    const boost::shared_ptr<models::HlEnvironmentGlobalResourceModel> globalResources;
    models::Guarded<boost::any> connector; // only kept alive; the reference host does not use it
    std::atomic<bool> autoScan{false};
    // One search at a time, so that no two of them add the same node. The runtime and the log's callback run
    // under it: neither may start a search.
    std::mutex passMutex;
    models::HardwareDiscovery hardware;
    models::AppletFolders folders;
    reference::EnvironmentObserver::Signal changed;
    FolderMonitor monitor;
    std::atomic<bool> hardwareChanged{false};
    std::mutex notifying; // guards notifier
    // Reports hardware changes while the monitor runs.
    boost::shared_ptr<const reference::RuntimeEntries> notifier;
};

Environment::State::State()
    : model(boost::make_shared<models::HlEnvironmentModel>()),
      globalResources(boost::make_shared<models::HlEnvironmentGlobalResourceModel>()),
      hardware(model->root(), [this] { lookAtHardwareSoon(); }),
      folders(model->root()->getFilesEntryNode()),
      monitor([this] { look(); })
{
    model->root()->addSourcesEntry(gui::keys::SOURCE, models::HlEnvironmentBoardSourceNode::create());
}

void Environment::State::pass()
{
    observe([this](models::Changes& changes) {
        hardware.discover(changes);
        folders.follow(autoScan, changes);
    });
}

// On the monitor's thread.
void Environment::State::look()
{
    if (hardwareChanged.exchange(false))
        pass();
    else
        observe([this](models::Changes& changes) { folders.follow(autoScan, changes); });
}

void Environment::State::lookAtHardwareSoon()
{
    hardwareChanged = true;
    monitor.wake();
}

// If the runtime does not report hardware changes, only discoverResources finds them.
void Environment::State::startMonitor()
{
    monitor.start();
    const std::lock_guard lock(notifying);
    const auto runtime = reference::runtime();
    if (notifier || !runtime || !runtime->Fg_registerAsyncNotifyCallback ||
        !runtime->Fg_unregisterAsyncNotifyCallback)
        return;
    if (runtime->Fg_registerAsyncNotifyCallback(nullptr, onHardware, this) == FG_OK)
        notifier = runtime;
}

void Environment::State::stopMonitor()
{
    {
        const std::lock_guard lock(notifying);
        if (const auto runtime = std::exchange(notifier, nullptr))
            runtime->Fg_unregisterAsyncNotifyCallback(nullptr, onHardware, this);
    }
    monitor.stop();
}

int Environment::State::onHardware(int, unsigned int, std::uint64_t, void* state)
{
    static_cast<State*>(state)->lookAtHardwareSoon();
    return 0;
}

template <class Look>
void Environment::State::observe(Look look)
{
    models::Changes changes;
    std::exception_ptr failure;
    {
        const std::lock_guard lock(passMutex);
        try {
            look(changes);
        } catch (...) {
            failure = std::current_exception(); // changes found before it are signalled nevertheless
        }
    }
    tell(changes);
    if (failure)
        std::rethrow_exception(failure);
}

void Environment::State::tell(const models::Changes& changes) const
{
    for (const auto& change : changes) {
        try {
            changed(change);
        } catch (const std::exception& error) {
            reference::log(reference::LogLevel::Error,
                           "A listener to changes of the environment failed: " + std::string(error.what()));
        } catch (...) {
            reference::log(reference::LogLevel::Error, "A listener to changes of the environment failed");
        }
    }
}

std::set<std::string> Environment::State::found() const
{
    const auto root = model->root();
    std::set<std::string> names;
    for (const auto each = root->getSourcesEntry(gui::keys::SOURCE)->getBoards(); each->hasNext();
         each->advance())
        names.insert("board " + std::to_string(each->current()->getSerial()));
    for (const auto each = root->getCameras(); each->hasNext(); each->advance())
        names.insert("camera " + each->current()->getName());
    for (const auto each = root->getFilesEntryNode()->getAllFiles(); each->hasNext(); each->advance())
        names.insert("file " + each->current()->getFilePath());
    return names;
}

Environment::Environment()
{
    const Unrecorded own;
    // Not in the initialiser list: its calls must not be recorded either.
    m_state = std::make_unique<State>(); // cppcheck-suppress useInitializationList
}

Environment::~Environment()
{
    m_state->stopMonitor();
}

boost::shared_ptr<Environment> Environment::create()
{
    probe("Environment::create");
    return reference::liveObject(new Environment);
}

void Environment::injectDependency(const std::string& key, const boost::any& value)
{
    probe("Environment::injectDependency", key);
    if (key == gui::keys::CONNECTOR)
        m_state->connector.set(value);
}

boost::shared_ptr<models::HlEnvironmentModel> Environment::model()
{
    probe("Environment::model");
    return m_state->model;
}

boost::shared_ptr<models::HlEnvironmentGlobalResourceModel> Environment::globalResourceModel()
{
    probe("Environment::globalResourceModel");
    return m_state->globalResources;
}

void Environment::enableAutoScan(bool enable)
{
    probe("Environment::enableAutoScan", enable);
    m_state->autoScan = enable;
}

void Environment::discoverResourcesOnce()
{
    probe("Environment::discoverResourcesOnce");
    const Unrecorded own;
    m_state->pass();
}

void Environment::discoverResources()
{
    probe("Environment::discoverResources");
    const Unrecorded own;
    std::set<std::string> before;
    for (int pass = 0; pass < MAX_PASSES; ++pass) {
        m_state->pass();
        auto now = m_state->found();
        if (pass > 0 && now == before)
            return;
        before.swap(now);
    }
}

void Environment::startMonitor()
{
    probe("Environment::startMonitor");
    m_state->startMonitor();
}

void Environment::stopMonitor()
{
    probe("Environment::stopMonitor");
    m_state->stopMonitor();
}

void Environment::forceSingleFileAddition(const std::string& path)
{
    probe("Environment::forceSingleFileAddition", path);
    const Unrecorded own;
    m_state->observe([&](models::Changes& changes) { m_state->folders.addFile(path, changes); });
}

} // namespace ovra::core

boost::signals2::connection
ovra::reference::EnvironmentObserver::connect(const boost::shared_ptr<core::Environment>& environment,
                                              const Signal::slot_type& slot)
{
    return environment->m_state->changed.connect(slot);
}
