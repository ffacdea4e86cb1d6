/* A text editor: notes [FILE]. Files are opened by name or dropped on the window. It finds and
   replaces in a window of its own, undoes, colours what is selected, and asks before changes are
   lost. */

#include <plinth.h>

#include <stdio.h>
#include <string.h>

#include "tour.h"

enum { LEFT = 80, TOP = 80, WIDTH = 639, HEIGHT = 459 };
enum { BAR = 22, EDGE = 8, EDITOR_TOP = 28, SCROLL_BAR = 18 }; /* BAR: the menus' height, about */
enum { PATH = 1024, WORDS = 256, LINE = 256 };

enum { NEW = 101, OPEN, SAVE, SAVE_AS, QUIT };
enum { UNDO = 201, REDO, CUT, COPY, PASTE, ALL };
enum { FIND = 301, NEXT, PREVIOUS, REPLACE };
enum { BLACK = 401, RED, GREEN, BLUE, SMALL = 411, NORMAL, LARGE, BOLD };
enum { WRAP = 501, INDENT };

static const char *const bar_lines[] = {
    "t*00000000File",
    "iN00000101New",
    "iO00000102Open...",
    "iS00000103Save",
    "i*00000104Save as...",
    "-",
    "iQ00000105Quit",

    "t*00000000Edit",
    "iZ00000201Undo",
    "iY00000202Redo",
    "-",
    "iX00000203Cut",
    "iC00000204Copy",
    "iV00000205Paste",
    "iA00000206Select all",

    "t*00000000Search",
    "iF00000301Find...",
    "iG00000302Find next",
    "iD00000303Find previous",
    "iR00000304Replace, and find next",

    "t*00000000Style",
    "i*00000401Black",
    "i*00000402Red",
    "i*00000403Green",
    "i*00000404Blue",
    "-",
    "i*00000411Small",
    "i*00000412Normal",
    "i*00000413Large",
    "iB00000414Bold",

    "t*00000000Lines",
    "i*00110501Broken at the edge",
    "i*00010502Begin as the one before",
    "q",
};

/* All of it belongs to the window's thread once the handlers are set; a question's thread has it
   while the question blocks the window. The window for searching changes the text, too. */
static int32_t window, editor, status_label;
static int32_t question, name_field; /* a window that blocks the others, or 0 */
static int32_t fonts[LARGE - SMALL + 2];
static char path[PATH];
static _Atomic int32_t changed, shown_caret;
static int32_t wrapped = 1, indented;

static _Atomic int32_t searching; /* the window for searching, 0 while there is none */
static int32_t find_field, replace_field, case_box, word_box;

/* What goes on when the question is answered. */
static int32_t pending;
static char pending_path[PATH];

/* ---- what the window says -------------------------------------------------------------------- */

static const char *name_of(const char *file)
{
    const char *slash = strrchr(file, '/');
    return slash != NULL ? slash + 1 : file;
}

static void show_title(void)
{
    char title[PATH + 40];
    snprintf(title, sizeof title, "%s%s - Notes", changed ? "*" : "",
             path[0] != '\0' ? name_of(path) : "Untitled");
    SetWindowTitle(window, title);
}

/* Characters in front of the caret; bytes behind what can be read of a line count one each. */
static int32_t column_of(int32_t caret, int32_t line)
{
    const int32_t bytes = caret - TEditLineStart(editor, line);
    const char *text = TEditGetLine(editor, line);
    int32_t column = 1;
    for (int32_t i = 0; i < bytes; i++)
        column += i >= LINE || ((unsigned char)text[i] & 0xC0) != 0x80;
    return column;
}

static void show_status(const char *remark)
{
    char text[200];
    const int32_t caret = TEditCaret(editor);
    const int32_t line = TEditLineAt(editor, caret);
    shown_caret = caret;
    snprintf(text, sizeof text, "Line %d of %d, column %d. %d bytes. %s", line + 1,
             TEditCountLines(editor), column_of(caret, line), TEditGetSize(editor), remark);
    SetTextString(status_label, text);
}

static void set_changed(int32_t flag)
{
    if (flag != changed) {
        changed = flag;
        show_title();
    }
}

static void on_change(int32_t length)
{
    (void)length;
    set_changed(1);
    show_status("");
}

static void on_key(int32_t key, int32_t modifiers)
{
    (void)key;
    (void)modifiers;
    show_status("");
}

/* The pointer has moved the caret; nothing else tells. */
static void on_timer(void)
{
    if (TEditCaret(editor) != shown_caret)
        show_status("");
}

