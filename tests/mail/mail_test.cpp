// Mails as a sendmail gets them: heads, bodies, enclosures.

#include <gtest/gtest.h>

#include <E-mail.h>
#include <Entry.h>

#include <string.h>

#include <cstdint>
#include <sstream>

#include "support/fake_sendmail.h"

namespace {

class MailTest : public testing::Test {
protected:
    // Adds what is given, sends it and returns what arrived.
    std::string Sent()
    {
        EXPECT_EQ(B_OK, mail.Send(true, true));
        EXPECT_TRUE(mail_files(folder, "outbox").empty());
        return mailer.Mail();
    }
    status_t AddText(const std::string& text, uint32 encoding = B_ISO1_CONVERSION)
    {
        return mail.AddContent(text.data(), static_cast<int32>(text.size()), encoding);
    }

    TempFolder folder;
    FakeSendmail mailer{folder};
    BMailMessage mail;
};

// The fields, unfolded; up to the empty line.
std::vector<std::string> fields(const std::string& mail)
{
    std::vector<std::string> result;
    std::istringstream lines(mail);
    for (std::string line; std::getline(lines, line) && !line.empty();) {
        if (line[0] == ' ' || line[0] == '\t')
            result.back() += line;
        else
            result.push_back(line);
    }
    return result;
}

std::string field(const std::string& mail, const std::string& name)
{
    for (const std::string& one : fields(mail)) {
        if (one.rfind(name + ": ", 0) == 0)
            return one.substr(name.size() + 2);
    }
    return "(none)";
}

std::string body(const std::string& mail)
{
    const size_t end = mail.find("\n\n");
    return end != std::string::npos ? mail.substr(end + 2) : "(none)";
}

std::string decode_base64(const std::string& text)
{
    static const std::string digits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string bytes;
    uint32_t bits = 0;
    int count = 0;
    for (char c : text) {
        const size_t digit = digits.find(c);
        if (digit == std::string::npos)
            continue;
        bits = bits << 6 | uint32_t(digit);
        count += 6;
        if (count >= 8) {
            count -= 8;
            bytes += char(bits >> count);
        }
    }
    return bytes;
}

std::string decode_quoted(const std::string& text)
{
    std::string bytes;
    for (size_t i = 0; i < text.size(); i++) {
        if (text[i] != '=')
            bytes += text[i];
        else if (text[i + 1] == '\n')
            i++;
        else {
            bytes += char(std::stoi(text.substr(i + 1, 2), nullptr, 16));
            i += 2;
        }
    }
    return bytes;
}

std::string decoded(const std::string& part)
{
    const std::string encoding = field(part, "Content-Transfer-Encoding");
    return encoding == "base64"             ? decode_base64(body(part))
           : encoding == "quoted-printable" ? decode_quoted(body(part))
                                            : body(part);
}

std::vector<std::string> parts(const std::string& mail)
{
    const std::string type = field(mail, "Content-Type");
    const size_t quote = type.find("boundary=\"") + 10;
    const std::string line = "\n--" + type.substr(quote, type.find('"', quote) - quote);
    std::vector<std::string> result;
    size_t start = mail.find(line);
    for (size_t end; (end = mail.find(line, start + 1)) != std::string::npos; start = end)
        result.push_back(mail.substr(start + line.size() + 1, end - start - line.size() - 1));
    return result;
}

size_t longest_line(const std::string& text)
{
    size_t longest = 0;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        longest = std::max(longest, line.size());
    return longest;
}

bool is_seven_bit(const std::string& text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return (c & 0x80) == 0 && c != 0; });
}

}  // namespace

TEST_F(MailTest, PlainMailArrivesAsItWasWritten)
{
    mail.AddHeaderField(B_MAIL_TO, "friend@example.org");
    mail.AddHeaderField(B_MAIL_BCC, "other@example.org");
    mail.AddHeaderField(B_MAIL_SUBJECT, "Hello, world");
    AddText("First line\n.\nlast line\r\n");
    EXPECT_EQ(
        "To: friend@example.org\n"
        "Bcc: other@example.org\n"
        "Subject: Hello, world\n"
        "MIME-Version: 1.0\n"
        "Content-Type: text/plain; charset=us-ascii\n"
        "\n"
        "First line\n.\nlast line\n",
        Sent());
    EXPECT_EQ("-t -i\n", mailer.File("arguments"));
}

TEST_F(MailTest, AMailWithoutAnythingIsAnEmptyHead) { EXPECT_EQ("\n", Sent()); }

