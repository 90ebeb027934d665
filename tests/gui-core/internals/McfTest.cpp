// SPDX-License-Identifier: MIT
#include "mcf/Mcf.h"
#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

using namespace std::string_literals;
using ovra::gui::mcf::mcfValue;
using ovra::gui::mcf::readMcf;

namespace {

struct Row
{
    int line;
    std::string text;
    std::string section;
    std::string key;
    std::string value;
};

const Row ROWS[] = {
    {__LINE__, "", "none", "a", ""},
    // Sections: before the first header, of one name, without a name.
    {__LINE__, "a=1;\n[S]\na=2;\n", "none", "a", "1"},
    {__LINE__, "a=1;\n[S]\na=2;\n", "S", "a", "2"},
    {__LINE__, "a=1;\n[S]\na=2;\n[none]\nb=3;\n", "none", "b", "3"},
    {__LINE__, "[S]\na=1;\n[R]\na=2;\n[S]\nb=3;\n", "S", "a", "1"},
    {__LINE__, "[S]\na=1;\n[SX]\na=2;\n", "S", "a", "1"},
    {__LINE__, "[S]\na=1;\n[R]\na=2;\n[S]\na=3;\n", "S", "a", "3"},
    {__LINE__, "[S]\na=1;\n[]\na=2;", "", "a", "2"},
    {__LINE__, "[S]\na=1;\n", "s", "a", ""},
    {__LINE__, "[S]\na=1;\n", "S", "A", ""},
    {__LINE__, "[ S ]\na=1;\n", "S", "a", ""},
    {__LINE__, "[ S ]\na=1;\n", " S ", "a", "1"},
    // Lines that only look like headers.
    {__LINE__, "[S]\na=1;\n[R\nR]\n[R] \n[\n]\nb=2;\n", "S", "b", "2"},
    {__LINE__, "[[S]]\na=1;\n", "[S]", "a", "1"},
    {__LINE__, "[S=1;]\nb=2;\n", "S=1;", "b", "2"},
    {__LINE__, "[c=3;\n", "none", "[c", "3"},
    // Lines without a key.
    {__LINE__, "a=1\n", "none", "a", ""},
    {__LINE__, "a=1; \n", "none", "a", ""},
    {__LINE__, "a;\n", "none", "a", ""},
    // Keys and values: empty, with another sign, with blanks, with quotes, repeated.
    {__LINE__, "a=1;\n=2;\n", "none", "", "2"},
    {__LINE__, "a=b=c;;\n", "none", "a", "b=c;"},
    {__LINE__, "a=1;\na = 2;\n", "none", "a", "1"},
    {__LINE__, "a=1;\na = 2;\n", "none", "a ", " 2"},
    {__LINE__, "a=1;\nb=1;\na=2;\na=3;", "none", "a", "3"},
    {__LINE__, "a='x';\n", "none", "a", "x"},
    {__LINE__, "a='';\n", "none", "a", ""},
    {__LINE__, "a=1;\na=';\n", "none", "a", ""},
    {__LINE__, "a='x;\n", "none", "a", "'x"},
    {__LINE__, "a=x';\n", "none", "a", "x'"},
    {__LINE__, "a=''';\n", "none", "a", "'"},
    {__LINE__, "a= 'x';\n", "none", "a", " 'x'"},
    // Bytes.
    {__LINE__, "[S]\r\na=1;\r\n", "S", "a", "1"},
    {__LINE__, "a=1;\n[S]\r\r\nb\r=\r2;\n", "none", "b\r", "\r2"},
    {__LINE__, "a=1;\na=2;\r\r\na=3;\r", "none", "a", "1"},
    {__LINE__, "[S\0]\na\0b=\0;\n\x1A=1;\nc=2;\n"s, "S\0"s, "a\0b"s, "\0"s},
    {__LINE__, "[S\0]\na\0b=\0;\n\x1A=1;\nc=2;\n"s, "S\0"s, "c", "2"},
    {__LINE__, "\xEF\xBB\xBF[S]\na=1;\n", "none", "a", "1"},
    {__LINE__, "\xEF\xBB\xBFk=1;\n", "none", "k", ""},
};

} // namespace

TEST(Mcf, GivesTheLastValueOfAKeyInItsSection)
{
    const TemporaryFolder folder;
    for (const Row& row : ROWS) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        const std::string read = readMcf(folder.write("some.mcf", row.text).string());
        EXPECT_EQ(read, row.text);
        EXPECT_EQ(mcfValue(read, row.section, row.key), row.value);
    }
}

TEST(Mcf, IsReadWhileAnotherWritesItAndEmptyWhereThereIsNoFile)
{
    const TemporaryFolder folder;
    for (const auto& nothing : {folder.text(), folder.text() + "/absent", std::string()})
        EXPECT_EQ(readMcf(nothing), "") << nothing;
    const std::string large(100'000, 'x');
    const std::string path = folder.write("some.mcf", large).string();
    std::ofstream writer(path, std::ios::binary | std::ios::app);
    writer << "a=1;\n" << std::flush;
    EXPECT_EQ(readMcf(path), large + "a=1;\n");
}