/* ---- files ----------------------------------------------------------------------------------- */

static void load(const char *file)
{
    char remark[80];
    if (TEditLoadFile(editor, file)) {
        snprintf(path, sizeof path, "%s", file);
        changed = 0;
        show_title();
        show_status("");
        return;
    }
    snprintf(remark, sizeof remark, "It cannot be opened: %s.", strerror(GetDosErr(0)));
    show_status(remark);
}

static int32_t save(void)
{
    char remark[80];
    if (TEditSaveFile(editor, path)) {
        set_changed(0);
        show_title();
        show_status("Saved.");
        return 1;
    }
    snprintf(remark, sizeof remark, "It cannot be saved: %s.", strerror(GetDosErr(0)));
    show_status(remark);
    return 0;
}

/* Does what had to wait for the question, whatever becomes of the changes. */
static void go_on(void)
{
    const int32_t code = pending;
    pending = 0;
    if (code == QUIT) {
        CloseWindow(searching);
        CloseWindow(window);
    } else if (code == OPEN) {
        load(pending_path);
    } else if (code == NEW) {
        TEditSetText(editor, "");
        path[0] = '\0';
        changed = 0;
        show_title();
        show_status("");
    }
}

/* ---- questions ------------------------------------------------------------------------------- */

static void close_question(void)
{
    const int32_t closed = question;
    question = 0;
    pending = 0;
    CloseWindow(closed);
}

static int32_t add_button(const char *label, int32_t x, void (*handler)(void))
{
    const int32_t button = CreateGadget(PLINTH_BUTTON, question, x, 44, 100, 24, label, 0);
    SetHandlerForGadget(button, PLINTH_GADGET_ACTION, (void *)handler);
    return button;
}

static int32_t on_question_close(void)
{
    question = 0;
    pending = 0;
    return 1;
}

static void open_question(const char *title)
{
    question = OpenWindow(LEFT + 100, TOP + 120, 420, 80);
    SetWindowTitle(question, title);
    WindowResizable(question, 0);
    BlockWindow(question, 1);
    SetHandlerForWindow(question, PLINTH_CLOSE_REQUESTED, (void *)on_question_close);
}

static void open_or_ask(const char *file);

static void on_name(void)
{
    const int32_t closed = question;
    const char *name = GetString(name_field);
    if (name[0] == '\0')
        return;
    question = 0;
    if (pending == OPEN) {
        open_or_ask(name);
    } else {
        snprintf(path, sizeof path, "%s", name);
        if (save())
            go_on();
    }
    CloseWindow(closed);
}

static void ask_name(const char *title, const char *label)
{
    open_question(title);
    name_field = CreateGadget(PLINTH_STRING_FIELD, question, 10, 10, 400, 24, "File:", 0);
    SetFilterString(name_field, 5);
    SetMaxSizeString(name_field, PATH - 1);
    SetDiviser(name_field, -8);
    SetString(name_field, path);
    add_button("Cancel", 200, close_question);
    SetDefaultButton(question, add_button(label, 310, on_name));
    ActivateGadget(name_field);
}

static void save_or_ask(void)
{
    if (path[0] == '\0')
        ask_name("Save as", "Save");
    else if (save())
        go_on();
}

static void on_save(void)
{
    const int32_t closed = question;
    question = 0;
    save_or_ask();
    CloseWindow(closed);
}

static void on_lose(void)
{
    const int32_t closed = question;
    question = 0;
    changed = 0;
    go_on();
    CloseWindow(closed);
}

/* Goes on with what would lose changes, at once if there are none. */
static void ask_first(int32_t code)
{
    pending = code;
    if (!changed) {
        go_on();
        return;
    }
    char text[PATH + 60];
    snprintf(text, sizeof text, "%.300s was changed. Save it first?",
             path[0] != '\0' ? name_of(path) : "The text");
    open_question("Notes");
    SetTextString(CreateGadget(PLINTH_TEXT_LABEL, question, 10, 10, 400, 20, NULL, 0), text);
    SetDefaultButton(question, add_button("Save", 310, on_save));
    add_button("Cancel", 200, close_question);
    add_button("Don't save", 10, on_lose);
}

static void open_or_ask(const char *file)
{
    snprintf(pending_path, sizeof pending_path, "%s", file);
    ask_first(OPEN);
}

static int32_t on_close(void)
{
    if (!changed) {
        CloseWindow(searching);
        return 1;
    }
    if (question == 0)
        ask_first(QUIT);
    return 0;
}

static void on_drop(int32_t count, char **paths)
{
    if (count > 0 && question == 0)
        open_or_ask(paths[0]);
}

