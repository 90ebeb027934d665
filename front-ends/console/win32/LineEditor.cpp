// SPDX-License-Identifier: MIT
// Uses the console window's own editing and history. An uncommon control character interrupts the system's
// read call: the editor then prints queued texts and continues reading with the text typed so far.
#include "../LineEditor.h"

#include "../Completion.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <string_view>
#include <utility>

#include <windows.h>

namespace ovra::console {

namespace {

constexpr wchar_t WAKE_UP = 0x1e;      // Ctrl-^
constexpr wchar_t END_OF_INPUT = 0x1a; // Ctrl-Z

std::string utf8(std::wstring_view text)
{
    const int length = static_cast<int>(text.size());
    std::string converted(static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(), length,
                                                                       nullptr, 0, nullptr, nullptr)),
                          '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, converted.data(), static_cast<int>(converted.size()),
                        nullptr, nullptr);
    return converted;
}

std::wstring wide(std::string_view text)
{
    const int length = static_cast<int>(text.size());
    std::wstring converted(
        static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, text.data(), length, nullptr, 0)), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), length, converted.data(),
                        static_cast<int>(converted.size()));
    return converted;
}

void show(const std::wstring& text)
{
    DWORD written = 0;
    WriteConsoleW(GetStdHandle(STD_OUTPUT_HANDLE), text.data(), static_cast<DWORD>(text.size()), &written,
                  nullptr);
}

/// Erases the prompt and the typed text before the cursor.
void eraseTyped(std::size_t characters)
{
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (!GetConsoleScreenBufferInfo(output, &info) || info.dwSize.X <= 0)
        return;
    const auto columns = static_cast<std::size_t>(info.dwSize.X);
    const auto rows = static_cast<SHORT>(characters / columns);
    const COORD begin{0, static_cast<SHORT>(std::max(0, info.dwCursorPosition.Y - rows))};
    DWORD written = 0;
    FillConsoleOutputCharacterW(
        output, L' ', static_cast<DWORD>((static_cast<std::size_t>(rows) + 1) * columns), begin, &written);
    SetConsoleCursorPosition(output, begin);
}

} // namespace

struct LineEditor::State
{
    Completer completer;
    std::mutex mutex; // guards the members below
    bool reading = false;
    bool cancelled = false;
    std::string above;

    static void wake()
    {
        INPUT_RECORD key{};
        key.EventType = KEY_EVENT;
        key.Event.KeyEvent.bKeyDown = TRUE;
        key.Event.KeyEvent.wRepeatCount = 1;
        key.Event.KeyEvent.wVirtualKeyCode = '6';
        key.Event.KeyEvent.uChar.UnicodeChar = WAKE_UP;
        key.Event.KeyEvent.dwControlKeyState = LEFT_CTRL_PRESSED;
        DWORD written = 0;
        WriteConsoleInputW(GetStdHandle(STD_INPUT_HANDLE), &key, 1, &written);
    }

    std::string takeAbove()
    {
        const std::lock_guard lock(mutex);
        return std::exchange(above, "");
    }

    bool takeCancellation()
    {
        const std::lock_guard lock(mutex);
        return std::exchange(cancelled, false);
    }

    /// The line after a completion; prints the candidates if there are several.
    std::wstring completed(const std::wstring& typed)
    {
        const std::string line = utf8(typed);
        const auto words = completer ? completer(line) : std::vector<std::string>();
        if (words.empty())
            return typed;
        std::string common = words.front();
        for (const auto& word : words)
            common.erase(std::mismatch(common.begin(), common.end(), word.begin(), word.end()).first,
                         common.end());
        const std::size_t begin = lastWordOf(line);
        if (words.size() == 1) {
            const bool whole = !common.ends_with('/');
            const std::string closing = whole && common.starts_with('"') ? "\"" : "";
            return wide(line.substr(0, begin) + common + closing + (whole ? " " : ""));
        }
        if (common.size() > line.size() - begin)
            return wide(line.substr(0, begin) + common);
        std::string list;
        for (const auto& word : words)
            list += word + "  ";
        const std::lock_guard lock(mutex);
        above += list + '\n';
        return typed;
    }

    /// Reads until the line is complete, or until a control character; false at the end of input, or for
    /// Ctrl-C.
    static bool readPart(std::wstring& typed)
    {
        std::array<wchar_t, 4096> part{};
        const std::size_t kept = std::min(typed.size(), part.size() / 2);
        std::copy_n(typed.begin(), kept, part.begin());
        CONSOLE_READCONSOLE_CONTROL control{};
        control.nLength = sizeof control;
        control.nInitialChars = static_cast<ULONG>(kept);
        control.dwCtrlWakeupMask = (1U << L'\t') | (1U << WAKE_UP);
        DWORD count = 0;
        if (!ReadConsoleW(GetStdHandle(STD_INPUT_HANDLE), part.data(), static_cast<DWORD>(part.size()),
                          &count, &control) ||
            count == 0)
            return false;
        typed.assign(part.data(), count);
        return true;
    }
};

LineEditor::LineEditor(const std::filesystem::path&) : m_state(std::make_unique<State>()) {}

LineEditor::~LineEditor() = default;

void LineEditor::setCompleter(Completer completer)
{
    m_state->completer = std::move(completer);
}

LineStatus LineEditor::read(const std::string& prompt, std::string& line)
{
    {
        const std::lock_guard lock(m_state->mutex);
        m_state->reading = true;
    }
    const std::wstring shownPrompt = wide(prompt);
    std::wstring typed;
    LineStatus status = LineStatus::Complete;
    for (;;) {
        show(shownPrompt + typed);
        if (!State::readPart(typed) || m_state->takeCancellation()) {
            m_state->takeCancellation();
            status = LineStatus::Cancelled; // Ctrl-C
            show(L"\r\n");
            break;
        }
        if (typed.front() == END_OF_INPUT) {
            status = LineStatus::End;
            break;
        }
        if (typed.ends_with(L'\n')) {
            typed.pop_back();
            break;
        }
        const auto control = std::find_if(typed.begin(), typed.end(), [](wchar_t character) {
            return character == L'\t' || character == WAKE_UP;
        });
        const bool tab = control != typed.end() && *control == L'\t';
        eraseTyped(shownPrompt.size() + typed.size());
        if (control != typed.end())
            typed.erase(control);
        if (tab)
            typed = m_state->completed(typed);
        show(wide(m_state->takeAbove()));
    }
    line = utf8(typed);

    const std::lock_guard lock(m_state->mutex);
    m_state->reading = false;
    m_state->cancelled = false; // came too late for this line, and does not count for the next
    show(wide(std::exchange(m_state->above, "")));
    return status;
}

bool LineEditor::cancel()
{
    const std::lock_guard lock(m_state->mutex);
    if (!m_state->reading)
        return true;
    m_state->cancelled = true;
    State::wake();
    return true;
}

bool LineEditor::printAbove(const std::string& text)
{
    const std::lock_guard lock(m_state->mutex);
    if (!m_state->reading)
        return false;
    const bool wakes = m_state->above.empty() && !text.empty();
    m_state->above += text;
    if (wakes)
        State::wake();
    return true;
}

} // namespace ovra::console
