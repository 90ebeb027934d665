/// \file
/// McfFile: what a configuration file of the frame grabber says, as far as this library needs to know.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ovra::gui::commands {

/// Sections, in the order of their names, of keys, in their order, with values.
///
///     Width=8;             in the section "none": no header came before
///     [Kamerasektion]      opens the section "Kamerasektion"; "[]" the one without a name
///     HapName='a=b';       the key "HapName" with the value "a=b"
///     Typ = x;             the key "Typ " with the value " x": nothing is trimmed
///     Typ=x                ignored, for lack of the closing ";", as all that is neither header nor key
///
/// A line ends at a line feed or with the file. A carriage return directly before the line feed is no part of
/// the line, on any platform; every other byte is itself:
///  - a carriage return elsewhere belongs to its line. A last line without a line feed that ends in one is
///    therefore no header and no key;
///  - so do a zero byte and Ctrl-Z; neither ends the text;
///  - a byte-order mark belongs to the first line. A header there is therefore none, and a key carries it.
///
/// A header that is repeated goes on with its section. A key that is repeated in its section has the last of
/// its values. A section without keys is as good as absent.
///
/// Holds the text once and refers to it: in memory a file takes its size and 16 bytes for each key, or up to
/// twice as many where keys get denser, and for a while as many again for a section that is not in order. A
/// file that was moved from is empty. All views stay valid until the
/// file that they come from, or was moved to, goes. Reading from several threads is safe.
class McfFile
{
public:
    /// Key and value, a pointer apart: a file has many.
    class Entry
    {
    public:
        /// Of a line without its closing ";", and of the position of the first "=" in it.
        Entry(std::string_view line, std::size_t equals);

        std::string_view key() const { return {m_key, m_keyLength}; }
        std::string_view value() const { return {m_key + m_keyLength + 1 + m_quoted, m_valueLength}; }

    private:
        const char* m_key;
        std::uint32_t m_keyLength;
        std::uint32_t m_valueLength : 31;
        std::uint32_t m_quoted : 1;
    };

    struct Section
    {
        std::string_view name;
        std::span<const Entry> entries; ///< in the order of their keys, each key once
    };

    McfFile() = default;

    /// Reads \p path, which others may have open, also for writing. Empty when that is no readable file, is
    /// empty, or has 2 GiB or more. Blocks for the time of reading. Throws std::bad_alloc.
    static McfFile read(const std::string& path);

    /// Also uses the memory of \p used again, which pays where one large file comes after the other.
    static McfFile read(const std::string& path, McfFile used);

    /// The same for a text that is at hand already.
    static McfFile parse(std::string_view text);

    /// Empty also when there is no such section or key.
    std::string_view value(std::string_view section, std::string_view key) const;

    std::span<const Section> sections() const { return m_sections; }

private:
    void clear();
    char* roomFor(std::size_t size);
    void reserveEntries(std::size_t count);
    const char* takeLines(const char* begin, const char* end);
    void takeLine(std::string_view line);
    void openSection(std::string_view name);
    void closeSection();
    void orderSections();
    void joinSections();

    std::unique_ptr<char[]> m_text;
    std::size_t m_room = 0; ///< in bytes, of m_text
    std::vector<Entry> m_entries;
    std::vector<Section> m_sections;
};

} // namespace ovra::gui::commands
