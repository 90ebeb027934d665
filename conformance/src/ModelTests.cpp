// SPDX-License-Identifier: MIT
// Tests of the model's nodes and iterators.

#include "Machine.h"
#include "Tests.h"

#include "ovra-core/GenericModel.h"
#include "ovra-lib-environment/HlEnvironmentFileNode.h"
#include "ovra-lib-environment/HlEnvironmentGlobalResourceModel.h"

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <random>
#include <thread>

namespace ovra::conformance {

namespace {

using namespace core::models;
using core::Environment;
using Indices = std::vector<std::string>;

boost::shared_ptr<HlEnvironmentDmaNode> dma(unsigned int index)
{
    auto node = HlEnvironmentDmaNode::create();
    node->setIndex(index);
    return node;
}

template <class Iterator>
Indices indices(const Iterator& nodes)
{
    Indices all;
    for (; nodes->hasNext(); nodes->advance())
        all.push_back(std::to_string(nodes->current()->getIndex()));
    return all;
}

void childrenAreWalkedByIndex(HostUnderTest& host)
{
    const Machine machine(host);
    for (const unsigned int index : {12U, 3U, 7U})
        machine.board->addDmasEntry(index, dma(index));
    requireEqual(indices(machine.board->getDmas()), Indices{"3", "7", "12"}, "indices on a walk");
    requireEqual(indices(machine.board->getDmas()), Indices{"3", "7", "12"}, "indices on a second walk");
}

void childOfAnEqualIndexIsReplaced(HostUnderTest& host)
{
    const Machine machine(host);
    const auto first = dma(5), second = dma(6);
    machine.board->addDmasEntry(1, first);
    requireEqual(indices(machine.board->getDmas()), Indices{"5"}, "indices");
    machine.board->addDmasEntry(1, second);
    requireEqual(indices(machine.board->getDmas()), Indices{"6"},
                 "indices after another node came to the place");
    require(!first->_parent().get(), "the node that was replaced has no parent");
    require(static_cast<bool>(second->_parent().get()), "the node that replaced it has one");
}

void walkSurvivesChanges(HostUnderTest& host)
{
    const Machine machine(host);
    for (const unsigned int index : {3U, 7U, 12U})
        machine.board->addDmasEntry(index, dma(index));
    const auto added = machine.board->getDmas();
    machine.board->addDmasEntry(1, dma(1));
    machine.board->addDmasEntry(8, dma(8));
    requireEqual(indices(added), Indices{"3", "7", "12"},
                 "indices on a walk that began before nodes were added");
    const auto cleared = machine.board->getDmas();
    machine.board->getDmasEntryNode()->_children().clear();
    requireEqual(indices(cleared), Indices{"1", "3", "7", "8", "12"},
                 "indices on a walk that began before the nodes were removed");
}

void clearRemovesAllChildren(HostUnderTest& host)
{
    const Machine machine(host);
    auto& board = *machine.board;
    const auto node = dma(3);
    board.addDmasEntry(3, node);
    requireEqual(indices(board.getDmas()).size(), 1U, "number of channels");
    board.addProcessesEntry(0, HlEnvironmentProcessNode::create());
    board.addLogicalPortsEntry(0, HlEnvironmentLogicalPortNode::create());
    for (const auto& entry :
         {board.getDmasEntryNode(), board.getProcessesEntryNode(), board.getLogicalPortsEntryNode()})
        entry->_children().clear();
    requireEqual(indices(board.getDmas()), Indices{}, "channels after clear()");
    requireEqual(indices(board.getProcesses()), Indices{}, "processes after clear()");
    requireEqual(indices(board.getLogicalPorts()), Indices{}, "logical ports after clear()");
    require(!node->_parent().get(), "a node that was removed has no parent");
}

void parentsLeadToTheBoard(HostUnderTest& host)
{
    const Machine machine(host);
    auto& board = *machine.board;
    const auto channel = dma(0);
    const auto process = HlEnvironmentProcessNode::create();
    const auto port = HlEnvironmentLogicalPortNode::create();
    board.addDmasEntry(0, channel);
    board.addProcessesEntry(0, process);
    board.addLogicalPortsEntry(0, port);
    for (const auto& node : std::vector<boost::shared_ptr<GenericModelNode>>{channel, process, port}) {
        const auto entry = node->_parent().get();
        require(entry && entry->_parent().get() == machine.board,
                "the parent of a child's parent is the board");
    }
}

void crossLinksAreWeak(HostUnderTest& host)
{
    host.startApplication();
    const auto process = HlEnvironmentProcessNode::create();
    auto gone = dma(1);
    const auto stays = dma(2);
    auto port = HlEnvironmentLogicalPortNode::create();
    process->addDma(gone);
    process->addDma(stays);
    process->addLogicalPort(port);
    stays->addProcess(process);
    requireEqual(indices(process->getDmas()), Indices{"1", "2"}, "channels of the process");
    const boost::weak_ptr<HlEnvironmentDmaNode> watched = gone;
    gone.reset();
    port.reset();
    require(watched.expired(), "a process does not keep its channels");
    requireEqual(indices(process->getDmas()), Indices{"2"}, "channels of the process after one is gone");
    requireEqual(indices(process->getLogicalPorts()), Indices{},
                 "ports of the process after its port is gone");
    requireEqual(indices(stays->getProcesses()).size(), 1U, "processes of the channel that stayed");
}

void modelMayBeReadWhileItChanges(HostUnderTest& host)
{
    constexpr unsigned int ROUNDS = 2000, PLACES = 5;
    const Machine machine(host);
    std::atomic<bool> ends{false};
    std::thread writer([&] {
        for (unsigned int round = 0; round < ROUNDS; ++round) {
            machine.board->addDmasEntry(round % PLACES, dma(round % PLACES));
            if (round % 50 == 0)
                machine.board->getDmasEntryNode()->_children().clear();
        }
        ends = true;
    });
    while (!ends) {
        const auto seen = indices(machine.board->getDmas());
        require(std::ranges::is_sorted(seen) && std::ranges::adjacent_find(seen) == seen.end(),
                "a walk during changes meets each index once, in order; found " + toText(seen));
    }
    writer.join();
}

// --- global resources --------------------------------------------------------------------------------

boost::shared_ptr<HlEnvironmentGlobalResourceNode>
addResource(HlEnvironmentGlobalResourceRootNode& root, const std::string& key,
            const boost::weak_ptr<GenericModelNode>& stands = {})
{
    auto resource = HlEnvironmentGlobalResourceNode::create();
    resource->setType(Environment::ResourceDma);
    resource->setResource(stands);
    resource->setKey(key);
    root.addChild(key, resource);
    return resource;
}

std::vector<std::string> keys(const HlEnvironmentGlobalResourceRootNode& root)
{
    std::vector<std::string> all;
    for (const auto each = root.getChildren(); each->hasNext(); each->advance())
        all.push_back(each->current()->getKey());
    return all;
}

void resourcesAreWalkedInTheOrderOfTheirKeys(HostUnderTest& host)
{
    host.startApplication();
    const auto root = Environment::create()->globalResourceModel()->root();
    for (const std::string key : {"board-2", "board-10", "board-1-dma", "board-1", "board-1a"})
        addResource(*root, key);
    requireEqual(keys(*root),
                 std::vector<std::string>{"board-1", "board-1-dma", "board-10", "board-1a", "board-2"},
                 "keys on a walk");
}

void resourceOfAnEqualKeyIsReplaced(HostUnderTest& host)
{
    host.startApplication();
    const auto root = Environment::create()->globalResourceModel()->root();
    addResource(*root, "board-1");
    const auto second = addResource(*root, "board-1");
    requireEqual(keys(*root), std::vector<std::string>{"board-1"}, "keys");
    require(root->getChildren()->current() == second, "the resource that came last is there");
}

void resourceIsRemovedByItsKey(HostUnderTest& host)
{
    host.startApplication();
    const auto root = Environment::create()->globalResourceModel()->root();
    addResource(*root, "board-1");
    addResource(*root, "board-2");
    const auto walk = root->getChildren();
    root->removeChild("board-1");
    root->removeChild("board-3");
    requireEqual(keys(*root), std::vector<std::string>{"board-2"}, "keys");
    int seen = 0;
    for (; walk->hasNext(); walk->advance())
        ++seen;
    requireEqual(seen, 2, "resources on a walk that began before the removal");
}

void resourceDoesNotKeepItsNode(HostUnderTest& host)
{
    host.startApplication();
    const auto root = Environment::create()->globalResourceModel()->root();
    auto node = dma(1);
    const auto resource = addResource(*root, "board-1", node);
    requireEqual(static_cast<int>(resource->getType()), static_cast<int>(Environment::ResourceDma), "type");
    require(resource->getResource().lock() == node, "the resource leads to its node");
    node.reset();
    require(resource->getResource().expired(), "the resource does not keep its node");
}

// --- applet files ---------------------------------------------------------------------------------------

void brokenAppletFileIsNoException(HostUnderTest& host)
{
    const Machine machine(host);
    const auto path = std::filesystem::temp_directory_path() /
                      ("ovra-conformance-" + std::to_string(std::random_device{}()) + ".hap");
    std::ofstream(path) << "no applet";
    const std::string name = path.generic_string();
    machine.environment->forceSingleFileAddition(name);
    const auto file = machine.environment->model()->root()->getFilesEntryNode()->getAllFilesEntry(name);
    if (file)
        file->scan();
    std::filesystem::remove(path);
    require(static_cast<bool>(file), "forceSingleFileAddition makes a file of the model");
    requireEqual(file->getFileName(), path.filename().generic_string(), "file name");
}

} // namespace

std::vector<Test> modelTests()
{
    return {
        {"children-are-walked-by-index", "A board's children are walked in ascending order of their indices",
         childrenAreWalkedByIndex},
        {"child-of-an-equal-index-is-replaced",
         "A child that is added under an index that exists replaces the child",
         childOfAnEqualIndexIsReplaced},
        {"walk-survives-changes",
         "A walk goes on over what was there when it began, whatever is added or removed",
         walkSurvivesChanges},
        {"clear-removes-all-children", "clear() of an entry node's children leaves none",
         clearRemovesAllChildren},
        {"parents-lead-to-the-board", "A child's parent is the entry node, and that node's parent the board",
         parentsLeadToTheBoard},
        {"cross-links-are-weak", "Processes, channels and ports do not keep each other", crossLinksAreWeak},
        {"model-may-be-read-while-it-changes",
         "Threads may walk over a board's children while another changes them", modelMayBeReadWhileItChanges},
        {"resources-are-walked-in-key-order",
         "Global resources are walked in ascending byte order of their keys",
         resourcesAreWalkedInTheOrderOfTheirKeys},
        {"resource-of-an-equal-key-is-replaced", "A global resource replaces the one of an equal key",
         resourceOfAnEqualKeyIsReplaced},
        {"resource-is-removed-by-its-key", "removeChild removes the resource of that key, if there is one",
         resourceIsRemovedByItsKey},
        {"resource-does-not-keep-its-node", "A global resource refers to its node weakly",
         resourceDoesNotKeepItsNode},
        {"broken-applet-file-is-no-exception",
         "The scan of a file that is no applet ends without an exception", brokenAppletFileIsNoException},
    };
}

} // namespace ovra::conformance
