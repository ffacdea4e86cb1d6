/* A file browser: browser [DIR], or for a visit with a picture: browser --tour FILE.png [DIR].
   Folders are on the left and open by their latches; the entries of the one chosen are on the
   right, in the order of the column whose head was clicked. A tab shows what is known of the chosen
   entry, another one its text or its picture. A double click opens a file with its application, or
   goes into a folder. Changes on the disk show at once, and files that are dropped on the entries
   are copied into the folder. */

#define _XOPEN_SOURCE 700

#include <plinth.h>

#include <dirent.h>
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include "tour.h"

enum { LEFT = 60, TOP = 60, WIDTH = 779, HEIGHT = 519 };
enum { EDGE = 8, BORDER = 4, TREE_WIDTH = 190, RIGHT = EDGE + TREE_WIDTH + EDGE + BORDER };
enum { LIST_HEIGHT = 230, TABS_TOP = EDGE + LIST_HEIGHT + EDGE + BORDER }; /* at first */
enum { HEAD = 24 };                  /* of the entries, above them */
enum { LETTER = 7, ROW_EDGES = 32 }; /* pixels */
enum { LEAST_NAME = 16, TYPE_LETTERS = 20, SIZE_LETTERS = 9, DATE_LETTERS = 16 };
enum { MOST_TEXT = 65536, LINE = 512 };
enum {
    BUTTON = 1,
    CHECK_BOX = 2,
    LIST = 8,
    OUTLINE = 21,
    TABS = 25,
    EDITOR = 27,
    PICTURE = 33
};                                                                   /* kinds */
enum { CLICKED = 1, SELECTED = 3, DOUBLE_CLICKED = 6, DROPPED = 7 }; /* slots */
enum { BY_NAME, BY_TYPE, BY_SIZE, BY_DATE, COLUMNS };

static const int32_t row_ground = (int32_t)0xE2E2E2FF;
static const char indent[] = "      "; /* of folders within folders, in the tree */

typedef struct {
    char name[NAME_MAX + 1];
    char type[64]; /* of those on the right */
    struct stat info;
} Entry;

/* All of it belongs to who has the window locked, as all handlers of gadgets have. */
static int32_t window, tree, entries, tabs, facts, editor, bell, font;
static int32_t page_width, page_height; /* of what is on the tabs */
static int32_t heads[COLUMNS], name_letters;
static int32_t sort_column;
static int is_falling; /* the order */
static int32_t picture, picture_icon;
static char root[PATH_MAX], folder[PATH_MAX];
static Entry *entry;
static int32_t entry_count;

static void join(char *path, const char *where, const char *name)
{
    char joined[2 * PATH_MAX];
    const size_t length = strlen(where);
    const char *slash = length > 0 && where[length - 1] == '/' ? "" : "/";
    snprintf(joined, sizeof joined, "%s%s%s", where, slash, name);
    snprintf(path, PATH_MAX, "%.*s", PATH_MAX - 1, joined);
}

static const char *last_part(const char *path)
{
    const char *slash = strrchr(path, '/');
    return slash != NULL && slash[1] != '\0' ? slash + 1 : path;
}

static int is_folder(const Entry *one) { return S_ISDIR(one->info.st_mode); }

/* --- reading a directory */

static int compare_names(const char *one, const char *other)
{
    const int order = strcasecmp(one, other);
    return order != 0 ? order : strcmp(one, other);
}

static int by_name(const void *a, const void *b)
{
    return compare_names(((const Entry *)a)->name, ((const Entry *)b)->name);
}

static int compare(int64_t one, int64_t other) { return (one > other) - (one < other); }

static int by_column(const Entry *one, const Entry *other)
{
    switch (sort_column) {
        case BY_TYPE:
            return strcmp(one->type, other->type);
        case BY_SIZE:
            return is_folder(one) ? 0 : compare(one->info.st_size, other->info.st_size);
        case BY_DATE:
            return compare(one->info.st_mtime, other->info.st_mtime);
        default:
            return by_name(one, other);
    }
}

