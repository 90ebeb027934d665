// SPDX-License-Identifier: MIT
#include "server/StateDocument.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

using namespace ovra::viewer;
using nlohmann::json;

TEST(StateDocument, TellsChangesAndOnlyThose)
{
    std::vector<std::string> published;
    StateDocument state([&](const std::string& text) { published.push_back(text); });
    state.set("memory", {{"used", 1}});
    state.set("memory", {{"used", 1}});
    state.set("log", json::array());
    state.append("log", json::array(), 2);
    state.append("log", {"a", "b", "c"}, 2);
    state.append("log", {"d"}, 2);
    state.set("memory", "\xff"); // what is no UTF-8 must not end a connection

    EXPECT_THAT(
        published,
        testing::ElementsAre(
            R"({"revision":1,"section":"memory","type":"changed","value":{"used":1}})",
            R"({"revision":2,"section":"log","type":"changed","value":[]})",
            R"({"limit":2,"revision":3,"section":"log","type":"appended","values":["a","b","c"]})",
            R"({"limit":2,"revision":4,"section":"log","type":"appended","values":["d"]})",
            "{\"revision\":5,\"section\":\"memory\",\"type\":\"changed\",\"value\":\"\xef\xbf\xbd\"}"));
    EXPECT_EQ(
        json::parse(state.whole(7)),
        json::parse("{\"type\":\"welcome\",\"version\":1,\"time\":7,\"revision\":5,\"state\":{\"log\":[\"c\","
                    "\"d\"],\"memory\":\"\xef\xbf\xbd\"}}"));
}
