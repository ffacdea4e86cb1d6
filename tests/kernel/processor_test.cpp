// What a processor tells of itself, and advice for the scheduler.

#include <OS.h>
#include <scheduler.h>

#include <gtest/gtest.h>

#include <string>

TEST(Processor, TellsItsMaker)
{
    cpuid_info info;
    const status_t status = get_cpuid(&info, 0, 0);
    if (status == B_UNSUPPORTED)
        GTEST_SKIP() << "a processor without that instruction";
    ASSERT_EQ(B_OK, status);
    EXPECT_GE(info.eax_0.max_eax, 1u);
    const std::string maker(info.eax_0.vendor_id, sizeof(info.eax_0.vendor_id));
    for (const char letter : maker)
        EXPECT_TRUE(isprint(letter)) << maker;
    ASSERT_EQ(B_OK, get_cpuid(&info, 1, 0));
    EXPECT_NE(0u, info.eax_1.features);
    EXPECT_EQ(B_BAD_VALUE, get_cpuid(nullptr, 0, 0));
    EXPECT_EQ(B_BAD_VALUE, get_cpuid(&info, 0x7FFF, 0));
    EXPECT_EQ(B_BAD_VALUE, get_cpuid(&info, 0, 1 << 20));
}

TEST(Scheduler, MoreUrgentWorkHasTheHigherPriority)
{
    EXPECT_EQ(B_NORMAL_PRIORITY, suggest_thread_priority());
    EXPECT_LT(suggest_thread_priority(B_OFFLINE_PROCESSING), B_NORMAL_PRIORITY);
    EXPECT_GT(suggest_thread_priority(B_AUDIO_PLAYBACK), suggest_thread_priority(B_VIDEO_PLAYBACK));
    EXPECT_EQ(suggest_thread_priority(B_AUDIO_PLAYBACK | B_NUMBER_CRUNCHING),
              suggest_thread_priority(B_AUDIO_PLAYBACK));
    EXPECT_GT(suggest_thread_priority(B_NUMBER_CRUNCHING, 1000),
              suggest_thread_priority(B_NUMBER_CRUNCHING));
}

TEST(Scheduler, TellsWhatTheHostDoes)
{
    EXPECT_GE(estimate_max_scheduling_latency(), 0);
    EXPECT_GE(estimate_max_scheduling_latency(find_thread(nullptr)), 0);
    EXPECT_EQ(B_BAD_THREAD_ID, estimate_max_scheduling_latency(INT32_MAX));
    EXPECT_EQ(B_BAD_THREAD_ID, estimate_max_scheduling_latency(-5));
    EXPECT_EQ(SCHEDULER_MODE_LOW_LATENCY, get_scheduler_mode());
    EXPECT_EQ(B_OK, set_scheduler_mode(SCHEDULER_MODE_LOW_LATENCY));
    EXPECT_EQ(B_UNSUPPORTED, set_scheduler_mode(SCHEDULER_MODE_POWER_SAVING));
    EXPECT_EQ(B_BAD_VALUE, set_scheduler_mode(7));
}
