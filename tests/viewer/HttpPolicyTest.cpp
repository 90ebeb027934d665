// SPDX-License-Identifier: MIT
#include "server/HttpPolicy.h"
#include "server/Token.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

using namespace ovra::viewer;

namespace {

constexpr unsigned short PORT = 8642;
constexpr std::string_view HOST = "127.0.0.1:8642";
constexpr std::string_view ORIGIN = "http://127.0.0.1:8642";

struct Row
{
    int line;
    HttpRequest request;
    unsigned status;
};

} // namespace

TEST(HttpPolicy, AnswersThePageItselfAndNobodyElse)
{
    const HttpPolicy policy(PORT);
    const std::vector<Row> rows{
        {__LINE__, {"GET", "/", HOST, ""}, 200},
        {__LINE__, {"GET", "/app.js", "localhost:8642", "http://localhost:8642"}, 200},
        {__LINE__, {"GET", "/style.css", "[::1]:8642", ""}, 200},
        {__LINE__, {"GET", "/", "", ""}, 403},
        {__LINE__, {"GET", "/", "127.0.0.1", ""}, 403},
        {__LINE__, {"GET", "/", "127.0.0.1:8643", ""}, 403},
        {__LINE__, {"GET", "/", "elsewhere.example:8642", ""}, 403}, // a name that was made to lead here
        {__LINE__, {"GET", "/", "127.0.0.1:8642.elsewhere.example", ""}, 403},
        {__LINE__, {"GET", "/", HOST, "http://elsewhere.example"}, 403},
        {__LINE__, {"GET", "/", HOST, "null"}, 403},
        {__LINE__, {"GET", "/", HOST, "https://127.0.0.1:8642"}, 403},
        {__LINE__, {"GET", "/", HOST, "", false, false, true}, 403},
        {__LINE__, {"POST", "/", HOST, ""}, 405},
        {__LINE__, {"get", "/", HOST, ""}, 405},
        {__LINE__, {"GET", "/", HOST, "", false, true}, 413},
        {__LINE__, {"GET", "/../Options.h", HOST, ""}, 404},
        {__LINE__, {"GET", "/%2e%2e/etc/passwd", HOST, ""}, 404},
        {__LINE__, {"GET", "//app.js", HOST, ""}, 404},
        {__LINE__, {"GET", "/app.js?x", HOST, ""}, 404},
        {__LINE__, {"GET", "", HOST, ""}, 404},
        {__LINE__, {"GET", "/socket", HOST, ORIGIN}, 426},
        {__LINE__, {"GET", "/socket", HOST, "", true}, 403},
        {__LINE__, {"GET", "/socket", HOST, "http://elsewhere.example", true}, 403},
        {__LINE__, {"GET", "/socket", HOST, ORIGIN, true}, 101},
    };
    for (const auto& row : rows)
        EXPECT_EQ(policy.answer(row.request).status, row.status) << "row of line " << row.line;

    const HttpPolicy onPortOfHttp(80); // which browsers leave out
    EXPECT_EQ(onPortOfHttp.answer({"GET", "/socket", "127.0.0.1", "http://127.0.0.1", true}).status, 101U);
}

TEST(HttpPolicy, EveryFileOfThePageHasAType)
{
    for (const auto& file : pageFiles()) {
        EXPECT_NE(file.type, "") << file.target;
        EXPECT_NE(file.content, "") << file.target;
    }
}

TEST(Token, IsAnotherEachTimeAndComparedAsAWhole)
{
    std::set<std::string> tokens;
    for (int i = 0; i < 100; ++i)
        tokens.insert(makeToken());
    EXPECT_EQ(tokens.size(), 100U);

    const std::string token = *tokens.begin();
    EXPECT_EQ(token.size(), 32U);
    EXPECT_TRUE(sameToken(token, token));
    EXPECT_FALSE(sameToken(token, token.substr(1)));
    EXPECT_FALSE(sameToken(token, ""));
    for (std::size_t i = 0; i < token.size(); ++i) {
        std::string other = token;
        other[i] ^= 1;
        EXPECT_FALSE(sameToken(token, other)) << i;
    }
}
