// SPDX-License-Identifier: MIT
#include "server/StateDocument.h"

#include "server/Message.h"

#include <algorithm>
#include <utility>

namespace ovra::viewer {

using nlohmann::json;

StateDocument::StateDocument(std::function<void(const std::string&)> publish) : m_publish(std::move(publish))
{}

void StateDocument::set(const std::string& section, json value)
{
    json& present = m_sections[section];
    if (present == value)
        return;
    present = value;
    publish({{"type", "changed"}, {"section", section}, {"value", std::move(value)}});
}

void StateDocument::append(const std::string& section, const json& values, std::size_t limit)
{
    if (values.empty())
        return;
    json& present = m_sections[section];
    present.insert(present.end(), values.begin(), values.end());
    if (present.size() > limit)
        present.erase(present.begin(), present.begin() + static_cast<std::ptrdiff_t>(present.size() - limit));
    publish({{"type", "appended"}, {"section", section}, {"values", values}, {"limit", limit}});
}

std::string StateDocument::whole(std::int64_t time) const
{
    return jsonText({{"type", "welcome"},
                     {"version", PROTOCOL_VERSION},
                     {"time", time},
                     {"revision", m_revision},
                     {"state", m_sections}});
}

void StateDocument::publish(json change)
{
    change["revision"] = ++m_revision;
    m_publish(jsonText(change));
}

std::string jsonText(const json& value)
{
    return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

} // namespace ovra::viewer
