// SPDX-License-Identifier: MIT
#include "Printer.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <ostream>
#include <utility>

namespace ovra::console {

namespace {

/// A terminal wraps longer lines, and a wrapped line cannot be erased.
constexpr std::size_t MAX_PROGRESS_WIDTH = 78;

constexpr const char* RED = "\x1b[31m";
constexpr const char* YELLOW = "\x1b[33m";
constexpr const char* PLAIN = "\x1b[0m";

std::string inOneLine(std::string text)
{
    std::replace(text.begin(), text.end(), '\n', ' ');
    std::erase(text, '\r');
    return text;
}

// Does not cut a UTF-8 character in two.
std::string beginningOf(const std::string& text, std::size_t maxBytes)
{
    constexpr unsigned char CONTINUATION_MASK = 0xc0, CONTINUATION = 0x80;
    if (text.size() <= maxBytes)
        return text;
    while (maxBytes > 0 && (static_cast<unsigned char>(text[maxBytes]) & CONTINUATION_MASK) == CONTINUATION)
        --maxBytes;
    return text.substr(0, maxBytes);
}

} // namespace

Printer::Printer(std::ostream& output, std::ostream& errors, Target target)
    : m_output(output),
      m_errors(errors),
      m_target(target)
{}

void Printer::setColours(bool output, bool errors)
{
    m_outputColours = output;
    m_errorColours = errors;
}

void Printer::setAbovePrompt(AbovePrompt abovePrompt, bool errorsToo)
{
    const std::lock_guard lock(m_mutex);
    m_abovePrompt = std::move(abovePrompt);
    m_errorsAbovePrompt = errorsToo;
}

void Printer::line(const std::string& text)
{
    const std::lock_guard lock(m_mutex);
    if (m_target == Target::Objects)
        return writeObject("text", {{"text", text}});
    eraseProgress();
    write(text + '\n');
}

void Printer::result(const char* type, const Fields& fields, const std::string& sentence)
{
    if (m_target != Target::Objects)
        return line(sentence);
    const std::lock_guard lock(m_mutex);
    writeObject(type, fields);
}

void Printer::progress(const std::string& text)
{
    if (m_target != Target::Terminal)
        return result("progress", {{"text", text}}, text);

    const std::lock_guard lock(m_mutex);
    if (m_abovePrompt && m_abovePrompt("")) // the user types in the line of the progress
        return;
    eraseProgress();
    const std::string shown = beginningOf(inOneLine(text), MAX_PROGRESS_WIDTH);
    m_output << shown << std::flush;
    m_progressWidth = shown.size();
}

void Printer::redraw(const std::vector<std::string>& lines, bool first)
{
    const std::lock_guard lock(m_mutex);
    eraseProgress();
    const bool over = m_target == Target::Terminal && !first && !lines.empty();
    std::string text = over ? "\x1b[" + std::to_string(lines.size()) + "A" : "";
    for (const auto& line : lines)
        text += (over ? "\x1b[2K" : "") + line + '\n';
    m_output << text << std::flush;
}

void Printer::status(const std::string& text)
{
    if (m_target == Target::Terminal)
        progress(text);
}

void Printer::endProgress()
{
    const std::lock_guard lock(m_mutex);
    eraseProgress();
    m_output << std::flush;
}

void Printer::warning(const std::string& text)
{
    const std::lock_guard lock(m_mutex);
    writeMessage("warning", YELLOW, text);
}

void Printer::error(const std::string& text)
{
    const std::lock_guard lock(m_mutex);
    writeMessage("error", RED, text);
    ++m_errorCount;
}

std::size_t Printer::errorCount() const
{
    const std::lock_guard lock(m_mutex);
    return m_errorCount;
}

bool Printer::canWrite() const
{
    const std::lock_guard lock(m_mutex);
    return m_output.good();
}

void Printer::setPlace(const std::string& place)
{
    const std::lock_guard lock(m_mutex);
    m_place = place;
}

void Printer::write(const std::string& text)
{
    if (!m_abovePrompt || !m_abovePrompt(text))
        m_output << text << std::flush;
}

void Printer::writeObject(const char* type, const Fields& fields)
{
    using nlohmann::ordered_json;
    ordered_json object{{"type", type}};
    for (const auto& field : fields)
        std::visit([&](const auto& value) { object[field.name] = value; }, field.value);
    m_output << object.dump(-1, ' ', false, ordered_json::error_handler_t::replace) << '\n' << std::flush;
}

void Printer::writeMessage(const char* kind, const char* colour, const std::string& text)
{
    m_recentErrors.add(std::string(kind) + ": " + m_place + (m_place.empty() ? "" : ": ") + inOneLine(text));
    if (m_target == Target::Objects)
        return writeObject(kind, {{"place", m_place}, {"text", text}});
    eraseProgress();
    m_output << std::flush;
    const std::string begin = std::string(kind) + ": ";
    const std::string message = (m_errorColours ? colour + begin + PLAIN : begin) + m_place +
                                (m_place.empty() ? "" : ": ") + inOneLine(text) + '\n';
    if (!m_errorsAbovePrompt || !m_abovePrompt(message))
        m_errors << message << std::flush;
}

// Overwrites with blanks instead of a control sequence, which some terminals do not understand.
void Printer::eraseProgress()
{
    if (m_progressWidth == 0)
        return;
    m_output << '\r' << std::string(m_progressWidth, ' ') << '\r';
    m_progressWidth = 0;
}

} // namespace ovra::console