/* Folders first. */
static int in_order(const void *a, const void *b)
{
    const Entry *one = a, *other = b;
    if (is_folder(one) != is_folder(other))
        return is_folder(other) - is_folder(one);
    const int order = by_column(one, other);
    return order == 0 ? by_name(one, other) : is_falling ? -order : order;
}

/* Returns how many there are, in a block that the caller frees. Names with a dot are left out. */
static int32_t read_entries(const char *path, Entry **all)
{
    int32_t count = 0, room = 0;
    DIR *directory = opendir(path);
    *all = NULL;
    if (directory == NULL)
        return 0;
    for (struct dirent *found; (found = readdir(directory)) != NULL;) {
        char full[PATH_MAX];
        if (found->d_name[0] == '.')
            continue;
        if (count == room) {
            Entry *more = realloc(*all, sizeof(Entry) * (size_t)(room = room * 2 + 64));
            if (more == NULL)
                break;
            *all = more;
        }
        Entry *now = &(*all)[count];
        snprintf(now->name, sizeof now->name, "%s", found->d_name);
        join(full, path, now->name);
        if (stat(full, &now->info) == 0 || lstat(full, &now->info) == 0)
            count++;
    }
    closedir(directory);
    return count;
}

/* The same of folders only, by name. */
static int32_t read_folders(const char *path, Entry **all)
{
    const int32_t found = read_entries(path, all);
    int32_t count = 0;
    for (int32_t i = 0; i < found; i++) {
        if (is_folder(&(*all)[i]))
            (*all)[count++] = (*all)[i];
    }
    if (count > 0)
        qsort(*all, (size_t)count, sizeof(Entry), by_name);
    return count;
}

/* --- folders, on the left: the root, then those in it with what is in these */

static int is_below(int32_t row)
{
    return strncmp(GetLvItem(tree, row), indent, sizeof indent - 1) == 0;
}

/* Whether a row of the top level, or of those below a top row, is there. */
static int has_row(int32_t row, int below)
{
    return row < CountEntry(tree) && is_below(row) == below;
}

static int32_t row_after(int32_t row, int below)
{
    row++;
    while (!below && has_row(row, 1))
        row++;
    return row;
}

/* Puts a folder before a row, below the top row with the number `top` if that is not -1. */
static void put_folder(int32_t row, int32_t top, const char *name)
{
    char text[NAME_MAX + sizeof indent];
    int32_t last = CountEntry(tree);
    if (top < 0) {
        AddLvEntry(tree, name);
    } else {
        snprintf(text, sizeof text, "%s%s", indent, name);
        AddEntryInSub(tree, top, text);
        for (last = row; has_row(last + 1, 1);)
            last++;
    }
    if (last != row)
        MoveItem(tree, last, row);
}

/* Rows of a level, from `row` on, become the folders at `path`; those that stay keep their place,
   their selection and what is open. */
static void update_folders(int32_t row, int32_t top, const char *path)
{
    const int below = top >= 0;
    const size_t start = below ? sizeof indent - 1 : 0;
    Entry *folders;
    const int32_t count = read_folders(path, &folders);
    for (int32_t i = 0; i < count || has_row(row, below);) {
        int order = i == count ? 1 : -1;
        if (i < count && has_row(row, below))
            order = compare_names(folders[i].name, GetLvItem(tree, row) + start);
        if (order > 0) {
            RemoveItem(tree, row);
            continue;
        }
        if (order < 0)
            put_folder(row, top, folders[i].name);
        row = row_after(row, below);
        i++;
    }
    free(folders);
}
static void update_tree(void)
{
    if (CountEntry(tree) == 0)
        AddLvEntry(tree, last_part(root));
    update_folders(1, -1, root);
    for (int32_t row = 1, top = 1; has_row(row, 0); row = row_after(row, 0), top++) {
        char path[PATH_MAX];
        const int was_open = has_row(row + 1, 1);
        join(path, root, GetLvItem(tree, row));
        WatchDir(path, 1);
        LvExpand(tree, row);
        update_folders(row + 1, top, path);
        if (!was_open)
            LvCollapse(tree, row);
    }
}

