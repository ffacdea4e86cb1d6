// E-mail as a compiled program sends it.

#include <gtest/gtest.h>

#include <plinth.h>

#include "support/fake_sendmail.h"

namespace {

class SendEmailTest : public testing::Test {
protected:
    std::string Sent(std::vector<const char*> entries)
    {
        entries.push_back(nullptr);
        EXPECT_TRUE(SendEmail(entries.data(), true));
        return mailer.Mails().back();
    }

    TempFolder folder;
    FakeSendmail mailer{folder};
};

}  // namespace

TEST_F(SendEmailTest, EveryPrefixNamesItsField)
{
    EXPECT_EQ("To: friend\n\n", Sent({"tofriend"}));
    EXPECT_EQ("Cc: a@x\n\n", Sent({"cca@x"}));
    EXPECT_EQ("Bcc: a@x\n\n", Sent({"bca@x"}));
    EXPECT_EQ("From: a@x\n\n", Sent({"fra@x"}));
    EXPECT_EQ("Date: Sat, 1 Jan 2000 12:00:00 +0000\n\n",
              Sent({"daSat, 1 Jan 2000 12:00:00 +0000"}));
    EXPECT_EQ("Reply-To: a@x\n\n", Sent({"rea@x"}));
    EXPECT_EQ("Subject: s\n\n", Sent({"sus"}));
    EXPECT_EQ("Priority: urgent\n\n", Sent({"prurgent"}));
    const std::string text = Sent({"msbody"});
    EXPECT_EQ("\n\nbody\n", text.substr(text.size() - 7));
    const std::string file = "fi" + folder.Put("/enclosed", "x");
    EXPECT_NE(std::string::npos, Sent({file.c_str()}).find("filename=enclosed"));
}

TEST_F(SendEmailTest, KeptOnlyTheFirstEntryCounts)
{
    EXPECT_EQ("To: friend\n\n", Sent({"tofriend", "suHello"}));
    EXPECT_EQ("Subject: Hello\n\n", Sent({"to", "", "x", "suHello", "tofriend"}));
    EXPECT_EQ("\n", Sent({"xxunknown", "suHello"})) << "an unknown one ends it, too";
    EXPECT_EQ("\n", Sent({"to", "cc"}));
    EXPECT_EQ("\n", Sent({}));
    EXPECT_EQ("\n", Sent({"TOfriend"}));
    EXPECT_EQ("\n", Sent({"fi/no/such/file"}));
}

TEST_F(SendEmailTest, LooksAt257Entries)
{
    std::vector<const char*> entries(256, "to");
    entries.push_back("sulast");
    EXPECT_EQ("Subject: last\n\n", Sent(entries));
    entries.insert(entries.begin(), "cc");
    EXPECT_EQ("\n", Sent(entries));
}

TEST_F(SendEmailTest, FailuresAnswerFalseAndKeepTheMail)
{
    const char* const entries[] = {"tofriend", nullptr};
    EXPECT_FALSE(SendEmail(nullptr, true));
    EXPECT_TRUE(SendEmail(entries, false));
    EXPECT_EQ(size_t(1), mail_files(folder, "outbox").size());
    EXPECT_TRUE(mailer.Mails().empty());
    mailer.Takes(1);
    EXPECT_FALSE(SendEmail(entries, true));
    EXPECT_EQ(size_t(2), mail_files(folder, "outbox").size());
    setenv("PLINTH_SENDMAIL", "/no/such/program", 1);
    EXPECT_FALSE(SendEmail(entries, true));
    EXPECT_EQ(size_t(3), mail_files(folder, "outbox").size());
    unsetenv("PLINTH_SENDMAIL");
    mailer.Takes(0);
    EXPECT_TRUE(SendEmail(entries, true));
    EXPECT_TRUE(mail_files(folder, "outbox").empty());
}
