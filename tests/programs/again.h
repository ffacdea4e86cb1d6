#ifndef TESTS_PROGRAMS_AGAIN_H
#define TESTS_PROGRAMS_AGAIN_H

/* For programs that start themselves once more, to see from outside how that one ends. */

#include <plinth.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

static inline void expect(int holds)
{
    if (!holds)
        abort();
}

/* Starts the program with two words, its output in the file `output` unless that is null, and
   returns its status as waitpid has it. */
static inline int run_again(const char* way, const char* path, const char* output)
{
    const pid_t child = fork();
    if (child == 0) {
        if (output != NULL && freopen(output, "w", stdout) == NULL)
            _exit(99);
        execl(__GetCommand(0), __GetCommand(0), way, path, (char*)NULL);
        _exit(98);
    }
    int status = -1;
    expect(child > 0 && waitpid(child, &status, 0) == child);
    return status;
}

/* The content of a file is that text. */
static inline int holds(const char* path, const char* text)
{
    char content[256] = "";
    FILE* file = fopen(path, "r");
    expect(file != NULL);
    content[fread(content, 1, sizeof(content) - 1, file)] = '\0';
    fclose(file);
    return strcmp(content, text) == 0;
}

/* A new folder below /tmp, which the caller removes. */
static inline const char* new_folder(void)
{
    static char folder[] = "/tmp/plinth-again-XXXXXX";
    expect(mkdtemp(folder) != NULL);
    return folder;
}

static inline void remove_folder(const char* folder)
{
    char command[256];
    snprintf(command, sizeof(command), "rm -rf '%s'", folder);
    expect(system(command) == 0);
}

#endif /* TESTS_PROGRAMS_AGAIN_H */
