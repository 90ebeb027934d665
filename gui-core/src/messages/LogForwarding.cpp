// SPDX-License-Identifier: MIT
#include "messages/LogForwarding.h"

#include "gui-core/Gui.h"
#include "gui-core/Views.h"

namespace ovra::gui::messages {

void forwardLogMessage(unsigned long level, unsigned long threadId, const char* file, unsigned int line,
                       const char* text, unsigned int tagCount, const tOvraLogTag* tags, void* userData)
{
    if (const auto views = Gui::views())
        views->logMsgCallback(level, threadId, file, line, text, tagCount, tags, userData);
}

} // namespace ovra::gui::messages
