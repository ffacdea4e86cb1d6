// When mails are sent, and what becomes of those that are not.

#include <gtest/gtest.h>

#include <E-mail.h>
#include <OS.h>

#include <signal.h>
#include <sys/wait.h>

#include <cerrno>
#include <thread>

#include "support/fake_sendmail.h"
#include "support/program.h"

namespace {

class OutboxTest : public testing::Test {
protected:
    status_t Send(const std::string& subject, bool now, bool remove = true)
    {
        BMailMessage mail;
        mail.AddHeaderField(B_MAIL_SUBJECT, subject.c_str());
        return mail.Send(now, remove);
    }
    size_t Waiting() const { return mail_files(folder, "outbox").size(); }

    TempFolder folder;
    FakeSendmail mailer{folder};
};

size_t open_files()
{
    const std::filesystem::directory_iterator descriptors("/proc/self/fd");
    return static_cast<size_t>(std::distance(descriptors, {}));
}

bool has_children() { return waitpid(-1, nullptr, WNOHANG) != -1 || errno != ECHILD; }

mode_t permissions(const std::string& path)
{
    struct stat info = {};
    stat(path.c_str(), &info);
    return info.st_mode & 07777;
}

}  // namespace

TEST_F(OutboxTest, AMailWaitsPrivatelyUntilTheNextIsSent)
{
    EXPECT_EQ(B_OK, Send("first", false));
    EXPECT_EQ(B_OK, Send("second", false, false));
    EXPECT_TRUE(mailer.Mails().empty());
    const std::vector<std::string> waiting = mail_files(folder, "outbox");
    ASSERT_EQ(size_t(2), waiting.size());
    EXPECT_EQ("Subject: first\n\n", FakeSendmail::Bytes(waiting[0]));
    EXPECT_EQ(mode_t(0600), permissions(waiting[0]));
    EXPECT_EQ(mode_t(0700), permissions(folder.At("/home/data/beos/mail/outbox")));

    EXPECT_EQ(B_OK, Send("third", true));
    EXPECT_EQ("Subject: third\nSubject: first\nSubject: second\n", mailer.File("subjects"));
    EXPECT_EQ(size_t(0), Waiting());
    const std::vector<std::string> sent = mail_files(folder, "sent");
    ASSERT_EQ(size_t(1), sent.size()) << "one was not to be removed";
    EXPECT_EQ("Subject: second\n\n", FakeSendmail::Bytes(sent[0]));
}

TEST_F(OutboxTest, ARefusedMailStaysAndSaysWhy)
{
    const std::pair<int, status_t> cases[] = {
        {1, B_ERROR},
        {64, B_MAIL_INVALID_MAIL},
        {65, B_MAIL_INVALID_MAIL},
        {67, B_MAIL_UNKNOWN_USER},
        {68, B_MAIL_UNKNOWN_HOST},
        {75, B_ERROR},
        {77, B_MAIL_ACCESS_ERROR},
    };
    size_t count = 0;
    for (const auto& [exit, status] : cases) {
        mailer.Takes(exit);
        EXPECT_EQ(status, Send("x", true)) << exit;
        EXPECT_EQ(++count, Waiting());
    }
    mailer.Runs("kill -9 $$\n");
    EXPECT_EQ(B_ERROR, Send("x", true));
    // One refused mail does not keep the others back.
    mailer.Runs("if grep -q x; then exit 1; fi\n");
    EXPECT_EQ(B_OK, Send("y", true));
    EXPECT_EQ(count + 1, Waiting());
    mailer.Takes(0);
    const std::string note = folder.Put("/home/data/beos/mail/outbox/note~", "To: nobody\n\n");
    EXPECT_EQ(B_OK, Send("z", true));
    EXPECT_EQ(std::vector<std::string>{note}, mail_files(folder, "outbox")) << "it is no mail";
}

