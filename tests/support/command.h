#ifndef TESTS_SUPPORT_COMMAND_H
#define TESTS_SUPPORT_COMMAND_H

#include <cstdio>
#include <string>

// What another program writes to its output and errors, without the last line feed.
inline std::string output_of(const std::string& command)
{
    std::string output;
    FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    char block[4096];
    size_t size;
    while (pipe != nullptr && (size = fread(block, 1, sizeof(block), pipe)) > 0)
        output.append(block, size);
    if (pipe != nullptr)
        pclose(pipe);
    if (output.ends_with('\n'))
        output.pop_back();
    return output;
}

#endif  // TESTS_SUPPORT_COMMAND_H
