// SPDX-License-Identifier: MIT
#include "descriptions/AppletList.h"
#include "entries/Answers.h"
#include "entries/Entries.h"

namespace simulation::entries {

namespace {

AppletList& listOf(FgAppletIterator* applets)
{
    return *reinterpret_cast<AppletList*>(checkedArgument(applets, "applets"));
}

FgAppletIteratorItem* handleOf(const AppletItem* item, const char* failure)
{
    if (item == nullptr)
        throw Failure(FG_APPLET_NOT_FOUND, failure);
    return reinterpret_cast<FgAppletIteratorItem*>(const_cast<AppletItem*>(item));
}

const AppletItem& itemOf(const FgAppletIteratorItem* applet)
{
    return *reinterpret_cast<const AppletItem*>(checkedArgument(applet, "applet"));
}

} // namespace

int Fg_getAppletIterator(int board, int source, FgAppletIterator** applets, int)
{
    checkedArgument(applets, "applets");
    auto list = std::make_unique<AppletList>();
    if (board >= 0 && source == FG_APPLETS_INSTALLED) {
        const auto place = Runtime::instance().board(static_cast<unsigned int>(board));
        list->addInstalled(Runtime::installation(), place->description().model);
    }
    const auto count = static_cast<int>(list->size());
    *applets = reinterpret_cast<FgAppletIterator*>(list.release());
    return count;
}

FgAppletIteratorItem* Fg_getAppletIteratorItem(FgAppletIterator* applets, int position)
{
    const auto& list = listOf(applets);
    return handleOf(position < 0 ? nullptr : list.at(static_cast<std::size_t>(position)),
                    "The list has no applet at this position");
}

FgAppletIteratorItem* Fg_findAppletIteratorItem(FgAppletIterator* applets, const char* path)
{
    return handleOf(listOf(applets).find(checkedArgument(path, "path")),
                    "The list has no applet with this path");
}

FgAppletIteratorItem* Fg_addAppletIteratorItem(FgAppletIterator* applets, const char* path, int* added)
{
    bool isNew = false;
    const auto& item = listOf(applets).add(checkedArgument(path, "path"), &isNew);
    if (added != nullptr)
        *added = isNew ? 1 : 0;
    return handleOf(&item, "");
}

int Fg_freeAppletIterator(FgAppletIterator* applets)
{
    delete &listOf(applets);
    return FG_OK;
}

std::int64_t Fg_getAppletIntProperty(const FgAppletIteratorItem* applet, int property)
{
    const auto& content = itemOf(applet).applet;
    switch (property) {
    case FG_APPLET_WRAPPED:
        return content.wrapped ? 1 : 0;
    case FG_APPLET_NR_OF_PROCESSES:
        return content.processesInFile;
    case FG_APPLET_BOARD_TYPE:
        return content.boardType.value_or(0);
    default:
        throw Failure(FG_INVALID_ARGUMENT, "There is no property " + std::to_string(property));
    }
}

const char* Fg_getAppletStringProperty(const FgAppletIteratorItem* applet, int property)
{
    const auto& item = itemOf(applet);
    switch (property) {
    case FG_APPLET_NAME:
        return item.applet.name.c_str();
    case FG_APPLET_PATH:
        return item.path.c_str();
    case FG_APPLET_TYPE:
        return item.applet.type.c_str();
    case FG_APPLET_TAGS:
        return item.tags.c_str();
    case FG_APPLET_VERSION:
        return item.applet.version.c_str();
    default:
        throw Failure(FG_INVALID_ARGUMENT, "There is no property " + std::to_string(property));
    }
}

// Replaces the text in \p path by the full path of the board's first installed applet whose file name begins
// with it.
int Fg_findApplet(unsigned int board, char* path, std::size_t pathBytes)
{
    const std::string beginning = checkedArgument(path, "path");
    AppletList list;
    list.addInstalled(Runtime::installation(), Runtime::instance().board(board)->description().model);
    for (std::size_t i = 0; i < list.size(); ++i) {
        const auto& item = *list.at(i);
        if (!item.applet.file.filename().string().starts_with(beginning))
            continue;
        copyTextOut(item.path, path, &pathBytes);
        return FG_OK;
    }
    throw Failure(FG_APPLET_NOT_FOUND, "No applet of the board begins with '" + beginning + "'");
}

} // namespace simulation::entries
