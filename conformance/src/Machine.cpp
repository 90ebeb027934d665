// SPDX-License-Identifier: MIT
#include "Machine.h"

#include "conformance/Test.h"
#include "gui-core/keys/Keys.h"

namespace ovra::conformance {

using core::Environment;
using core::models::HlEnvironmentBoardNode;

namespace {

boost::shared_ptr<Environment> startedEnvironment(HostUnderTest& host)
{
    host.startApplication();
    auto environment = Environment::create();
    environment->discoverResourcesOnce();
    return environment;
}

template <class Condition>
boost::shared_ptr<HlEnvironmentBoardNode> findBoard(Environment& environment, Condition condition)
{
    if (const auto source = environment.model()->root()->getSourcesEntry(gui::keys::SOURCE))
        for (const auto boards = source->getBoards(); boards->hasNext(); boards->advance())
            if (condition(*boards->current()))
                return boards->current();
    return {};
}

} // namespace

Machine::Machine(HostUnderTest& tested)
    : host(tested),
      environment(startedEnvironment(tested)),
      board(findBoard(*environment, [](const auto&) { return true; }))
{
    if (!board)
        skip("The environment found no board under the source \"ovra\"");
}

boost::shared_ptr<HlEnvironmentBoardNode> Machine::boardOf(const ChannelUnderTest& channel) const
{
    auto found = findBoard(*environment,
                           [&](const auto& candidate) { return candidate.getIndex() == channel.board(); });
    require(static_cast<bool>(found), "the environment has the board of the channel");
    return found;
}

} // namespace ovra::conformance
