#include "mcf/McfFile.h"
#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

using namespace std::string_literals;
using ovra::gui::commands::McfFile;

namespace {

/// "section{key=value|key=value}section{...}"
std::string content(const McfFile& file)
{
    std::string text;
    for (const auto& section : file.sections()) {
        text += section.name;
        for (const auto& entry : section.entries)
            text.append(&entry == section.entries.data() ? "{" : "|")
                .append(entry.key())
                .append("=")
                .append(entry.value());
        text += '}';
    }
    return text;
}

struct Row
{
    int line;
    std::string text;
    std::string content;
};

const Row ROWS[] = {
    {__LINE__, "", ""},
    {__LINE__, "[S]\nb=2;\na=1;\n", "S{a=1|b=2}"},
    {__LINE__, "a=1;\n[S]\na=2;\n", "S{a=2}none{a=1}"},
    {__LINE__, "a=1;\n[S]\n[none]\nb=2;\n", "none{a=1|b=2}"},
    {__LINE__, "[]\na=1;", "{a=1}"},
    {__LINE__, "[ S ]\na=1;\n[S\nb=2;\nS]\n[S] \n[\n]\n", " S {a=1|b=2}"},
    {__LINE__, "[[S]]\na=1;\n[a=1;]\nb=2;\n[c=3;\n", "[S]{a=1}a=1;{[c=3|b=2}"},
    {__LINE__, "\n;\n# a=1\na=1\na\na;\na=1; \n", ""},
    {__LINE__, "=;\n", "none{=}"},
    {__LINE__, "a=b=c;;\n", "none{a=b=c;}"},
    {__LINE__, "Key = 1;\n Key=1;\n\tkey=1;\nkey=1;", "none{\tkey=1| Key=1|Key = 1|key=1}"},
    {__LINE__, "a='x';\nb='';\nc=';\nd='x;\ne=x';\nf=''';\ng= 'x';\n",
     "none{a=x|b=|c=|d='x|e=x'|f='|g= 'x'}"},
    {__LINE__, "a=1;\nb=1;\na=2;\nb=2;\na=3;\n", "none{a=3|b=2}"},
    {__LINE__, "[S]\na=1;\nc=1;\n[R]\nx=1;\n[S]\nb=2;\na=2;\n[R]\ny=2;\n", "R{x=1|y=2}S{a=2|b=2|c=1}"},
    {__LINE__, "[S]\r\na=1;\r\n\r\n[R]\r\nb='2';\r\n", "R{b=2}S{a=1}"},
    {__LINE__, "a=1;\r\r\n[R]\r\r\nb\r=\r2;\nc=3;\r", "none{b\r=\r2}"},
    {__LINE__, "[S\0]\na\0b=\0;\nx=\x1A;\ny=1;\n"s, "S\0{a\0b=\0|x=\x1A|y=1}"s},
    {__LINE__, "\xEF\xBB\xBF[S]\na=1;\n", "none{a=1}"},
    {__LINE__, "\xEF\xBB\xBFk=1;\nk=2;\n\x80=1;\n", "none{k=2|\x80=1|\xEF\xBB\xBFk=1}"},
};

} // namespace

TEST(McfFile, HasWhatTheTextSays)
{
    const TemporaryFolder folder;
    McfFile used;
    for (const Row& row : ROWS) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        EXPECT_EQ(content(McfFile::parse(row.text)), row.content);
        used = McfFile::read(folder.write("some.mcf", row.text).string(), std::move(used));
        EXPECT_EQ(content(used), row.content);
    }
}

TEST(McfFile, FindsValuesByExactNames)
{
    McfFile given = McfFile::parse("[Kamerasektion]\nHapName=A;\nTyp='b';\n[fglib5]\nFileName=C;\n");
    const std::string_view typ = given.value("Kamerasektion", "Typ");
    const McfFile file = std::move(given);
    EXPECT_EQ(typ, "b");
    EXPECT_EQ(file.value("Kamerasektion", "HapName"), "A");
    EXPECT_EQ(file.value("Kamerasektion", "Typ").data(), typ.data());
    for (const auto& [section, key] : {std::pair{"kamerasektion", "Typ"},
                                       {"Kamerasektion", "typ"},
                                       {"Kamerasektion", "A"},
                                       {"fglib5", "Typ"},
                                       {"A", "HapName"},
                                       {"", ""},
                                       {"none", "Typ"}})
        EXPECT_EQ(file.value(section, key), "") << section << ' ' << key;
}

TEST(McfFile, ReadsWhatAnotherIsWritingAndNothingWhereThereIsNothing)
{
    const TemporaryFolder folder;
    for (const auto& nothing : {folder.text(), folder.text() + "/absent", std::string()})
        EXPECT_TRUE(McfFile::read(nothing).sections().empty()) << nothing;
    const std::string path = folder.write("some.mcf", "[S]\na=1;\n").string();
    std::ofstream writer(path, std::ios::binary | std::ios::app);
    writer << "b=2;\nc=" << std::flush;
    EXPECT_EQ(content(McfFile::read(path)), "S{a=1|b=2}");
    writer << "3;\n" << std::flush;
    EXPECT_EQ(content(McfFile::read(path)), "S{a=1|b=2|c=3}");
}

TEST(McfFile, ReadsAHundredMegabytes)
{
    const TemporaryFolder folder;
    const std::string path = folder.path("huge.mcf").string();
    {
        std::string block = "]\r\n";
        while (block.size() < 1'000'000)
            block += std::to_string(1'000'000 + block.size()) + "=1;\r\n";
        std::ofstream stream(path, std::ios::binary);
        for (int i = 0; i < 100; ++i)
            stream << "Count=" << i << ";\r\n[S" << i << block;
    }
    const McfFile file = McfFile::read(path);
    EXPECT_EQ(file.sections().size(), 101U);
    EXPECT_EQ(file.value("none", "Count"), "0");
    EXPECT_EQ(file.value("S98", "Count"), "99");
    EXPECT_EQ(file.value("S99", "1000003"), "1");
}
