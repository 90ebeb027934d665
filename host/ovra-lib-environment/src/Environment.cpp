#include "ovra-lib-environment/Environment.h"

#include "AppletFolders.h"
#include "FolderMonitor.h"
#include "HardwareDiscovery.h"
#include "ovra-lib-environment/HlEnvironmentGlobalResourceModel.h"
#include "ovra-lib-environment/HlEnvironmentModel.h"
#include "ovra_log/reference/Journal.h"
#include "ovra_log/reference/LiveObjects.h"

#include <atomic>
#include <mutex>
#include <set>

namespace ovra::core {

using reference::probe;
using reference::Unrecorded;

namespace {
// Hardware that is never twice the same must not hold up the start.
constexpr int MAX_PASSES = 10;
} // namespace

struct Environment::State
{
    State();

    void pass();
    void followFolders();
    std::set<std::string> found() const;

    const boost::shared_ptr<models::HlEnvironmentModel> model;
    const boost::shared_ptr<models::HlEnvironmentGlobalResourceModel> globalResources;
    models::Guarded<boost::any> connector; // kept for who made it; the reference host has no use for one
    std::atomic<bool> autoScan{false};
    // One pass at a time, so that no two of them add the same node. The runtime and who listens to the log
    // are called under it: neither may begin a pass.
    std::mutex passMutex;
    models::AppletFolders folders;
    FolderMonitor monitor;
};

Environment::State::State()
    : model(boost::make_shared<models::HlEnvironmentModel>()),
      globalResources(boost::make_shared<models::HlEnvironmentGlobalResourceModel>()),
      folders(model->root()->getFilesEntryNode()),
      monitor([this] { followFolders(); })
{
    model->root()->addSourcesEntry("ovra", models::HlEnvironmentBoardSourceNode::create());
}

void Environment::State::pass()
{
    const std::lock_guard lock(passMutex);
    discoverHardware(*model->root());
    folders.follow(autoScan);
}

void Environment::State::followFolders()
{
    const std::lock_guard lock(passMutex);
    folders.follow(autoScan);
}

std::set<std::string> Environment::State::found() const
{
    const auto root = model->root();
    std::set<std::string> names;
    for (const auto each = root->getSourcesEntry("ovra")->getBoards(); each->hasNext(); each->advance())
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
    m_state = std::make_unique<State>();
}

Environment::~Environment()
{
    m_state->monitor.stop();
}

boost::shared_ptr<Environment> Environment::create()
{
    probe("Environment::create");
    return reference::liveObject(new Environment);
}

void Environment::injectDependency(const std::string& key, const boost::any& value)
{
    probe("Environment::injectDependency", key);
    if (key == "connector")
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
    m_state->monitor.start();
}

void Environment::stopMonitor()
{
    probe("Environment::stopMonitor");
    m_state->monitor.stop();
}

void Environment::forceSingleFileAddition(const std::string& path)
{
    probe("Environment::forceSingleFileAddition", path);
    const Unrecorded own;
    const std::lock_guard lock(m_state->passMutex);
    m_state->folders.addFile(path);
}

} // namespace ovra::core
