#ifndef PLINTH_H
#define PLINTH_H

/* The run-time library of a compiled program: one C function per statement or built-in.
 *
 * Objects are named by idents, integers that the call which creates them hands out. Failure is
 * silent: an unknown ident or a wrong kind makes a call do nothing and return 0, -1, false, null
 * or "". Where no thread is named, a call belongs to the program's main thread; handlers run on
 * the thread of their window, with the window locked. A call of another thread for that window
 * waits until the handler has ended. Handlers may use one another's windows: where two of them
 * would wait for each other, one lets the other have its window for the call that is waiting, and
 * goes on with both. Text results live in a ring of sixteen slots or in a buffer of their function:
 * never free them, and copy what is kept.
 *
 * A target, the first argument of every drawing call, is the ident of a window or an image, -1 for
 * the one that SetDefaultGfx named, or the address of a view. */

#include <stdbool.h>
#include <stdint.h>

#pragma GCC visibility push(default)
#ifdef __cplusplus
extern "C" {
#endif

/* ---- Start-up, shutdown, allocation ---------------------------------------------------------- */

/* The command line, filled by the start object; see __GetCommand. */
extern int32_t __argc;
extern char **__argv;
/* Where __MultiStr puts its result. */
extern char __kcb[1025];

/* Creates the application, runs `program` on a thread of its own and the application's loop on
   the calling thread, which must be the process's main thread. Returns 0 once the application has
   quit (after End, or when the last window closed), also while `program` is still inside a call;
   a non-zero status when the application could not be made. Call it once. */
int32_t PlinthStart(int argc, char **argv, void (*program)(void));

/* Makes the registry of all objects: the program's first call. With `tracker` non-zero the library
   runs inside a host that has an application of its own and never tells it to quit. Returns the
   table for Close_Sys, null when memory runs out. */
void **Open_Sys(uint8_t tracker);

/* Closes all objects but the windows, frees the table that Open_Sys returned (null or a table
   closed before is skipped), and tells the application to quit unless it runs inside a host. */
void Close_Sys(void **table);

/* The program's last call: frees the system list, ends the directory scan and tells the application
   to quit, whereupon every window closes without asking. Objects stay open; see Close_Sys. A second
   call does no harm. */
void End(void);

/* Returns `size` bytes filled with zero, null if `size` is negative or memory runs out. Any
   thread. */
void *MyAlloc(int32_t size);

/* Frees a block of MyAlloc; null is skipped. Any thread. */
void MyFree(void *block);

/* Returns the next ident: 0x14041968 at first, then one more with each call. Any thread. */
uint32_t GetUniqueID(void);

/* Returns word `index` of the command line, 0 the program's own path; "" outside it. */
const char *__GetCommand(int32_t index);

/* Returns a zero-filled text buffer for `length` characters, which lives as long as the process;
   null if `length` is negative or memory runs out. */
char *alloc_string(int32_t length);

/* Fills table[0] to table[count - 1] with buffers for 256 characters each (null where memory ran
   out) and ends the table with a null pointer: it has count + 1 places. Returns `count`. */
int32_t init_tab_string(char **table, int32_t count);

/* Joins C strings, up to a null pointer, in __kcb, and returns it. `count` is not looked at. What
   goes beyond 1024 characters is cut off. */
char *__MultiStr(int32_t count, ...);

/* Do nothing: programs that redimension an array or were compiled with debugging call them. */
void Redim(void);
void OpenDebug(void);
void CloseDebug(void);
void SetDebug(void);
void SetMessage(void);

/* Is called for each silent failure: `code` says why, `text` which call. Writes a line to standard
   error in a debug build and where the environment variable PLINTH_TRACE is set. Any thread. */
void show_dbg(int32_t code, int32_t ident, const char *text);

/* ---- Strings --------------------------------------------------------------------------------- */

/* Text is bytes up to a zero; a null text counts as the empty one. Results live in a ring of
   sixteen slots of 257 bytes: copy one before sixteen more slots are taken. Mid and MidStr take two
   slots, searches two for every position they examine. Where no terminator is written, a result
   goes on with what its slot held before. */

/* Returns the first `n` bytes of `s`, at most 257; a negative `n` stands for all. No terminator is
   written if `s` is longer than `n`. */
char *Left(const char *s, int32_t n);

/* Returns the last `n` bytes of `s`, at most 257. No terminator is written unless `n` exceeds the
   length. */
char *Right(const char *s, int32_t n);

/* Returns `count` bytes of `s` from the 1-based `start` (0 counts as 1), at most 257; with -1 the
   rest. "" past the end and for a negative start. Takes two slots; the terminator goes to
   result[count], even if that lies in a later slot. */
char *Mid(const char *s, int32_t start, int32_t count);

/* Returns the rest of `s` from the 1-based `start`, "" past the end. Takes two slots. */
char *MidStr(const char *s, int32_t start);

/* Searches for `find` behind the first `offset` bytes of `s`. Returns its 1-based position counted
   from there, 0 if it is not found; an empty `find` is found at 1. Takes two slots for every
   position up to the match, or for every byte of `s`. */
int32_t Instr(int32_t offset, const char *s, const char *find);

/* Returns the length of `s` in bytes. */
int32_t Len(const char *s);

/* Returns `n` blanks, "" for 0 and less; from 257 on without a terminator. */
char *Space(int32_t n);

/* Returns `s` repeated `n` times, "" for 0 and less; from 257 bytes on cut and without a
   terminator. */
char *String(int32_t n, const char *s);

/* Returns the text of the one byte `c`. */
char *Chr(uint8_t c);

/* Returns the first byte of `s` as a signed number, 0 for "". */
int32_t Chr2(const char *s);

/* Return the first 257 bytes of `s` in lower and in upper case. Bytes from 0x80 on follow the C
   library. */
char *Lcase(const char *s);
char *Ucase(const char *s);

/* Returns `s` in lower case, its first byte in upper case. */
char *TitleCase(const char *s);

/* Returns `s` without leading blanks. Takes a slot, two for each leading blank, and four. */
char *Ltrim(const char *s);

/* Returns `s` up to the first blank behind its leading blanks, which stay. */
char *Rtrim(const char *s);

/* Returns `s` without its leading blanks and without its last blank and what follows that one. The
   result begins inside its slot. */
char *Trim(const char *s);

/* Returns what stands before the first `sep` in `s`: all if there is none, "" for an empty `sep`.
   At most 256 bytes. Takes a slot, two for each position examined, and two if there is one. */
char *Extract(const char *s, const char *sep);

/* Returns the first 257 bytes of `s` with every `find` replaced by `repl`, also where a replacement
   makes a new one, cut at 256 bytes. A replacement that never ends stops when the text no longer
   changes or fits. Takes a slot, two for each position examined and four for each replacement. */
char *Replace(const char *s, const char *find, const char *repl);

/* Returns the directory part of `path`, made absolute, with a slash at its end; "" if the path
   cannot be made. Lives until the next call. */
char *ExtractPathName(const char *path);

/* Returns the last part of `path`, "" if the path cannot be made. Lives until the next call. */
char *ExtractFileName(const char *path);

/* Returns `x` with six significant digits, in exponent form if it is very large or small ("%g"). */
char *Str(double x);

/* As Str, with a comma for the decimal point. */
char *Cstr(double x);

/* Returns the number at the start of `s`: blanks before it are skipped, what follows is ignored; 0
   if there is none. The decimal point is "." in every locale. */
double Val(const char *s);

/* As Val, with the first comma of `s` taken for the decimal point. Looks at 1023 bytes. */
double Cdbl(const char *s);

/* Returns `x` formatted as `fmt` says, a text with one floating conversion as printf has it
   ("%.2f"), cut at 256 bytes. Any other `fmt` is returned as it stands. */
char *Format(double x, const char *fmt);

/* Return `n` in octal, hexadecimal and binary digits, without leading zeros. Oct takes a slot, the
   others' results live until their next call. */
char *Oct(uint32_t n);
char *Hex(uint32_t n);
char *Bin(int32_t n);

/* ---- Console, numbers, sorting --------------------------------------------------------------- */

/* Writes `x` to standard output, with up to six decimals that end at the first zero among them: 3.5
   as "3.5", 3 as "3", 1.05 as "1". Returns the number of bytes, negative if that failed. */
int32_t Print(double x);

/* Writes a line end to standard output. */
void WriteCR(void);

/* Returns `x` less its floor, which is taken in single precision: Frac(-1.25) is 0.75. */
double Frac(double x);

/* Returns -1 for a number below zero, 0 for zero, 1 for all else. */
int32_t Sgn(double x);

/* Returns a random integer from 0 to |n| - 1; for 0 a random number from 0 up to, but less than, 1.
   Every call is seeded with the clock: calls in the same microsecond return the same number. */
double Rnd(int32_t n);

/* Returns `x` rounded to an integer, halves upward. Its floor is taken in single precision. */
double Round(double x);

/* Leaves the array as it is: no number of elements is passed. `type` is 0 for 16-bit and 1 for
   32-bit integers, 2 for singles, 3 for doubles, 4 for strings. */
void Sort(void *base, uint32_t type);

/* ---- Time, date, pauses ---------------------------------------------------------------------- */

/* Set the clock to a time of this day, or to a date at this time of day; local time. `year` is the
   full one, `month` 1 to 12. Fields outside their ranges count on: 30 February 2000 is 1 March
   (ISO C mktime). Return false if there is no such time, else true, even where the system does
   not let the program set its clock. */
bool SetTime(int32_t hour, int32_t minute, int32_t second);
bool SetDate(int32_t year, int32_t month, int32_t day);

/* Returns a part of the local time: 0 day of the month, 1 month (1 to 12), 2 years since 1900,
   3 hour, 4 minute, 5 second, 6 weekday (0: Sunday); 0 for any other selector. */
int32_t GetInfoTime(int32_t selector);

/* Return the local date as "05/03/2001", and the local time as "17:04:59". The text lives until
   the next call of the same function. */
char *GetDate(void);
char *GetTime(void);

/* Chooses what GetDate puts first: 1 the day (as at the start), anything else the month. */
void SetFormatDate(uint8_t day_first);

/* Returns microseconds: since the system was started if `since_boot` is not 0, else since 1970.
   Any thread. */
int64_t GetTicks(uint8_t since_boot);

/* Pause the calling thread; values below 1 do not. The microseconds of WaitSecs have 32 bits: from
   2148 to 4294 seconds it does not wait at all. Any thread. */
void WaitTicks(int32_t duration_us);
void WaitSecs(int32_t seconds);

/* Moves the cursor of the terminal to its first place and clears it (ANSI X3.64). */
void ClearScreen(void);

/* ---- System lists and tasks ------------------------------------------------------------------ */

/* What GetList fills the system list with: the names of devices, font families and mounted volumes
   that last, the paths of what was used lately, newest first, at most 64. */
enum {
    PLINTH_LIST_JOYSTICKS = 0,
    PLINTH_LIST_SERIAL_PORTS = 1,
    PLINTH_LIST_FONTS = 2,
    PLINTH_LIST_MIDI_PORTS = 3,
    PLINTH_LIST_VOLUMES = 4,
    PLINTH_LIST_RECENT_APPS = 5,
    PLINTH_LIST_RECENT_DOCUMENTS = 6,
    PLINTH_LIST_RECENT_FOLDERS = 7
};

/* Empties the system list and fills it anew; a kind above 7 only empties it. */
void GetList(uint32_t kind);

/* Returns the number of names in the system list. */
int32_t CountList(void);

/* Returns the name at `index`, from 0, of the system list, which keeps it until it is emptied; ""
   for one that could not be copied and outside the list. */
const char *GetInfoList(int32_t index);

/* Frees the names of the system list and empties it. */
void FreeList(void);

/* Append recent applications, documents or folders to the system list, which is not emptied
   before: calls add up. */
void GetRecentApp(void);
void GetRecentDocument(void);
void GetRecentFolder(void);

/* Starts a program: `path` is its file's, which is not searched for, or an application signature.
   `arguments` (may be null) ends with a null pointer; the first empty string ends it, too, and what
   follows 33 of them is left out. Returns the id of its thread or team, or 0. */
int32_t RunProg(const char *path, const char *const *arguments);

/* Kills the team of that thread, or of a program that RunProg started. Returns 0, or why it can not
   be, a negative status code. */
int32_t KillTask(int32_t thread);

/* Set and return the priority of the calling thread: 0 to 120, 10 is normal. The system raises it
   for privileged programs only; the number is kept anyway. Any thread. */
void SetPriTask(int32_t priority);
int32_t GetPriTask(void);

/* Frees an array's strings up to the first null pointer, and the array, all blocks of MyAlloc; null
   is skipped. Any thread. */
void FreeData(char **table);

/* Returns a new block of MyAlloc with the items of a BList, which stay the list's, and a null
   pointer behind the last; null for an empty list, for null, and when memory runs out. */
char **GetListe_List(void *list);

/* ---- Windows and events ---------------------------------------------------------------------- */

/* The events of a window that call a handler, by slot, with what it gets (32-bit integers;
   coordinates and sizes cut to whole pixels), and the bit of the event mask that must be set, as
   all are at first. */
enum {
    PLINTH_ACTIVATED = 0,            /* none; bit 7 */
    PLINTH_DEACTIVATED = 1,          /* none; bit 9 */
    PLINTH_MINIMIZED = 2,            /* 1 minimised (bit 11), 0 restored (bit 10) */
    PLINTH_MOVED = 3,                /* left, top on the screen; bit 13 */
    PLINTH_ZOOMED = 4,               /* none; bit 14 */
    PLINTH_HIDDEN = 5,               /* none; always */
    PLINTH_SHOWN = 6,                /* none; bit 10 */
    PLINTH_REDRAWN = 7,              /* last width; bit 16 */
    PLINTH_RESIZED = 8,              /* width, height; bit 12 */
    PLINTH_SCREEN_CHANGED = 9,       /* colour space; bit 19 */
    PLINTH_WORKSPACE_ACTIVATED = 10, /* number, 1 entered or 0 left; bit 17 */
    PLINTH_WORKSPACES_CHANGED = 11,  /* old set, new set; bit 18 */
    PLINTH_CLOSE_REQUESTED = 12,     /* none; bit 0; low byte of the result non-zero: may close */
    PLINTH_KEY = 13,                 /* character, or key + 200 for a function key; modifiers */
    PLINTH_MOUSE_DOWN = 14,          /* x, y, button 1, 2 or 4, click count; bit 6 */
    PLINTH_MOUSE_MOVED = 15,         /* x, y; bit 4 */
    PLINTH_TIMER = 16,               /* none; bit 15 */
    PLINTH_MENU_ITEM = 17,           /* the item's code */
    PLINTH_MENUS_BEGINNING = 18,     /* none */
    PLINTH_FILES_DROPPED = 21        /* count, char ** of paths that live during the call */
};

/* Opens and shows a titled window whose content covers (x, y) to (x + width, y + height), screen
   pixels. Returns its ident; 0 for a negative width or height, when there is no memory for its
   bitmap, and without a registry. Any thread. */
int32_t OpenWindow(int32_t x, int32_t y, int32_t width, int32_t height);

/* Closes a window without asking its close handler, and ends the application with the last one. A
   handler that closes its own window ends there, but for PLINTH_HIDDEN while the window is being
   closed. A handler that closes another window goes on at once: that window is unknown then, and
   goes when its own handler has ended. Any other thread waits for that. An unknown ident does
   nothing. Any thread. */
void CloseWindow(int32_t ident);

/* Stores the handler of one event, or null for none; see the slots above. It is called as a C
   function with those arguments. An unknown ident and a slot outside 0..21 change nothing. Waits
   while a handler of the window runs on another thread. Any thread. */
void SetHandlerForWindow(int32_t ident, int32_t slot, void *handler);

/* Starts (1) or stops (0) the window's timer, which calls the handler PLINTH_TIMER every so many
   seconds as SetTimerCount set. Stopping forgets the seconds counted so far. Any thread. */
void SetTimerStart(int32_t ident, uint8_t on);

/* Sets the timer's period, in seconds, and begins counting anew; 0 stops the timer, a negative
   period is ignored. Any thread. */
void SetTimerCount(int32_t ident, int32_t period);

/* True while a window with that ident is open. Any thread. */
bool is_window_ident(int32_t ident);

/* ---- Window operations ----------------------------------------------------------------------- */

/* The window manager carries these out in its own time, and they do not wait for it: what a call
   set is what the next one reads. An ident that is no open window's does nothing and returns 0,
   false or "". Coordinates and sizes are pixels of the content; a size of 199 covers 200 of them,
   and any number does no harm. Any thread. */

/* Move a window's left top corner to (x, y) of the screen; resize it, or one of its sides. */
void MoveWindow(int32_t window, int32_t x, int32_t y);
void ChangeWindow(int32_t window, int32_t width, int32_t height);
void ChangeWidthWindow(int32_t window, int32_t width);
void ChangeHeightWindow(int32_t window, int32_t height);
/* Moves a window to the middle of the screen, unless it is larger than that. */
void CenterWindow(int32_t window);
/* Returns what `selector` asks of the frame: 0 left, 1 top, 2 width, 3 height; 0 for others. */
int32_t GetWindowPosition(int32_t window, int32_t selector);
/* Set the smallest and the largest size; the window takes one within. A smallest size above the
   largest changes nothing. */
void SetMinSize(int32_t window, int32_t width, int32_t height);
void SetMaxSize(int32_t window, int32_t width, int32_t height);

/* Sets the title, null counts as "". */
void SetWindowTitle(int32_t window, const char *title);
/* Returns the title. The text lives until the next call. Main thread. */
const char *GetWindowTitle(int32_t window);

/* Shows a window and makes it the active one; hides it. A window that was hidden twice has to be
   shown twice. Both call its handler, on the calling thread. */
void ShowWindow(int32_t window);
void HideWindow(int32_t window);
/* Makes a window that is not hidden the active one. */
void ActivateWindow(int32_t window);
/* Makes a window an icon (`flag` not 0), or opens it again; nothing while it is hidden or blocks
   others. Calls its handler, on the calling thread. */
void Iconifie(int32_t window, int32_t flag);
/* Returns true while the window is open. */
bool IsOpenedWindow(int32_t window);
/* Returns true while the window is hidden: the opposite of its name. */
bool IsVisibleWindow(int32_t window);

/* Makes a window modal (`flag` not 0): while it is shown, the program's other windows take no
   clicks, keys and close buttons. 0 makes it a titled window like others. */
void BlockWindow(int32_t window, int32_t flag);

/* Looks of a window. */
enum {
    PLINTH_TITLED_LOOK = 0,
    PLINTH_BORDERED_LOOK = 1, /* a line around the content */
    PLINTH_MODAL_LOOK = 2,    /* a border without a title */
    PLINTH_FLOATING_LOOK = 3, /* a small title */
    PLINTH_BARE_LOOK = 4,     /* the content alone */
    PLINTH_DOCUMENT_LOOK = 5  /* a title, and a corner to resize by */
};
/* Sets the look, one of the above; other numbers do nothing. */
void SetWindowLook(int32_t window, int32_t look);

/* Allow (`flag` not 0, and at first) or forbid the user to resize, move, close, zoom and minimise a
   window. The program still can. */
void WindowResizable(int32_t window, int32_t flag);
void WindowMovable(int32_t window, int32_t flag);
void WindowClosable(int32_t window, int32_t flag);
void WindowZoomable(int32_t window, int32_t flag);
void WindowMinimizable(int32_t window, int32_t flag);
/* Has the content follow while the user resizes a window (`flag` not 0), or an outline alone, as at
   first, where the window manager has one. */
void WindowResizeMode(int32_t window, int32_t flag);
/* Stores which of these new windows are to have; windows do not look at it. */
void SetWindowMode(uint32_t bits);

/* Return and set the workspaces that show a window, a bit each, bit 0 the first; 0 stands for the
   current one. Desktops that have a window on one workspace or on all show one of several bits on
   all. */
uint32_t GetWorkspaceWin(int32_t window);
void SetWorkspaceWin(int32_t window, uint32_t workspaces);
/* Sets the number of workspaces, 1 to 32; others are ignored. */
void SetMaxWorkspace(int32_t count);
/* Shows a workspace, from 0; nothing for one that is not there. */
void SetCurrentWorkspace(int32_t number);
/* Return the number of the workspace shown, and how many there are. */
int32_t GetCurrentWorkspace(void);
int32_t CountWorkspace(void);

/* Make a window the default one, and return its ident, 0 if none was set. When it closes, the
   oldest open window takes its place. */
void SetWindowDefault(int32_t window);
int32_t GetWindowDefault(void);

/* Makes a gadget of a window the one that gets Enter, whichever view has the focus: a button is
   pressed, a check box changes, a list invokes its selection. A button shows that it is the one.
   A gadget of another window does nothing. */
void SetDefaultButton(int32_t window, int32_t gadget);

/* Returns the address of the window object, 0 if it is not open. It is good until that closes. */
intptr_t GetAdress(int32_t window);

/* Sets the cursor of the application: the bar for texts (`flag` not 0), or the hand. */
void SetCursor(int32_t flag);

/* Tool tips: texts that show for three seconds beside the pointer when it has rested over a gadget
   of the active window for one second, and go when it moves or is used. Any thread.

   Turns them on or off for a window, which forgets the texts that it had so far. Turned on twice,
   it goes on showing those it had as well, until it closes. */
void ToolTipsWindow(int32_t window, int8_t on);

/* Sets the text of a gadget, in place of the one that it had; null takes it away, and "" shows
   none. The gadget's window gets tool tips if it has none; a gadget in no window is left alone. A
   gadget without a text shows that of the box around it. */
void SetTipsWindow(int32_t gadget, const char *text);

/* ---- Menus ----------------------------------------------------------------------------------- */

/* A menu is described by an array of lines, up to one with "q" behind a menu, or to a null pointer.
   A line has fixed columns; one that is shorter goes on with blanks:

   0      what it is, see below
   1      shortcut: the key that chooses the item together with Command (which the user types as
          Ctrl, or as Alt where PLINTH_COMMAND_KEY=alt is set); "*" for none
   2      "1": disabled
   3      "1": marked, if column 4 is "1"
   4      "1": checkable; each choice inverts the mark, and one that is not loses it when drawn
   5      "1": a menu of which one item at most is marked ("t" and "x")
   6..9   code, four decimal digits
   10...  label ("t", "x", "i")

   t      a new menu in the bar, or in the pop-up menu; the next lines add to it
   x      a submenu of the present menu; the next lines add to it
   i      an item
   e      an item of the submenu that was opened last, with its label from column 7
   s      the same, and back to the menu above
   -      a line between items
   q      the end, behind a menu; before the first one it is skipped

   Items before the first menu are ignored. The title of a menu takes on the code of the last item
   in it, and stands for it in the Set...Label calls. */

/* Builds a menu bar, or a menu that pops up at a click. Returns its ident; 0 for null, for an array
   without a menu, for a line of another kind, and without memory. Main thread. */
int32_t CreateMenu(const char *const *description);
int32_t CreatePopUpMenu(const char *const *description);

/* Puts a bar on top of a window, in place of the one that it had; the content moves down by the
   bar's height. A chosen item calls the window's handler PLINTH_MENU_ITEM with its code. Returns 1;
   0 for an unknown window, for an ident that is no bar's, and for a bar that another window shows.
   Main thread. */
int32_t AttachMenuToWin(int32_t window, int32_t menu);

/* Has the secondary button open a pop-up menu in a window, in place of the one that it had; 0 for
   none. Choices are told as those of a bar. Returns 1; 0 for an unknown window, for an ident that
   is no pop-up menu's, and for one that another window has. Main thread. */
int32_t AttachPopUpToWindow(int32_t window, int32_t menu);

/* Takes the bar off a window, which may be attached again. Main thread. */
void RemoveMenu(int32_t window);

/* Frees a menu that no window shows; another one stays. Main thread. */
void KillMenu(int32_t menu);

/* Change the first item with a code under each title of a window's bar: its mark; whether it can be
   chosen (1 disables it, 0 enables it); its label. An unknown window, a window without a bar, an
   unknown code and a null text change nothing. Main thread. */
void SetCheckedLabel(int32_t window, int32_t code, int32_t flag);
void SetEnableLabel(int32_t window, int32_t code, int32_t flag);
void SetNameLabel(int32_t window, int32_t code, const char *text);

/* ---- Gadgets --------------------------------------------------------------------------------- */

/* A gadget is a control in a window, named by its ident; its place counts from the window's left
   top corner, in pixels. Calls find it by its ident, lock its window for what they do, and do
   nothing for an ident that names none, or one of another kind than they are for. A gadget may be
   made without a window. Colours are 0xRRGGBBAA. Any thread.

   Screen readers, and other programs that ask the desktop's accessibility bus, find every gadget
   with its name, value and state, and may press, set and focus it; handlers are called as for the
   user's own hand. A program need do nothing for it. What has no label, as lists, sliders and
   icons, is named by its tool tip (SetTipsWindow). Passwords are never told. */

/* Kinds of gadgets. */
enum {
    PLINTH_BUTTON = 1,
    PLINTH_CHECK_BOX = 2,
    PLINTH_STRING_FIELD = 3,
    PLINTH_INTEGER_FIELD = 4,
    PLINTH_PASSWORD_FIELD = 5,
    PLINTH_DECIMAL_FIELD = 6,
    PLINTH_TEXT_LABEL = 11,
    PLINTH_NUMBER_LABEL = 12,
    PLINTH_SCROLL_BAR = 13, /* horizontal */
    PLINTH_VERTICAL_SCROLL_BAR = 14,
    PLINTH_SLIDER = 15, /* horizontal */
    PLINTH_VERTICAL_SLIDER = 16,
    PLINTH_STATUS_BAR = 17,
    PLINTH_RADIO_GROUP = 18,
    PLINTH_CHOICE_FIELD = 19,
    PLINTH_BOX = 24,
    PLINTH_TEXT_EDITOR = 26, /* 27 to 29: with a vertical, a horizontal, both scroll bars */
    PLINTH_COLOR_CONTROL = 30,
    PLINTH_ICON = 31,       /* can be dragged; 16 pixels square */
    PLINTH_LARGE_ICON = 32, /* the same; 32 pixels square */
    PLINTH_PICTURE_BUTTON = 33
};

/* Slots of SetHandlerForGadget. Handlers run on the thread of the gadget's window, or on that of a
   call that changes a value; the window is locked. */
enum {
    PLINTH_GADGET_ACTION = 1, /* (): a button was clicked, a check box or radio button pressed */
    PLINTH_GADGET_KEY = 2,    /* (int32_t key, int32_t modifiers) */
    PLINTH_GADGET_VALUE = 3,  /* (int32_t value); a colour's are (red, green, blue) */
    PLINTH_GADGET_INPUT = 4,  /* (const char *text): a key was typed in an entry field */
    PLINTH_GADGET_ENTER = 5,  /* (const char *text): Enter, in an entry field */
    PLINTH_GADGET_LIST = 6,   /* (int32_t item) */
    PLINTH_GADGET_DROP = 7    /* (int32_t count, char **paths) */
};

/* Makes a gadget of a kind in a window, or in none for -1, and returns its ident; 0 if there is no
   such kind or window. `text` is its label, or for radio groups and choice fields an array of
   labels that ends with a null pointer or an empty one. `value` is the maximum of a slider and the
   icon of a picture button or of an icon to be dragged. The frame is one pixel larger than width
   and height say; that of an icon is its size. A press drags an icon as a message 'ddms', with its
   gadget's ident as "nb". */
int32_t CreateGadget(int32_t kind, int32_t window_ident, int32_t x, int32_t y, int32_t width,
                     int32_t height, const void *text, int32_t value);

/* Hide a gadget, and show it again. Kill it: it is gone, and its ident names nothing; gadgets
   inside a box that is killed stay, without a window. The first argument does not matter. Any
   handler may kill any gadget, also its own. */
void HideGadget(int32_t window_ident, int32_t ident);
void SetGadget(int32_t window_ident, int32_t ident);
void ShowGadget(int32_t window_ident, int32_t ident);
void KillGadget(int32_t window_ident, int32_t ident);

/* Takes every other gadget out of a window, beginning with the first: they stay gadgets, without a
   window. Nothing stays locked, so that other threads can draw into the window at once. */
void RemoveAll(int32_t window_ident);

/* Puts a gadget that is in no window into one. Nothing stays locked. */
void AttachGadgetToWindow(int32_t window_ident, int32_t ident);

/* Stores the handler of a slot, null for none. */
void SetHandlerForGadget(int32_t ident, int32_t slot, void *handler);

/* With a flag of 1 the gadget takes the keyboard when it is clicked. */
void FocusOnClick(int32_t ident, int8_t flag);

/* Returns true for the ident of a gadget. */
bool is_gadget_ident(int32_t ident);

/* Style. What is set shows when the gadget is drawn next. A flag of 0 draws text without grey
   edges. */
void SetFontGadget(int32_t ident, int32_t font_ident);
void SetAntiliasingGadget(int32_t ident, int8_t flag);
void SetForeColorGadget(int32_t ident, int32_t high, int32_t low);
void SetBackColorGadget(int32_t ident, int32_t color);

/* The label of a control; null clears it. GetLabel returns "" for what has none; the text lives
   until its next call. Main thread. */
void SetLabel(int32_t ident, const char *text);
const char *GetLabel(int32_t ident);

/* A disabled gadget is grey and takes no press. */
void SetEnabled(int32_t ident, int8_t flag);
int32_t GetEnabled(int32_t ident);

/* Gives a gadget the keyboard. */
void ActivateGadget(int32_t ident);

/* Has the secondary button open a pop-up menu on a button or a list; 0 for none. Choices are told
   as those of a window's menu. The menu stays the program's: several gadgets may have it, and one
   that was killed opens no more. An ident that is no pop-up menu's changes nothing. */
void AttachPopUpToGadget(int32_t ident, int32_t menu);

/* Changes a gadget's size. */
void ResizeGadget(int32_t ident, int32_t width, int32_t height);

/* A check box. Setting it calls its value handler. */
void SetChecked(int32_t ident, int32_t flag);
bool GetChecked(int32_t ident);

/* The value of a gadget: of a slider, scroll bar or check box; the index of a radio button or a
   choice, -1 for no choice; the tab in front; a colour control's number. A status bar goes on by
   the value that is set. 0 for all other kinds. */
void SetValue(int32_t ident, int32_t value);
int32_t GetValue(int32_t ident);

/* Chooses the button `index` of a radio group, whose value handler is called; none if there is no
   such button. */
void RadSelected(int32_t ident, int32_t index);

/* Choice fields. MxSelected marks the item at a place of its menu, from 0; without such an item
   none is marked. No handler is called. ChangeMxData replaces the items by those of an array, which
   ends with a null pointer; an empty label takes a number and makes no item. Then nothing is
   marked, and the field shows the former choice until another. The value handler gets the number of
   the item that the user chooses. */
void MxSelected(int32_t ident, int32_t index);
void ChangeMxData(int32_t ident, const char *const *labels);

/* Scroll bars: how much of the whole can be seen, in percent; the range of values; what arrows and
   presses beside the thumb move it by. */
void SetProportion(int32_t ident, int32_t percent);
void SetRange(int32_t ident, int32_t minimum, int32_t maximum);
void SetSteps(int32_t ident, int32_t small_step, int32_t large_step);

/* List views (kinds 7 to 10) and outline list views (20 to 23), whose rows are numbered from 0; in
   outlines only those that show count. A list owns its rows. Slot 2 gets keys, slot 3 the first
   selected row, or -1, when the selection changes, slot 6 the row of a double click.

   Adds a row at the end; in an outline, as the last row below its `n`th top row. Texts are copied;
   null and empty ones add nothing. */
void AddLvEntry(int32_t ident, const char *text);
void AddEntryInSub(int32_t ident, int32_t n, const char *text);

/* Removes a row with all below it, or all rows. */
void RemoveItem(int32_t ident, int32_t index);
void ClearListView(int32_t ident);

/* Change a row: its text; its own colours 0xRRGGBBAA, in the order of ChangeLvColor's first four;
   whether it can be selected. */
void ChangeEntryStr(int32_t ident, int32_t index, const char *text);
void ChangeItemColor(int32_t ident, int32_t index, int32_t c0, int32_t c1, int32_t c2, int32_t c3);
void EnableItemLv(int32_t ident, int32_t index, int32_t flag);

/* The list's colours: ground and text of rows, text and ground of selected ones, ground and text of
   disabled ones. -1 keeps a colour. */
void ChangeLvColor(int32_t ident, int32_t c0, int32_t c1, int32_t c2, int32_t c3, int32_t c4,
                   int32_t c5);

/* Selection: of several rows or one, which is then the first; of a row alone; of all rows, or the
   first where one is all. GetLvSelected gives the first selected row, or -1. */
void SetMultiSelect(int32_t ident, int32_t flag);
void SetSelectEntry(int32_t ident, int32_t index);
void SetDeSelectEntry(int32_t ident, int32_t index);
void LvSelectAll(int32_t ident);
void LvSelectNone(int32_t ident);
void SetLvSelectEntry(int32_t ident, int32_t index, int32_t select); /* or deselects, for 0 */
bool IsItemSelected(int32_t ident, int32_t index);
int32_t CountEntry(int32_t ident);
int32_t GetLvSelected(int32_t ident);
int32_t CountEntry_system(int32_t ident, int32_t rows); /* the selected row instead, for 0 */

/* Order. Rows of an outline move with those below them, among those below the same row; SortLv, by
   the texts without case, moves its top rows. */
void SwapItem(int32_t ident, int32_t a, int32_t b);
void MoveItem(int32_t ident, int32_t from, int32_t to);
void SwapPosition(int32_t ident, int32_t a, int32_t b, int32_t swap); /* or moves, for 0 */
void SortLv(int32_t ident);

/* The text of a row, of the first and of the last one; "" if there is none. Its first 1,023 bytes
   stand in a buffer that the next such call uses again. GetTextLv takes the row for `which` 2, the
   first one for 0 and the last one for 1. Main thread. */
char *GetLvItem(int32_t ident, int32_t index);
char *GetLvFirstItem(int32_t ident);
char *GetLvLastItem(int32_t ident);
char *GetTextLv(int32_t ident, int32_t index, int32_t which);

/* Show or hide what is below a row, or below all. What is hidden is not selected. LvExpandSystem
   does one of the four. */
void LvExpand(int32_t ident, int32_t index);
void LvCollapse(int32_t ident, int32_t index);
void LvExpandAll(int32_t ident);
void LvCollapseAll(int32_t ident);
void LvExpandSystem(int32_t ident, int32_t index, int32_t expand, int32_t all);

/* Whether rows of a flat list can be dragged out: as a message 'DATA' with pointers "it" to the row
   and "gd" to the list, and the row's number "sl". */
void SetDragLv(int32_t ident, int32_t flag);

/* Has `function` called with 0, 0 before a row is drawn, with the list as default output, which is
   none afterwards. Null for no function. The window's thread. */
void SetDrawHookLv(int32_t ident, int32_t index, void *function);

/* Tabs (kind 25), numbered from 0, each with a page. A new tab comes last and brings the first one
   to the front. Slot 3 gets the number whenever a tab is brought to the front, also if it was
   there. Gadgets are put on a page with their place reckoned from its left top; tabs are not put
   into themselves nor onto their own pages. A removed tab leaves its gadgets as they are, but in no
   window; another tab comes to the front. A disabled one can not be brought there. */
void AddTab(int32_t ident, const char *label);
void RemoveTab(int32_t ident, int32_t index);
void AddGadgetInTab(int32_t ident, int32_t tab_ident, int32_t index);
void TabEnable(int32_t ident, int32_t index, int32_t flag);

/* The tab in front, -1 without tabs; 0 for a gadget that is none or in no window. */
void TabSelect(int32_t ident, int32_t index);
int32_t TabSelection(int32_t ident);

/* The tab, or the one in front, that the keyboard would bring to the front. */
void TabSetFocus(int32_t ident, int32_t index, int32_t focused);
void TabSetFocus2(int32_t ident, int32_t focused);

/* Tabs are all as wide as the widest label wants, for 0, or as usual, for 1. TabSystem sets the
   height for `what` 0, the width for 1. */
void SetTabHeight(int32_t ident, int32_t height);
void SetTabWidth(int32_t ident, int32_t width);
void TabSystem(int32_t ident, int32_t value, int32_t what);

/* Entry fields (kinds 3 to 6) for one line of text, a whole number, a password and a decimal
   number. A new one takes 15 bytes, its label stands in its left half, and its frame has the height
   that its font wants. A field takes only the keys that its filter lets through: of ASCII
   characters all in a text and a password; digits, a "-" in front and, in a decimal number, one "."
   in a number. Other characters come by pasting: an accent of a dead key and what an input method
   makes are keys like any other, of which only filters 5 and 6 take all. A password shows "*" for
   each key.

   The input handler gets the shown text after each key that was let through, the enter handler the
   shown text, or what the keys of a password field typed. Both texts live during the call. Tab goes
   on to the next gadget, Shift and Tab back. The calls leave a field that is in no window as it is.

   Shows a text, also in a password field; bytes behind the maximum are left out. Null is empty. */
void SetString(int32_t ident, const char *text);

/* Shows a number without its sign in a field for whole numbers; other fields stay. */
void SetInteger(int32_t ident, int32_t value);

/* Returns the shown text, "" if there is none. It lives until the thread's next call. */
const char *GetString(int32_t ident);

/* How many bytes a field takes; a longer text is cut. */
void SetMaxSizeString(int32_t ident, int32_t maximum);

/* Gives a field another filter: 0 whole number, 1 password, 2 decimal number, 3 text, 4 date
   (digits and two "/"), 7 time (digits and two ":"), 5 and 6 none: any key of any alphabet, and no
   hidden text. Another type changes nothing. A password field takes 256 bytes at most. */
void SetFilterString(int32_t ident, int32_t type);

/* Where a field begins beside its label, in pixels; a negative place counts from the label's end.
   For choice fields too. */
void SetDiviser(int32_t ident, int32_t place);

/* The handlers; slots 4 and 5 of SetHandlerForGadget. Null for none. */
void SetStringInputHandler(int32_t ident, void *handler);
void SetStringEnterHandler(int32_t ident, void *handler);

/* Whether the user may change the text, or select it. The first call does either: mode 0 for
   changing, 1 for selecting; another mode does nothing. */
void MakeStringSelectable(int32_t ident, int32_t mode, int8_t flag);
void MakeEditable(int32_t ident, int8_t flag);
void MakeSelectable(int32_t ident, int8_t flag);

/* The selection of an entry field or a text editor: removes it (command 0), cuts it into the
   clipboard (1), copies it there (2), puts the clipboard's text in its place (3); selects all (4);
   leaves the caret at the selection's start (5). Another command does nothing. */
void SelectCommand(int32_t ident, int32_t command);
void ClearString(int32_t ident);
void CutString(int32_t ident);
void CopyString(int32_t ident);
void PasteString(int32_t ident);
void SelectAll(int32_t ident);
void SelectNone(int32_t ident);

/* The text of a text label, and that of a number label. */
void SetTextString(int32_t ident, const char *text);
void SetNumberString(int32_t ident, int32_t value);

/* Text editors (kinds 26 to 29). Texts are UTF-8, of any bytes; offsets count bytes from 0, and
   what lies outside of the text means its nearest end. Lines are counted from 0 as they show: a
   long one is broken into several unless wrapping is off, an empty text has one, and a line feed at
   the end begins another. Slot 3 gets the length of the text when the user has changed it, once for
   what an input method makes, slot 2 each key when it has done what it does, slot 7 files that were
   dropped on the editor; they come to its window, too.

   Put a text in place of the whole, of which bytes behind the maximum are left out; or insert one
   before the selection, with the caret behind it, or nothing if it would exceed the maximum.
   TEditSetTextCommand does the second with a flag of 1, else the first. */
void TEditSetText(int32_t ident, const char *text);
void TEditInsertText(int32_t ident, const char *text);
void TEditSetTextCommand(int32_t ident, const char *text, int8_t insert);

/* How many bytes the text may have; a longer one is cut. */
void TEditSetMaxSize(int32_t ident, int32_t maximum);

/* Puts the caret at the start of a line, and shows it. */
void TEditGotoLine(int32_t ident, int32_t line);

/* From one tab stop to the next, pixels. */
void TEditSetTabWidth(int32_t ident, int32_t width);

/* Modes: whether lines are broken at the right edge; whether a new line begins with the blanks of
   the one before; whether the user may change the text, and select it. TEditCommand sets them by
   number, 0 to 3. */
void TEditWordWrap(int32_t ident, int8_t flag);
void TEditAutoIdent(int32_t ident, int8_t flag);
void TEditMakeEditable(int32_t ident, int8_t flag);
void TEditMakeSelectable(int32_t ident, int8_t flag);
void TEditCommand(int32_t ident, int32_t command, int8_t flag);

/* How many lines, and how many bytes the text has; 0 for what is no editor. */
int32_t TEditCountLines(int32_t ident);
int32_t TEditGetSize(int32_t ident);

/* Returns the text from the start of a line up to its line feed, 256 bytes at most, "" for a line
   past the end; a negative one is the first. It stands in the ring's first slot. Main thread. */
char *TEditGetLine(int32_t ident, int32_t line);

/* As GetString: the text of an entry field, "" for an editor. */
const char *TEditGetText(int32_t ident);

/* Returns the whole text with a zero behind it, a block that the program frees with MyFree; null
   for what is no editor, and without memory. */
char *TEditGetAll(int32_t ident);

/* Return the line that shows an offset, and the offset where a line starts: the text's end for one
   past the last. */
int32_t TEditLineAt(int32_t ident, int32_t offset);
int32_t TEditLineStart(int32_t ident, int32_t line);

/* The selection: where it starts (`which` 0) and ends (1), which end of it the keys move, and the
   part to be selected, which is scrolled to. Without a selection all three are the caret. */
int32_t TEditGetSelection(int32_t ident, int32_t which);
int32_t TEditCaret(int32_t ident);
void TEditSelect(int32_t ident, int32_t from, int32_t to);

/* Puts a text in place of the selection, with the caret behind it. */
void TEditReplaceSelection(int32_t ident, const char *text);

/* Returns where a text stands: first at `from` or behind it, or, with 2 in `flags`, last of those
   that end at `from` or before it; -1 if nowhere. Letters of any case are the same unless 1 is in
   `flags`; with 4 there is no letter or digit beside it. */
int32_t TEditFind(int32_t ident, const char *text, int32_t from, int32_t flags);

/* Take the last step back, typing, pasting ..., and bring it back. */
void TEditUndo(int32_t ident);
void TEditRedo(int32_t ident);

/* The colour 0xRRGGBBAA, and the font, of a part of the text. */
void TEditSetColor(int32_t ident, int32_t from, int32_t to, int32_t color);
void TEditSetFont(int32_t ident, int32_t from, int32_t to, int32_t font_ident);

/* Read a file as the whole text, and write the text to a file, links followed. Return true if they
   did; else false, and the text or the old file stays whole, with the C library's number of the
   reason in dos_err: for what is no plain file, one that has more bytes than the maximum, a full
   disk ... A file that was written keeps its permissions and attributes. */
bool TEditLoadFile(int32_t ident, const char *path);
bool TEditSaveFile(int32_t ident, const char *path);

/* Sliders: the value; the place in percent; a triangle as thumb for a flag of 0, else a block; the
   colours of the bar and of its filled part; how many hash marks there are, and where: 0 nowhere, 1
   above or left, 2 below or right, 3 both; the labels of the ends. */
void SetSliderPosition(int32_t ident, int32_t value);
void SetSliderProportion(int32_t ident, int32_t percent);
void SetStyle(int32_t ident, int32_t flag);
void SetBarColor(int32_t ident, int32_t color);
void SetFillColor(int32_t ident, int32_t color);
void SetHashCount(int32_t ident, int32_t count);
void SetHashType(int32_t ident, int32_t location);
void SetLimitsLabel(int32_t ident, const char *minimum, const char *maximum);

/* Status bars: the texts above the bar, the maximum, a step to go on by, the bar's colour and its
   height. SetStatusValue cuts texts off behind their first 299 bytes. */
void SetStatusLabel(int32_t ident, const char *text);
void SetStatusTrail(int32_t ident, const char *text);
void SetStatusMaxValue(int32_t ident, int32_t maximum);
void SetStatusValue(int32_t ident, int32_t delta);
void SetStatusBarColor(int32_t ident, int32_t color);
void SetStatusBarHeight(int32_t ident, int32_t height);

/* Boxes: the border (0 plain, 1 fancy, 2 none), the label, and gadgets put inside: their place then
   counts from the box's corner. A gadget as title stands in the place of the label. */
void SetBorder(int32_t ident, int32_t style);
void SetLabelBBox(int32_t ident, const char *text);
void BBoxAddGadget(int32_t box_ident, int32_t ident);
void BBoxAddGadgetTitle(int32_t box_ident, int32_t ident);

/* Colour controls: the size of the cells in pixels, and their columns: 4, 8, 16, 32 or 64 of 256.
   The colour is set as 0xRRGGBBAA, or by the control's own number, which is packed in the same way;
   both call the value handler. GetColor returns it with a low byte of 0, 0 for other gadgets and
   without a window. */
void SetCellSize(int32_t ident, int32_t size);
void SetLayout(int32_t ident, int32_t layout);
void SetColorRgb(int32_t ident, int32_t color);
void SetColorInt(int32_t ident, int32_t value);
int32_t GetColor(int32_t ident);

/* Returns (red << 24) + (green << 16) + (blue << 8). */
int32_t ReturnIntFromRgb(int32_t red, int32_t green, int32_t blue);

/* ---- Drawing --------------------------------------------------------------------------------- */

/* Drawing goes into the window's bitmap with the high colour; while the window's refresh mode is
   on, as it is at first, the changed part shows with the next screen update. Rectangles reach from
   (x, y) to (x + w, y + h), both included; with a negative `w` or `h` nothing is drawn. Coordinates
   are pixels from the left top of the content, and any number does no harm: what lies outside the
   bitmap is left out. Angles are whole degrees counter-clockwise from three o'clock, colours
   0xRRGGBBAA. A target that is no window, image or view does nothing; what returns a number returns
   0 then. Any thread may draw; a view as target is drawn into without a lock.

   A screen may have several pixels for each of these: the bitmap has one, and what is read from it,
   copied or saved is exactly what was drawn. The window shows text, curves and slopes of such a
   bitmap in the screen's own pixels; filled rectangles and lines along the axes, whose coordinates
   are whole, cover the same place. Where single pixels were written, images drawn or the bitmap
   changed in other ways, it shows the bitmap's own pixels, as squares. */

/* Makes a window or an image the target -1, until it closes; any other target makes -1 draw
   nothing. */
void SetDefaultGfx(intptr_t target);
/* Turns the refresh mode on (non-zero), which shows at once what was drawn, or off. */
void SetRefreshWindowMode(intptr_t target, int32_t on);

/* Fill and outline a rectangle. */
void FRectangle(intptr_t target, int32_t x, int32_t y, int32_t w, int32_t h);
void Rectangle(intptr_t target, int32_t x, int32_t y, int32_t w, int32_t h);
/* Outline and fill a rectangle with rounded corners of radii `rx` and `ry`. */
void SetStrokeRectangle(intptr_t target, int32_t x, int32_t y, int32_t w, int32_t h, int32_t rx,
                        int32_t ry);
void SetStrokeFill(intptr_t target, int32_t x, int32_t y, int32_t w, int32_t h, int32_t rx,
                   int32_t ry);
/* Outline and fill an ellipse or a circle around (cx, cy). */
void Ellipse(intptr_t target, int32_t cx, int32_t cy, int32_t rx, int32_t ry);
void FEllipse(intptr_t target, int32_t cx, int32_t cy, int32_t rx, int32_t ry);
void Circle(intptr_t target, int32_t cx, int32_t cy, int32_t r);
void FCircle(intptr_t target, int32_t cx, int32_t cy, int32_t r);
/* Draw the arc of such an ellipse from the angle `start` over `arc` degrees, a negative number of
   them clockwise; and the piece of pie that it cuts out. */
void Arc(intptr_t target, int32_t cx, int32_t cy, int32_t rx, int32_t ry, int32_t start,
         int32_t arc);
void FArc(intptr_t target, int32_t cx, int32_t cy, int32_t rx, int32_t ry, int32_t start,
          int32_t arc);
/* Outline and fill a triangle. */
void Triangle(intptr_t target, int32_t x1, int32_t y1, int32_t x2, int32_t y2, int32_t x3,
              int32_t y3);
void FTriangle(intptr_t target, int32_t x1, int32_t y1, int32_t x2, int32_t y2, int32_t x3,
               int32_t y3);
/* Draws a line, both ends included, and leaves the pen at its second end. */
void Line(intptr_t target, int32_t x1, int32_t y1, int32_t x2, int32_t y2);
/* Draws from the pen to (x, y), where the pen then is. */
void LineTo(intptr_t target, int32_t x, int32_t y);
/* Puts the pen to (x, y) and draws nothing. */
void MoveTo(intptr_t target, int32_t x, int32_t y);
/* Writes the pen's x and y, cut to whole pixels; nothing on failure and for null. */
void GetCurrentPos(intptr_t target, int32_t xy[2]);

/* Writes a line of text one line height below the pen and leaves the pen at its start, so that the
   next call writes the line below it. The text is UTF-8; other bytes show as Latin-1. Null and ""
   do nothing. */
void Text(intptr_t target, const char *text);
/* Returns the width of a text in whole pixels, rounded half up; 0 for null. */
int32_t GetTextWidth(intptr_t target, const char *text);

/* Sets one pixel of the window's bitmap to the high colour, red and blue exchanged, without showing
   it; nothing outside the bitmap. */
void WritePixel(intptr_t target, int32_t x, int32_t y);
/* Returns the index in the screen's palette, 0..255, of a pixel as WritePixel wrote it; 0 outside
   the bitmap. */
int32_t GetPixel(intptr_t target, int32_t x, int32_t y);
/* Fills the window, or a view as far as its window reaches, with the background colour; drawing
   colour and pen stay. */
void Clear(intptr_t target);

/* Sets drawing colour and low colour. */
void SetForeColor(intptr_t target, uint32_t fore, uint32_t back);
/* Sets the background colour, that of Clear. */
void SetBackColor(intptr_t target, uint32_t color);
/* Sets the width of lines in pixels. */
void SetPenWidth(intptr_t target, int32_t width);
/* Returns the width of lines, rounded half up. */
int32_t GetPenWidth(intptr_t target);
/* Sets line ends and corners: cap_mode and join_mode of the Interface Kit, miter limit 10. Other
   numbers change nothing, here and in the next two calls. */
void SetLineMode(intptr_t target, int32_t cap, int32_t join);
/* Sets the drawing_mode of the Interface Kit: B_OP_COPY 0 ... B_OP_ALPHA 10. */
void SetDrawMode(intptr_t target, int32_t mode);
/* Sets source_alpha and alpha_function of the Interface Kit, for B_OP_ALPHA. */
void SetAlphaMode(intptr_t target, int32_t source_alpha, int32_t alpha_function);

/* Limit drawing to a rectangle, and to the whole view. */
void SetClipping(intptr_t target, int32_t x, int32_t y, int32_t w, int32_t h);
void SetClippingAll(intptr_t target);
/* Limits drawing to the window's bounds (flag 0) or to the view's. */
void DrawAcces(intptr_t target, int32_t flag);

/* Copies the rectangle (sx, sy) to (sx + w, sy + h) so that its left top falls on (dx, dy). */
void Blit(intptr_t target, int32_t sx, int32_t sy, int32_t w, int32_t h, int32_t dx, int32_t dy);

/* Draw an engraved line from (x, y) over `length` pixels: a black one and a white one below or to
   the right of it. Colour, drawing mode and pen stay. */
void DrawSeparatorHoriz(intptr_t target, int32_t x, int32_t y, int32_t length);
void DrawSeparatorVert(intptr_t target, int32_t x, int32_t y, int32_t length);

/* Fill and stroke the polygon of `count` corners, pairs x, y in `points`; the stroke goes back to
   the first one if `closed` is not 0. Null and a count below 1 draw nothing. */
void FillPolygon(intptr_t target, int32_t count, const int16_t *points);
void StrokePolygon(intptr_t target, int32_t count, const int16_t *points, int32_t closed);
/* Fill and stroke a cubic Bezier curve of four pairs x, y: its start, two controls, its end. Null
   draws nothing. */
void FillBezier(intptr_t target, const int16_t *points);
void StrokeBezier(intptr_t target, const int16_t *points);
/* Draws lines from point to point; nothing for fewer than two and null. */
void PolyDraw(intptr_t target, int32_t count, const int16_t *points);

/* ---- Fonts ----------------------------------------------------------------------------------- */

/* A window has a font, which its text is drawn and measured with: the plain one, 12 pixels, at
   first. A call for a window that is not open changes nothing and returns what is said there.
   Any number is taken: a font of no size, or of a huge one, draws what of it can be seen. Any
   thread, but for the calls that return a name. */

/* Sets the size in pixels. */
void SetFontSize(int32_t window, int32_t size);
/* Set degrees: of the letters' stems to the baseline, 90 (as at first) being upright and less
   leaning to the right; and of the baseline to the horizontal, counter-clockwise. */
void SetShear(int32_t window, int32_t degrees);
void SetRotation(int32_t window, int32_t degrees);
/* Sets how characters are spaced, the low eight bits of `mode`: 0 by exact widths, 1 the same, each
   on a whole pixel, 2 by whole-pixel widths (as at first), 3 each as wide as an M. */
void SetSpacing(int32_t window, int32_t mode);
/* Turns smooth edges off (0) or on (anything else, and at first). */
void FontLeasing(int32_t window, int32_t smooth);

/* Returns 1 if all characters are of one width, else 0; 0 for an unknown window. */
int32_t IsFontFixed(int32_t window);
/* Returns the kind of the font's file: 0 TrueType, 1 PostScript; 0 for an unknown window. */
int32_t GetFontType(int32_t window);
/* Return what the setters above set, cut to whole numbers; 0 for an unknown window. */
int32_t GetFontSize(int32_t window);
int32_t GetShear(int32_t window);
int32_t GetRotation(int32_t window);
int32_t GetSpacing(int32_t window);

/* Makes the font the system's plain (0), bold (1) or fixed-width (2) one, as large as that is and
   without any of the settings above. Another kind does nothing. */
void SetFontType(int32_t window, int32_t kind);

/* Sets the face: the sum of 0x01 regular, 0x02 bold, 0x04 italic, 0x08 struck out, 0x10 underlined,
   0x20 negative, 0x40 outlined. 0 leaves it as it is; other bits count as regular. What the family
   has no style for is drawn as near to it as can be. */
void SetFontAttribut(int32_t window, int32_t flags);
/* Returns the face in bits of its own: 0x01 italic, 0x02 underlined, 0x04 negative, 0x08 outlined,
   0x10 struck out, 0x20 bold, 0x40 regular (which SetFontAttribut always sets); 1 for an unknown
   window. */
int32_t GetFontAttribut(int32_t window);

/* Sets the family and keeps the style, or the one nearest to it. An unknown family, null and ""
   change nothing. */
void SetFontName(int32_t window, const char *family);
/* Returns the family, "" for an unknown window. The text lives until the next call. Main thread. */
char *GetFontName(int32_t window);
/* Sets family, style and size, if the family is installed and `size` is 1 or more. A null style
   stands for the plain one. */
void OpenFontInListe(int32_t window, const char *family, const char *style, int32_t size);

/* Opens a font for calls that take one. A null or unknown family is the plain font's; a null or
   unknown style the one nearest to it. Returns its ident, 0 when memory runs out and without a
   registry. */
int32_t OpenFont(const char *family, const char *style, int32_t size);
/* Closes a font of OpenFont; what was set with it keeps its copy. An unknown ident does nothing. */
void CloseFont(int32_t font);

/* Returns true if a family of that name, in upper or lower case, is installed; also for "Swis721
   BT" and "Courier10 BT", for which the plain and the fixed font stand in. False for null. */
bool FontExists(const char *family);
/* Returns the number of installed families, as of at most half a second ago. */
int32_t CountFontList(void);
/* Returns the name of the family at `index`, from 0 in the order of names; "" outside the list. The
   text lives until the next call. Main thread. */
char *GetFontNameList(int32_t index);

/* ---- Icons and images ----------------------------------------------------------------------- */

/* An icon is a pair of pictures, the second one for the icon that is selected; an image is an icon
   of any size, up to 64 million pixels. Each has an ident, which drawing calls also take as their
   target: they draw into its first picture, on a transparent ground, with black at first. Calls
   that make one return its ident, and 0 if they can not. It lives until CloseIcon or Close_Sys.
   Where the screen has several pixels for each of a picture's, it is scaled smoothly, and a drawing
   in SVG that nobody has drawn on is drawn in the screen's own pixels. Any thread. */

/* Loads the icon of a file or folder, links followed, 16 and 32 pixels square: its own, else that
   of its type. */
int32_t LoadIcon(const char *path);

/* Loads a picture: PNG, JPEG, GIF, BMP, TIFF, PPM, Targa, WebP or SVG, whatever the file's name. A
   file that is cut off, damaged or too large gives 0. The second picture is the same, half as
   bright. */
int32_t LoadImage(const char *path);

/* Makes an image that is transparent throughout. */
int32_t CreateImage(int32_t width, int32_t height);

/* Makes an image of the pixels of a window's (or image's) bitmap from one corner to the opposite
   one, both included, as far as they lie in it. */
int32_t ImageFromWindow(int32_t window, int32_t x1, int32_t y1, int32_t x2, int32_t y2);

/* Replaces the second picture, which else follows what is drawn into the first, by that of a file.
   Returns true if it did. */
bool LoadSecondImage(int32_t icon, const char *path);

/* Return the size of the first picture in pixels, 0 for an unknown icon. */
int32_t GetImageWidth(int32_t icon);
int32_t GetImageHeight(int32_t icon);

/* Draws an icon with its left top at (x, y), its second picture if `selected` is not 0, leaving out
   its transparent pixels. An unknown icon draws nothing. */
void DrawIcon(intptr_t target, int32_t icon, int32_t x, int32_t y, int32_t selected);

/* Draws the first picture of an icon to the `width` by `height` pixels from (x, y), scaled smoothly
   and as transparent as it is. 0 stands for its own width or height; a negative one draws
   nothing. */
void DrawImage(intptr_t target, int32_t icon, int32_t x, int32_t y, int32_t width, int32_t height);

/* Writes the first picture to a file, which is replaced. `format` is 0 Targa, 1 PPM, 2 PNG, 3 JPEG,
   4 BMP, 5 GIF, 6 TIFF. Transparency is lost. Nothing happens for an unknown icon, another format
   and a path that can not be written. */
void SaveImageFile(const char *path, int32_t icon, int32_t format);

/* Frees an icon; gadgets made from it keep their copies. */
void CloseIcon(int32_t icon);

/* ---- File channels --------------------------------------------------------------------------- */

/* A channel is a file open for reading and writing through a buffer. Calls for an unknown channel
   return false or 0 and change nothing. Between reading and writing on one channel a program calls
   SeekFile or GetLof. Numbers are stored in the machine's own layout. */

/* The C library's number of the last failure below; no success clears it. See GetDosErr. */
extern int32_t dos_err;

/* Opens a file: mode 0 for one that exists, mode 1 creates it or empties it. Returns the channel, 0
   for another mode or if the file cannot be opened (dos_err is set). */
int32_t OpenFile(const char *path, int32_t mode);

/* Closes a channel; what was written is in the file. Returns true, even if the rest of it did not
   fit on the disk (dos_err is set); false for a channel that is not open. */
bool CloseFile(int32_t ch);

/* Reads one line of channel `ch` into `buffer` (256 bytes), without its line feed; a carriage
   return stays. A longer line goes on with the next call; of a line with a zero byte the text ends
   there. Returns true if a line was read; else false, `buffer` empty, and dos_err set if the C
   library gave a number. */
bool ReadFile(int32_t ch, char *buffer);

/* Writes the bytes of `s`, without terminator or line end. False for an empty `s`, and if not all
   could be written. */
bool WriteFile(int32_t ch, const char *s);

/* Writes the bytes of `s`, its terminator and two zero bytes. False for an empty `s`, and if not
   all could be written. */
bool PrintFile(int32_t ch, const char *s);

/* Write the 8, 4, 4 and 2 bytes of a number. False if not all could be written. */
bool WriteDouble(int32_t ch, double x);
bool WriteSingle(int32_t ch, float x);
bool WriteInteger(int32_t ch, int32_t n);
bool WriteShort(int32_t ch, int16_t n);

/* Read a number of 8, 4, 4 and 2 bytes. False if not all of them were there, or for a null `out`;
   `out` then keeps its value. */
bool ReadDouble(int32_t ch, double *out);
bool ReadSingle(int32_t ch, float *out);
bool ReadInteger(int32_t ch, int32_t *out);
bool ReadShort(int32_t ch, int16_t *out);

/* Moves to `offset` bytes from the start (whence 0), from the current position (1) or from the end
   (2); dos_err is set if that fails, and also to what errno held before if it does not. Always
   returns false, and does nothing with another whence; GetLoc tells the position. */
bool SeekFile(int32_t ch, uint32_t whence, int32_t offset);

/* Returns the length of the file (the low 32 bits of it) and moves to its start; -1, with dos_err
   set, for what has no length, as a pipe. */
int32_t GetLof(int32_t ch);

/* Returns the position in the file (the low 32 bits of it), -1 for what has none. */
int32_t GetLoc(int32_t ch);

/* Returns true once a read has failed at the end of the file. */
bool GetEOF(int32_t ch);

/* Returns dos_err, then sets it to `v` unless that is 0. */
int32_t GetDosErr(int32_t v);

/* ---- File system ----------------------------------------------------------------------------- */

/* Paths are bytes that end with a zero, absolute or from the current directory. Links at their end
   are only followed where that is said. A call that fails, as each does for a null or empty path,
   returns false, -1 or "", with the C library's number of the reason in dos_err; no success clears
   that. Text results live until the next call of the same function. Main thread. */

/* Removes a file, a link or an empty directory. Returns true if it is gone. */
bool DeleteFile(const char *path);

/* Gives an entry the name `new_name`, or moves it to that path, which starts at the entry's own
   directory. Returns true if it did; false, and nothing is replaced, if that is taken. */
bool RenameFile(const char *path, const char *new_name);

/* Moves an entry into `directory`, of the same volume, under the same name. Returns true if it did;
   false, and nothing is replaced, if the name is taken there. */
bool FileMoveTo(const char *path, const char *directory);

/* Makes a symbolic link named `link_name` in the directory of `target`, which must be there. What
   it says is `target` as it is given, which need not exist. Returns true if it was made. */
bool CreateLink(const char *target, const char *link_name);

/* Makes a directory and the parents that are missing. Returns true if it is there, also if it was
   before. */
bool MakeDir(const char *path);

/* Makes `path`, links followed, the current directory of the process. Returns true if it is. */
bool ChangeDir(const char *path);

/* Copies nothing and returns true, whatever its arguments. */
bool CopyFile(const char *source, const char *destination);

/* Makes a file, links followed, `size` bytes long: creates it, cuts it or adds zeros. Returns true
   if it has that size; false for a negative one too. */
bool CreateFileSize(const char *path, int32_t size);

/* Returns the length of a file in bytes (the low 32 bits of it), links followed; -1 if it can not
   be opened for reading. */
int32_t GetLengthFile(const char *path);

/* Returns what a path leads to, links followed: 0 a file, 1 a directory, -1 anything else or what
   can not be opened for reading. */
int32_t GetFileType(const char *path);

/* Returns true for a directory, links followed, without entries; false for any other path. */
bool IsEmptyDirectory(const char *path);

/* Returns the permissions as nine characters, "rwxr-x---": reading, writing and executing by owner,
   group and others. Links are followed, and the file must be readable; "" else. */
char *GetAttribut(const char *path);

/* Sets the permissions, all of them, from such a text of nine letters in either case; any other
   character than the letter of its place stands for no. Returns true if they are set; false, and
   they stay, for a text of another length and a file that is not readable. Links are followed. */
bool SetAttribut(const char *path, const char *text);

/* Begins to scan a directory and returns its first name, "" if it has none or on failure. There is
   one scan at a time: the call ends the one before. A directory given by a link is followed. Names
   come in the file system's order, without "." and "..". */
char *FindFirstEntry(const char *path);

/* Returns the scan's next name, "" after the last, on failure and without a scan. */
char *FindNextEntry(void);

/* Returns the path of the current directory (`which` 0) or of the one with the program's file
   (else), with a slash at its end; "" on failure and for one of more than 1022 bytes. */
char *GetPath(int8_t which);

/* Returns the name of the volume that holds the root directory, "" on failure. */
char *GetBootVolumeName(void);

/* Gives the volume of `path`, links followed, a name of up to 255 bytes, where the system lets a
   program do so. Returns true if it did, which can take the disk seconds. */
bool Relabel(const char *path, const char *name);

/* What happens to watched nodes and volumes; the handler's first argument. */
enum {
    PLINTH_ENTRY_CREATED = 1,    /* an entry came into a watched directory */
    PLINTH_ENTRY_REMOVED = 2,    /* an entry of one, or a watched node, is gone */
    PLINTH_ENTRY_MOVED = 3,      /* such an entry moved: from the path, to the second path */
    PLINTH_STAT_CHANGED = 4,     /* length, permissions, owner or times of a watched node */
    PLINTH_ATTR_CHANGED = 5,     /* its attributes */
    PLINTH_DEVICE_MOUNTED = 6,   /* a volume came, at the path */
    PLINTH_DEVICE_UNMOUNTED = 7, /* a volume went */
    PLINTH_CHANGES_LOST = 100    /* too many changes at once: some were not told */
};

/* Stores the handler of what is watched, or null for none:
   void (int32_t opcode, const char *path, const char *second_path).
   It is called on the application's thread. `path` is "" where it is not known, as of what left the
   watched directories; `second_path` is null for all but moves. Both live during the call. Any
   thread. */
void SetHandlerForWatch(void *handler);

/* Begins (`on` not 0) or ends (0) to watch a file or directory, links followed: its name, stat
   fields and attributes, and the entries of a directory. Returns true if it does; false also for a
   path that leads nowhere, and when the watch that is to end is not there. */
bool WatchDir(const char *path, int8_t on);

/* Begins to watch the volumes (`on` not 0), or ends that and every WatchDir (0). Returns 0, or a
   negative status code of the kits, with the reason in dos_err. */
int32_t WatchDevices(int8_t on);

/* Put a file or a directory at the head of the desktop's recent ones, in the program's name. Links
   are not followed. If the directory that `path` lies in is not there, nothing is put there, and
   dos_err is set. */
void AddRecentDocument(const char *path);
void AddRecentFolder(const char *path);

/* ---- File types ------------------------------------------------------------------------------ */

/* A type is a MIME string such as "text/plain"; an application is named by its signature, a MIME
   string too. Links in paths are followed. Text results stay until the next call of the same
   function, or of the one it equals; they are "" on failure. None of these calls touches dos_err.
   Main thread. */

/* Returns the type of a file, less than 240 bytes: the one that was set, else what the system takes
   it for by kind, name and content. */
char *GetFileMime(const char *path);
/* Returns the signature of the application that was set to open this very file; "" if none was. */
char *GetFilePreferredApp(const char *path);
/* Returns the same as GetFilePreferredApp. */
char *GetFileAppHint(const char *path);

/* Set what a file says of itself; an empty type or signature removes it. The hint is the path of an
   application. Nothing changes for a null argument, a text that is no type or signature, a path
   that leads nowhere, and on a file system without attributes. */
void SetFileMime(const char *path, const char *type);
void SetFilePreferredApp(const char *path, const char *signature);
void SetFileAppHint(const char *path, const char *application_path);

/* Returns true if the system knows the type, in upper or lower case. */
bool ExistsMime(const char *type);
/* Removes a type that was installed. Returns true if it is gone; false for one that the system
   brings or does not know. */
bool DeleteMime(const char *type);
/* Installs a type for the user, where other programs see it. Returns true if it did; false if it is
   there, and for a text that has not the form of one. */
bool InstallMime(const char *type);
/* Returns true for a text that has the form of a type: "text" or "text/plain", less than 240 bytes,
   without white space and any of <>@,;:"()[]?=\ */
bool IsValidMime(const char *type);
/* Returns the signature of the application that opens files of a type; "" if none does. */
char *GetPreferredApp(const char *type);
/* Returns the path where the application that a type is the signature of was last; "" if that is
   not known. */
char *GetAppHintMime(const char *type);
/* Loads the icons of a type, 16 and 32 pixels square, as the first and the second image of an icon
   of the registry. Returns its ident; 0 if the type lacks one of them. */
int32_t LoadMimeIcon(const char *type);

/* ---- Clipboard and e-mail -------------------------------------------------------------------- */

/* Returns the text on the clipboard, whichever program put it there, "" for none; a program that
   holds it and does not answer within a second has none. Text of other programs is UTF-8. The
   result lives until this thread's next call after a change of the clipboard. Any thread. */
char *GetStringClipboard(void);

/* Puts a text on the clipboard, for all programs. Bytes that are not UTF-8 come back to programs of
   this library as they are and count as Latin-1 elsewhere. Returns true if it is there; false for
   null too. Any thread. */
bool SetStringClipboard(const char *s);

/* Empties the clipboard for this program, until its content changes; other programs keep what is
   there. Returns true, false only without an application. Any thread. */
bool ClearClipboard(void);

/* Returns true if there is a text on the clipboard: the opposite of its name. Any thread. */
bool IsEmptyClipboard(void);

/* Sends an e-mail made of `entries`, an array of texts that ends with null. The first two letters
   of a text name the field and the rest is its value: "to", "cc", "bc" (Bcc), "fr" (From), "da"
   (Date), "re" (Reply-To), "su" (Subject), "pr" (Priority), "ms" the text of the mail, "fi" the
   path of a file to enclose. Only the first text that is longer than its two letters is used. With
   `send_now` the call waits until the system's mailer has taken the mail, which can last a minute;
   without, and when that fails, the mail waits in the outbox and goes with the next one. Returns
   true if the mail was taken or, without `send_now`, put there; false for null too. Any thread. */
bool SendEmail(const char *const *entries, bool send_now);

/* ---- Deskbar --------------------------------------------------------------------------------- */

/* Places of the Deskbar. */
enum {
    PLINTH_DESKBAR_TOP = 0,
    PLINTH_DESKBAR_BOTTOM = 1,
    PLINTH_DESKBAR_LEFT_TOP = 2,
    PLINTH_DESKBAR_RIGHT_TOP = 3,
    PLINTH_DESKBAR_LEFT_BOTTOM = 4,
    PLINTH_DESKBAR_RIGHT_BOTTOM = 5
};

/* Expands (`flag` not 0) or collapses the Deskbar. Any thread. */
void SetExpandDeskBar(uint8_t flag);

/* Returns 1 if the Deskbar is expanded, else 0. Any thread. */
uint8_t IsExpandedDeskBar(void);

/* Returns the Deskbar's place, one of the above. Any thread. */
int32_t GetPosDeskBar(void);

/* Moves the Deskbar, which stays expanded if it is. Another number than the above moves nothing.
   Any thread. */
void SetPosDeskBar(int32_t location);

#ifdef __cplusplus
}
#endif
#pragma GCC visibility pop

#endif /* PLINTH_H */
