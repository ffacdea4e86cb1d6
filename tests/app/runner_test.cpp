// Message runners: how often, how many, and their end.

#include <gtest/gtest.h>

#include <Looper.h>
#include <MessageRunner.h>
#include <OS.h>

#include <memory>

#include "app/Mailbox.h"

namespace {

class RunnerTest : public testing::Test {
protected:
    RunnerTest() : fLooper(new ListeningLooper(fMail)) { fLooper->Run(); }
    ~RunnerTest() override { Leave(); }
    void Leave()
    {
        if (fLooper->Lock())
            fLooper->Quit();
    }
    // What was sent before a message posted here and now.
    int CountUntilNow()
    {
        fLooper->PostMessage('stop');
        int count = 0;
        while (fMail.TakeWhat() == 'tick')
            count++;
        return count;
    }

    Mailbox fMail;
    ListeningLooper* fLooper;
    const BMessage fTick{'tick'};
};

}  // namespace

TEST_F(RunnerTest, SendsSoManyAndNotBeforeTheirTime)
{
    const bigtime_t start = system_time();
    BMessageRunner runner(BMessenger(fLooper), &fTick, 3000, 4);
    ASSERT_EQ(B_OK, runner.InitCheck());
    for (int i = 1; i <= 4; i++) {
        ASSERT_EQ(uint32('tick'), fMail.TakeWhat());
        EXPECT_GE(system_time() - start, i * 3000 - 100);
    }
    // The last one was sent: the runner has ended.
    bigtime_t interval;
    int32 count;
    while (runner.GetInfo(&interval, &count) == B_OK)
        snooze(100);
    EXPECT_EQ(B_BAD_VALUE, runner.SetCount(3));
    EXPECT_EQ(B_BAD_VALUE, runner.SetInterval(1000));
    EXPECT_EQ(0, CountUntilNow());
}

TEST_F(RunnerTest, EndsWithItsObject)
{
    auto runner = std::make_unique<BMessageRunner>(BMessenger(fLooper), fTick, 1000);
    EXPECT_EQ(uint32('tick'), fMail.TakeWhat());
    runner.reset();
    CountUntilNow();
    EXPECT_EQ(uint32(0), fMail.TakeWhat(20000));
}

TEST_F(RunnerTest, IntervalAndCountChangeOnTheWay)
{
    BMessageRunner runner(BMessenger(fLooper), &fTick, 3600000000LL);
    bigtime_t interval = 0;
    int32 count = 0;
    ASSERT_EQ(B_OK, runner.GetInfo(&interval, &count));
    EXPECT_EQ(3600000000LL, interval);
    EXPECT_EQ(-1, count);
    EXPECT_EQ(B_OK, runner.SetCount(2));
    EXPECT_EQ(B_OK, runner.SetInterval(1));
    EXPECT_EQ(uint32('tick'), fMail.TakeWhat()) << "the sleeping timer looks at it at once";
    EXPECT_EQ(uint32('tick'), fMail.TakeWhat());
    while (runner.GetInfo(nullptr, nullptr) == B_OK)
        snooze(100);
}

TEST_F(RunnerTest, EndsWhenTheTargetIsGone)
{
    BMessageRunner runner(BMessenger(fLooper), &fTick, 1000);
    Leave();
    const bigtime_t limit = system_time() + kDeadline;
    while (runner.GetInfo(nullptr, nullptr) == B_OK && system_time() < limit)
        snooze(1000);
    EXPECT_EQ(B_BAD_VALUE, runner.GetInfo(nullptr, nullptr));
}

TEST_F(RunnerTest, BadValuesAreRefused)
{
    const BMessenger target(fLooper);
    EXPECT_EQ(B_BAD_VALUE, BMessageRunner(target, nullptr, 1000).InitCheck());
    EXPECT_EQ(B_BAD_VALUE, BMessageRunner(target, &fTick, 0).InitCheck());
    EXPECT_EQ(B_BAD_VALUE, BMessageRunner(target, &fTick, -5).InitCheck());
    EXPECT_EQ(B_BAD_VALUE, BMessageRunner(target, &fTick, 1000, 0).InitCheck());
    EXPECT_EQ(B_BAD_VALUE, BMessageRunner::StartSending(target, nullptr, 1000, 1));
    BMessageRunner longest(target, &fTick, INT64_MAX, INT32_MAX);
    EXPECT_EQ(B_OK, longest.InitCheck());
    EXPECT_EQ(B_BAD_VALUE, longest.SetInterval(0));
    EXPECT_EQ(B_OK, longest.SetCount(INT32_MIN)) << "for ever";
    EXPECT_EQ(B_OK, longest.SetCount(0)) << "no more";
    EXPECT_EQ(B_BAD_VALUE, longest.SetCount(1)) << "it has ended";
}

TEST_F(RunnerTest, RunsWithoutAnObject)
{
    EXPECT_EQ(B_OK, BMessageRunner::StartSending(BMessenger(fLooper), &fTick, 1000, 2));
    EXPECT_EQ(uint32('tick'), fMail.TakeWhat());
    EXPECT_EQ(uint32('tick'), fMail.TakeWhat());
    EXPECT_EQ(0, CountUntilNow());
}
