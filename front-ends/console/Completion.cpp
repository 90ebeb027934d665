// SPDX-License-Identifier: MIT
#include "Completion.h"

#include "CommandTable.h"
#include "LineParser.h"

#include "front-ends/shared/Lookup.h"
#include "front-ends/shared/Parameters.h"
#include "front-ends/shared/Paths.h"

#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/HlEnvironmentFileNode.h"

#include <algorithm>
#include <cctype>
#include <exception>
#include <set>
#include <sstream>

namespace ovra::console {

using namespace frontend;

namespace {

using Words = std::vector<std::string>;

bool separatesWords(char character)
{
    return character == ' ' || character == '\t';
}

/// One argument of a usage such as "BOARD [DMA] NAME", without brackets.
struct Place
{
    std::string name;
    bool optional;
};

std::vector<Place> placesOf(const std::string& usage)
{
    std::vector<Place> places;
    bool optional = false;
    std::istringstream words(usage);
    for (std::string word; words >> word;) {
        optional = optional || word.starts_with('[');
        const bool ends = word.ends_with(']');
        std::erase(word, '[');
        std::erase(word, ']');
        places.push_back({word, optional});
        optional = optional && !ends;
    }
    return places;
}

Words splitAt(const std::string& text, const std::string& separator)
{
    Words parts;
    std::size_t begin = 0;
    for (std::size_t end = 0; (end = text.find(separator, begin)) != std::string::npos;
         begin = end + separator.size())
        parts.push_back(text.substr(begin, end - begin));
    parts.push_back(text.substr(begin));
    return parts;
}

/// The possible arguments at \p position: several if earlier ones are optional.
std::set<std::string> namesAt(const std::string& usage, std::size_t position)
{
    std::set<std::string> names;
    for (const auto& alternative : splitAt(usage, " | ")) {
        const auto places = placesOf(alternative);
        for (std::size_t place = position, last = position; place <= last && place < places.size(); ++place) {
            names.insert(places[place].name);
            // If an argument up to this one is optional, the next one may be at this position.
            const auto end = places.begin() + static_cast<std::ptrdiff_t>(place) + 1;
            last = position + static_cast<std::size_t>(std::count_if(
                                  places.begin(), end, [](const Place& each) { return each.optional; }));
        }
    }
    return names;
}

Words commands()
{
    Words names;
    for (const auto& command : commandTable())
        names.emplace_back(command.name);
    return names;
}

Words boards()
{
    Words indices;
    for (const auto& board : allBoards())
        indices.push_back(std::to_string(board->getIndex()));
    return indices;
}

Words dmaChannels(const core::models::HlEnvironmentBoardNode& board)
{
    Words indices;
    for (const auto& dma : listOf(board.getDmas()))
        indices.push_back(std::to_string(dma->getIndex()));
    return indices;
}

Words applets(const core::models::HlEnvironmentBoardNode& board)
{
    Words names;
    for (const auto& file : allApplets())
        if (file->getFilePath().find("/" + board.getBoardName() + "/") != std::string::npos)
            names.push_back(file->getFileName());
    return names;
}

Words parameterNames(const core::models::HlEnvironmentBoardNode& board)
{
    Words names;
    for (const auto& owner : parameterOwners(board))
        for (const auto& parameter : owner.all())
            names.push_back(parameter.name);
    return names;
}

Words files(const std::string& word, const std::filesystem::path& folder)
{
    const std::string typed = word.substr(word.starts_with('"') ? 1 : 0);
    const std::string parent = typed.substr(0, typed.find_last_of('/') + 1);
    Words names;
    std::error_code none; // ignored: a folder that cannot be read offers no files
    std::filesystem::path where = folder / pathOf(parent);
    if (where.empty())
        where = ".";
    for (const auto& entry : std::filesystem::directory_iterator(where, none)) {
        std::string name = parent + textOf(entry.path().filename()) + (entry.is_directory(none) ? "/" : "");
        const bool quoted = word.starts_with('"') || std::any_of(name.begin(), name.end(), separatesWords);
        names.push_back(quoted ? '"' + name : name);
    }
    return names;
}

bool isFixed(const std::string& name)
{
    return std::any_of(name.begin(), name.end(),
                       [](unsigned char character) { return std::islower(character) != 0; });
}

Words candidates(const std::string& name, const Words& words, const std::string& word,
                 const std::filesystem::path& folder)
{
    const auto board = [&] { return findBoard(words.at(1)); };
    if (name == "COMMAND")
        return commands();
    if (name == "BOARD")
        return boards();
    if (name == "APPLET")
        return applets(*board());
    if (name == "DMA" || name == "INDEX")
        return dmaChannels(*board());
    if (name == "NAME")
        return parameterNames(*board());
    if (name.starts_with("FILE") || name == "MCF" || name == "FOLDER")
        return files(word, folder);
    return isFixed(name) ? splitAt(name, "|") : Words();
}

} // namespace

std::size_t lastWordOf(const std::string& line)
{
    std::size_t begin = 0;
    bool quoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '"')
            quoted = !quoted;
        if (!quoted && separatesWords(line[i]))
            begin = i + 1;
    }
    return begin;
}

std::vector<std::string> completionsOf(const std::string& line, const std::filesystem::path& folder)
{
    const std::size_t begin = lastWordOf(line);
    const std::string word = line.substr(begin);
    std::set<std::string> fitting;
    try {
        const Words before = splitLine(line.substr(0, begin));
        const std::set<std::string> names =
            before.empty() ? std::set<std::string>{"COMMAND"}
                           : namesAt(findCommand(before.front()).arguments, before.size() - 1);
        for (const auto& name : names)
            for (const auto& candidate : candidates(name, before, word, folder))
                if (candidate.starts_with(word))
                    fitting.insert(candidate);
    } catch (const std::exception&) {
        // After invalid words there is nothing to complete.
    }
    return {fitting.begin(), fitting.end()};
}

} // namespace ovra::console
