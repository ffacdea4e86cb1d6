// A program for the tests to start. It reports what it was given to the file that its first
// argument names, complete once the file is there, and leaves with the status PROBE_STATUS of its
// environment; with PROBE_STAYS in it, only when the file of that name is there, or after some
// minutes.

#include <dirent.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

static void report_descriptors(FILE* report)
{
    DIR* open_ones = opendir("/proc/self/fd");
    for (struct dirent* entry; (entry = readdir(open_ones)) != NULL;) {
        const int number = atoi(entry->d_name);
        if (entry->d_name[0] != '.' && number != dirfd(open_ones) && number != fileno(report))
            fprintf(report, "fd %d\n", number);
    }
    closedir(open_ones);
}

static void report_blocked_signals(FILE* report)
{
    char line[256];
    FILE* status = fopen("/proc/self/status", "r");
    while (fgets(line, sizeof(line), status) != NULL) {
        if (strncmp(line, "SigBlk:\t", 8) == 0)
            fprintf(report, "blocked %s", line + 8);
    }
    fclose(status);
}

int main(int argc, char** argv)
{
    char unfinished[4096];
    if (argc > 1) {
        snprintf(unfinished, sizeof(unfinished), "%s.part", argv[1]);
        FILE* report = fopen(unfinished, "w");
        if (report == NULL)
            return 125;
        fprintf(report, "pid %d\n", getpid());
        for (int i = 1; i < argc; ++i)
            fprintf(report, "arg %s\n", argv[i]);
        report_descriptors(report);
        report_blocked_signals(report);
        fclose(report);
        rename(unfinished, argv[1]);
    }
    const char* end = getenv("PROBE_STAYS");
    for (int i = 0; end != NULL && i < 250000 && access(end, F_OK) != 0; i++)
        usleep(1000);
    return getenv("PROBE_STATUS") != NULL ? atoi(getenv("PROBE_STATUS")) : 0;
}
