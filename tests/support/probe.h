#ifndef TESTS_SUPPORT_PROBE_H
#define TESTS_SUPPORT_PROBE_H

// The program that tests start: where it is, and what it reports (see probe.c).

#include <OS.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

// The probe is built beside the test.
inline std::string probe_path()
{
    return std::filesystem::read_symlink("/proc/self/exe").parent_path() / "probe";
}

// Waits for the report and returns its lines; empty if none came in time.
inline std::vector<std::string> probe_report(const std::string& path)
{
    const bigtime_t deadline = system_time() + 20'000'000;
    while (!std::filesystem::exists(path) && system_time() < deadline)
        snooze(1000);
    std::ifstream file(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    return lines;
}

// What stands behind "word " in the report's lines of that word.
inline std::vector<std::string> told(const std::vector<std::string>& report,
                                     const std::string& word)
{
    std::vector<std::string> values;
    for (const std::string& line : report) {
        if (line.starts_with(word + " "))
            values.push_back(line.substr(word.size() + 1));
    }
    return values;
}

#endif  // TESTS_SUPPORT_PROBE_H
