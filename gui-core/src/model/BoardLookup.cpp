// SPDX-License-Identifier: MIT
#include "model/BoardLookup.h"
#include "gui-core/keys/Keys.h"

#include "gui-core/Gui.h"

#include "ovra-lib-environment/Environment.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/HlEnvironmentFileNode.h"
#include "ovra-lib-environment/HlEnvironmentModel.h"

namespace ovra::gui::model {

boost::shared_ptr<core::models::HlEnvironmentRootNode> environmentRoot()
{
    return Gui::environment()->model()->root();
}

boost::shared_ptr<core::models::HlEnvironmentBoardNode> findBoard(unsigned int serial)
{
    const auto source = environmentRoot()->getSourcesEntry(keys::SOURCE);
    return source ? source->getChild(serial) : boost::shared_ptr<core::models::HlEnvironmentBoardNode>();
}

boost::shared_ptr<core::models::HlEnvironmentFileNode> findAppletFile(const std::string& path)
{
    return environmentRoot()->getFilesEntryNode()->getAllFilesEntry(path);
}

} // namespace ovra::gui::model