/* The path of a row that shows, from its text and that of the row it is below. */
static void path_of_row(int32_t row, char *path)
{
    char name[NAME_MAX + sizeof indent];
    snprintf(name, sizeof name, "%s", GetLvItem(tree, row));
    const int below = is_below(row);
    strcpy(path, root);
    if (row <= 0)
        return;
    if (below) {
        while (row > 0 && is_below(row))
            row--;
        join(path, path, GetLvItem(tree, row));
    }
    join(path, path, below ? name + sizeof indent - 1 : name);
}

/* --- entries, on the right */

static const char *size_text(const Entry *one)
{
    static char text[32];
    const double size = (double)one->info.st_size;
    if (is_folder(one))
        return "-";
    if (size < 1024)
        snprintf(text, sizeof text, "%.0f", size);
    else if (size < 1024 * 1024)
        snprintf(text, sizeof text, "%.1f K", size / 1024);
    else
        snprintf(text, sizeof text, "%.1f M", size / (1024 * 1024));
    return text;
}

static const char *date_text(const Entry *one)
{
    static char text[32];
    struct tm when;
    if (localtime_r(&one->info.st_mtime, &when) == NULL)
        return "";
    strftime(text, sizeof text, "%Y-%m-%d %H:%M", &when);
    return text;
}

/* Adds a text and blanks, or as much of it as there is room for, as `columns` letters. */
static void add_column(char *row, const char *text, int32_t columns)
{
    int32_t letters = 0, count = 0;
    for (const char *at = text; *at != '\0'; at++)
        letters += (*at & 0xC0) != 0x80;
    const int32_t kept = letters > columns ? columns - 1 : letters;
    char *end = row + strlen(row);
    for (; *text != '\0'; *end++ = *text++) {
        count += (*text & 0xC0) != 0x80;
        if (count > kept)
            break;
    }
    if (letters > columns) {
        memcpy(end, "\xE2\x80\xA6", 3); /* an ellipsis */
        end += 3;
    }
    for (; letters < columns; letters++)
        *end++ = ' ';
    *end = '\0';
}

static const char *row_text(const Entry *one)
{
    static char row[LINE];
    *row = '\0';
    add_column(row, one->name, name_letters);
    strcat(row, " ");
    add_column(row, one->type, TYPE_LETTERS);
    snprintf(row + strlen(row), sizeof row - strlen(row), " %*s  %s", SIZE_LETTERS, size_text(one),
             date_text(one));
    return row;
}

/* Reads the folder that is shown. */
static void read_shown(void)
{
    entry_count = read_entries(folder, &entry);
    for (Entry *now = entry; now < entry + entry_count; now++) {
        char path[PATH_MAX];
        join(path, folder, now->name);
        const char *type = is_folder(now) ? "folder" : GetFileMime(path);
        snprintf(now->type, sizeof now->type, "%s", *type != '\0' ? type : "?");
    }
    if (entry_count > 0)
        qsort(entry, (size_t)entry_count, sizeof(Entry), in_order);
}

static int has_changed(const Entry *was, const Entry *now)
{
    return was->info.st_size != now->info.st_size ||
           was->info.st_mtim.tv_sec != now->info.st_mtim.tv_sec ||
           was->info.st_mtim.tv_nsec != now->info.st_mtim.tv_nsec;
}

/* The rows of the entries before become those of the entries now; rows that stay keep their place
   on the screen. */
static void update_rows(const Entry *was, int32_t count)
{
    const Entry *const end = was + count;
    for (int32_t row = 0; was < end || row < entry_count;) {
        int order = row == entry_count ? -1 : 1;
        if (was < end && row < entry_count)
            order = in_order(was, &entry[row]);
        if (order < 0)
            RemoveItem(entries, row);
        else if (order > 0)
            AddLvEntry(entries, row_text(&entry[row]));
        else if (has_changed(was, &entry[row]))
            ChangeEntryStr(entries, row, row_text(&entry[row]));
        if (order > 0 && CountEntry(entries) - 1 != row)
            MoveItem(entries, CountEntry(entries) - 1, row);
        was += order <= 0;
        row += order >= 0;
    }
}

static void show_entry(int32_t index);

static Entry chosen_entry(void)
{
    static const Entry none;
    const int32_t row = GetLvSelected(entries);
    return row >= 0 && row < entry_count ? entry[row] : none;
}

