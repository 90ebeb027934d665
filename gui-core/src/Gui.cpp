// SPDX-License-Identifier: MIT
#include "gui-core/Gui.h"

#include "GuiStatics.h"

#include "gui-core/CleanupApplicationCommand.h"
#include "gui-core/InitializeApplicationCommand.h"
#include "gui-core/Views.h"

#include "gui-core/keys/Keys.h"
#include "ovra-core/HarloApplication.h"

#include <boost/make_shared.hpp>

namespace ovra::gui {

namespace {

constexpr int MEBIBYTE_SHIFT = 20;

} // namespace

Gui* Gui::createInstance()
{
    return new Gui;
}

void Gui::destroyInstance(Gui* gui)
{
    delete gui;
}

Gui::Gui() : m_state(boost::make_shared<State>())
{
    GuiStatics::instance().state = m_state;
}

Gui::~Gui() = default;

void Gui::injectDependency(const std::string& key, const boost::any& value)
{
    if (key == keys::VIEWS)
        m_state->views = boost::any_cast<boost::shared_ptr<Views>>(value);
    else if (key == keys::CONNECTOR)
        m_state->environment->injectDependency(key, value);
}

boost::shared_ptr<core::Command> Gui::createInitializationApplicationCommand()
{
    return commands::InitializeApplicationCommand::create();
}

boost::shared_ptr<core::Command> Gui::createCleanupApplicationCommand()
{
    return commands::CleanupApplicationCommand::create();
}

boost::shared_ptr<Views> Gui::views()
{
    const auto state = GuiStatics::currentState();
    return state ? state->views : boost::shared_ptr<Views>();
}

boost::shared_ptr<core::Environment> Gui::environment()
{
    const auto state = GuiStatics::currentState();
    return state ? state->environment : boost::shared_ptr<core::Environment>();
}

void Gui::setSyncMode(SyncMode mode)
{
    if (const auto state = GuiStatics::currentState())
        state->syncMode = mode;
}

Gui::SyncMode Gui::getSyncMode()
{
    const auto state = GuiStatics::currentState();
    return state ? state->syncMode.load() : SyncNone;
}

void Gui::setStreamChannelManagementEnabled(bool enabled)
{
    if (const auto state = GuiStatics::currentState())
        state->streamChannelManagementEnabled = enabled;
}

bool Gui::isStreamChannelManagementEnabled()
{
    const auto state = GuiStatics::currentState();
    return state && state->streamChannelManagementEnabled.load();
}

unsigned long long Gui::getUsedDmaMemory()
{
    const auto state = GuiStatics::currentState();
    return state ? state->usedDmaMemory.load() : 0;
}

unsigned long long Gui::getTotalDmaMemory()
{
    if (!GuiStatics::currentState())
        return 0;
    const auto mebibytes = core::HarloApplication::getConfigIntEntry(keys::DMA_MEMORY_LIMIT_MIB.name,
                                                                     keys::DMA_MEMORY_LIMIT_MIB.defaultValue);
    return static_cast<unsigned long long>(mebibytes) << MEBIBYTE_SHIFT;
}

void Gui::updateUsedMemory(long long delta)
{
    if (const auto state = GuiStatics::currentState())
        state->usedDmaMemory += static_cast<unsigned long long>(delta);
}

} // namespace ovra::gui
