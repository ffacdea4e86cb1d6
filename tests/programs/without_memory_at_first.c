/* Calls that make what they need once have no memory for it the first time: each gives its failure
   value or does without, leaves no lock held, and works when it is called again. Each allocation of
   each call fails once, in a process of its own. */

#include "again.h"

#include <errno.h>
#include <stddef.h>

static __thread int before_failure = -1; /* allocations that succeed before one fails, -1 for all */
static __thread int has_failed;

static int fails(void)
{
    if (before_failure < 0 || before_failure-- > 0)
        return 0;
    has_failed = 1;
    errno = ENOMEM;
    return 1;
}

void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);

void* malloc(size_t size) { return fails() ? NULL : __libc_malloc(size); }
void* calloc(size_t count, size_t size) { return fails() ? NULL : __libc_calloc(count, size); }
void* realloc(void* block, size_t size) { return fails() ? NULL : __libc_realloc(block, size); }

static void begin_failing(int before)
{
    has_failed = 0;
    before_failure = before;
}

static void open_registry(int before)
{
    begin_failing(before);
    void** table = Open_Sys(1);
    before_failure = -1;
    expect(has_failed || table != NULL);
    if (table == NULL)
        table = Open_Sys(1);
    const int32_t channel = OpenFile("/dev/null", 0);
    expect(WriteFile(channel, "text"));
    Close_Sys(table); /* knows it */
    expect(!CloseFile(channel));
}

static void use_clipboard(int before)
{
    Open_Sys(0);
    begin_failing(before);
    const char* text = GetStringClipboard();
    const bool set = SetStringClipboard("a text that is too long for a short one");
    before_failure = -1;
    expect(text[0] == '\0' && (set || has_failed));
    expect(SetStringClipboard("at last"));
    expect(strcmp(GetStringClipboard(), "at last") == 0);
}

static void read_field(int before)
{
    Open_Sys(0);
    const int32_t window = OpenWindow(10, 10, 100, 100);
    const int32_t field = CreateGadget(PLINTH_STRING_FIELD, window, 0, 0, 90, 20, "", 0);
    SetString(field, "shown");
    begin_failing(before);
    const char* text = GetString(field);
    before_failure = -1;
    expect(has_failed || strcmp(text, "shown") == 0);
    expect(strcmp(GetString(field), "shown") == 0);
    CloseWindow(window);
}

static void give_tips(int before)
{
    Open_Sys(0);
    const int32_t window = OpenWindow(10, 10, 100, 100);
    const int32_t button = CreateGadget(PLINTH_BUTTON, window, 0, 0, 90, 20, "Button", 0);
    begin_failing(before);
    SetTipsWindow(button, "a tip that is too long for a short one");
    before_failure = -1;
    SetTipsWindow(button, "another");
    FRectangle(window, 0, 0, 5, 5);
    CloseWindow(window);
    expect(!is_window_ident(window));
}

static void turn_tips_on(int before)
{
    Open_Sys(0);
    const int32_t window = OpenWindow(10, 10, 100, 100);
    begin_failing(before);
    ToolTipsWindow(window, 1);
    before_failure = -1;
    ToolTipsWindow(window, 0);
    FRectangle(window, 0, 0, 5, 5);
    CloseWindow(window);
}

static void count_names(int before)
{
    Open_Sys(0);
    begin_failing(before);
    expect(CountList() == 0 && GetInfoList(0)[0] == '\0');
    FreeList();
    before_failure = -1;
    GetList(PLINTH_LIST_VOLUMES);
    expect(CountList() >= 0);
}

static const struct {
    const char* name;
    void (*go)(int before);
} kCalls[] = {
    {"registry", open_registry}, {"clipboard", use_clipboard}, {"field", read_field},
    {"tips", give_tips},         {"tips-on", turn_tips_on},    {"names", count_names},
};
enum { CALLS = sizeof(kCalls) / sizeof(*kCalls), SOME_FAILED = 3 };

static void call(const char* name, int before)
{
    for (int i = 0; i < CALLS; i++) {
        if (strcmp(kCalls[i].name, name) == 0)
            kCalls[i].go(before);
    }
    _exit(has_failed ? SOME_FAILED : 0);
}

/* The first allocation fails, then the second, ..., until none is left to fail. */
static void call_with_each_failing(const char* name)
{
    for (int before = 0; before < 10000; before++) {
        char number[16];
        snprintf(number, sizeof(number), "%d", before);
        const int status = run_again(name, number, NULL);
        if (status != 0 && !(WIFEXITED(status) && WEXITSTATUS(status) == SOME_FAILED))
            printf("%s, allocation %d: status %#x\n", name, before, (unsigned)status);
        expect(WIFEXITED(status));
        if (WEXITSTATUS(status) == 0)
            return;
        expect(WEXITSTATUS(status) == SOME_FAILED);
    }
    abort();
}

void ProgramMain(void)
{
    const char* number = __GetCommand(2);
    if (number[0] >= '0' && number[0] <= '9')
        call(__GetCommand(1), atoi(number));
    Open_Sys(0);
    for (int i = 0; i < CALLS; i++)
        call_with_each_failing(kCalls[i].name);
    End();
}
