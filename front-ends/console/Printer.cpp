#include "Printer.h"

#include <algorithm>
#include <ostream>

namespace ovra::console {

namespace {

/// A terminal wraps what is longer, and a wrapped line cannot be taken back.
constexpr std::size_t MAX_PROGRESS_WIDTH = 78;

std::string inOneLine(std::string text)
{
    std::replace(text.begin(), text.end(), '\n', ' ');
    std::erase(text, '\r');
    return text;
}

// Texts are UTF-8: a character is kept as a whole or not at all.
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

void Printer::line(const std::string& text)
{
    const std::lock_guard lock(m_mutex);
    eraseProgress();
    m_output << text << '\n' << std::flush;
}

void Printer::progress(const std::string& text)
{
    if (m_target == Target::Lines)
        return line(text);

    const std::lock_guard lock(m_mutex);
    eraseProgress();
    const std::string shown = beginningOf(inOneLine(text), MAX_PROGRESS_WIDTH);
    m_output << shown << std::flush;
    m_progressWidth = shown.size();
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

void Printer::prompt(const std::string& text)
{
    const std::lock_guard lock(m_mutex);
    eraseProgress();
    m_output << text << std::flush;
}

void Printer::warning(const std::string& text)
{
    const std::lock_guard lock(m_mutex);
    writeMessage("warning: ", text);
}

void Printer::error(const std::string& text)
{
    const std::lock_guard lock(m_mutex);
    writeMessage("error: ", text);
    ++m_errorCount;
}

std::size_t Printer::errorCount() const
{
    const std::lock_guard lock(m_mutex);
    return m_errorCount;
}

void Printer::setPlace(const std::string& place)
{
    const std::lock_guard lock(m_mutex);
    m_place = place;
}

void Printer::writeMessage(const char* kind, const std::string& text)
{
    eraseProgress();
    m_output << std::flush;
    m_errors << kind << m_place << (m_place.empty() ? "" : ": ") << inOneLine(text) << '\n' << std::flush;
}

// With blanks instead of a control sequence: every terminal understands them.
void Printer::eraseProgress()
{
    if (m_progressWidth == 0)
        return;
    m_output << '\r' << std::string(m_progressWidth, ' ') << '\r';
    m_progressWidth = 0;
}

} // namespace ovra::console