/* Shows what is in the folder by now; what was chosen stays so. */
static void update_entries(const Entry *chosen)
{
    Entry *const before = entry;
    const int32_t count_before = entry_count;
    read_shown();
    update_rows(before, count_before);
    free(before);
    int32_t row = 0;
    while (row < entry_count && strcmp(entry[row].name, chosen->name) != 0)
        row++;
    if (row == entry_count)
        return;
    if (GetLvSelected(entries) != row)
        SetSelectEntry(entries, row);
    else if (has_changed(chosen, &entry[row]))
        show_entry(row);
}

/* Fills the list from its first row on. */
static void fill_entries(const Entry *chosen)
{
    free(entry);
    entry = NULL;
    entry_count = 0;
    ClearListView(entries);
    update_entries(chosen);
}

/* Whether the tree shows what is in it. */
static int is_in_tree(const char *path)
{
    const size_t length = strlen(root);
    const char *rest = path + length;
    if (strncmp(path, root, length) != 0)
        return 0;
    while (*rest == '/')
        rest++;
    return strchr(rest, '/') == NULL;
}

static void show_folder(const char *path)
{
    static const Entry none;
    if (*folder != '\0' && !is_in_tree(folder))
        WatchDir(folder, 0);
    snprintf(folder, sizeof folder, "%.*s", PATH_MAX - 1, path);
    WatchDir(folder, 1);
    SetWindowTitle(window, folder);
    fill_entries(&none);
}

/* --- what is known of the chosen entry, its text and its picture */

static void add_fact(const char *name, const char *value)
{
    char row[LINE];
    snprintf(row, sizeof row, "%-12s %.400s", name, *value != '\0' ? value : "-");
    AddLvEntry(facts, row);
}

static const char *application_of(const char *path)
{
    const char *signature = GetFilePreferredApp(path);
    return *signature != '\0' ? signature : GetPreferredApp(GetFileMime(path));
}

static void show_facts(const Entry *one, const char *path)
{
    add_fact("Name", one->name);
    add_fact("Type", one->type);
    add_fact("Length", size_text(one));
    add_fact("Changed", date_text(one));
    add_fact("Permissions", GetAttribut(path));
    add_fact("Opens with", is_folder(one) ? "" : application_of(path));
    add_fact("Path", path);
}

static void show_text(const char *path)
{
    static char text[MOST_TEXT + 1];
    FILE *file = fopen(path, "rb");
    const size_t length = file != NULL ? fread(text, 1, MOST_TEXT, file) : 0;
    if (file != NULL)
        fclose(file);
    text[length] = '\0';
    TEditSetText(editor, strlen(text) == length ? text : "(no text)");
}

/* A picture as large as the page lets it be, and no larger than it is. */
static int show_picture(const char *path)
{
    const int32_t image = LoadImage(path);
    if (image == 0)
        return 0;
    double scale = 1;
    const double width = GetImageWidth(image), height = GetImageHeight(image);
    if (width * scale > page_width - BORDER)
        scale = (page_width - BORDER) / width;
    if (height * scale > page_height - BORDER)
        scale = (page_height - BORDER) / height;
    const int32_t shown_width = width * scale >= 1 ? (int32_t)(width * scale) : 1;
    const int32_t shown_height = height * scale >= 1 ? (int32_t)(height * scale) : 1;
    picture_icon = CreateImage(shown_width, shown_height);
    DrawImage(picture_icon, image, 0, 0, shown_width, shown_height);
    CloseIcon(image);
    picture =
        CreateGadget(PICTURE, window, EDGE, EDGE, shown_width, shown_height, "", picture_icon);
    AddGadgetInTab(picture, tabs, 1);
    return picture != 0;
}

static void show_entry(int32_t index)
{
    char path[PATH_MAX];
    KillGadget(window, picture);
    CloseIcon(picture_icon);
    picture = picture_icon = 0;
    ClearListView(facts);
    TEditSetText(editor, "");
    ShowGadget(window, editor);
    if (index < 0 || index >= entry_count)
        return;
    join(path, folder, entry[index].name);
    show_facts(&entry[index], path);
    if (is_folder(&entry[index]) || !S_ISREG(entry[index].info.st_mode))
        return;
    if (strncmp(GetFileMime(path), "image/", 6) == 0 && show_picture(path))
        HideGadget(window, editor);
    else
        show_text(path);
}

