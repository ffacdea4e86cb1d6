// Areas: where they lie, how far they reach and what may be done with them.

#include <OS.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <signal.h>
#include <string.h>
#include <unistd.h>

static const uint32 kBoth = B_READ_AREA | B_WRITE_AREA;

static area_id create(char** address, uint32 spec, size_t size, uint32 protection = kBoth)
{
    return create_area("area", reinterpret_cast<void**>(address), spec, size, B_NO_LOCK,
                       protection);
}

TEST(Areas, AnExactAddressIsTakenOrRefused)
{
    char* place = nullptr;
    const area_id first = create(&place, B_ANY_ADDRESS, 4 * B_PAGE_SIZE);
    ASSERT_GT(first, 0);
    strcpy(place, "mine");
    char* same = place;
    EXPECT_EQ(create(&same, B_EXACT_ADDRESS, B_PAGE_SIZE), B_NO_MEMORY);
    EXPECT_EQ(same, place);
    EXPECT_STREQ(place, "mine") << "what lies there stays";
    char* crooked = place + 1;
    EXPECT_EQ(create(&crooked, B_EXACT_ADDRESS, B_PAGE_SIZE), B_BAD_VALUE);
    EXPECT_EQ(delete_area(first), B_OK);
    const area_id second = create(&same, B_EXACT_ADDRESS, 4 * B_PAGE_SIZE);
    ASSERT_GT(second, 0);
    EXPECT_EQ(same, place);
    EXPECT_STREQ(place, "") << "and is new";
    char* near = place;
    const area_id third = create(&near, B_BASE_ADDRESS, B_PAGE_SIZE);
    ASSERT_GT(third, 0);
    EXPECT_NE(near, place);
    EXPECT_EQ(area_for(place + 4 * B_PAGE_SIZE - 1), second);
    EXPECT_EQ(area_for(near), third);
    EXPECT_EQ(area_for(nullptr), B_ERROR);
    EXPECT_EQ(delete_area(third), B_OK);
    EXPECT_EQ(delete_area(second), B_OK);
    EXPECT_EQ(area_for(place), B_ERROR);
}

TEST(Areas, SizesAndKindsThatCanNotBeAreRefused)
{
    char* place = nullptr;
    for (const size_t size :
         {size_t(0), size_t(1), size_t(B_PAGE_SIZE - 1), SIZE_MAX, SIZE_MAX - B_PAGE_SIZE + 1})
        EXPECT_EQ(create(&place, B_ANY_ADDRESS, size), B_BAD_VALUE) << size;
    EXPECT_EQ(create(&place, B_ANY_ADDRESS, size_t(1) << 60), B_NO_MEMORY);
    EXPECT_EQ(create(&place, B_CLONE_ADDRESS, B_PAGE_SIZE), B_BAD_VALUE);
    EXPECT_EQ(create(&place, 99, B_PAGE_SIZE), B_BAD_VALUE);
    EXPECT_EQ(create_area("x", nullptr, B_ANY_ADDRESS, B_PAGE_SIZE, B_NO_LOCK, kBoth), B_BAD_VALUE);
    EXPECT_EQ(place, nullptr);
    const area_id area = create(&place, B_ANY_ADDRESS, B_PAGE_SIZE);
    for (const area_id none : {area + 1, 0, -1}) {
        area_info info;
        void* elsewhere = nullptr;
        EXPECT_EQ(get_area_info(none, &info), B_BAD_VALUE);
        EXPECT_EQ(resize_area(none, B_PAGE_SIZE), B_BAD_VALUE);
        EXPECT_EQ(set_area_protection(none, kBoth), B_BAD_VALUE);
        EXPECT_EQ(clone_area("x", &elsewhere, B_ANY_ADDRESS, kBoth, none), B_BAD_VALUE);
        EXPECT_EQ(delete_area(none), B_BAD_VALUE);
    }
    EXPECT_EQ(clone_area("x", nullptr, B_ANY_ADDRESS, kBoth, area), B_BAD_VALUE);
    EXPECT_EQ(resize_area(area, B_PAGE_SIZE + 1), B_BAD_VALUE);
    EXPECT_EQ(resize_area(area, 0), B_BAD_VALUE);
    EXPECT_EQ(resize_area(area, size_t(1) << 60), B_NO_MEMORY);
    strcpy(place, "still here");
    area_info info;
    EXPECT_EQ(get_area_info(area, &info), B_OK);
    EXPECT_EQ(info.size, size_t(B_PAGE_SIZE));
    EXPECT_EQ(delete_area(area), B_OK);
}

