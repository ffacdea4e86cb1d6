#ifndef TESTS_SUPPORT_TEMP_FOLDER_H
#define TESTS_SUPPORT_TEMP_FOLDER_H

// A real folder of the test's own, removed with it. HOME and the desktop's base directories point
// into it meanwhile, and no message bus is to be found, so that nothing outside is touched.
// Programs speak one language, whoever runs the tests.

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

class TempFolder {
public:
    explicit TempFolder(const std::string& base = "/tmp")
    {
        std::string name = base + "/plinth-test-XXXXXX";
        char real[PATH_MAX];
        fPath = realpath(mkdtemp(name.data()), real);
        fFormer = std::filesystem::current_path();
        setenv("HOME", At("/home").c_str(), 1);
        setenv("XDG_CONFIG_HOME", At("/home/config").c_str(), 1);
        setenv("XDG_DATA_HOME", At("/home/data").c_str(), 1);
        setenv("XDG_CACHE_HOME", At("/home/cache").c_str(), 1);
        setenv("XDG_STATE_HOME", At("/home/state").c_str(), 1);
        setenv("LC_ALL", "C.UTF-8", 1);
        unsetenv("LANGUAGE");
        unsetenv("DBUS_SESSION_BUS_ADDRESS");
        setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + At("/home/no-bus")).c_str(), 1);
        // Beside it, so that the folder itself begins empty.
        std::filesystem::create_directory(At(".run"));
        std::filesystem::permissions(At(".run"), std::filesystem::perms::owner_all);
        setenv("XDG_RUNTIME_DIR", At(".run").c_str(), 1);
    }
    ~TempFolder()
    {
        std::filesystem::current_path(fFormer);
        std::filesystem::permissions(fPath, std::filesystem::perms::owner_all);
        std::filesystem::remove_all(fPath);
        std::filesystem::remove_all(At(".run"));
    }
    TempFolder(const TempFolder&) = delete;

    const std::string& Path() const { return fPath; }
    std::string At(const std::string& leaf) const { return fPath + leaf; }
    // Writes a file and returns its path.
    std::string Put(const std::string& leaf, const std::string& bytes = "") const
    {
        FILE* file = fopen(At(leaf).c_str(), "wb");
        if (file != nullptr) {
            fwrite(bytes.data(), 1, bytes.size(), file);
            fclose(file);
        }
        return At(leaf);
    }

private:
    std::string fPath;
    std::filesystem::path fFormer;
};

#endif  // TESTS_SUPPORT_TEMP_FOLDER_H
