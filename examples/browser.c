/* A file browser: browser [DIR], or for a visit with a picture: browser --tour FILE.png [DIR].
   Folders are on the left and open by their latches; the entries of the one chosen are on the
   right. A tab shows what is known of the chosen entry, another one its text or its picture. A
   double click opens a file with its application, or goes into a folder. Changes on the disk show
   at once, and files that are dropped on the entries are copied into the folder. */

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
enum { MOST_TEXT = 65536, LINE = 512 };
enum { CHECK_BOX = 2, LIST = 8, OUTLINE = 21, TABS = 25, EDITOR = 27, PICTURE = 33 }; /* kinds */
enum { SELECTED = 3, DOUBLE_CLICKED = 6, DROPPED = 7 };                               /* slots */

static const int32_t row_ground = (int32_t)0xE2E2E2FF;
static const char indent[] = "      "; /* of folders within folders, in the tree */

typedef struct {
    char name[NAME_MAX + 1];
    struct stat info;
} Entry;

/* All of it belongs to who has the window locked, as all handlers of gadgets have. */
static int32_t window, tree, entries, tabs, facts, editor, bell, font;
static int32_t page_width, page_height; /* of what is on the tabs */
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

/* Folders first, then by name. */
static int in_order(const void *a, const void *b)
{
    const Entry *one = a, *other = b;
    return is_folder(one) != is_folder(other) ? is_folder(other) - is_folder(one)
                                              : strcasecmp(one->name, other->name);
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
    if (count > 0)
        qsort(*all, (size_t)count, sizeof(Entry), in_order);
    return count;
}

/* --- folders, on the left: the root, then those in it with what is in these */

static void fill_tree(void)
{
    Entry *outer;
    const int32_t count = read_entries(root, &outer);
    ClearListView(tree);
    AddLvEntry(tree, last_part(root));
    for (int32_t top = 0; top < count && is_folder(&outer[top]); top++) {
        char path[PATH_MAX], row[NAME_MAX + sizeof indent];
        Entry *inner;
        AddLvEntry(tree, outer[top].name);
        join(path, root, outer[top].name);
        const int32_t below = read_entries(path, &inner);
        for (int32_t i = 0; i < below && is_folder(&inner[i]); i++) {
            snprintf(row, sizeof row, "%s%s", indent, inner[i].name);
            AddEntryInSub(tree, top + 1, row);
        }
        free(inner);
    }
    free(outer);
    LvCollapseAll(tree);
}

/* The path of a row that shows, from its text and that of the row it is below. */
static void path_of_row(int32_t row, char *path)
{
    char name[NAME_MAX + sizeof indent];
    snprintf(name, sizeof name, "%s", GetLvItem(tree, row));
    const int is_below = strncmp(name, indent, sizeof indent - 1) == 0;
    strcpy(path, root);
    if (row <= 0)
        return;
    if (is_below) {
        while (row > 0 && strncmp(GetLvItem(tree, row), indent, sizeof indent - 1) == 0)
            row--;
        join(path, path, GetLvItem(tree, row));
    }
    join(path, path, is_below ? name + sizeof indent - 1 : name);
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

static const char *type_text(const Entry *one, const char *path)
{
    const char *type = is_folder(one) ? "folder" : GetFileMime(path);
    return *type != '\0' ? type : "?";
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

/* Shows the folder's entries anew; the one that was chosen stays so. */
static void fill_entries(void)
{
    const int32_t was = GetLvSelected(entries);
    char chosen[NAME_MAX + 1] = "";
    if (was >= 0 && was < entry_count)
        snprintf(chosen, sizeof chosen, "%s", entry[was].name);
    free(entry);
    entry_count = read_entries(folder, &entry);
    ClearListView(entries);
    int32_t again = -1;
    for (int32_t i = 0; i < entry_count; i++) {
        char path[PATH_MAX], row[LINE] = "";
        join(path, folder, entry[i].name);
        add_column(row, entry[i].name, 26);
        strcat(row, " ");
        add_column(row, type_text(&entry[i], path), 20);
        snprintf(row + strlen(row), sizeof row - strlen(row), " %9s  %s", size_text(&entry[i]),
                 date_text(&entry[i]));
        AddLvEntry(entries, row);
        if (strcmp(entry[i].name, chosen) == 0)
            again = i;
    }
    if (again >= 0)
        SetSelectEntry(entries, again);
}

static void show_folder(const char *path)
{
    if (*folder != '\0')
        WatchDir(folder, 0);
    snprintf(folder, sizeof folder, "%.*s", PATH_MAX - 1, path);
    WatchDir(folder, 1);
    SetWindowTitle(window, folder);
    LvSelectNone(entries);
    fill_entries();
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
    add_fact("Type", type_text(one, path));
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
        LvSelectNone(tree);
        show_folder(path);
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
    for (int32_t i = 0; i < count; i++)
        copy_here(paths[i]);
    fill_entries();
    return 0;
}

/* Told on the application's thread. Setting the bell calls its handler with the window locked, so
   that no other handler runs meanwhile. */
static void on_change(int32_t opcode, const char *path, const char *second_path)
{
    (void)opcode, (void)path, (void)second_path;
    SetChecked(bell, 1);
}

static int32_t on_bell(int32_t value)
{
    (void)value;
    fill_entries();
    return 0;
}

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
    AddGadgetInTab(facts, tabs, 0);
    editor = make(EDITOR, EDGE, EDGE, page_width, page_height);
    TEditMakeEditable(editor, 0);
    AddGadgetInTab(editor, tabs, 1);
    SetFontGadget(facts, font);
    SetFontGadget(editor, font);
    TabSelect(tabs, front);
}

/* The window's size is shared out: the tree keeps its width, entries and tabs get as much more
   height. */
static void lay_out(int32_t width, int32_t height)
{
    const int32_t right_width = width - RIGHT - EDGE - BORDER;
    const int32_t list_height = LIST_HEIGHT + (height - HEIGHT) / 2;
    const int32_t tabs_top = EDGE + list_height + EDGE + BORDER;
    ResizeGadget(tree, TREE_WIDTH + BORDER, height - 2 * EDGE);
    ResizeGadget(entries, right_width + BORDER + 2, list_height + BORDER); /* as far as the tabs */
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
    SetBackColorGadget(tree, row_ground);
    entries = make(LIST, RIGHT, EDGE, LIST_HEIGHT, LIST_HEIGHT);
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
    tour_click(RIGHT + 60, EDGE + 40);
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
    fill_tree();
    show_folder(root);
    set_handlers();
    if (save == NULL)
        return;
    const int32_t status = play(save);
    if (status != 0)
        fprintf(stderr, "browser: cannot save %s\n", save);
    if (is_sample)
        remove_all(root);
    End();
}
