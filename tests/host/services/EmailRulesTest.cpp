#include "host/services/EmailRules.h"

#include <gtest/gtest.h>

#include <string>

using zul::host::isPlausibleEmail;

TEST(EmailRules, TakesWhatPeopleHave)
{
    for (const char* address : {"mario.rossi@example.com", "m@x.it", "o'neil+news@sub.domain.example.org",
                                "nicolò@città.example", "a_b-c@1e2.example.com"}) {
        EXPECT_TRUE(isPlausibleEmail(address)) << address;
    }
}

TEST(EmailRules, RefusesWhatCannotBeDelivered)
{
    for (const char* address : {"",
                                "@",
                                "rossi",
                                "rossi@",
                                "@example.com",
                                "a@b",
                                "a b@example.com",
                                "a@exa mple.com",
                                "a@@example.com",
                                "a@b@example.com",
                                ".a@example.com",
                                "a.@example.com",
                                "a..b@example.com",
                                "a@.example.com",
                                "a@example.com.",
                                "a@example..com",
                                "a@-example.com",
                                "a@example-.com",
                                "a@example.c",
                                "a@10.0.0.1",
                                "rossi(at)example.com",
                                "a@example.com\r\nBcc: x@example.com",
                                " a@example.com"}) {
        EXPECT_FALSE(isPlausibleEmail(address)) << address;
    }
    EXPECT_FALSE(isPlausibleEmail(std::string(65, 'a') + "@example.com"));
    EXPECT_FALSE(isPlausibleEmail("a@" + std::string(64, 'b') + ".com"));
    EXPECT_FALSE(isPlausibleEmail(std::string(10'000, 'a')));
}
