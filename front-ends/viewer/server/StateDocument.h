/// \file
/// StateDocument: everything that pages show but the images. A page gets it whole once, then its changes.
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
    /// \p publish sends a text to every page that has got the whole document.
    explicit StateDocument(std::function<void(const std::string&)> publish);

    /// Changes a section; a value that it already has is no change.
    void set(const std::string& section, nlohmann::json value);
    /// Adds \p values to the list that a section is, which keeps its newest \p limit.
    void append(const std::string& section, const nlohmann::json& values, std::size_t limit);

    /// The message that makes a page's picture complete.
    std::string whole() const;
    const nlohmann::json& section(const std::string& name) const { return m_sections.at(name); }

private:
    void publish(nlohmann::json change);

    const std::function<void(const std::string&)> m_publish;
    nlohmann::json m_sections = nlohmann::json::object();
    std::int64_t m_revision = 0;
};

/// As text; what is no UTF-8 in it is replaced.
std::string jsonText(const nlohmann::json& value);

} // namespace ovra::viewer