TEST_F(MailTest, FieldsAreAddedOrReplaced)
{
    mail.AddHeaderField(B_MAIL_CC, "a@x", false);
    mail.AddHeaderField("cc", "b@x", false);
    mail.AddHeaderField(B_MAIL_TO, "first@x");
    mail.AddHeaderField(B_MAIL_TO, "second@x", true);
    mail.AddHeaderField("X-Note", "one");
    mail.AddHeaderField("X-Note:", "two");
    mail.AddHeaderField(B_MAIL_SUBJECT, "old");
    mail.AddHeaderField("SUBJECT", "new", true);
    mail.AddContent("old", 3);
    mail.AddContent("new ", 4, uint32(B_ISO1_CONVERSION), true);
    mail.AddContent("text, not this", 4);
    const std::string sent = Sent();
    EXPECT_EQ((std::vector<std::string>{"Cc: a@x, b@x", "To: second@x", "X-Note: one",
                                        "X-Note: two", "SUBJECT: new", "MIME-Version: 1.0",
                                        "Content-Type: text/plain; charset=us-ascii"}),
              fields(sent));
    EXPECT_EQ("new text\n", body(sent));
}

TEST_F(MailTest, NoValueSmugglesInAField)
{
    for (const char* name : {"", ":", "To:\nBcc", "To: x\nBcc: ", "Sub ject", "Subj\xe9", "a:b",
                             "Content-Type", "content-length: ", "MIME-Version: "})
        EXPECT_EQ(B_BAD_VALUE, mail.AddHeaderField(name, "x")) << name;
    EXPECT_EQ(B_BAD_VALUE, mail.AddHeaderField(nullptr, "x"));
    EXPECT_EQ(B_BAD_VALUE, mail.AddHeaderField("To", nullptr));
    mail.AddHeaderField(B_MAIL_SUBJECT, "a\nBcc: evil@x\r\n\r\nbody\rX-Evil: 1\v\f");
    mail.AddHeaderField(B_MAIL_TO, "a@x,\nBcc: evil@x\n\n");
    mail.AddHeaderField(B_MAIL_FROM, "J\xc3\xb6rg\r\nX-Evil: 1 <j@x>");
    const std::string file = folder.Put("/name\nX-Evil: 1\n\nfoo", "x");
    EXPECT_EQ(B_OK, mail.AddEnclosure(file.c_str()));
    char data[] = "x";
    EXPECT_EQ(B_BAD_VALUE, mail.AddEnclosure("text/plain\nX-Evil: 1", data, 1));
    EXPECT_EQ(B_BAD_VALUE, mail.AddEnclosure("text", data, 1));
    const std::string sent = Sent();
    EXPECT_EQ(std::string::npos, ("\n" + sent).find("\nBcc"));
    EXPECT_EQ(std::string::npos, ("\n" + sent).find("\nX-Evil"));
    ASSERT_EQ(size_t(1), parts(sent).size());
    EXPECT_EQ("x", decoded(parts(sent)[0]));
}

TEST_F(MailTest, TextGoesInTheCharacterSetThatHoldsIt)
{
    const std::string german =
                          "gr\xc3\xbc\xc3\x9f"
                          "e = \xc3\xa4\n",
                      greek = "\xce\xb1\xce\xb2\n";
    const struct {
        std::string text;
        uint32 encoding;
        const char* charset;
        std::string bytes;
    } cases[] = {
        {german, B_ISO1_CONVERSION, "iso-8859-1",
         "gr\xfc\xdf"
         "e = \xe4\n"},
        {german, B_MS_DOS_CONVERSION, "ibm437",
         "gr\x81\xe1"
         "e = \x84\n"},
        {german, B_UNICODE_CONVERSION, "utf-8", german},
        {german, 4711, "utf-8", german},
        {greek, B_ISO1_CONVERSION, "utf-8", greek},
        {greek, B_ISO7_CONVERSION, "iso-8859-7", "\xe1\xe2\n"},
        {"stray \xe4\n", B_ISO1_CONVERSION, "iso-8859-1", "stray \xe4\n"},
    };
    for (const auto& one : cases) {
        BMailMessage mail;
        mail.AddContent(one.text.data(), static_cast<int32>(one.text.size()), one.encoding);
        ASSERT_EQ(B_OK, mail.Send(true, true));
        const std::string sent = mailer.Mails().back();
        EXPECT_EQ("text/plain; charset=" + std::string(one.charset), field(sent, "Content-Type"));
        EXPECT_EQ(one.bytes, decoded(sent)) << one.charset;
        EXPECT_TRUE(is_seven_bit(sent));
    }
    mail.AddContent(greek.data(), 5, "windows-1253");
    mail.AddContent(german.data(), static_cast<int32>(german.size()), "no-such-set");
    mail.AddHeaderField(B_MAIL_SUBJECT, "last");
    EXPECT_EQ(B_BAD_VALUE, mail.AddContent(nullptr, 3));
    EXPECT_EQ(B_BAD_VALUE, mail.AddContent("x", -1));
    ASSERT_EQ(B_OK, mail.Send(true, true));
    EXPECT_EQ(greek + german, decoded(mailer.Mails().back())) << "several sets make UTF-8";
}

