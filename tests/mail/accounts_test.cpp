// The user's accounts, as all programs share them.

#include <E-mail.h>

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "support/temp_folder.h"

namespace {

mail_pop_account account_of(const char* name)
{
    mail_pop_account account = {};
    snprintf(account.pop_name, sizeof(account.pop_name), "%s", name);
    strcpy(account.pop_password, "open sesame");
    strcpy(account.pop_host, "mail.example.org");
    strcpy(account.real_name, "Zo\xC3\xAB; = [x] \\ \"y\"");
    strcpy(account.reply_to, "zoe@example.org");
    account.days = B_CHECK_WEEKDAYS;
    account.interval = 600;
    account.end_time = 86399;
    return account;
}

std::string accounts_path(const TempFolder& folder)
{
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.At("/"))) {
        if (entry.path().filename() == "accounts")
            return entry.path();
    }
    return "";
}

}  // namespace

TEST(PopAccounts, ComeBackAsTheyWereSaved)
{
    TempFolder folder;
    mail_pop_account read;
    EXPECT_EQ(0, count_pop_accounts());
    EXPECT_EQ(B_BAD_INDEX, get_pop_account(&read));
    mail_pop_account first = account_of("zoe"), second = account_of("other");
    EXPECT_EQ(B_BAD_INDEX, set_pop_account(&first, 1)) << "there is no gap";
    ASSERT_EQ(B_OK, set_pop_account(&first));
    ASSERT_EQ(B_OK, set_pop_account(&second, 1));
    EXPECT_EQ(2, count_pop_accounts());
    ASSERT_EQ(B_OK, get_pop_account(&read));
    EXPECT_EQ(0, memcmp(&read, &first, sizeof(read)));
    ASSERT_EQ(B_OK, get_pop_account(&read, 1));
    EXPECT_STREQ("other", read.pop_name);
    for (int32 index : {-1, 2, INT32_MAX})
        EXPECT_EQ(B_BAD_INDEX, get_pop_account(&read, index));
    EXPECT_EQ(B_BAD_VALUE, get_pop_account(nullptr));
    EXPECT_EQ(B_BAD_VALUE, set_pop_account(nullptr));
}

TEST(PopAccounts, PasswordIsForItsOwnerAlone)
{
    TempFolder folder;
    mail_pop_account account = account_of("zoe");
    ASSERT_EQ(B_OK, set_pop_account(&account));
    const std::string path = accounts_path(folder);
    struct stat info;
    ASSERT_EQ(0, stat(path.c_str(), &info));
    EXPECT_EQ(0600u, info.st_mode & 0777);
    chmod(path.c_str(), 0644);
    ASSERT_EQ(B_OK, set_pop_account(&account));
    stat(path.c_str(), &info);
    EXPECT_EQ(0600u, info.st_mode & 0777) << "again, when it is written again";
    std::ifstream file(path);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    EXPECT_NE(std::string::npos, text.find("mail.example.org"));
    EXPECT_EQ(std::string::npos, text.find("sesame"));
}

TEST(PopAccounts, FullAndUnsavedOnesAreKept)
{
    TempFolder folder;
    mail_pop_account full, read;
    memset(&full, 'x', sizeof(full));
    ASSERT_EQ(B_OK, set_pop_account(&full, 0, false));
    EXPECT_EQ(1, count_pop_accounts());
    EXPECT_EQ("", accounts_path(folder)) << "this program alone knows of it";
    ASSERT_EQ(B_OK, set_pop_account(&full));
    ASSERT_EQ(B_OK, get_pop_account(&read));
    EXPECT_EQ(std::string(31, 'x'), read.pop_password) << "cut off, with an end";
    EXPECT_EQ(std::string(127, 'x'), read.real_name);
    std::ofstream(accounts_path(folder)) << "no accounts here [";
    EXPECT_EQ(0, count_pop_accounts());
}
