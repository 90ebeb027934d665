// SPDX-License-Identifier: MIT
#include "rehearsal/Scenario.h"

#include "rehearsal/Words.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <limits>
#include <optional>

namespace simulation {

namespace {

constexpr std::int64_t MAX_TIME = 86'400'000; // a day in milliseconds
constexpr std::size_t MAX_FILE_BYTES = 1U << 20;
constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF"; // that some editors put first

class Reader
{
public:
    Scenario read(std::string_view content)
    {
        if (content.starts_with(BYTE_ORDER_MARK))
            content.remove_prefix(BYTE_ORDER_MARK.size());
        while (!content.empty()) {
            const auto end = content.find('\n');
            ++m_line;
            readLine(content.substr(0, end));
            content.remove_prefix(end == std::string_view::npos ? content.size() : end + 1);
        }
        for (auto& timed : m_scenario.steps)
            if (m_seed && timed.step.action == Step::Action::Loosen && !timed.step.seeded)
                timed.step.seed = *m_seed;
        if (m_scenario.steps.empty())
            throw Failure(FG_INVALID_ARGUMENT, "There is no step in it");
        return std::move(m_scenario);
    }

    std::size_t line() const { return m_line; }

private:
    void readLine(std::string_view line)
    {
        Words words(line);
        if (words.atEnd() || words.peek().front() == '#')
            return;
        if (m_ended)
            throw Failure(FG_INVALID_ARGUMENT, "Nothing may follow the repetition");
        if (words.takeIf("seed")) {
            m_seed = words.number<std::uint64_t>("a seed");
            return words.expectEnd();
        }
        if (words.takeIf("repeat"))
            return readRepetition(words);
        for (auto rest = words.rest(); !rest.empty();) {
            const auto end = rest.find(';');
            m_scenario.steps.push_back(readTimedStep(rest.substr(0, end)));
            rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
        }
    }

    void readRepetition(Words& words)
    {
        m_scenario.rounds = words.atEnd() ? Scenario::WITHOUT_END
                                          : words.number("a number of rounds from 1", std::uint64_t{1});
        words.expectEnd();
        m_ended = true;
        // An endless scenario without a wait would block all other threads.
        if (m_scenario.rounds == Scenario::WITHOUT_END && !takesTime())
            throw Failure(FG_INVALID_ARGUMENT, "A scenario without end needs a step that waits with 'after'");
    }

    bool takesTime() const
    {
        return std::ranges::any_of(m_scenario.steps, [](const TimedStep& timed) {
            return timed.moment == TimedStep::Moment::SinceStep && timed.time.count() > 0;
        });
    }

    static TimedStep readTimedStep(std::string_view text)
    {
        const auto colon = text.find(':');
        if (colon == std::string_view::npos)
            throw Failure(FG_INVALID_ARGUMENT, "Expected a moment, ':' and a step, found '" +
                                                   std::string(Words(text).rest()) + "'");
        TimedStep timed;
        Words moment(text.substr(0, colon));
        readMoment(moment, timed);
        moment.expectEnd();
        timed.step = readStep(text.substr(colon + 1));
        if (timed.step.action == Step::Action::Scenario)
            throw Failure(FG_INVALID_ARGUMENT, "A scenario plays no other");
        timed.text = Words(text).rest();
        timed.text.erase(timed.text.find_last_not_of(" \t\r") + 1);
        std::ranges::replace_if(
            timed.text, [](char letter) { return letter == '\t' || letter == '\r'; }, ' ');
        return timed;
    }

    static void readMoment(Words& words, TimedStep& timed)
    {
        const auto word = words.take("at or after");
        if (word != "at" && word != "after")
            Words::refuse(word, "at or after");
        timed.moment = word == "at" ? TimedStep::Moment::SinceStart : TimedStep::Moment::SinceStep;
        if (word == "after" || words.peek() != "image") {
            timed.time = readTime(words);
            return;
        }
        words.expect("image");
        timed.moment = TimedStep::Moment::Image;
        timed.image = words.number("an image from 1", std::int64_t{1});
        for (const char* const each : {"of", "board"})
            words.expect(each);
        timed.board = words.number("a board", 0U, Step::MAX_INDEX);
        words.expect("DMA");
        timed.dma = words.number("a DMA channel", 0, static_cast<int>(Step::MAX_INDEX));
    }

    static std::chrono::milliseconds readTime(Words& words)
    {
        const auto count = words.number("a time, a day at most", std::int64_t{0}, MAX_TIME);
        const auto unit = words.take("s or ms");
        if (unit == "ms")
            return std::chrono::milliseconds(count);
        if (unit != "s")
            Words::refuse(unit, "s or ms");
        if (count > MAX_TIME / 1000)
            Words::refuse(std::to_string(count) + " s", "a time, a day at most");
        return std::chrono::seconds(count);
    }

    Scenario m_scenario;
    std::optional<std::uint64_t> m_seed;
    std::size_t m_line = 0;
    bool m_ended = false;
};

} // namespace

Scenario readScenario(const std::string& file, std::string_view content)
{
    Reader reader;
    try {
        return reader.read(content);
    } catch (const Failure& failure) {
        std::string reason = failure.what();
        for (auto& letter : reason) // the file may contain control characters; the message stays one line
            if (static_cast<unsigned char>(letter) < ' ')
                letter = '?';
        throw Failure(failure.code(),
                      "scenario " + file + ": line " + std::to_string(reader.line()) + ": " + reason);
    }
}

Scenario readScenarioFile(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    std::string content(MAX_FILE_BYTES + 1, '\0');
    stream.read(content.data(), static_cast<std::streamsize>(content.size()));
    content.resize(static_cast<std::size_t>(stream.gcount()));
    if (!stream.is_open() || stream.bad())
        throw Failure(FG_FILE_ERROR, "scenario " + file.string() + ": cannot be read");
    if (content.size() > MAX_FILE_BYTES)
        throw Failure(FG_FILE_ERROR, "scenario " + file.string() + ": is larger than 1 MiB");
    return readScenario(file.string(), content);
}

} // namespace simulation