/* ---- searching ------------------------------------------------------------------------------- */

/* The words that were looked for last; nothing without the window for them. */
static const char *words(void) { return GetString(find_field); }

static int32_t search_flags(void)
{
    return (GetChecked(case_box) ? 1 : 0) | (GetChecked(word_box) ? 4 : 0);
}

static int32_t select_found(int32_t offset)
{
    if (offset < 0)
        return 0;
    TEditSelect(editor, offset, offset + (int32_t)strlen(words()));
    show_status("");
    return 1;
}

/* From the selection on, and then from the other end. */
static void find(int32_t backwards)
{
    const int32_t flags = search_flags() | (backwards ? 2 : 0);
    const int32_t from = TEditGetSelection(editor, backwards ? 0 : 1);
    const int32_t other_end = backwards ? TEditGetSize(editor) : 0;
    if (!select_found(TEditFind(editor, words(), from, flags)) &&
        !select_found(TEditFind(editor, words(), other_end, flags)))
        show_status("There is nothing to be found.");
}

/* What was found shows where the keyboard is. */
static void find_from_window(int32_t backwards)
{
    find(backwards);
    ActivateWindow(window);
    ActivateGadget(editor);
}

static void find_next(void) { find_from_window(0); }
static void find_previous(void) { find_from_window(1); }

/* What is selected is what was found, unless the user selected something else. */
static void replace(void)
{
    const int32_t start = TEditGetSelection(editor, 0);
    const int32_t end = TEditGetSelection(editor, 1);
    if (end - start == (int32_t)strlen(words()) &&
        TEditFind(editor, words(), start, search_flags()) == start) {
        TEditReplaceSelection(editor, GetString(replace_field));
        set_changed(1);
    }
    find(0);
}

static void replace_all(void)
{
    char remark[40];
    const int32_t flags = search_flags();
    int32_t count = 0;
    for (int32_t at = TEditFind(editor, words(), 0, flags); at >= 0;
         at = TEditFind(editor, words(), TEditCaret(editor), flags)) {
        TEditSelect(editor, at, at + (int32_t)strlen(words()));
        TEditReplaceSelection(editor, GetString(replace_field));
        count++;
    }
    if (count > 0)
        set_changed(1);
    snprintf(remark, sizeof remark, "%d replaced.", count);
    show_status(remark);
}

static int32_t on_search_close(void)
{
    searching = 0;
    return 1;
}

static int32_t add_words_field(const char *label, int32_t y)
{
    const int32_t field = CreateGadget(PLINTH_STRING_FIELD, searching, 10, y, 360, 24, label, 0);
    SetMaxSizeString(field, WORDS - 1);
    SetFilterString(field, 5);
    SetDiviser(field, 80);
    return field;
}

static int32_t add_search_button(const char *label, int32_t x, void (*handler)(void))
{
    const int32_t button = CreateGadget(PLINTH_BUTTON, searching, x, 106, 84, 24, label, 0);
    SetHandlerForGadget(button, PLINTH_GADGET_ACTION, (void *)handler);
    return button;
}

static void open_search(void)
{
    if (searching != 0) {
        ActivateWindow(searching);
        ActivateGadget(find_field);
        return;
    }
    searching = OpenWindow(LEFT + 240, TOP + HEIGHT + 40, 380, 140);
    SetWindowTitle(searching, "Find");
    WindowResizable(searching, 0);
    SetHandlerForWindow(searching, PLINTH_CLOSE_REQUESTED, (void *)on_search_close);
    find_field = add_words_field("Find", 10);
    replace_field = add_words_field("Replace by", 42);
    case_box = CreateGadget(PLINTH_CHECK_BOX, searching, 90, 76, 120, 20, "Match case", 0);
    word_box = CreateGadget(PLINTH_CHECK_BOX, searching, 220, 76, 140, 20, "Whole words", 0);
    add_search_button("Replace all", 10, replace_all);
    add_search_button("Replace", 102, replace);
    add_search_button("Previous", 194, find_previous);
    SetDefaultButton(searching, add_search_button("Next", 286, find_next));
    ActivateGadget(find_field);
    ActivateWindow(searching);
}

/* ---- menus ----------------------------------------------------------------------------------- */

static void set_style(int32_t code)
{
    static const uint32_t colors[] = {0x000000FF, 0xC62828FF, 0x2E7D32FF, 0x1F5FB8FF};
    const int32_t start = TEditGetSelection(editor, 0);
    const int32_t end = TEditGetSelection(editor, 1);
    if (code <= BLUE)
        TEditSetColor(editor, start, end, (int32_t)colors[code - BLACK]);
    else
        TEditSetFont(editor, start, end, fonts[code - SMALL]);
}

