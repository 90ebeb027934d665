// SPDX-License-Identifier: MIT
#include "descriptions/JsonReader.h"

#include "descriptions/NumberText.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <fstream>
#include <iterator>

namespace simulation {

namespace {

std::string listed(std::initializer_list<std::string_view> words)
{
    std::string list;
    for (const auto word : words)
        list += (list.empty() ? "'" : ", '") + std::string(word) + "'";
    return list;
}

bool isNameCharacter(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '-' || c == '_' || c == '.';
}

// From "line 3" on: "[json.exception.parse_error.101] parse error at line 3, column 5: syntax error while
// ..."
std::string withoutPrefix(const std::string& message)
{
    const auto place = message.find(" at line ");
    return place == std::string::npos ? message : message.substr(place + 4);
}

// A text in a file can contain any character as an escape; in a message it must not end the line.
std::string onOneLine(std::string text)
{
    std::ranges::replace_if(
        text, [](unsigned char letter) { return std::iscntrl(letter) != 0; }, '?');
    return text;
}

} // namespace

std::string readFile(const std::filesystem::path& file)
{
    std::error_code unknown; // ignored: opening the file fails below, too
    if (std::filesystem::is_directory(file, unknown))
        throw std::ios_base::failure("a folder");
    std::ifstream stream;
    stream.exceptions(std::ios::badbit | std::ios::failbit);
    stream.open(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void JsonSource::fail(const std::string& place, const std::string& line) const
{
    throw Failure(code,
                  kind + " " + file.string() + ": " + onOneLine((place.empty() ? "" : place + ": ") + line));
}

JsonDocument::JsonDocument(JsonSource source) : m_source(std::move(source))
{
    std::string content;
    try {
        content = readFile(m_source.file);
    } catch (const std::ios_base::failure&) {
        m_source.fail("", "expected a readable file, found none");
    }
    parse(content);
}

JsonDocument::JsonDocument(JsonSource source, const std::string& content) : m_source(std::move(source))
{
    parse(content);
}

JsonDocument::~JsonDocument() = default;

void JsonDocument::parse(const std::string& content)
{
    try {
        m_json = std::make_unique<const nlohmann::json>(nlohmann::json::parse(content));
    } catch (const nlohmann::json::exception& failure) {
        m_source.fail("", withoutPrefix(failure.what()));
    }
}

bool JsonField::isBoolean() const noexcept
{
    return given() && m_value->is_boolean();
}

const JsonField& JsonField::object(std::initializer_list<std::string_view> known) const
{
    if (!given() || !m_value->is_object())
        expected("an object");
    for (const auto& [name, value] : m_value->items())
        if (std::ranges::find(known, name) == known.end())
            m_source->fail(m_place + "/" + name,
                           "expected one of " + listed(known) + ", found '" + name + "'");
    return *this;
}

JsonField JsonField::operator[](std::string_view name) const
{
    const auto entry = m_value->find(name);
    return {*m_source, entry == m_value->end() ? nullptr : &*entry, m_place + "/" + std::string(name)};
}

std::vector<JsonField> JsonField::elements() const
{
    std::vector<JsonField> fields;
    if (!given())
        return fields;
    if (!m_value->is_array())
        expected("a list");
    for (const auto& element : *m_value)
        fields.emplace_back(*m_source, &element, m_place + "/" + std::to_string(fields.size()));
    return fields;
}

std::int64_t JsonField::integer(std::int64_t minimum, std::int64_t maximum) const
{
    const auto range = "a whole number from " + std::to_string(minimum) + " to " + std::to_string(maximum);
    if (!given() || !m_value->is_number_integer())
        expected(range);
    const auto tooLarge = m_value->is_number_unsigned() && m_value->get<std::uint64_t>() > INT64_MAX;
    const auto number = m_value->get<std::int64_t>();
    if (tooLarge || number < minimum || number > maximum)
        m_source->fail(m_place, "expected " + range + ", found " + m_value->dump());
    return number;
}

std::int64_t JsonField::integerOr(std::int64_t fallback, std::int64_t minimum, std::int64_t maximum) const
{
    return given() ? integer(minimum, maximum) : fallback;
}

double JsonField::number(double minimum, double maximum) const
{
    const auto range = "a number from " + numberText(minimum) + " to " + numberText(maximum);
    if (!given() || !m_value->is_number())
        expected(range);
    const auto number = m_value->get<double>();
    if (!(number >= minimum && number <= maximum))
        m_source->fail(m_place, "expected " + range + ", found " + m_value->dump());
    return number;
}

double JsonField::numberOr(double fallback, double minimum, double maximum) const
{
    return given() ? number(minimum, maximum) : fallback;
}

bool JsonField::booleanOr(bool fallback) const
{
    if (!given())
        return fallback;
    if (!m_value->is_boolean())
        expected("true or false");
    return m_value->get<bool>();
}

std::string JsonField::text() const
{
    if (!given() || !m_value->is_string())
        expected("a text");
    return m_value->get<std::string>();
}

std::string JsonField::textOr(const std::string& fallback) const
{
    return given() ? text() : fallback;
}

std::string JsonField::choice(std::initializer_list<std::string_view> choices) const
{
    if (!given() || !m_value->is_string())
        expected("one of " + listed(choices));
    auto chosen = m_value->get<std::string>();
    if (std::ranges::find(choices, chosen) == choices.end())
        m_source->fail(m_place, "expected one of " + listed(choices) + ", found '" + chosen + "'");
    return chosen;
}

std::string JsonField::name() const
{
    const std::string what = "a name of letters, digits, '-', '_' or '.'";
    if (!given() || !m_value->is_string())
        expected(what);
    auto chosen = m_value->get<std::string>();
    if (chosen.empty() || chosen.front() == '.' || !std::ranges::all_of(chosen, isNameCharacter))
        m_source->fail(m_place, "expected " + what + ", found '" + chosen + "'");
    return chosen;
}

std::uint32_t JsonField::hexadecimal() const
{
    if (!given() || !m_value->is_string())
        expected("a hexadecimal text");
    const auto digits = m_value->get<std::string>();
    std::uint32_t number = 0;
    const auto* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, number, 16);
    if (digits.empty() || stop != end || error != std::errc())
        m_source->fail(m_place, "expected a hexadecimal text of up to eight digits, found '" + digits + "'");
    return number;
}

void JsonField::expected(const std::string& what) const
{
    m_source->fail(m_place, "expected " + what + ", found " + found());
}

std::string JsonField::found() const
{
    if (!given())
        return "nothing";
    switch (m_value->type()) {
    case nlohmann::json::value_t::object:
        return "an object";
    case nlohmann::json::value_t::array:
        return "a list";
    case nlohmann::json::value_t::string:
        return "a text";
    case nlohmann::json::value_t::boolean:
        return "true or false";
    case nlohmann::json::value_t::null:
        return "null";
    default:
        return "a number";
    }
}

} // namespace simulation