/* --- handlers */

/* Chooses the row of the folder that is shown, if it has one. */
static void mark_folder(void)
{
    for (int32_t row = 0; row < CountEntry(tree); row++) {
        char path[PATH_MAX];
        path_of_row(row, path);
        if (strcmp(path, folder) == 0) {
            SetSelectEntry(tree, row);
            return;
        }
    }
    LvSelectNone(tree);
}

static int32_t on_folder(int32_t row)
{
    char path[PATH_MAX];
    if (row >= 0) {
        path_of_row(row, path);
        if (strcmp(path, folder) != 0)
            show_folder(path);
    }
    return 0;
}

static int32_t on_entry(int32_t row)
{
    show_entry(row);
    return 0;
}

static int32_t on_open(int32_t row)
{
    char path[PATH_MAX], signature[LINE];
    if (row < 0 || row >= entry_count)
        return 0;
    join(path, folder, entry[row].name);
    if (is_folder(&entry[row])) {
        show_folder(path);
        mark_folder();
        return 0;
    }
    snprintf(signature, sizeof signature, "%s", application_of(path));
    const char *const arguments[] = {path, NULL};
    if (*signature == '\0' || RunProg(signature, arguments) == 0)
        add_fact("Opening", "no application could be started");
    return 0;
}

/* Copies a file into the folder, unless something has its name there. */
static void copy_here(const char *source)
{
    char path[PATH_MAX], block[65536];
    join(path, folder, last_part(source));
    FILE *from = GetFileType(source) == 0 ? fopen(source, "rb") : NULL;
    FILE *to = from != NULL ? fopen(path, "wxb") : NULL;
    for (size_t length; to != NULL && (length = fread(block, 1, sizeof block, from)) > 0;)
        fwrite(block, 1, length, to);
    if (from != NULL)
        fclose(from);
    if (to != NULL && fclose(to) != 0)
        remove(path);
}

static int32_t on_drop(int32_t count, char **paths)
{
    const Entry chosen = chosen_entry();
    for (int32_t i = 0; i < count; i++)
        copy_here(paths[i]);
    update_entries(&chosen);
    return 0;
}

/* Told on the application's thread. Setting the bell calls its handler with the window locked, so
   that no other handler runs meanwhile; on, if folders may have come or gone. */
static void on_change(int32_t opcode, const char *path, const char *second_path)
{
    (void)path, (void)second_path;
    SetChecked(bell, opcode != PLINTH_STAT_CHANGED && opcode != PLINTH_ATTR_CHANGED);
}

static int32_t on_bell(int32_t has_come_or_gone)
{
    const Entry chosen = chosen_entry();
    if (has_come_or_gone)
        update_tree();
    update_entries(&chosen);
    return 0;
}

/* --- the heads of the columns */

static void label_heads(void)
{
    static const char *const names[COLUMNS] = {"Name", "Type", "Size", "Date"};
    for (int32_t column = 0; column < COLUMNS; column++) {
        char label[16];
        const char *mark = is_falling ? " \xE2\x96\xBE" : " \xE2\x96\xB4"; /* triangles */
        snprintf(label, sizeof label, "%s%s", names[column], column == sort_column ? mark : "");
        SetLabel(heads[column], label);
    }
}

/* A second click turns the order round. */
static int32_t sort_by(int32_t column)
{
    const Entry chosen = chosen_entry();
    is_falling = column == sort_column && !is_falling;
    sort_column = column;
    label_heads();
    fill_entries(&chosen);
    return 0;
}

static int32_t on_name(void) { return sort_by(BY_NAME); }
static int32_t on_type(void) { return sort_by(BY_TYPE); }
static int32_t on_size(void) { return sort_by(BY_SIZE); }
static int32_t on_date(void) { return sort_by(BY_DATE); }

/* --- the window */

static int32_t make(int32_t kind, int32_t x, int32_t y, int32_t width, int32_t height)
{
    return CreateGadget(kind, window, x, y, width, height, "", 0);
}

