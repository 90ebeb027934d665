#include "commands/McfFile.h"

#include <algorithm>
#include <fstream>
#include <utility>

namespace ovra::gui::commands {

namespace {

constexpr std::size_t LIMIT_BYTES = std::size_t{1} << 31; // lengths within a line are kept in 31 bits
constexpr std::streamoff READ_BYTES = std::streamoff{1} << 18;

using Entry = McfFile::Entry;
using Section = McfFile::Section;

/// In blocks that compilers turn into vector instructions.
std::size_t countLineFeeds(std::string_view text)
{
    constexpr std::size_t BLOCK_BYTES = 128;
    std::size_t count = 0;
    while (text.size() >= BLOCK_BYTES) {
        std::uint8_t inBlock = 0;
        for (std::size_t i = 0; i < BLOCK_BYTES; ++i)
            inBlock = static_cast<std::uint8_t>(inBlock + (text[i] == '\n'));
        count += inBlock;
        text.remove_prefix(BLOCK_BYTES);
    }
    return count + static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

bool isEnclosed(std::string_view text, char first, char last)
{
    return text.size() >= 2 && text.front() == first && text.back() == last;
}

bool precedes(const Entry& left, const Entry& right)
{
    return left.key() < right.key();
}

/// As precedes(); equal keys in the order of the file.
bool precedesStably(const Entry& left, const Entry& right)
{
    const int order = left.key().compare(right.key());
    return order != 0 ? order < 0 : left.key().data() < right.key().data();
}

/// Orders entries, of which later ones count among equal keys. Returns where those that count end.
Entry* orderEntries(Entry* begin, Entry* end)
{
    const auto disordered = [](const Entry& left, const Entry& right) { return !precedes(left, right); };
    if (std::adjacent_find(begin, end, disordered) == end)
        return end;
    std::sort(begin, end, precedesStably);
    Entry* kept = begin;
    for (Entry* each = begin + 1; each != end; ++each) {
        if (precedes(*kept, *each))
            ++kept;
        *kept = *each;
    }
    return kept + 1;
}

} // namespace

McfFile::Entry::Entry(std::string_view line, std::size_t equals)
    : m_key(line.data()),
      m_keyLength(static_cast<std::uint32_t>(equals))
{
    const std::string_view value = line.substr(equals + 1);
    m_quoted = value.starts_with('\'') && value.ends_with('\'');
    const std::size_t quotes = m_quoted ? std::min<std::size_t>(value.size(), 2) : 0; // one may be both
    m_valueLength = static_cast<std::uint32_t>(value.size() - quotes) & 0x7FFFFFFFU;
}

McfFile McfFile::read(const std::string& path)
{
    return read(path, McfFile());
}

McfFile McfFile::read(const std::string& path, McfFile used)
{
    McfFile file = std::move(used);
    file.clear();
    // Binary, so that a text means the same on all platforms.
    std::ifstream stream(path, std::ios::binary);
    if (stream.peek() == std::ifstream::traits_type::eof())
        return file; // a folder can be opened here and there, but not read
    stream.seekg(0, std::ios::end);
    const std::streamoff size = stream.tellg();
    if (size <= 0 || static_cast<std::uintmax_t>(size) >= LIMIT_BYTES)
        return file;
    stream.seekg(0);
    char* const text = file.roomFor(static_cast<std::size_t>(size));
    std::streamoff taken = 0;
    std::size_t lineFeeds = 0;
    // Lines are counted while the cache still holds what was just read.
    while (taken < size && stream.read(text + taken, std::min(READ_BYTES, size - taken)).gcount() > 0) {
        lineFeeds += countLineFeeds({text + taken, static_cast<std::size_t>(stream.gcount())});
        taken += stream.gcount();
    }
    file.take(static_cast<std::size_t>(taken), lineFeeds);
    return file;
}

McfFile McfFile::parse(std::string_view text)
{
    McfFile file;
    if (text.empty() || text.size() >= LIMIT_BYTES)
        return file;
    std::copy(text.begin(), text.end(), file.roomFor(text.size()));
    file.take(text.size(), countLineFeeds(text));
    return file;
}

void McfFile::clear()
{
    m_entries.clear();
    m_sections.clear();
}

char* McfFile::roomFor(std::size_t size)
{
    if (!m_text || m_room < size) {
        m_text.reset(); // before there is another
        m_text = std::make_unique_for_overwrite<char[]>(size);
        m_room = size;
    }
    return m_text.get();
}

void McfFile::take(std::size_t size, std::size_t lineFeeds)
{
    // As many as there can be at most; what follows may not move them.
    m_entries.reserve(lineFeeds + 1);
    openSection("none");
    takeLines({m_text.get(), size});
    closeSection();
    orderSections();
}

void McfFile::takeLines(std::string_view text)
{
    while (!text.empty()) {
        const std::size_t feed = text.find('\n');
        std::string_view line = text.substr(0, feed);
        if (feed != std::string_view::npos && line.ends_with('\r'))
            line.remove_suffix(1);
        takeLine(line);
        text.remove_prefix(feed == std::string_view::npos ? text.size() : feed + 1);
    }
}

void McfFile::takeLine(std::string_view line)
{
    if (line.ends_with(';')) {
        line.remove_suffix(1);
        const std::size_t equals = line.find('=');
        if (equals != std::string_view::npos)
            m_entries.emplace_back(line, equals);
    } else if (isEnclosed(line, '[', ']')) {
        closeSection();
        openSection(line.substr(1, line.size() - 2));
    }
}

void McfFile::openSection(std::string_view name)
{
    m_sections.push_back({name, {m_entries.data() + m_entries.size(), 0}});
}

void McfFile::closeSection()
{
    Section& section = m_sections.back();
    Entry* const begin = m_entries.data() + (section.entries.data() - m_entries.data());
    Entry* const end = orderEntries(begin, m_entries.data() + m_entries.size());
    m_entries.erase(m_entries.begin() + (end - m_entries.data()), m_entries.end());
    if (begin == end)
        m_sections.pop_back();
    else
        section.entries = {begin, end};
}

void McfFile::orderSections()
{
    const auto disordered = [](const Section& left, const Section& right) { return left.name >= right.name; };
    if (std::adjacent_find(m_sections.begin(), m_sections.end(), disordered) == m_sections.end())
        return;
    const auto precede = [](const Section& left, const Section& right) { return left.name < right.name; };
    std::sort(m_sections.begin(), m_sections.end(), precede);
    const auto same = [](const Section& left, const Section& right) { return left.name == right.name; };
    if (std::adjacent_find(m_sections.begin(), m_sections.end(), same) != m_sections.end())
        joinSections();
}

/// Sections of one name, which follow each other, become one.
void McfFile::joinSections()
{
    std::vector<Entry> entries;
    std::vector<Section> sections;
    entries.swap(m_entries);
    sections.swap(m_sections);
    m_entries.reserve(entries.size());
    for (const Section& section : sections) {
        if (m_sections.empty() || m_sections.back().name != section.name) {
            if (!m_sections.empty())
                closeSection();
            openSection(section.name);
        }
        m_entries.insert(m_entries.end(), section.entries.begin(), section.entries.end());
    }
    closeSection();
}

std::string_view McfFile::value(std::string_view section, std::string_view key) const
{
    const auto named =
        std::lower_bound(m_sections.begin(), m_sections.end(), section,
                         [](const Section& each, std::string_view name) { return each.name < name; });
    if (named == m_sections.end() || named->name != section)
        return {};
    const auto entry =
        std::lower_bound(named->entries.begin(), named->entries.end(), key,
                         [](const Entry& each, std::string_view text) { return each.key() < text; });
    if (entry == named->entries.end() || entry->key() != key)
        return {};
    return entry->value();
}

} // namespace ovra::gui::commands
