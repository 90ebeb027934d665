#include "mcf/McfFile.h"

#include <boost/endian/conversion.hpp>
#include <boost/sort/spreadsort/integer_sort.hpp>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <utility>

namespace ovra::gui::commands {

namespace {

constexpr std::size_t LIMIT_BYTES = std::size_t{1} << 31; // lengths within a line are kept in 31 bits
constexpr std::streamoff READ_BYTES = std::streamoff{1} << 18;
constexpr std::size_t LEAST_ENTRIES = 64;

using Entry = McfFile::Entry;
using EntryPosition = std::vector<Entry>::iterator;
using Section = McfFile::Section;

bool isEnclosed(std::string_view text, char first, char last)
{
    return text.size() >= 2 && text.front() == first && text.back() == last;
}

bool precedes(const Entry& left, const Entry& right)
{
    return left.key() < right.key();
}

/// How many bytes all keys begin with.
std::size_t commonLength(std::span<const Entry> entries)
{
    std::string_view common = entries.front().key();
    for (const Entry& entry : entries) {
        const std::string_view key = entry.key();
        const auto differing = std::mismatch(common.begin(), common.end(), key.begin(), key.end());
        common.remove_suffix(static_cast<std::size_t>(common.end() - differing.first));
    }
    return common.size();
}

/// Where an entry was, and as a number the bytes of its key that follow what all keys have in common: most
/// keys are told apart without a look at their text.
struct Rank
{
    std::uint64_t bytes;
    std::uint32_t position;
};

using Ranks = std::vector<Rank>;

Ranks ranksOf(std::span<const Entry> entries)
{
    const std::size_t common = commonLength(entries);
    Ranks ranks;
    ranks.reserve(entries.size());
    for (const Entry& entry : entries) {
        const std::string_view key = entry.key().substr(common, sizeof(Rank::bytes));
        std::uint64_t bytes = 0;
        std::memcpy(&bytes, key.data(), key.size());
        ranks.push_back({boost::endian::big_to_native(bytes), static_cast<std::uint32_t>(ranks.size())});
    }
    return ranks;
}

/// Equal keys in the order of the file, which the places of joined sections do not tell.
void sortByKey(Ranks& ranks, std::span<const Entry> entries)
{
    const auto shifted = [](const Rank& rank, unsigned int bits) { return rank.bytes >> bits; };
    const auto less = [](const Rank& left, const Rank& right) { return left.bytes < right.bytes; };
    boost::sort::spreadsort::integer_sort(ranks.begin(), ranks.end(), shifted, less);

    const auto precede = [&](const Rank& left, const Rank& right) {
        const std::string_view key = entries[left.position].key(), other = entries[right.position].key();
        const int order = key.compare(other);
        return order != 0 ? order < 0 : key.data() < other.data();
    };
    for (auto first = ranks.begin(); first != ranks.end();) {
        const auto last =
            std::find_if(first, ranks.end(), [&](const Rank& rank) { return rank.bytes != first->bytes; });
        std::sort(first, last, precede);
        first = last;
    }
}

/// Puts each entry where its rank is, round by round of those that take each other's places.
void arrange(std::span<Entry> entries, Ranks& ranks)
{
    for (std::uint32_t first = 0; first < entries.size(); ++first) {
        const Entry displaced = entries[first];
        std::uint32_t place = first;
        for (std::uint32_t from = ranks[place].position; from != first; from = ranks[place].position) {
            entries[place] = entries[from];
            ranks[place].position = place;
            place = from;
        }
        entries[place] = displaced;
        ranks[place].position = place;
    }
}

/// Orders entries, of which later ones count among equal keys. Returns where those that count end.
EntryPosition orderEntries(EntryPosition begin, EntryPosition end)
{
    const auto disordered = [](const Entry& left, const Entry& right) { return !precedes(left, right); };
    if (std::adjacent_find(begin, end, disordered) == end)
        return end;
    const std::span<Entry> entries(begin, end);
    Ranks ranks = ranksOf(entries);
    sortByKey(ranks, entries);
    arrange(entries, ranks);
    auto kept = begin;
    for (auto each = begin + 1; each != end; ++each) {
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
    file.openSection("none");
    const char* unread = text; // the line that goes on beyond what has been taken
    std::streamoff taken = 0;
    // Lines are looked at while the cache still holds what was just read.
    while (taken < size && stream.read(text + taken, std::min(READ_BYTES, size - taken)).gcount() > 0) {
        taken += stream.gcount();
        unread = file.takeLines(unread, text + taken);
        if (taken == READ_BYTES) // the rest is likely to be as dense
            file.reserveEntries(file.m_entries.size() * static_cast<std::size_t>(size / taken + 1));
    }
    file.takeLine({unread, text + taken});
    file.closeSection();
    file.orderSections();
    return file;
}

McfFile McfFile::parse(std::string_view text)
{
    McfFile file;
    if (text.empty() || text.size() >= LIMIT_BYTES)
        return file;
    char* const begin = file.roomFor(text.size());
    const char* const end = std::copy(text.begin(), text.end(), begin);
    file.openSection("none");
    file.takeLine({file.takeLines(begin, end), end});
    file.closeSection();
    file.orderSections();
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

/// Sections refer into the entries, so these move by hand.
void McfFile::reserveEntries(std::size_t count)
{
    if (count <= m_entries.capacity())
        return;
    std::vector<Entry> larger;
    larger.reserve(count);
    larger.assign(m_entries.begin(), m_entries.end());
    for (Section& section : m_sections)
        section.entries = {larger.data() + (section.entries.data() - m_entries.data()),
                           section.entries.size()};
    m_entries.swap(larger);
}

/// Takes all lines with a line feed, and returns where the one without begins.
const char* McfFile::takeLines(const char* begin, const char* end)
{
    while (const void* const found = std::memchr(begin, '\n', static_cast<std::size_t>(end - begin))) {
        const auto* const feed = static_cast<const char*>(found);
        std::string_view line(begin, feed);
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        takeLine(line);
        begin = feed + 1;
    }
    return begin;
}

void McfFile::takeLine(std::string_view line)
{
    if (line.ends_with(';')) {
        line.remove_suffix(1);
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos)
            return;
        if (m_entries.size() == m_entries.capacity())
            reserveEntries(std::max(LEAST_ENTRIES, 2 * m_entries.size()));
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
    const auto begin = m_entries.begin() + (section.entries.data() - m_entries.data());
    m_entries.erase(orderEntries(begin, m_entries.end()), m_entries.end());
    if (begin == m_entries.end())
        m_sections.pop_back();
    else
        section.entries = {begin, m_entries.end()};
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
