// The screen's answers to changes of our own, told from changes by somebody else.

#include <gtest/gtest.h>

#include "server/screen/EchoFilter.h"

using server::EchoFilter;

TEST(EchoFilter, AnswersToChangesOfOurOwnAreEchoesOldAndNew)
{
    EchoFilter<int> places;
    places.Start(0);
    for (int place : {1, 2, 3, 2})
        places.Asked(place);
    EXPECT_TRUE(places.IsEcho(2));  // the screen may leave out the first
    EXPECT_TRUE(places.IsEcho(3));
    EXPECT_TRUE(places.IsEcho(2));
    EXPECT_TRUE(places.IsEcho(2));
    EXPECT_EQ(places.Newest(), 2);
    EXPECT_FALSE(places.IsEcho(3)) << "nobody waits for it any more";
    EXPECT_EQ(places.Newest(), 3);
}

// Whoever took over the user's place must hear that the screen went on to the program's.
TEST(EchoFilter, AnswerThatComesAfterAUsersChangeIsNews)
{
    EchoFilter<int> places;
    places.Start(0);
    places.Asked(1);
    EXPECT_FALSE(places.IsEcho(7));
    EXPECT_EQ(places.Newest(), 7);
    EXPECT_FALSE(places.IsEcho(1)) << "the program still believes in 7";
    EXPECT_EQ(places.Newest(), 1);
    EXPECT_TRUE(places.IsEcho(1));
}
