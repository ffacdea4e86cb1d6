/* Counts a text: report FILE [DATA]. Reads FILE through a channel, keeps the counts as raw numbers
   in DATA (/tmp/report.dat), reads them back and prints them as a small table. */

#include <plinth.h>

#include <stdio.h>
#include <string.h>

enum {
    LETTERS = 26,
    LINE = 256, /* of ReadFile, with the terminator */
    BAR = 40,   /* the longest bar of the table */
    NAME = 12,
    FIGURE = 10
};

struct counts {
    int32_t lines, words, letters, each[LETTERS];
    double mean; /* letters of a word */
};

/* Counts one piece of a line; a word may go on from the piece before. */
static void count_piece(const char *piece, bool *in_word, struct counts *counts)
{
    char upper[LINE + 1];
    strcpy(upper, Ucase(piece));
    for (const char *at = upper; *at != '\0'; at++) {
        bool is_letter = *at >= 'A' && *at <= 'Z';
        if (is_letter) {
            counts->letters++;
            counts->each[*at - 'A']++;
            counts->words += !*in_word;
        }
        *in_word = is_letter;
    }
}

static bool count_file(const char *path, struct counts *counts)
{
    int32_t channel = OpenFile(path, 0);
    if (channel == 0)
        return false;
    char line[LINE];
    bool in_word = false;
    bool goes_on = false;
    while (ReadFile(channel, line)) {
        counts->lines += !goes_on;
        count_piece(line, &in_word, counts);
        goes_on = Len(line) == LINE - 1; /* the rest of the line comes next */
        if (!goes_on)
            in_word = false;
    }
    CloseFile(channel);
    counts->mean = counts->words == 0 ? 0 : (double)counts->letters / counts->words;
    return true;
}

static bool save(const char *path, const struct counts *counts)
{
    int32_t channel = OpenFile(path, 1);
    bool ok = WriteInteger(channel, counts->lines) && WriteInteger(channel, counts->words) &&
              WriteInteger(channel, counts->letters) && WriteDouble(channel, counts->mean);
    for (int i = 0; i < LETTERS && ok; i++)
        ok = WriteInteger(channel, counts->each[i]);
    return CloseFile(channel) && ok;
}

static bool load(const char *path, struct counts *counts)
{
    int32_t channel = OpenFile(path, 0);
    bool ok = ReadInteger(channel, &counts->lines) && ReadInteger(channel, &counts->words) &&
              ReadInteger(channel, &counts->letters) && ReadDouble(channel, &counts->mean);
    for (int i = 0; i < LETTERS && ok; i++)
        ok = ReadInteger(channel, &counts->each[i]);
    return CloseFile(channel) && ok;
}

/* The name at the left, the number at the right. Right leaves no terminator, but its length is
   known. */
static void print_row(const char *name, double number, const char *format)
{
    char figure[LINE + 1];
    strcpy(figure, __MultiStr(0, Space(FIGURE), Format(number, format), NULL));
    printf("%-*s%.*s", NAME, name, FIGURE, Right(figure, FIGURE));
}

static void print_report(const char *path, const struct counts *counts)
{
    printf("%s\n", ExtractFileName(path));
    print_row("lines", counts->lines, "%.0f");
    WriteCR();
    print_row("words", counts->words, "%.0f");
    WriteCR();
    print_row("letters", counts->letters, "%.0f");
    WriteCR();
    print_row("mean word", counts->mean, "%.2f");
    WriteCR();
    WriteCR();

    int32_t most = 1;
    for (int i = 0; i < LETTERS; i++)
        most = counts->each[i] > most ? counts->each[i] : most;
    for (int i = 0; i < LETTERS; i++) {
        if (counts->each[i] == 0)
            continue;
        print_row(Chr((uint8_t)('A' + i)), counts->each[i], "%.0f");
        printf("  %s", String((int32_t)((int64_t)counts->each[i] * BAR / most), "#"));
        WriteCR();
    }
}

static void report(const char *path, const char *data)
{
    struct counts counts = {0};
    struct counts kept = {0};
    if (path[0] == '\0')
        printf("report FILE [DATA]: counts the words and letters of a text\n");
    else if (!count_file(path, &counts))
        printf("%s: %s\n", path, strerror(GetDosErr(0)));
    else if (!save(data, &counts) || !load(data, &kept))
        printf("%s: %s\n", data, strerror(GetDosErr(0)));
    else
        print_report(path, &kept);
}

void ProgramMain(void)
{
    void **table = Open_Sys(0);
    const char *data = __GetCommand(2);
    report(__GetCommand(1), data[0] == '\0' ? "/tmp/report.dat" : data);
    fflush(stdout);
    Close_Sys(table);
    End();
}
