#include "distributedfile/requested_failure.h"

#include <gmock/gmock.h>

#include <string>

using Office::RequestedFailure;

TEST(RequestedFailureTest, EmptyList_NamesNothing) {
    EXPECT_EQ(RequestedFailure("", "Start"), 0);
}

TEST(RequestedFailureTest, EachNamedOperationGetsItsCode) {
    constexpr char kList[] = "Start=7,LocalDeviceOffline=12,Stop=-1";
    EXPECT_EQ(RequestedFailure(kList, "Start"), 7);
    EXPECT_EQ(RequestedFailure(kList, "LocalDeviceOffline"), 12);
    EXPECT_EQ(RequestedFailure(kList, "Stop"), -1);
    EXPECT_EQ(RequestedFailure(kList, "RemoteDeviceOffline"), 0);
}

TEST(RequestedFailureTest, NamesMatchAsAWhole) {
    EXPECT_EQ(RequestedFailure("Start=7", "Star"), 0);
    EXPECT_EQ(RequestedFailure("Star=7", "Start"), 0);
    EXPECT_EQ(RequestedFailure("start=7", "Start"), 0);
}

TEST(RequestedFailureTest, BlanksAroundPartsDoNotCount) {
    EXPECT_EQ(RequestedFailure("  Start = 7 , Stop =8 ", "Start"), 7);
    EXPECT_EQ(RequestedFailure("  Start = 7 , Stop =8 ", "Stop"), 8);
}

TEST(RequestedFailureTest, MeaninglessParts_ArePassedOver) {
    for (const char* const part :
         {"Start", "Start=", "Start=x", "Start=7x", "=", ",,", "Start=99999999999", "Start=7=8"}) {
        EXPECT_EQ(RequestedFailure(part, "Start"), 0) << part;
        EXPECT_EQ(RequestedFailure(std::string(part) + ",Start=5", "Start"), 5) << part;
    }
}

TEST(RequestedFailureTest, FirstOfTwoHolds) {
    EXPECT_EQ(RequestedFailure("Start=7,Start=8", "Start"), 7);
}
