/* A console file browser.

     files DIR                    lists a directory: kind, permissions, length, MIME type, who
                                  opens it, name
     files --watch [SECONDS] DIR  then tells for a while (10 seconds) what changes in it
     files --chmod TEXT FILE      sets permissions from a text such as rw-r----- */

#include <plinth.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

static void join(char *path, size_t size, const char *folder, const char *name)
{
    const size_t length = strlen(folder);
    const char *slash = length > 0 && folder[length - 1] == '/' ? "" : "/";
    snprintf(path, size, "%s%s%s", folder, slash, name);
}

static char type_letter(const char *path)
{
    switch (GetFileType(path)) {
        case 0:
            return '-';
        case 1:
            return 'd';
        case 2:
            return 'l';
        default:
            return '?';
    }
}

/* The application that opens a file: its own, else that of its type; its name without what all
   signatures of the desktop's applications begin with. */
static const char *opener(const char *path, const char *mime)
{
    static const char prefix[] = "application/x-vnd.";
    static const char desktop[] = "desktop.";
    const char *signature = GetFilePreferredApp(path);
    if (*signature == '\0')
        signature = GetPreferredApp(mime);
    if (strncmp(signature, prefix, sizeof(prefix) - 1) == 0)
        signature += sizeof(prefix) - 1;
    if (strncmp(signature, desktop, sizeof(desktop) - 1) == 0)
        signature += sizeof(desktop) - 1;
    return *signature != '\0' ? signature : "-";
}

static void list_entry(const char *folder, const char *name)
{
    char path[4096];
    join(path, sizeof(path), folder, name);
    const char type = type_letter(path);
    const char *attribut = GetAttribut(path);
    const char *mime = GetFileMime(path);
    printf("%c%-9s ", type, *attribut != '\0' ? attribut : "?????????");
    if (type == '-')
        printf("%10d", (int)GetLengthFile(path));
    else
        printf("%10s", "");
    printf("  %-28s %-24s %s\n", *mime != '\0' ? mime : "?", opener(path, mime), name);
}

static bool list(const char *folder)
{
    if (GetFileType(folder) != 1) {
        printf("%s: no directory that can be read (error %d)\n", folder, (int)GetDosErr(0));
        return false;
    }
    int count = 0;
    for (const char *name = FindFirstEntry(folder); *name != '\0'; name = FindNextEntry()) {
        list_entry(folder, name);
        count++;
    }
    printf("%d entries in %s on %s\n", count, folder, GetBootVolumeName());
    return true;
}

static const char *change_name(int32_t opcode)
{
    switch (opcode) {
        case PLINTH_ENTRY_CREATED:
            return "new";
        case PLINTH_ENTRY_REMOVED:
            return "removed";
        case PLINTH_ENTRY_MOVED:
            return "moved";
        case PLINTH_STAT_CHANGED:
            return "changed";
        case PLINTH_ATTR_CHANGED:
            return "attributes";
        case PLINTH_DEVICE_MOUNTED:
            return "volume here";
        case PLINTH_DEVICE_UNMOUNTED:
            return "volume gone";
        default:
            return "changes lost";
    }
}

/* Runs on the application's thread. */
static void changed(int32_t opcode, const char *path, const char *second_path)
{
    printf("%-12s %s%s%s\n", change_name(opcode), path, second_path != NULL ? " -> " : "",
           second_path != NULL ? second_path : "");
    fflush(stdout);
}

static void watch(const char *folder, int seconds)
{
    SetHandlerForWatch((void *)changed);
    if (!WatchDir(folder, 1) || WatchDevices(1) != 0) {
        printf("%s can not be watched (error %d)\n", folder, (int)GetDosErr(0));
        return;
    }
    printf("watching for %d seconds\n", seconds);
    fflush(stdout);
    for (int left = seconds; left > 0;)
        left = (int)sleep((unsigned)left);
    WatchDevices(0);
}

static void change_mode(const char *text, const char *path)
{
    if (SetAttribut(path, text))
        printf("%s is now %s\n", path, GetAttribut(path));
    else
        printf("%s stays %s (error %d)\n", path, GetAttribut(path), (int)GetDosErr(0));
}

void ProgramMain(void)
{
    void **registry = Open_Sys(0);
    const char *first = __GetCommand(1);
    if (strcmp(first, "--chmod") == 0) {
        change_mode(__GetCommand(2), __GetCommand(3));
    } else if (strcmp(first, "--watch") == 0) {
        const int seconds = atoi(__GetCommand(2));
        const char *folder = __GetCommand(seconds > 0 ? 3 : 2);
        folder = *folder != '\0' ? folder : ".";
        if (list(folder))
            watch(folder, seconds > 0 ? seconds : 10);
    } else {
        list(*first != '\0' ? first : GetPath(0));
    }
    End();
    Close_Sys(registry);
}
