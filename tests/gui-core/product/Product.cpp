#include "Product.h"

#include "gui-core/EntryPoints.h"
#include "gui-core/LoadAppletCommand.h"
#include "gui-core/UnloadAppletCommand.h"

#include "simulation/fglib5/SimulationControl.h"

#include "ovra-core/CommandProcessor.h"
#include "ovra-core/HarloApplication.h"
#include "ovra-lib-environment/Environment.h"
#include "ovra-lib-environment/HlEnvironmentGlobalResourceModel.h"
#include "ovra-lib-environment/HlEnvironmentModel.h"
#include "ovra_log/reference/Journal.h"

#include <algorithm>
#include <sstream>

namespace ovra::tests {

using gui::Gui;

namespace {

constexpr std::chrono::seconds GENEROUS_LIMIT(60);

std::string boardKey(int serial)
{
    std::ostringstream key;
    key << "board-" << std::hex << serial;
    return key.str();
}

} // namespace

Product::Product()
    : application({.runtimeDirectory = installation.folder(),
                   .runtimeLibrary = installation.runtimeLibrary(),
                   .configurationFile = ""})
{
    application.setErrorHandler([this](const reference::PhaseFailure& failure) {
        failures.push_back(failure.command + " " + failure.phase + ": " + failure.message);
    });
}

Product::~Product()
{
    if (m_started) {
        // The end of an application leaves boards as they are; the next test must find them empty.
        unload(ALPHA_SERIAL);
        unload(BETA_SERIAL);
        stop();
    }
    EXPECT_EQ(views->callsOffTheGuiThread(), std::vector<std::string>{});
}

void Product::start()
{
    OvraGuiCoreInit();
    const boost::shared_ptr<Gui> gui(Gui::createInstance(), &Gui::destroyInstance);
    application.addPlugin(gui, {{"views", boost::any(boost::shared_ptr<gui::Views>(views))}});
    application.startPlugins();
    m_started = true;
    settle();
}

void Product::stop()
{
    application.stopPlugins();
    m_started = false;
    OvraGuiCoreDeinit();
}

void Product::submit(const boost::shared_ptr<core::Command>& command)
{
    core::HarloApplication::commandprocessor()->executeCommand(command);
}

void Product::run(const boost::shared_ptr<core::Command>& command)
{
    submit(command);
    settle();
}

void Product::load(int serial, const std::string& applet, const std::string& mcf)
{
    run(gui::commands::LoadAppletCommand::create(serial, applet, mcf));
}

void Product::unload(int serial)
{
    run(gui::commands::UnloadAppletCommand::create(serial));
}

void Product::settle()
{
    ASSERT_TRUE(application.pumpUntil([this] { return application.idle(); }, GENEROUS_LIMIT));
    application.processEvents();
}

void Product::pumpUntil(const std::function<bool()>& condition)
{
    ASSERT_TRUE(application.pumpUntil(condition, GENEROUS_LIMIT));
}

boost::shared_ptr<core::models::HlEnvironmentBoardNode> Product::board(int serial) const
{
    return Gui::environment()->model()->root()->getSourcesEntry("ovra")->getChild(
        static_cast<unsigned int>(serial));
}

boost::shared_ptr<core::models::HlEnvironmentDmaNode> Product::dma(int serial, unsigned int index) const
{
    for (const auto dmas = board(serial)->getDmas(); dmas->hasNext(); dmas->advance())
        if (dmas->current()->getIndex() == index)
            return dmas->current();
    return {};
}

boost::shared_ptr<core::models::HlEnvironmentLogicalPortNode> Product::port(int serial,
                                                                            unsigned int index) const
{
    for (const auto ports = board(serial)->getLogicalPorts(); ports->hasNext(); ports->advance())
        if (ports->current()->getIndex() == index)
            return ports->current();
    return {};
}

std::vector<std::string> Product::resources() const
{
    std::vector<std::string> keys;
    const auto root = Gui::environment()->globalResourceModel()->root();
    for (const auto all = root->getChildren(); all->hasNext(); all->advance())
        keys.push_back(std::to_string(all->current()->getType()) + " " + all->current()->getKey());
    return keys;
}

void Product::expectEmptyBoard(int serial) const
{
    const auto node = board(serial);
    ASSERT_TRUE(node);
    EXPECT_EQ(node->getBoardHandle(), nullptr);
    EXPECT_EQ(node->getDmasEntryNode()->_children().count(), 0U);
    EXPECT_EQ(node->getProcessesEntryNode()->_children().count(), 0U);
    EXPECT_EQ(node->getLogicalPortsEntryNode()->_children().count(), 0U);
    EXPECT_EQ(node->getPhysicalPortsEntryNode()->_children().count(), 0U);
    EXPECT_FALSE(node->getLoadedAppletEntry());
    EXPECT_FALSE(node->getBoardSelectedForViewEntry());
    EXPECT_FALSE(node->getFglibEventsModel());
    EXPECT_FALSE(node->getNoDmaFrontendRegInfoModel());
    EXPECT_EQ(node->getNoDmaFrontendRegInfoPointer(), nullptr);
    EXPECT_FALSE(Gui::environment()->model()->root()->getFgInitInProgress());
    for (const auto& resource : resources())
        EXPECT_EQ(resource.find(boardKey(serial)), std::string::npos) << resource << " was left behind";
}

std::vector<std::string> journalOf(const std::vector<std::string>& prefixes)
{
    std::vector<std::string> chosen;
    for (const auto& line : reference::Journal::lines())
        if (std::any_of(prefixes.begin(), prefixes.end(),
                        [&line](const std::string& prefix) { return line.rfind(prefix, 0) == 0; }))
            chosen.push_back(line);
    return chosen;
}

} // namespace ovra::tests