TEST_F(OutboxTest, WithoutSendmailMailsWait)
{
    setenv("PLINTH_SENDMAIL", folder.At("/none").c_str(), 1);
    EXPECT_EQ(B_MAIL_NO_DAEMON, Send("x", true));
    setenv("PLINTH_SENDMAIL", folder.Put("/not-executable").c_str(), 1);
    EXPECT_EQ(B_MAIL_NO_DAEMON, Send("x", true));
    setenv("PLINTH_SENDMAIL", folder.Path().c_str(), 1);
    EXPECT_EQ(B_MAIL_NO_DAEMON, Send("x", true));
    EXPECT_EQ(size_t(3), Waiting());
    unsetenv("PLINTH_SENDMAIL");
    // One in the current directory is not taken for the system's.
    folder.Put("/sendmail", "#!/bin/sh\nexit 1\n");
    chmod(folder.At("/sendmail").c_str(), 0755);
    std::filesystem::current_path(folder.Path());
    setenv("PATH", (":.:" + std::string(getenv("PATH"))).c_str(), 1);
    EXPECT_EQ(B_OK, Send("x", true));
    EXPECT_EQ(size_t(0), Waiting());
}

TEST_F(OutboxTest, AHangingSendmailIsEndedWithWhatItStarted)
{
    mailer.Runs("sleep 1000 &\necho $! >child\necho $$ >itself\nwait\n");
    size_t sent = 0;
    // A busy machine may need longer to start it.
    for (int limit = 1; limit < 100 && mailer.File("itself").empty(); limit *= 4) {
        setenv("PLINTH_MAIL_TIMEOUT", std::to_string(limit).c_str(), 1);
        EXPECT_EQ(B_TIMED_OUT, Send("x", true));
        sent++;
    }
    EXPECT_EQ(sent, Waiting());
    EXPECT_FALSE(has_children());
    for (const char* name : {"child", "itself"}) {
        const pid_t process = std::atoi(mailer.File(name).c_str());
        ASSERT_GT(process, 0);
        // Gone, or a zombie that waits for the system to take it away.
        EXPECT_TRUE(eventually([&] {
            const std::string state =
                FakeSendmail::Bytes("/proc/" + std::to_string(process) + "/stat");
            return state.empty() || state.find(") Z") != std::string::npos;
        })) << name;
    }
    unsetenv("PLINTH_MAIL_TIMEOUT");
}

TEST_F(OutboxTest, NothingIsLeftBehind)
{
    mailer.Runs("exit 0\n");  // without reading
    const size_t before = open_files();
    for (int i = 0; i < 20; i++) {
        BMailMessage mail;
        const std::string text(i == 0 ? 5'000'000 : 10, 'x');
        mail.AddContent(text.data(), static_cast<int32>(text.size()));
        EXPECT_EQ(B_OK, mail.Send(true, true));
    }
    EXPECT_EQ(before, open_files());
    EXPECT_FALSE(has_children());
    EXPECT_EQ(size_t(0), Waiting());
}

TEST_F(OutboxTest, SendmailGetsTheMailAndNoOtherFile)
{
    const int inherited = dup(0);  // as a careless program would leave it
    mailer.Runs("ls /proc/self/fd | tr '\\n' ' ' >files\n");
    signal(SIGPIPE, SIG_IGN);
    EXPECT_EQ(B_OK, Send("x", true));
    close(inherited);
    EXPECT_EQ("0 1 2 3 ", mailer.File("files")) << "3 is the listed folder itself";
}

TEST_F(OutboxTest, EachMailIsSentOnceByManyAtOnce)
{
    const int kWaiting = 20, kThreads = 4, kEach = 5;
    std::vector<std::string> expected;
    for (int i = 0; i < kWaiting; i++) {
        const std::string subject = "w" + std::to_string(i);
        EXPECT_EQ(B_OK, Send(subject, false));
        expected.push_back("Subject: " + subject);
    }
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; t++) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < kEach; i++)
                EXPECT_EQ(B_OK, Send(std::to_string(t) + "." + std::to_string(i), true));
        });
        for (int i = 0; i < kEach; i++)
            expected.push_back("Subject: " + std::to_string(t) + "." + std::to_string(i));
    }
    for (std::thread& thread : threads)
        thread.join();
    std::vector<std::string> sent;
    for (const std::string& mail : mailer.Mails())
        sent.push_back(mail.substr(0, mail.find('\n')));
    std::sort(sent.begin(), sent.end());
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(expected, sent);
    EXPECT_EQ(size_t(0), Waiting());
}

TEST_F(OutboxTest, AFolderThatCanNotBeMadeFails)
{
    setenv("XDG_DATA_HOME", folder.Put("/file", "in the way").c_str(), 1);
    EXPECT_NE(B_OK, Send("x", true));
    EXPECT_TRUE(mailer.Mails().empty());
}
