// Attributes of a file: written, listed, renamed, read and removed.

#include <Directory.h>
#include <Entry.h>
#include <File.h>
#include <NodeInfo.h>
#include <Path.h>
#include <String.h>
#include <fs_attr.h>

#include <assert.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

int main()
{
    char folder[] = "be_attributes.XXXXXX";
    assert(mkdtemp(folder) != NULL);
    BDirectory directory(folder);
    BFile file;
    assert(directory.CreateFile("letter", &file) == B_OK);

    const char subject[] = "Greetings";
    const int32 pages = 3;
    const ssize_t written = file.WriteAttr("subject", B_STRING_TYPE, 0, subject, sizeof(subject));
    if (written < 0)
        printf("no attributes here\n");
    else {
        assert(written == (ssize_t)sizeof(subject));
        assert(file.WriteAttr("pages", B_INT32_TYPE, 0, &pages, sizeof(pages)) == sizeof(pages));

        attr_info info;
        assert(file.GetAttrInfo("pages", &info) == B_OK);
        assert(info.type == B_INT32_TYPE && info.size == sizeof(pages));
        assert(file.RenameAttr("subject", "title") == B_OK);

        BString names;
        char name[B_ATTR_NAME_LENGTH];
        file.RewindAttrs();
        while (file.GetNextAttrName(name) == B_OK)
            names << name << " ";
        assert(names.FindFirst("title ") >= 0 && names.FindFirst("pages ") >= 0);
        assert(names.FindFirst("subject") < 0);

        char text[32];
        assert(file.ReadAttr("title", B_STRING_TYPE, 0, text, sizeof(text)) == sizeof(subject));
        assert(strcmp(text, subject) == 0);
        assert(file.RemoveAttr("pages") == B_OK);
        int32 number;
        assert(file.ReadAttr("pages", B_INT32_TYPE, 0, &number, sizeof(number)) ==
               B_ENTRY_NOT_FOUND);

        BNodeInfo node(&file);
        assert(node.SetType("text/x-letter") == B_OK);
        char type[B_MIME_TYPE_LENGTH];
        assert(node.GetType(type) == B_OK && strcmp(type, "text/x-letter") == 0);

        // As a file of its own.
        BPath path(&directory, "letter");
        int fd = fs_open_attr(path.Path(), "notes", B_STRING_TYPE, O_RDWR | O_CREAT);
        assert(fd >= 0);
        assert(write(fd, "one two", 7) == 7);
        assert(ftruncate(fd, 3) == 0);
        assert(fs_close_attr(fd) == 0);
        fd = fs_open_attr(path.Path(), "notes", B_STRING_TYPE, O_RDONLY);
        assert(read(fd, text, sizeof(text)) == 3 && memcmp(text, "one", 3) == 0);
        assert(fs_close_attr(fd) == 0);
        assert(fs_open_attr(path.Path(), "none", B_STRING_TYPE, O_RDONLY) == -1);
    }
    BEntry entry(&directory, "letter");
    assert(entry.Remove() == B_OK);
    assert(rmdir(folder) == 0);
    return 0;
}
