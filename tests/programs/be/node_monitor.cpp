// Watches a folder while a file comes, goes by another name, and is removed.

#include <Application.h>
#include <Directory.h>
#include <Entry.h>
#include <File.h>
#include <Node.h>
#include <NodeMonitor.h>
#include <String.h>

#include <assert.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

class Watcher : public BApplication {
public:
    Watcher(const char* folder)
        : BApplication("application/x-vnd.node-monitor-program"), fFolder(folder)
    {
    }
    virtual void ReadyToRun()
    {
        node_ref node;
        assert(fFolder.GetNodeRef(&node) == B_OK);
        assert(watch_node(&node, B_WATCH_DIRECTORY, this) == B_OK);
        BFile file;
        assert(fFolder.CreateFile("one", &file) == B_OK);
    }
    virtual void MessageReceived(BMessage* message)
    {
        if (message->what != B_NODE_MONITOR) {
            BApplication::MessageReceived(message);
            return;
        }
        const int32 opcode = message->FindInt32("opcode");
        BEntry entry;
        switch (opcode) {
            case B_ENTRY_CREATED:
                assert(strcmp(message->FindString("name"), "one") == 0);
                assert(fFolder.FindEntry("one", &entry) == B_OK);
                assert(entry.Rename("two") == B_OK);
                fSeen << "created ";
                break;
            case B_ENTRY_MOVED:
                assert(strcmp(message->FindString("name"), "two") == 0);
                assert(fFolder.FindEntry("two", &entry) == B_OK);
                assert(entry.Remove() == B_OK);
                fSeen << "moved ";
                break;
            case B_ENTRY_REMOVED:
                fSeen << "removed ";
                assert(stop_watching(this) == B_OK);
                PostMessage(B_QUIT_REQUESTED);
                break;
        }
    }
    const BString& Seen() const { return fSeen; }

private:
    BDirectory fFolder;
    BString fSeen;
};

int main()
{
    char folder[] = "be_node_monitor.XXXXXX";
    assert(mkdtemp(folder) != NULL);
    Watcher watcher(folder);
    watcher.Run();
    assert(watcher.Seen() == "created moved removed ");
    assert(rmdir(folder) == 0);
    return 0;
}
