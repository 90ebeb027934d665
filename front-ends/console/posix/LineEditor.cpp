// SPDX-License-Identifier: MIT
// Uses libedit. While a line is read, only the reading thread writes to the terminal; it also prints the
// queued texts of other threads.
#include "../LineEditor.h"

#include "../Completion.h"
#include "../Platform.h"

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <mutex>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <histedit.h>
#include <poll.h>
#include <unistd.h>

namespace ovra::console {

namespace {

constexpr int MAX_HISTORY = 1000; ///< lines

std::size_t columns()
{
    return static_cast<std::size_t>(terminalColumns());
}

/// Number of characters of a UTF-8 text.
std::size_t lengthOf(const std::string& text)
{
    constexpr unsigned char CONTINUATION_MASK = 0xc0, CONTINUATION = 0x80;
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](unsigned char byte) {
        return (byte & CONTINUATION_MASK) != CONTINUATION;
    }));
}

std::string commonBeginning(const std::vector<std::string>& words)
{
    std::string common = words.front();
    for (const auto& word : words) {
        const auto end = std::mismatch(common.begin(), common.end(), word.begin(), word.end()).first;
        common.erase(end, common.end());
    }
    return common;
}

std::string inColumns(const std::vector<std::string>& words)
{
    std::size_t width = 0;
    for (const auto& word : words)
        width = std::max(width, lengthOf(word) + 2);
    const std::size_t perLine = std::max<std::size_t>(1, columns() / width);
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const bool endsLine = (i + 1) % perLine == 0 || i + 1 == words.size();
        text += words[i] + (endsLine ? "\n" : std::string(width - lengthOf(words[i]), ' '));
    }
    return text;
}

} // namespace

struct LineEditor::State
{
    explicit State(const std::filesystem::path& historyFile) : historyName(historyFile.string())
    {
        if (pipe2(wakeUp, O_CLOEXEC | O_NONBLOCK) != 0)
            throw std::system_error(errno, std::generic_category(), "no pipe");
        std::setlocale(LC_CTYPE, ""); // NOLINT(concurrency-mt-unsafe): before other threads
        if (MB_CUR_MAX == 1)
            std::setlocale(LC_CTYPE, "C.UTF-8"); // NOLINT(concurrency-mt-unsafe): as above
        editor = el_init("ovra-console", stdin, stdout, stderr);
        el_set(editor, EL_CLIENTDATA, this);
        el_set(editor, EL_PROMPT, &State::promptOf);
        el_set(editor, EL_EDITOR, "emacs");
        el_set(editor, EL_GETCFN, &State::getCharacter);
        el_set(editor, EL_ADDFN, "complete", "completes the last word", &State::complete);
        el_set(editor, EL_BIND, "^I", "complete", nullptr);
        el_set(editor, EL_BIND, "^R", "em-inc-search-prev", nullptr);
        el_source(editor, nullptr); // the user's ~/.editrc
        history = history_init();
        HistEvent event{};
        ::history(history, &event, H_SETSIZE, MAX_HISTORY);
        ::history(history, &event, H_SETUNIQUE, 1);
        el_set(editor, EL_HIST, ::history, history);
        loadHistory(historyFile);
    }

    ~State()
    {
        history_end(history);
        el_end(editor);
        close(wakeUp[0]);
        close(wakeUp[1]);
    }

    State(const State&) = delete;
    State& operator=(const State&) = delete;

    // Errors are ignored: without a readable file there is no earlier history, without a writable one no
    // later.
    void loadHistory(const std::filesystem::path& file)
    {
        if (file.empty())
            return;
        std::error_code ignored;
        std::filesystem::create_directories(file.parent_path(), ignored);
        HistEvent event{};
        ::history(history, &event, H_LOAD, historyName.c_str());
    }

    void remember(const std::string& line)
    {
        if (line.find_first_not_of(" \t") == std::string::npos)
            return;
        HistEvent event{};
        ::history(history, &event, H_ENTER, line.c_str());
        if (!historyName.empty())
            ::history(history, &event, H_SAVE, historyName.c_str());
    }

    void wake() const
    {
        const char any = 0;
        [[maybe_unused]] const auto written = write(wakeUp[1], &any, 1); // a full pipe also wakes the reader
    }

    bool takeCancellation()
    {
        const std::lock_guard lock(mutex);
        wasCancelled = std::exchange(cancelled, false);
        return wasCancelled;
    }

    // Erases the line that is being typed, prints the text and draws the line again.
    void showAbove()
    {
        std::string text;
        {
            const std::lock_guard lock(mutex);
            text.swap(above);
        }
        if (text.empty())
            return;
        const LineInfo* const typed = el_line(editor);
        const std::string untilCursor(typed->buffer, typed->cursor);
        const std::size_t rows = (lengthOf(prompt) + lengthOf(untilCursor)) / columns();
        if (rows > 0)
            std::printf("\x1b[%zuA", rows);
        std::printf("\r\x1b[J");
        writeText(text);
        el_set(editor, EL_REFRESH);
    }

