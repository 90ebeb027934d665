// SPDX-License-Identifier: MIT
// Parts that the front ends share and that need no application.
#include "tests/TemporaryFolder.h"

#include "front-ends/console/Completion.h"
#include "front-ends/console/WordWrap.h"
#include "front-ends/shared/ImageRecorder.h"
#include "front-ends/shared/OutputFile.h"
#include "front-ends/shared/ProblemReport.h"
#include "front-ends/shared/RequestError.h"

#include <gmock/gmock.h>

using namespace ovra;

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

std::string contentOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

TEST(OutputFiles, AreReplacedAsAWholeOrStayAsTheyWere)
{
    const TemporaryFolder folder;
    const auto file = folder.write("picture.png", "old");
    const auto users = folder.write("picture.png.new", "the user's");
    frontend::writeFile(file, "new");
    EXPECT_EQ(contentOf(file), "new");
    EXPECT_EQ(contentOf(users), "the user's");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 2); // no temporary one

    const auto longest = folder.write(std::string(255, 'p'), "old"); // the temporary one's would be too long
    EXPECT_THAT([&] { frontend::writeFile(longest, "new"); },
                testing::ThrowsMessage<frontend::RequestError>(HasSubstr("ppp: ")));
    EXPECT_EQ(contentOf(longest), "old");
    EXPECT_THAT([&] { frontend::writeFile(folder.path("none/picture.png"), "new"); },
                testing::ThrowsMessage<frontend::RequestError>(HasSubstr("No such file or directory")));
    EXPECT_THROW(frontend::writeFile(folder.path(""), "new"), frontend::RequestError);
}

TEST(Recording, WritesAsManyImagesAsAreWantedWithAListAndTouchesNoEarlierOne)
{
    const TemporaryFolder folder;
    const std::vector<std::uint8_t> pixels(6, 99);
    {
        frontend::ImageRecorder recorder(folder.path("run"), 2);
        for (std::int64_t number : {5, 7, 8}) {
            display::Image image{pixels.data(), 3, 2, number};
            image.timestampNs = 1000;
            image.arrival = std::chrono::system_clock::time_point(std::chrono::seconds(86399));
            recorder.add(image);
        }
        EXPECT_TRUE(recorder.progress().complete);
        EXPECT_EQ(recorder.finish().recorded, 2);
    }
    EXPECT_EQ(contentOf(folder.path("run/images.csv")),
              "file,number,timestamp_ns,arrival\n"
              "image-000001.png,5,1000,1970-01-01T23:59:59.000000Z\n"
              "image-000002.png,7,1000,1970-01-01T23:59:59.000000Z\n");
    EXPECT_FALSE(std::filesystem::exists(folder.path("run/image-000003.png")));
    EXPECT_THROW(frontend::ImageRecorder(folder.path("run"), 1), frontend::RequestError);
}

TEST(Recording, EndsWithTheReasonWhenAFileCannotBeWritten)
{
    const TemporaryFolder folder;
    const std::vector<std::uint8_t> pixels(6, 99);
    frontend::ImageRecorder recorder(folder.path("run"), 2);
    std::filesystem::create_directory(folder.path("run/image-000001.png"));
    recorder.add({pixels.data(), 3, 2, 1});
    EXPECT_THAT([&] { recorder.finish(); },
                testing::ThrowsMessage<frontend::RequestError>(HasSubstr("image-000001.png")));
}

TEST(PrivateNamesInReports, AreTakenOutWhereTheyStandAlone)
{
    const frontend::PrivateNames names{"/opt/grab", "/home/anna", "anna"};
    struct Row
    {
        const char* text;
        const char* clean;
    };
    for (const auto& [text, clean] :
         {Row{"/opt/grab/dll/a.so", "<installation>/dll/a.so"},
          {"in /home/anna/x/y.json:3: bad", "in <path>/y.json:3: bad"},
          {"\"/mnt/data/m.json\"", "\"<path>/m.json\""},
          {"C:\\Users\\anna\\m.json", "<path>/m.json"},
          {"of anna, by anna_b in savanna", "of <user>, by anna_b in savanna"},
          {"pictures/anna/1.png, 16/16 MB/s", "pictures/<user>/1.png, 16/16 MB/s"}})
        EXPECT_EQ(frontend::withoutPrivateNames(text, names), clean);
    EXPECT_EQ(frontend::withoutPrivateNames("as it is", {}), "as it is");
}

TEST(WordWrapping, BreaksAtWordsOnly)
{
    EXPECT_THAT(console::wrapWords("a bb ccc dddddddd e", 2, 8),
                ElementsAre("  a bb", "  ccc", "  dddddddd", "  e"));
}

TEST(Completing, KnowsWhereTheLastWordBegins)
{
    EXPECT_EQ(console::lastWordOf(""), 0u);
    EXPECT_EQ(console::lastWordOf("load 0 Si"), 7u);
    EXPECT_EQ(console::lastWordOf("load-mcf 0 \"a b"), 11u);
    EXPECT_EQ(console::lastWordOf("boards "), 7u);
}

} // namespace