/* The tabs, and a page of each, at their place; what was there before is gone. */
static void make_tabs(int32_t top, int32_t width, int32_t height)
{
    const int32_t front = TabSelection(tabs);
    const int32_t gone[] = {picture, facts, editor, tabs};
    for (int32_t i = 0; i < 4; i++)
        KillGadget(window, gone[i]);
    picture = 0;
    page_width = width - 24;
    page_height = height - 50;
    tabs = make(TABS, RIGHT, top, width + BORDER, height);
    AddTab(tabs, "Attributes");
    AddTab(tabs, "Contents");
    facts = make(LIST, EDGE, EDGE, page_width, page_height);
    SetFontGadget(facts, font);
    AddGadgetInTab(facts, tabs, 0);
    editor = make(EDITOR, EDGE, EDGE, page_width, page_height);
    SetFontGadget(editor, font);
    TEditMakeEditable(editor, 0);
    AddGadgetInTab(editor, tabs, 1);
    TabSelect(tabs, front);
}

/* Above their columns; the last one takes what is left. */
static void make_heads(int32_t width)
{
    static int32_t (*const handlers[COLUMNS])(void) = {on_name, on_type, on_size, on_date};
    const int32_t letters[COLUMNS] = {name_letters + 2, TYPE_LETTERS + 1, SIZE_LETTERS + 1, 0};
    int32_t x = RIGHT;
    for (int32_t column = 0; column < COLUMNS; column++) {
        const int32_t rest = RIGHT + width + BORDER - x;
        const int32_t wanted = column == BY_DATE ? rest : LETTER * letters[column];
        KillGadget(window, heads[column]);
        heads[column] = 0;
        if (rest < 2 * LETTER)
            continue;
        heads[column] = make(BUTTON, x, EDGE, wanted < rest ? wanted : rest, HEAD - 2);
        SetHandlerForGadget(heads[column], CLICKED, (void *)handlers[column]);
        x += wanted;
    }
    label_heads();
}

/* The window's size is shared out: the tree keeps its width, entries and tabs get as much more
   height. */
static void lay_out(int32_t width, int32_t height)
{
    const int32_t right_width = width - RIGHT - EDGE - BORDER;
    const int32_t list_height = LIST_HEIGHT + (height - HEIGHT) / 2;
    const int32_t tabs_top = EDGE + list_height + EDGE + BORDER;
    ResizeGadget(tree, TREE_WIDTH + BORDER, height - 2 * EDGE);
    const int32_t letters =
        (right_width - ROW_EDGES) / LETTER - TYPE_LETTERS - SIZE_LETTERS - DATE_LETTERS - 4;
    name_letters = letters > LEAST_NAME ? letters : LEAST_NAME;
    ResizeGadget(entries, right_width + BORDER + 2, list_height + BORDER - HEAD); /* as the tabs */
    for (int32_t row = 0; row < entry_count; row++)
        ChangeEntryStr(entries, row, row_text(&entry[row]));
    make_heads(right_width);
    make_tabs(tabs_top, right_width, height - tabs_top - EDGE);
}

static void on_resize(int32_t width, int32_t height)
{
    lay_out(width, height);
    show_entry(GetLvSelected(entries));
}

static void make_window(void)
{
    window = OpenWindow(LEFT, TOP, WIDTH, HEIGHT);
    SetMinSize(window, 520, 380);
    bell = make(CHECK_BOX, 0, 0, 10, 10);
    HideGadget(window, bell);
    tree = make(OUTLINE, EDGE, EDGE, TREE_WIDTH, LIST_HEIGHT);
    HideGadget(window, tree);
    SetBackColorGadget(tree, row_ground);
    SetGadget(window, tree);
    entries = make(LIST, RIGHT, EDGE + HEAD, LIST_HEIGHT, LIST_HEIGHT);
    font = OpenFont("Courier10 BT", NULL, 11); /* columns want letters of one width */
    SetFontGadget(entries, font);
    lay_out(WIDTH, HEIGHT);
    for (const int32_t *list = (int32_t[]){tree, entries, 0}; *list != 0; list++)
        FocusOnClick(*list, 1);
}

