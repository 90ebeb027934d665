// SPDX-License-Identifier: MIT
#include "ovra-lib-environment/HlEnvironmentFileNode.h"

#include "ovra-core/reference/RuntimeEntries.h"
#include "ovra_log/reference/Journal.h"
#include "ovra_log/reference/LiveObjects.h"
#include "ovra_log/reference/Log.h"

#include <sstream>
#include <stdexcept>

namespace ovra::core::models {

using reference::probe;
using reference::RuntimeEntries;

namespace {

// Without a board the runtime's list starts empty; with a board it would first read all installed applets.
constexpr int NO_BOARD = -1;

/// An applet list of the runtime. Adding a file to it makes the runtime read the file.
class RuntimeAppletList
{
public:
    explicit RuntimeAppletList(boost::shared_ptr<const RuntimeEntries> runtime)
        : m_runtime(std::move(runtime))
    {
        if (m_runtime->Fg_getAppletIterator(NO_BOARD, 0, &m_list, 0) < FG_OK)
            throw std::runtime_error(lastFailureText(*m_runtime));
    }
    ~RuntimeAppletList() { m_runtime->Fg_freeAppletIterator(m_list); }
    RuntimeAppletList(const RuntimeAppletList&) = delete;
    RuntimeAppletList& operator=(const RuntimeAppletList&) = delete;

    FgAppletIteratorItem* read(const std::string& path)
    {
        int added = 0;
        FgAppletIteratorItem* const item = m_runtime->Fg_addAppletIteratorItem(m_list, path.c_str(), &added);
        if (!item)
            throw std::runtime_error(lastFailureText(*m_runtime));
        return item;
    }

private:
    const boost::shared_ptr<const RuntimeEntries> m_runtime;
    FgAppletIterator* m_list = nullptr;
};

std::string textOf(const RuntimeEntries& runtime, const FgAppletIteratorItem* item,
                   FgAppletStringProperty property)
{
    const char* const text = runtime.Fg_getAppletStringProperty(item, property);
    return text ? text : "";
}

std::set<std::string> tagsIn(const std::string& joined)
{
    std::set<std::string> tags;
    std::istringstream stream(joined);
    for (std::string tag; std::getline(stream, tag, ';');)
        if (!tag.empty())
            tags.insert(tag);
    return tags;
}

std::string nameOf(const std::string& path)
{
    return path.substr(path.find_last_of("/\\") + 1);
}

} // namespace

HlEnvironmentFileNode::HlEnvironmentFileNode(const std::string& path) : m_path(path), m_name(nameOf(path)) {}

boost::shared_ptr<HlEnvironmentFileNode> HlEnvironmentFileNode::create(const std::string& path)
{
    probe("HlEnvironmentFileNode::create", path);
    return reference::liveObject(new HlEnvironmentFileNode(path));
}

const std::string& HlEnvironmentFileNode::getFileName() const
{
    probe("HlEnvironmentFileNode::getFileName", m_name);
    return m_name;
}

const std::string& HlEnvironmentFileNode::getFilePath() const
{
    probe("HlEnvironmentFileNode::getFilePath", m_name);
    return m_path;
}

std::string HlEnvironmentFileNode::getType() const
{
    probe("HlEnvironmentFileNode::getType", m_name);
    return m_content.get().type;
}

bool HlEnvironmentFileNode::getWrapped() const
{
    probe("HlEnvironmentFileNode::getWrapped", m_name);
    return m_content.get().wrapped;
}

std::set<std::string> HlEnvironmentFileNode::getTags() const
{
    probe("HlEnvironmentFileNode::getTags", m_name);
    return m_content.get().tags;
}

int HlEnvironmentFileNode::getNrOfProcesses() const
{
    probe("HlEnvironmentFileNode::getNrOfProcesses", m_name);
    return m_content.get().nrOfProcesses;
}

std::string HlEnvironmentFileNode::getBrokenReason() const
{
    probe("HlEnvironmentFileNode::getBrokenReason", m_name);
    return m_content.get().brokenReason;
}

void HlEnvironmentFileNode::scan()
{
    probe("HlEnvironmentFileNode::scan", m_name);
    Content content;
    try {
        content = read(m_path);
    } catch (const std::runtime_error& error) {
        content.brokenReason = error.what();
        const bool namesFile = content.brokenReason.find(m_name) != std::string::npos;
        reference::log(reference::LogLevel::Warning, (namesFile ? "" : m_path + ": ") + content.brokenReason);
    }
    m_content.set(std::move(content));
}

HlEnvironmentFileNode::Content HlEnvironmentFileNode::read(const std::string& path)
{
    const auto runtime = reference::requireRuntime();
    RuntimeAppletList list(runtime);
    const FgAppletIteratorItem* const item = list.read(path);
    Content content;
    content.type = textOf(*runtime, item, FG_APPLET_TYPE);
    content.wrapped = runtime->Fg_getAppletIntProperty(item, FG_APPLET_WRAPPED) == 1;
    content.tags = tagsIn(textOf(*runtime, item, FG_APPLET_TAGS));
    content.nrOfProcesses =
        static_cast<int>(runtime->Fg_getAppletIntProperty(item, FG_APPLET_NR_OF_PROCESSES));
    return content;
}

} // namespace ovra::core::models