    static void writeText(const std::string& text)
    {
        for (const char character : text) { // the terminal may be in raw mode, which needs "\r\n"
            if (character == '\n')
                std::putchar('\r');
            std::putchar(character);
        }
        std::fflush(stdout);
    }

    // Waits for input; false if the line was cancelled.
    bool waitForInput()
    {
        for (;;) {
            pollfd sources[2] = {{STDIN_FILENO, POLLIN, 0}, {wakeUp[0], POLLIN, 0}};
            poll(sources, 2, -1); // after a signal the loop checks again
            if (sources[1].revents != 0) {
                char any[64];
                while (::read(wakeUp[0], any, sizeof any) > 0) {
                }
                if (takeCancellation())
                    return false;
                showAbove();
            } else if (sources[0].revents != 0) {
                return true;
            }
        }
    }

    // Returns 1 for a character, 0 for the end of input.
    int nextCharacter(wchar_t* character)
    {
        std::mbstate_t state{};
        for (;;) {
            char byte = 0;
            if (!waitForInput() || ::read(STDIN_FILENO, &byte, 1) != 1)
                return 0;
            // NOLINTNEXTLINE(concurrency-mt-unsafe): the state is our own
            const std::size_t used = std::mbrtowc(character, &byte, 1, &state);
            constexpr auto INCOMPLETE = static_cast<std::size_t>(-2), INVALID = static_cast<std::size_t>(-1);
            if (used == INVALID)
                state = {};
            else if (used != INCOMPLETE)
                return 1;
        }
    }

    unsigned char completeWord() const
    {
        const LineInfo* const typed = el_line(editor);
        const std::string line(typed->buffer, typed->cursor);
        const auto words = completer ? completer(line) : std::vector<std::string>();
        if (words.empty())
            return CC_REFRESH_BEEP;
        const std::string word = line.substr(lastWordOf(line));
        const std::string common = commonBeginning(words);
        const bool only = words.size() == 1;
        if (common.size() > word.size() || only) {
            const bool whole = only && !common.ends_with('/');
            const std::string closing = whole && common.starts_with('"') ? "\"" : "";
            el_insertstr(editor, (common.substr(word.size()) + closing + (whole ? " " : "")).c_str());
            return CC_REFRESH;
        }
        std::putchar('\n');
        writeText(inColumns(words));
        return CC_REDISPLAY;
    }

    static State& of(EditLine* editor)
    {
        void* state = nullptr;
        el_get(editor, EL_CLIENTDATA, &state);
        return *static_cast<State*>(state);
    }

    static char* promptOf(EditLine* editor) { return of(editor).prompt.data(); }
    static int getCharacter(EditLine* editor, wchar_t* character)
    {
        return of(editor).nextCharacter(character);
    }
    static unsigned char complete(EditLine* editor, int) { return of(editor).completeWord(); }

    EditLine* editor = nullptr;
    History* history = nullptr;
    const std::string historyName;
    std::string prompt;
    Completer completer;

    int wakeUp[2] = {-1, -1};
    std::mutex mutex; // guards the members below
    bool reading = false;
    bool cancelled = false;    ///< requested
    bool wasCancelled = false; ///< for the current line
    std::string above;
};

LineEditor::LineEditor(const std::filesystem::path& history) : m_state(std::make_unique<State>(history)) {}

LineEditor::~LineEditor() = default;

void LineEditor::setCompleter(Completer completer)
{
    m_state->completer = std::move(completer);
}

LineStatus LineEditor::read(const std::string& prompt, std::string& line)
{
    m_state->prompt = prompt;
    {
        const std::lock_guard lock(m_state->mutex);
        m_state->reading = true;
        m_state->wasCancelled = false;
    }
    el_resize(m_state->editor);
    // Before the prompt: in the terminal's own line mode Ctrl-D would end the input instead of reaching the
    // editor.
    el_set(m_state->editor, EL_PREP_TERM, 1);
    int length = 0;
    const char* const typed = el_gets(m_state->editor, &length);
    const bool complete = typed && length > 0;
    if (complete) {
        line.assign(typed, static_cast<std::size_t>(length));
        if (line.ends_with('\n'))
            line.pop_back();
        m_state->remember(line);
    } else {
        std::printf("\n"); // the cursor is after the prompt
    }

    const std::lock_guard lock(m_state->mutex);
    m_state->reading = false;
    m_state->cancelled = false; // came too late for this line, and does not count for the next
    State::writeText(std::exchange(m_state->above, ""));
    if (complete)
        return LineStatus::Complete;
    return m_state->wasCancelled ? LineStatus::Cancelled : LineStatus::End;
}

bool LineEditor::cancel()
{
    const std::lock_guard lock(m_state->mutex);
    m_state->cancelled = true;
    m_state->wake();
    return true;
}

bool LineEditor::printAbove(const std::string& text)
{
    const std::lock_guard lock(m_state->mutex);
    if (!m_state->reading)
        return false;
    m_state->above += text;
    m_state->wake();
    return true;
}

} // namespace ovra::console
