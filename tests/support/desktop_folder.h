#ifndef TESTS_SUPPORT_DESKTOP_FOLDER_H
#define TESTS_SUPPORT_DESKTOP_FOLDER_H

// A desktop of the test's own: the machine's MIME types and icons, but no entries nor choices than
// those that the test writes. To be made before anything asks for MIME types or applications.

#include <filesystem>
#include <string>

#include "support/temp_folder.h"

class DesktopFolder : public TempFolder {
public:
    DesktopFolder()
    {
        namespace fs = std::filesystem;
        setenv("XDG_DATA_DIRS", At("/system").c_str(), 1);
        setenv("XDG_CONFIG_DIRS", At("/etc").c_str(), 1);
        unsetenv("XDG_CURRENT_DESKTOP");
        for (const char* folder : {"/system/applications", "/etc", "/home/config", "/home/data"})
            fs::create_directories(At(folder));
        fs::create_directory_symlink("/usr/share/mime", At("/system/mime"));
        fs::create_directory_symlink("/usr/share/icons", At("/system/icons"));
    }

    std::string UserEntry(const std::string& id) const
    {
        return std::string("/home/data/applications/").append(id);
    }
    std::string SystemEntry(const std::string& id) const
    {
        return std::string("/system/applications/").append(id);
    }

    // Writes an entry and a program for it, "bin/<name>", unless `exec` names another. Returns the
    // program's path.
    std::string PutEntry(const std::string& leaf, const std::string& name,
                         const std::string& keys = "", std::string exec = "") const
    {
        namespace fs = std::filesystem;
        fs::create_directories(At("/bin"));
        fs::create_directories(fs::path(At(leaf)).parent_path());
        const std::string program = Put(std::string("/bin/").append(name), "#!/bin/sh\n");
        fs::permissions(program, fs::perms::owner_all);
        if (exec.empty())
            exec = program + " %F";
        Put(leaf,
            "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=" + exec + "\n" + keys);
        return program;
    }
};

#endif  // TESTS_SUPPORT_DESKTOP_FOLDER_H
