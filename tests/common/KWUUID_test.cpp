#include "KWCommon15/KWUUID.h"

#include <gtest/gtest.h>

#include <regex>
#include <set>

using KWCommonNS::KWUUID;

TEST(Uuid, EveryOneIsAnother) {
    std::set<KWUUID> ids;
    for (int i = 0; i < 1000; ++i)
        ids.insert(KWUUID());
    EXPECT_EQ(ids.size(), 1000U);
    const KWUUID id;
    EXPECT_EQ(id, KWUUID(id));
}

TEST(Uuid, TheTextHasTheFormOfVersion4) {
    const std::regex form("[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}");
    for (int i = 0; i < 50; ++i) {
        std::string text;
        KWUUID().toString().toUTF8String(text);
        EXPECT_TRUE(std::regex_match(text, form)) << text;
    }
}

TEST(Uuid, TheTextIsThatOfTheBytes) {
    const KWUUID id;
    std::string text;
    id.toString().toUTF8String(text);
    EXPECT_EQ(std::stoi(text.substr(0, 2), nullptr, 16), id.getBytes()[0]);
    EXPECT_EQ(std::stoi(text.substr(34, 2), nullptr, 16), id.getBytes()[15]);
}
