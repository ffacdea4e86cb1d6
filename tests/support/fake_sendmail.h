#ifndef TESTS_SUPPORT_FAKE_SENDMAIL_H
#define TESTS_SUPPORT_FAKE_SENDMAIL_H

// A "sendmail" of the test's own, first on the PATH, which keeps what it is handed. No mail leaves
// the test.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

#include "support/temp_folder.h"

class FakeSendmail {
public:
    explicit FakeSendmail(const TempFolder& folder) : fFolder(folder.At("/mailer"))
    {
        std::filesystem::create_directory(fFolder);
        unsetenv("PLINTH_SENDMAIL");
        setenv("PATH", (fFolder + ":/usr/bin:/bin").c_str(), 1);
        Takes(0);
    }

    // It takes a mail and ends with this status.
    void Takes(int status)
    {
        Runs(
            "mail=$(mktemp new.XXXXXX)\ncat >$mail\nprintf '%s\\n' \"$*\" >arguments\n"
            "grep '^Subject:' $mail >>subjects\nmv $mail mail-$(date +%s%N)-$mail\nexit " +
            std::to_string(status) + "\n");
    }
    // It runs these lines of a shell script, in its own folder.
    void Runs(const std::string& lines)
    {
        const std::string path = fFolder + "/sendmail", fresh = path + ".new";
        std::ofstream(fresh) << "#!/bin/sh\ncd '" << fFolder << "'\n" << lines;
        chmod(fresh.c_str(), 0755);
        std::filesystem::rename(fresh, path);
        ASSERT_EQ(0, access(path.c_str(), X_OK));
    }

    // What it took, the oldest first.
    std::vector<std::string> Mails() const
    {
        std::vector<std::string> names, mails;
        for (const auto& entry : std::filesystem::directory_iterator(fFolder)) {
            if (entry.path().filename().string().rfind("mail-", 0) == 0)
                names.push_back(entry.path());
        }
        std::sort(names.begin(), names.end());
        for (const std::string& name : names)
            mails.push_back(Bytes(name));
        return mails;
    }
    // The only one.
    std::string Mail() const
    {
        const std::vector<std::string> mails = Mails();
        return mails.size() == 1 ? mails[0] : std::to_string(mails.size()) + " mails";
    }
    std::string File(const std::string& name) const { return Bytes(fFolder + "/" + name); }

    static std::string Bytes(const std::string& path)
    {
        std::ifstream file(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    }

private:
    std::string fFolder;
};

// The mails that wait, or were kept after they were sent.
inline std::vector<std::string> mail_files(const TempFolder& folder, const std::string& box)
{
    std::vector<std::string> paths;
    std::error_code error;
    const std::string place = folder.At("/home/data/beos/mail/" + box);
    for (const auto& entry : std::filesystem::directory_iterator(place, error))
        paths.push_back(entry.path());
    std::sort(paths.begin(), paths.end());
    return paths;
}

#endif  // TESTS_SUPPORT_FAKE_SENDMAIL_H
