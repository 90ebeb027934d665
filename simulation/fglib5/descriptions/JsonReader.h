// SPDX-License-Identifier: MIT
/// \file
/// JsonReader: reads JSON files that people write by hand. Each error is one line that names the file, the
/// place in it and what was expected.
///
///   machine description demo.json: line 3, column 5: ...
///   machine description demo.json: /boards/1/serial: expected a hexadecimal text, found a number
#pragma once

#include "Failure.h"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace simulation {

/// Returns the bytes of a file. Throws std::ios_base::failure, also for a folder.
std::string readFile(const std::filesystem::path& file);

/// A file, its kind for messages, and the status code of its errors.
struct JsonSource
{
    std::string kind; ///< "machine description"
    std::filesystem::path file;
    int code;

    [[noreturn]] void fail(const std::string& place, const std::string& line) const;
};

/// One place in a file: a value, or a missing one. Valid while its document and source exist.
class JsonField
{
public:
    JsonField(const JsonSource& source, const nlohmann::json* value, std::string place)
        : m_source(&source),
          m_value(value),
          m_place(std::move(place))
    {}

    bool given() const noexcept { return m_value != nullptr; }
    bool isBoolean() const noexcept;

    /// Requires an object without other fields than \p known.
    const JsonField& object(std::initializer_list<std::string_view> known) const;
    /// A field of an object; if it is missing, given() is false.
    JsonField operator[](std::string_view name) const;
    /// The elements of a list; none if the field is missing.
    std::vector<JsonField> elements() const;

    std::int64_t integer(std::int64_t minimum, std::int64_t maximum) const;
    std::int64_t integerOr(std::int64_t fallback, std::int64_t minimum, std::int64_t maximum) const;
    double number(double minimum, double maximum) const;
    double numberOr(double fallback, double minimum, double maximum) const;
    bool booleanOr(bool fallback) const;
    std::string text() const;
    std::string textOr(const std::string& fallback) const;
    /// Requires one of \p choices.
    std::string choice(std::initializer_list<std::string_view> choices) const;
    /// Requires a text of letters, digits, -, _ and . that can be the name of a folder.
    std::string name() const;
    /// Requires a text of one to eight hexadecimal digits.
    std::uint32_t hexadecimal() const;

    [[noreturn]] void expected(const std::string& what) const;

private:
    std::string found() const;

    const JsonSource* m_source;
    const nlohmann::json* m_value;
    std::string m_place;
};

class JsonDocument
{
public:
    /// Reads \p source.file. Throws Failure.
    explicit JsonDocument(JsonSource source);
    JsonDocument(JsonSource source, const std::string& content);
    ~JsonDocument();
    JsonDocument(const JsonDocument&) = delete;
    JsonDocument& operator=(const JsonDocument&) = delete;

    JsonField root() const { return {m_source, m_json.get(), ""}; }

private:
    void parse(const std::string& content);

    JsonSource m_source;
    std::unique_ptr<const nlohmann::json> m_json;
};

} // namespace simulation
