// SPDX-License-Identifier: MIT
#include "server/Message.h"

#include <gtest/gtest.h>

#include <string>

using namespace ovra::viewer;

namespace {

struct WrongMessage
{
    int line;
    std::string text;
    std::string complaint;
};

} // namespace

TEST(Message, WhatIsWrongWithOneIsSaid)
{
    const std::string deep = R"({"type":"request","id":1,"name":"x","arguments":{"a":)" +
                             std::string(20, '[') + std::string(20, ']') + "}}";
    const std::vector<WrongMessage> wrong{
        {__LINE__, "", "the message is no JSON text"},
        {__LINE__, "{\"type\":\"hello\"", "the message is no JSON text"},
        {__LINE__, "\xff\xfe", "the message is no JSON text"},
        {__LINE__, "[]", "a message is an object"},
        {__LINE__, "{}", "'type' is missing"},
        {__LINE__, R"({"type":1})", "'type' is no text"},
        {__LINE__, R"({"type":"bye"})", "there is no such type of message"},
        {__LINE__, deep, "the message is nested too deeply"},
        {__LINE__, R"({"type":"hello","version":1})", "'token' is missing"},
        {__LINE__, R"({"type":"request","name":"x","id":-1})",
         "'id' is no whole number from 0 to 2147483647"},
        {__LINE__, R"({"type":"request","name":"x","id":1e99})",
         "'id' is no whole number from 0 to 2147483647"},
        {__LINE__, R"({"type":"request","name":"x","id":18446744073709551615})",
         "'id' is no whole number from 0 to 2147483647"},
        {__LINE__, R"({"type":"request","id":1,"name":")" + std::string(65, 'x') + "\"}",
         "'name' is too long"},
        {__LINE__, R"({"type":"request","id":1,"name":"x","arguments":[]})", "'arguments' is no object"},
        {__LINE__, R"({"type":"show","channel":1,"view":1,"region":[0,0,1],"screen":[1,1],"histogram":true})",
         "'region' is no list of 4 numbers"},
        {__LINE__,
         R"({"type":"show","channel":1,"view":1,"region":[0,0,1,99999999],"screen":[1,1],"histogram":true})",
         "'region' is no whole number from -1048576 to 1048576"},
        {__LINE__,
         R"({"type":"show","channel":1,"view":1,"region":[0,0,1,1],"screen":[0,1],"histogram":true})",
         "'screen' is no whole number from 1 to 16384"},
        {__LINE__, R"({"type":"show","channel":1,"view":1,"region":[0,0,1,1],"screen":[1,1],"histogram":1})",
         "'histogram' is neither true nor false"},
        {__LINE__, R"({"type":"shown","channel":4294967296})",
         "'channel' is no whole number from 0 to 4294967295"},
    };
    for (const auto& row : wrong) {
        try {
            readMessage(row.text);
            ADD_FAILURE() << "row of line " << row.line << " was read";
        } catch (const MessageError& error) {
            EXPECT_EQ(error.what(), row.complaint) << "row of line " << row.line;
        }
    }
}

TEST(Message, EachKindIsReadWithAllItHas)
{
    const auto hello = std::get<Hello>(readMessage(R"({"type":"hello","version":1,"token":"abc"})"));
    EXPECT_EQ(hello.version, 1);
    EXPECT_EQ(hello.token, "abc");

    const auto request =
        std::get<Request>(readMessage(R"({"type":"request","id":7,"name":"load","arguments":{"a":1}})"));
    EXPECT_EQ(request.id, 7);
    EXPECT_EQ(request.name, "load");
    EXPECT_EQ(request.arguments.at("a"), 1);

    const auto view = std::get<ShowView>(readMessage(
        R"({"type":"show","channel":3,"view":9,"region":[-1,2,30,40],"screen":[5,6],"histogram":true,"pixel":[7,8],"line":null})"));
    EXPECT_EQ(view.channel, 3U);
    EXPECT_EQ(view.view, 9U);
    EXPECT_EQ(view.region, (Region{-1, 2, 30, 40}));
    EXPECT_EQ(view.screenWidth, 5);
    EXPECT_EQ(view.screenHeight, 6);
    EXPECT_TRUE(view.histogram);
    EXPECT_EQ(view.pixel, (std::array{7, 8}));
    EXPECT_FALSE(view.line);

    EXPECT_EQ(std::get<HideView>(readMessage(R"({"type":"hide","channel":4})")).channel, 4U);
    EXPECT_EQ(std::get<Acknowledge>(readMessage(R"({"type":"shown","channel":5})")).channel, 5U);
}