static void on_file_menu(int32_t code)
{
    if (code == NEW || code == QUIT) {
        ask_first(code);
    } else if (code == OPEN) {
        pending = OPEN;
        ask_name("Open", "Open");
    } else if (code == SAVE) {
        save_or_ask();
    } else {
        ask_name("Save as", "Save");
    }
}

static void on_edit_menu(int32_t code)
{
    if (code == UNDO)
        TEditUndo(editor);
    else if (code == REDO)
        TEditRedo(editor);
    else
        SelectCommand(editor, code - CUT + 1);
    if (code != COPY && code != ALL)
        set_changed(1);
    show_status("");
}

static void on_search_menu(int32_t code)
{
    if (code == FIND || searching == 0)
        open_search();
    else if (code == REPLACE)
        replace();
    else
        find(code == PREVIOUS);
}

static void on_menu(int32_t code)
{
    if (question != 0)
        return;
    if (code <= QUIT)
        on_file_menu(code);
    else if (code <= ALL)
        on_edit_menu(code);
    else if (code <= REPLACE)
        on_search_menu(code);
    else if (code <= BOLD)
        set_style(code);
    else if (code == WRAP)
        TEditWordWrap(editor, (int8_t)(wrapped = !wrapped));
    else if (code == INDENT)
        TEditAutoIdent(editor, (int8_t)(indented = !indented));
}

/* ---- the window ------------------------------------------------------------------------------ */

static void add_gadgets(void)
{
    status_label = CreateGadget(PLINTH_TEXT_LABEL, window, EDGE, 5, WIDTH - 2 * EDGE, 18, NULL, 0);
    editor = CreateGadget(PLINTH_TEXT_EDITOR + 1, window, EDGE, EDITOR_TOP,
                          WIDTH - 2 * EDGE - SCROLL_BAR, HEIGHT - EDITOR_TOP - EDGE - BAR, NULL, 0);
    SetHandlerForGadget(editor, PLINTH_GADGET_VALUE, (void *)on_change);
    SetHandlerForGadget(editor, PLINTH_GADGET_KEY, (void *)on_key);
}

static void on_resize(int32_t width, int32_t height)
{
    ResizeGadget(editor, width - 2 * EDGE, height - EDITOR_TOP - EDGE - BAR);
}

static void open_fonts(void)
{
    static const int32_t sizes[] = {10, 12, 18};
    for (int32_t i = 0; i < 3; i++)
        fonts[i] = OpenFont(NULL, NULL, sizes[i]);
    fonts[BOLD - SMALL] = OpenFont(NULL, "Bold", 12);
}

/* A visit: a text, of which two words are found and coloured, and the window that found them. */
static int32_t play(const char *picture)
{
    tour_begin(LEFT, TOP);
    tour_click(200, 200);
    tour_type("Things to do\n\n\tread the mail\n\twrite an answer\n\tmail the answer\n");
    open_search();
    tour_pause(300);
    tour_type("mail\n");
    tour_pause(200);
    on_menu(RED);
    on_menu(NEXT);
    tour_pause(200);
    return tour_end(picture);
}

void ProgramMain(void)
{
    const char *picture = tour_picture();
    Open_Sys(0);
    open_fonts();
    window = OpenWindow(LEFT, TOP, WIDTH, HEIGHT);
    SetMinSize(window, 400, 200);
    AttachMenuToWin(window, CreateMenu(bar_lines));
    add_gadgets();
    show_title();
    show_status("");
    if (picture == NULL && __GetCommand(1)[0] != '\0')
        load(__GetCommand(1));
    ActivateGadget(editor);
    SetHandlerForWindow(window, PLINTH_MENU_ITEM, (void *)on_menu);
    SetHandlerForWindow(window, PLINTH_RESIZED, (void *)on_resize);
    SetHandlerForWindow(window, PLINTH_CLOSE_REQUESTED, (void *)on_close);
    SetHandlerForWindow(window, PLINTH_FILES_DROPPED, (void *)on_drop);
    SetHandlerForWindow(window, PLINTH_TIMER, (void *)on_timer);
    SetTimerCount(window, 1);
    SetTimerStart(window, 1);
    if (picture != NULL) {
        const int32_t status = play(picture);
        if (status != 0)
            fprintf(stderr, "notes: cannot save %s\n", picture);
        End();
    }
}