static void set_handlers(void)
{
    SetHandlerForGadget(bell, SELECTED, (void *)on_bell);
    SetHandlerForGadget(tree, SELECTED, (void *)on_folder);
    SetHandlerForGadget(entries, SELECTED, (void *)on_entry);
    SetHandlerForGadget(entries, DOUBLE_CLICKED, (void *)on_open);
    SetHandlerForGadget(entries, DROPPED, (void *)on_drop);
    SetHandlerForWindow(window, PLINTH_RESIZED, (void *)on_resize);
    SetHandlerForWatch((void *)on_change);
}

/* --- a visit: a folder of its own, a latch, a picture, and a file that comes meanwhile */

static void write_file(const char *where, const char *name, const char *text)
{
    char path[PATH_MAX];
    join(path, where, name);
    FILE *file = fopen(path, "wb");
    if (file != NULL) {
        fputs(text, file);
        fclose(file);
    }
}

static void write_picture(const char *where)
{
    enum { PIXELS = 120 };
    char path[PATH_MAX];
    join(path, where, "Colours.ppm");
    FILE *file = fopen(path, "wb");
    if (file == NULL)
        return;
    fprintf(file, "P6 %d %d 255\n", PIXELS, PIXELS);
    for (int y = 0; y < PIXELS; y++) {
        for (int x = 0; x < PIXELS; x++)
            fprintf(file, "%c%c%c", 2 * x + 8, 2 * y + 8, 130);
    }
    fclose(file);
}

static void make_sample(char *where)
{
    static const char *const names[] = {"Documents", "Documents/Letters", "Documents/Plans",
                                        "Pictures",  "Pictures/Journeys", "Programs"};
    char path[PATH_MAX];
    strcpy(where, "/tmp/browser_XXXXXX");
    if (mkdtemp(where) == NULL)
        return;
    for (size_t i = 0; i < sizeof names / sizeof *names; i++) {
        join(path, where, names[i]);
        mkdir(path, 0755);
    }
    join(path, where, "Pictures");
    write_picture(path);
    write_file(path, "About.txt", "Pictures of journeys, and of colours.\n");
    write_file(path, "List.html", "<html><body>Pictures</body></html>\n");
    write_file(where, "Read me.txt", "A folder to be looked at.\nIt is gone after the visit.\n");
}

static void remove_all(const char *path)
{
    Entry *all;
    const int32_t count = read_entries(path, &all);
    for (int32_t i = 0; i < count; i++) {
        char full[PATH_MAX];
        join(full, path, all[i].name);
        if (is_folder(&all[i]))
            remove_all(full);
        else
            remove(full);
    }
    free(all);
    rmdir(path);
}

static int32_t play(const char *save)
{
    char pictures[PATH_MAX];
    join(pictures, root, "Pictures");
    tour_begin(LEFT, TOP);
    tour_click(EDGE + 6, EDGE + 45); /* the latch of the third row */
    tour_pause(200);
    tour_click(EDGE + 60, EDGE + 45);
    tour_pause(300);
    write_file(pictures, "New.txt", "Came while the folder was shown.\n");
    tour_pause(300);
    tour_click(RIGHT + 60, EDGE + HEAD + 40);
    tour_pause(200);
    tour_click(RIGHT + 160, TABS_TOP + 12); /* Contents */
    tour_pause(300);
    return tour_end(save);
}

void ProgramMain(void)
{
    const char *save = tour_picture();
    const char *given = __GetCommand(save != NULL ? 3 : 1);
    const int is_sample = save != NULL && *given == '\0';
    char sample[PATH_MAX];
    Open_Sys(0);
    if (is_sample)
        make_sample(sample);
    if (realpath(is_sample ? sample : *given != '\0' ? given : ".", root) == NULL) {
        fprintf(stderr, "browser: there is no folder %s\n", given);
        End();
        return;
    }
    make_window();
    update_tree();
    WatchDir(root, 1);
    show_folder(root);
    mark_folder();
    set_handlers();
    SetChecked(bell, 1); /* for what has changed meanwhile */
    if (save == NULL)
        return;
    const int32_t status = play(save);
    if (status != 0)
        fprintf(stderr, "browser: cannot save %s\n", save);
    if (is_sample)
        remove_all(root);
    End();
}
