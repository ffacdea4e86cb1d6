// Any bytes as a flat message: what is taken has to be whole, and come out the same again.

#include <DataIO.h>
#include <Entry.h>
#include <Message.h>
#include <Messenger.h>
#include <String.h>
#include <StringList.h>
#include <TypeConstants.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

static void check(bool holds)
{
    if (!holds)
        abort();
}

static void walk(const BMessage& message, int depth)
{
    char* name;
    type_code type;
    int32 count;
    for (int32 i = 0; message.GetInfo(B_ANY_TYPE, i, &name, &type, &count) == B_OK; ++i) {
        check(count > 0);
        for (int32 index = 0; index < count && index < 100; ++index) {
            const void* data;
            ssize_t size;
            check(message.FindData(name, type, index, &data, &size) == B_OK);
            volatile uint8_t sum = 0;
            for (ssize_t at = 0; at < size; ++at)
                sum = sum + static_cast<const uint8_t*>(data)[at];
            BMessage nested;
            BStringList list;
            entry_ref ref;
            BMessenger messenger;
            if (type == B_STRING_TYPE)
                check(strlen(message.FindString(name, index)) <= static_cast<size_t>(size));
            message.FindRef(name, index, &ref);
            message.FindMessenger(name, index, &messenger);
            message.FindFlat(name, index, &list);
            message.FindRect(name, index);
            if (depth < 20 && message.FindMessage(name, index, &nested) == B_OK)
                walk(nested, depth + 1);
        }
        const void* none;
        check(message.FindData(name, type, count, &none, nullptr) == B_BAD_INDEX);
    }
}

static void change(BMessage& message)
{
    char* name;
    type_code type;
    int32 count;
    while (message.GetInfo(B_ANY_TYPE, 0, &name, &type, &count) == B_OK) {
        const std::string field(name);
        if (type == B_STRING_TYPE)
            message.ReplaceString(field.c_str(), count - 1, "something else, and longer");
        message.Rename(field.c_str(), "renamed");
        check(message.RemoveData("renamed", count / 2) == B_OK || field == "renamed");
        message.RemoveName("renamed");
        message.RemoveName(field.c_str());
    }
    check(message.IsEmpty());
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    BMemoryIO stream(static_cast<const void*>(data), size);
    BMessage message('KEPT');
    if (message.Unflatten(&stream) != B_OK) {
        check(message.what == 'KEPT' && message.IsEmpty());
        return 0;
    }
    walk(message, 0);
    std::vector<char> flat(message.FlattenedSize());
    check(message.Flatten(flat.data(), flat.size()) == B_OK);
    check(flat.size() <= size && memcmp(flat.data(), data, flat.size()) == 0);
    BMessage again;
    check(again.Unflatten(flat.data()) == B_OK && again.HasSameData(message, false, true));
    change(again);
    return 0;
}

std::vector<std::vector<uint8_t>> FuzzSeeds()
{
    BMessage inner('INNR');
    inner.AddString("text", "inside");
    inner.AddInt32("number", 5);
    BMessage message('SEED');
    const entry_ref ref(1, 2, "name");
    BStringList list;
    list.Add("a");
    list.Add("bc");
    message.AddMessage("message", &inner);
    message.AddMessage("message", &inner);
    message.AddInt64("long", -1);
    message.AddRect("rect", BRect(1, 2, 3, 4));
    message.AddRect("rect", BRect(5, 6, 7, 8));
    message.AddRef("ref", &ref);
    message.AddFlat("list", &list);
    message.AddMessenger("messenger", BMessenger());
    message.AddString("strings", "");
    message.AddString("strings", "longer than a slot of eight bytes");
    std::vector<std::vector<uint8_t>> seeds;
    for (const BMessage* each : {&inner, &message}) {
        std::vector<uint8_t> flat(each->FlattenedSize());
        each->Flatten(reinterpret_cast<char*>(flat.data()), flat.size());
        seeds.push_back(flat);
    }
    return seeds;
}
