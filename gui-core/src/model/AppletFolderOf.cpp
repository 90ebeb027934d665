// SPDX-License-Identifier: MIT
#include "model/AppletFolderOf.h"

#include <algorithm>
#include <iterator>

namespace ovra::gui::model {

namespace {

struct BoardModel
{
    unsigned int type;
    const char* folder;
};

constexpr BoardModel BOARD_MODELS[] = {
    {2625, "ovra-quad-cl"},
    {2898, "ovra-dual-cxp"},
};

} // namespace

const char* appletFolderOf(unsigned int boardType)
{
    const auto* model = std::find_if(std::begin(BOARD_MODELS), std::end(BOARD_MODELS),
                                     [boardType](const BoardModel& m) { return m.type == boardType; });
    return model == std::end(BOARD_MODELS) ? "unknown" : model->folder;
}

} // namespace ovra::gui::model
