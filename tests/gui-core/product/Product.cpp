// SPDX-License-Identifier: MIT
#include "Product.h"

#include "gui-core/EntryPoints.h"

#include "ovra-core/CommandProcessor.h"

#include <sstream>

namespace ovra::tests {

namespace {

constexpr std::chrono::minutes HANGS_AFTER(5);

std::string boardKey(int serial)
{
    std::ostringstream key;
    key << "board-" << std::hex << serial;
    return key.str();
}

/// The node with that index, or null.
template <class Nodes>
auto nodeOf(const Nodes& nodes, unsigned int index)
{
    while (nodes->hasNext() && nodes->current()->getIndex() != index)
        nodes->advance();
    return nodes->hasNext() ? nodes->current() : nullptr;
}

Lines chosen(Lines lines, const Lines& prefixes)
{
    std::erase_if(lines, [&](const std::string& line) {
        return std::ranges::none_of(prefixes, [&](const auto& prefix) { return line.starts_with(prefix); });
    });
    return lines;
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
    Journal::stop();
    if (m_started) {
        // The end of an application does not unload boards; the next test must find them empty.
        unload(ALPHA_SERIAL);
        unload(BETA_SERIAL);
        stop();
    }
    EXPECT_EQ(views->callsOffTheGuiThread(), Lines{});
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
    HarloApplication::commandprocessor()->executeCommand(command);
}

void Product::settle()
{
    pumpUntil([this] { return application.idle(); });
    application.processEvents();
}

void Product::pumpUntil(const std::function<bool()>& condition)
{
    ASSERT_TRUE(application.pumpUntil(condition, HANGS_AFTER));
}

boost::shared_ptr<core::models::HlEnvironmentBoardNode> Product::board(int serial) const
{
    return Gui::environment()->model()->root()->getSourcesEntry("ovra")->getChild(
        static_cast<unsigned int>(serial));
}

boost::shared_ptr<core::models::HlEnvironmentDmaNode> Product::dma(int serial, unsigned int index) const
{
    return nodeOf(board(serial)->getDmas(), index);
}

boost::shared_ptr<core::models::HlEnvironmentLogicalPortNode> Product::port(int serial,
                                                                            unsigned int index) const
{
    return nodeOf(board(serial)->getLogicalPorts(), index);
}

Lines Product::resources() const
{
    Lines keys;
    const auto root = Gui::environment()->globalResourceModel()->root();
    for (const auto all = root->getChildren(); all->hasNext(); all->advance())
        keys.push_back(std::to_string(all->current()->getType()) + " " + all->current()->getKey());
    return keys;
}

Lines Product::told(const Lines& prefixes) const
{
    return chosen(views->lines(), prefixes);
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

void Product::expectNothingLeftOf(int serial) const
{
    expectEmptyBoard(serial);
    EXPECT_EQ(installation.live(FGSIM_BOARD_HANDLES), 0);
    EXPECT_EQ(installation.live(FGSIM_RINGS), 0);
    EXPECT_EQ(Gui::getUsedDmaMemory(), 0U);
    EXPECT_EQ(views->eventConnections(), 0U);
}

std::size_t Product::sweep(const std::function<void()>& prepare, const std::function<void()>& act,
                           const std::function<void(bool)>& check) const
{
    for (std::size_t n = 1;; ++n) {
        SCOPED_TRACE("host call " + std::to_string(n) + " throws");
        prepare();
        Journal::start();
        Journal::throwAt(n);
        bool thrown = false;
        try {
            act();
        } catch (const reference::ReferenceFault&) {
            thrown = true;
        }
        Journal::stop();
        EXPECT_EQ(thrown, Journal::faultStruck());
        check(thrown);
        if (!thrown || HasFailure())
            return n - 1;
    }
}

Lines journalOf(const Lines& prefixes)
{
    return chosen(Journal::lines(), prefixes);
}

} // namespace ovra::tests
