// SPDX-License-Identifier: MIT
/// \file
/// StateDocument: everything that pages show except images. A page gets the whole document, then changes.
#pragma once

#include <nlohmann/json.hpp>

#include <cstdint>
#include <functional>
#include <string>

namespace ovra::viewer {

/// GUI thread.
class StateDocument
{
public:
    /// \p publish sends a text to every page that has the document.
    explicit StateDocument(std::function<void(const std::string&)> publish);

    /// Sets a section. Publishes nothing if the value is the same.
    void set(const std::string& section, nlohmann::json value);
    /// Appends \p values to a section that is a list. The list keeps the newest \p limit.
    void append(const std::string& section, const nlohmann::json& values, std::size_t limit);

    /// The message with the whole document. \p time is the present in milliseconds since 1970.
    std::string whole(std::int64_t time) const;
    const nlohmann::json& section(const std::string& name) const { return m_sections.at(name); }

private:
    void publish(nlohmann::json change);

    const std::function<void(const std::string&)> m_publish;
    nlohmann::json m_sections = nlohmann::json::object();
    std::int64_t m_revision = 0;
};

/// Serialises \p value; replaces invalid UTF-8.
std::string jsonText(const nlohmann::json& value);

} // namespace ovra::viewer
