// SPDX-License-Identifier: MIT
#include "gui-core/Views.h"

#include <boost/make_shared.hpp>

namespace ovra::gui {

Views::Views() : m_flag(boost::make_shared<bool>(false)) {}
Views::Views(const Views& other) = default;
Views& Views::operator=(const Views& other) = default;
Views::~Views() = default;

void Views::logMsgCallback(unsigned long, unsigned long, const char*, unsigned int, const char*, unsigned int,
                           const tOvraLogTag*, void*)
{}

void Views::fillCaches() {}
void Views::showBoardLinkConfigurationInHardwareDialog(unsigned int) {}
void Views::showBoardInHardwareDialog(unsigned int) {}
void Views::showBoardInCameraDialog(unsigned int) {}
void Views::showBoardInAppletsDialog(unsigned int) {}
void Views::raiseCameraDialog() {}

bool Views::isInitialized() const
{
    return false;
}

void Views::ensure_board_selection(unsigned int) {}
void Views::update_dma_memory() {}
void Views::update_selected_views() {}

} // namespace ovra::gui