TEST(Areas, GrownPagesAreZeroAndOldOnesStay)
{
    char* place = nullptr;
    const area_id area = create(&place, B_ANY_ADDRESS, 3 * B_PAGE_SIZE);
    ASSERT_GT(area, 0);
    memset(place, 'x', 3 * B_PAGE_SIZE);
    EXPECT_EQ(resize_area(area, B_PAGE_SIZE), B_OK);
    EXPECT_EQ(area_for(place + B_PAGE_SIZE), B_ERROR);
    ASSERT_EQ(resize_area(area, 3 * B_PAGE_SIZE), B_OK) << "the room behind it is still free";
    EXPECT_EQ(place[B_PAGE_SIZE - 1], 'x');
    EXPECT_EQ(place[B_PAGE_SIZE], 0);
    EXPECT_EQ(place[3 * B_PAGE_SIZE - 1], 0);
    EXPECT_EQ(delete_area(area), B_OK);
}

TEST(AreasDeathTest, ProtectionHolds)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    const auto try_it = [](uint32 protection, bool write) {
        char* place = nullptr;
        const area_id area = create(&place, B_ANY_ADDRESS, B_PAGE_SIZE);
        set_area_protection(area, protection);
        volatile char* byte = place;
        if (write)
            *byte = 'x';
        else
            static_cast<void>(*byte);
        _exit(0);
    };
    signal(SIGSEGV, SIG_DFL);
    EXPECT_EXIT(try_it(B_READ_AREA, true), testing::KilledBySignal(SIGSEGV), "");
    EXPECT_EXIT(try_it(0, false), testing::KilledBySignal(SIGSEGV), "");
    EXPECT_EXIT(try_it(B_READ_AREA, false), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(try_it(kBoth, true), testing::ExitedWithCode(0), "");
}

TEST(Areas, ListAndNamesTellOfEach)
{
    std::vector<area_id> made;
    for (int i = 0; i < 3; i++) {
        char* place = nullptr;
        void** address = reinterpret_cast<void**>(&place);
        made.push_back(create_area((std::string(40, 'a') + std::to_string(i)).c_str(), address,
                                   B_ANY_ADDRESS, (i + 1) * B_PAGE_SIZE, B_FULL_LOCK, kBoth));
    }
    EXPECT_EQ(delete_area(made[1]), B_OK);
    ssize_t cookie = 0;
    area_info info;
    std::vector<area_id> told;
    while (get_next_area_info(B_CURRENT_TEAM, &cookie, &info) == B_OK) {
        told.push_back(info.area);
        EXPECT_EQ(info.name, std::string(B_OS_NAME_LENGTH - 1, 'a'));
        EXPECT_EQ(info.lock, uint32(B_FULL_LOCK));
    }
    EXPECT_EQ(told, (std::vector<area_id>{made[0], made[2]}));
    EXPECT_EQ(find_area(info.name), made[0]) << "the first of a name";
    EXPECT_EQ(find_area("another"), B_NAME_NOT_FOUND);
    EXPECT_EQ(find_area(nullptr), B_BAD_VALUE);
    EXPECT_EQ(get_next_area_info(B_SYSTEM_TEAM, &cookie, &info), B_BAD_TEAM_ID);
    EXPECT_EQ(_get_area_info(made[0], &info, 1), B_BAD_VALUE);
    delete_area(made[0]);
    delete_area(made[2]);
}

TEST(Areas, AClonesOwnProtectionAndLifeAreItsOwn)
{
    char* place = nullptr;
    const area_id area = create(&place, B_ANY_ADDRESS, B_PAGE_SIZE, B_READ_AREA | B_WRITE_AREA);
    void* other = nullptr;
    const area_id clone = clone_area("clone", &other, B_CLONE_ADDRESS, kBoth, area);
    ASSERT_GT(clone, 0);
    ASSERT_NE(other, place);
    EXPECT_EQ(set_area_protection(area, B_READ_AREA), B_OK);
    strcpy(static_cast<char*>(other), "through the clone");
    EXPECT_STREQ(place, "through the clone");
    EXPECT_EQ(delete_area(area), B_OK);
    void* third = nullptr;
    const area_id again = clone_area("again", &third, B_ANY_ADDRESS, B_READ_AREA, clone);
    ASSERT_GT(again, 0);
    EXPECT_STREQ(static_cast<char*>(third), "through the clone");
    EXPECT_EQ(delete_area(clone), B_OK);
    EXPECT_EQ(delete_area(again), B_OK);
}
