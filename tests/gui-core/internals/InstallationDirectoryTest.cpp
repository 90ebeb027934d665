// SPDX-License-Identifier: MIT
#include "fglib/InstallationPath.h"
#include "platform/Module.h"

#include <gtest/gtest.h>

#include <string>

using namespace ovra::gui::fglib;

TEST(InstallationWalk, CutsToTheFolderAboveTheNearestProductFolder)
{
    struct Walk
    {
        int line;
        const char* file;
        char separator;
        const char* installation; ///< null: nothing found
    };
    const Walk walks[] = {
        {__LINE__, R"(C:\P\bin\x.dll)", '\\', R"(C:\P)"},
        {__LINE__, R"(C:\P\Hardware Applets\sub\x.dll)", '\\', R"(C:\P)"},
        {__LINE__, R"(C:\P\hardware applets\x.dll)", '\\', R"(C:\P)"},
        {__LINE__, R"(C:\P\LIB64\x.dll)", '\\', R"(C:\P)"},
        {__LINE__, R"(C:\P\dll\model\deep\x.dll)", '\\', R"(C:\P)"},
        {__LINE__, R"(C:\P\\Lib\\x.dll)", '\\', R"(C:\P)"},
        {__LINE__, R"(C:\bin\Q\lib\x.dll)", '\\', R"(C:\bin\Q)"}, // the nearest one wins
        {__LINE__, R"(C:\bin\x.dll)", '\\', "C:"},
        {__LINE__, R"(C:\Q\x.dll)", '\\', nullptr},
        {__LINE__, R"(C:\binary\mylib\x.dll)", '\\', nullptr},
        {__LINE__, R"(C:\P/bin/x.dll)", '\\', nullptr},
        {__LINE__, R"(\x.dll)", '\\', nullptr},
        {__LINE__, "x.dll", '\\', nullptr},
        {__LINE__, "", '\\', nullptr},
        {__LINE__, "/opt/product/lib/libx.so", '/', "/opt/product"},
        {__LINE__, "/opt/product/Hardware Applets/model/libx.so", '/', "/opt/product"},
        {__LINE__, "/bin/libx.so", '/', ""}, // the root: "" + "/bin/..." is a valid path
        {__LINE__, "/home/user/libx.so", '/', nullptr},
        {__LINE__, R"(/home/user\bin\libx.so)", '/', nullptr},
    };
    for (const Walk& row : walks) {
        SCOPED_TRACE("row of line " + std::to_string(row.line) + ": " + row.file);
        std::string path = row.file;
        const bool found = cutToInstallation(path.data(), row.separator);
        EXPECT_STREQ(found ? path.c_str() : nullptr, row.installation);
    }
}

TEST(InstallationFromTheEnvironment, LosesItsClosingSeparatorsAndWhatDoesNotFit)
{
    struct Copied
    {
        int line;
        std::string given;
        const char* kept;
    };
    const Copied rows[] = {
        {__LINE__, R"(D:\R\\)", R"(D:\R)"},
        {__LINE__, R"(D:\R)", R"(D:\R)"},
        {__LINE__, R"(\\\\)", R"(\)"},
        {__LINE__, "", ""},
        {__LINE__, "0123456789ABCDEFG", "0123456789ABCDE"},
        {__LINE__, R"(0123456789ABC\\\DEF)", "0123456789ABC"},
    };
    for (const Copied& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        std::string buffer(16, '#');
        copyDirectory(row.given.c_str(), buffer.data(), buffer.size(), '\\');
        EXPECT_STREQ(buffer.c_str(), row.kept);
    }
}

TEST(ModuleFileName, IsGivenWholeOrNotAtAll)
{
    using ovra::templates::platform::moduleFileName;
    static const char INSIDE = 0;
    std::string path(4096, 'x');
    const std::size_t length = moduleFileName(&INSIDE, path.data(), path.size());
    ASSERT_GT(length, 0U);
    EXPECT_EQ(path[length], '\0');
    std::string tight(length, 'x');
    EXPECT_EQ(moduleFileName(&INSIDE, tight.data(), length), length) << "no room for the closing zero";
    tight.resize(length + 1);
    EXPECT_EQ(moduleFileName(&INSIDE, tight.data(), length + 1), length);
    EXPECT_EQ(tight, path.substr(0, length + 1));
}