TEST_F(MailTest, HeadsAreEncodedButForAddresses)
{
    mail.AddHeaderField(B_ISO1_CONVERSION, B_MAIL_SUBJECT,
                        "gr\xc3\xbc\xc3\x9f"
                        "e");
    mail.AddHeaderField(B_MAIL_FROM, "J\xf6rg M\xfcller <jm@example.org>, plain@example.org");
    mail.AddHeaderField(B_MAIL_TO, "J\xc3\xb6rg");
    mail.AddHeaderField("X-Long", std::string(2000, 'x').c_str());
    const std::string sent = Sent();
    EXPECT_TRUE(is_seven_bit(sent));
    EXPECT_LE(longest_line(sent), size_t(78));
    EXPECT_EQ("=?iso-8859-1?b?Z3L832U=?=", field(sent, "Subject"));
    const std::string from = field(sent, "From");
    EXPECT_EQ(0, from.compare(0, 10, "=?UTF-8?b?")) << from;
    EXPECT_EQ("J\xc3\xb6rg M\xc3\xbcller",
              decode_base64(from.substr(10, from.find("?=", 10) - 10)));
    EXPECT_NE(std::string::npos, from.find("<jm@example.org>, plain@example.org"));
    EXPECT_EQ(0, field(sent, "To").compare(0, 8, "=?UTF-8?"));
}

TEST_F(MailTest, LongLinesAreBroken)
{
    std::string people = "a@example.org", text(100000, 'x');
    for (int i = 0; i < 300; i++)
        people += ", person" + std::to_string(i) + "@example.org";
    mail.AddHeaderField(B_MAIL_TO, people.c_str());
    mail.AddHeaderField(B_MAIL_SUBJECT,
                        "words   apart  stay  apart and go on for some more of the line");
    AddText(text);
    const std::string sent = Sent();
    EXPECT_LE(longest_line(sent), size_t(998));
    EXPECT_EQ(people, field(sent, "To"));
    EXPECT_EQ("words   apart  stay  apart and go on for some more of the line",
              field(sent, "Subject"));
    EXPECT_EQ(text + "\n", decoded(sent)) << "a last line without an end gets one";
}

TEST_F(MailTest, EnclosuresKeepNameTypeAndBytes)
{
    std::string bytes;
    for (int i = 0; i < 100000; i++)
        bytes += char(i * 7);
    const std::string data = folder.Put("/data.bin", bytes);
    const std::string text = folder.Put(
        "/gr\xc3\xbc\xc3\x9f"
        "e.txt",
        "line\r\nend");
    const std::string picture = folder.Put("/picture.png", "\x89PNG\r\n\x1a\n");
    AddText("see there");
    EXPECT_EQ(B_OK, mail.AddEnclosure(data.c_str()));
    EXPECT_EQ(B_OK, mail.AddEnclosure(text.c_str()));
    entry_ref ref;
    ASSERT_EQ(B_OK, get_ref_for_path(picture.c_str(), &ref));
    EXPECT_EQ(B_OK, mail.AddEnclosure(&ref));
    char made[] = "a,b\n";
    EXPECT_EQ(B_OK, mail.AddEnclosure("text/csv", made, 4));
    made[0] = 'X';
    const std::vector<std::string> all = parts(Sent());
    ASSERT_EQ(size_t(5), all.size());
    EXPECT_EQ("see there", decoded(all[0]));
    EXPECT_EQ(bytes, decoded(all[1]));
    EXPECT_EQ("attachment; filename=data.bin", field(all[1], "Content-Disposition"));
    EXPECT_EQ("line\r\nend", decoded(all[2]));
    EXPECT_EQ("text/plain", field(all[2], "Content-Type").substr(0, 10));
    EXPECT_NE(std::string::npos, all[2].find("filename*=iso-8859-1''gr%FC%DFe.txt"));
    EXPECT_EQ("image/png", field(all[3], "Content-Type").substr(0, 9));
    EXPECT_EQ("a,b\n", decoded(all[4]));
    EXPECT_EQ("text/csv", field(all[4], "Content-Type"));
    EXPECT_EQ("attachment", field(all[4], "Content-Disposition"));
}

TEST_F(MailTest, WhatCanNotBeEnclosedIsRefused)
{
    EXPECT_EQ(B_ENTRY_NOT_FOUND, mail.AddEnclosure(folder.At("/none").c_str()));
    EXPECT_EQ(B_BAD_VALUE, mail.AddEnclosure(folder.Path().c_str()));
    EXPECT_EQ(B_BAD_VALUE, mail.AddEnclosure(static_cast<const char*>(nullptr)));
    EXPECT_EQ(B_BAD_VALUE, mail.AddEnclosure(static_cast<entry_ref*>(nullptr)));
    EXPECT_EQ(B_BAD_VALUE, mail.AddEnclosure("text/plain", nullptr, 3));
    const std::string gone = folder.Put("/gone", "x"), here = folder.Put("/here", "y");
    EXPECT_EQ(B_OK, mail.AddEnclosure(gone.c_str()));
    unlink(gone.c_str());
    EXPECT_EQ(B_ENTRY_NOT_FOUND, mail.Send(true));
    EXPECT_TRUE(mail_files(folder, "outbox").empty()) << "half a mail waits";
    EXPECT_EQ(B_OK, mail.AddEnclosure(here.c_str(), true));
    EXPECT_EQ(size_t(1), parts(Sent()).size());
}
