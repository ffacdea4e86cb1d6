// Handlers: the chain, the looper's lock through a handler, observers, scripting.

#include <gtest/gtest.h>

#include <AppDefs.h>
#include <List.h>
#include <Looper.h>
#include <MessageFilter.h>
#include <Messenger.h>
#include <PropertyInfo.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "app/Mailbox.h"

namespace {

// Counts how many there are.
class CountedFilter : public BMessageFilter {
public:
    explicit CountedFilter(int& count) : BMessageFilter('filt'), fCount(count) { fCount++; }
    ~CountedFilter() override { fCount--; }

private:
    int& fCount;
};

void quit(BLooper* looper)
{
    looper->Lock();
    looper->Quit();
}

}  // namespace

TEST(Handler, NameMayBeNullAndOutlivesItsSource)
{
    BHandler unnamed;
    EXPECT_EQ(nullptr, unnamed.Name());
    std::string name = "first";
    BHandler handler(name.c_str());
    name = "other";
    EXPECT_STREQ("first", handler.Name());
    handler.SetName("");
    EXPECT_STREQ("", handler.Name());
    handler.SetName(nullptr);
    EXPECT_EQ(nullptr, handler.Name());
}

TEST(Handler, ThoseThatStayKeepTheirOrderWhoeverLeaves)
{
    Mailbox mail;
    auto* looper = new ListeningLooper(mail);
    std::vector<std::unique_ptr<BHandler>> handlers;
    std::vector<BHandler*> expected = {looper};
    for (int i = 0; i < 300; i++) {
        handlers.push_back(std::make_unique<BHandler>());
        looper->AddHandler(handlers.back().get());
        expected.push_back(handlers.back().get());
    }
    const auto expect_all = [&] {
        ASSERT_EQ(looper->CountHandlers(), static_cast<int32>(expected.size()));
        for (size_t i = 0; i < expected.size(); i++) {
            ASSERT_EQ(looper->HandlerAt(static_cast<int32>(i)), expected[i]);
            ASSERT_EQ(looper->IndexOf(expected[i]), static_cast<int32>(i));
        }
        ASSERT_EQ(looper->HandlerAt(static_cast<int32>(expected.size())), nullptr);
    };
    std::minstd_rand random(1);
    for (int turn = 0; turn < 2000; turn++) {
        BHandler* handler = handlers[random() % handlers.size()].get();
        const auto found = std::find(expected.begin(), expected.end(), handler);
        EXPECT_EQ(looper->RemoveHandler(handler), found != expected.end());
        if (found != expected.end()) {
            expected.erase(found);
            EXPECT_EQ(handler->Looper(), nullptr);
            EXPECT_EQ(looper->CountHandlers(), static_cast<int32>(expected.size()));
        } else if (random() % 3 == 0) {
            looper->AddHandler(handler);
            expected.push_back(handler);
        }
        if (turn % 50 == 0)
            expect_all();
    }
    expect_all();
    quit(looper);
    for (const auto& handler : handlers)
        EXPECT_EQ(handler->Looper(), nullptr);
}

TEST(Handler, UnhandledMessageGoesUpTheChain)
{
    Mailbox mail;
    auto* looper = new ListeningLooper(mail);
    BHandler outer("outer"), inner("inner"), stranger("stranger");
    looper->AddHandler(&outer);
    looper->AddHandler(&inner);
    EXPECT_EQ(looper, inner.NextHandler());
    inner.SetNextHandler(&outer);
    inner.SetNextHandler(&stranger);
    EXPECT_EQ(&outer, inner.NextHandler()) << "the next handler is of the same looper";
    looper->AddHandler(&inner);
    EXPECT_EQ(3, looper->CountHandlers());
    EXPECT_EQ(looper, looper->HandlerAt(0));
    EXPECT_EQ(2, looper->IndexOf(&inner));
    EXPECT_EQ(nullptr, looper->HandlerAt(3));
    EXPECT_EQ(nullptr, looper->HandlerAt(-1));
    looper->Run();
    looper->PostMessage('chai', &inner);
    EXPECT_EQ(uint32('chai'), mail.TakeWhat());
    quit(looper);
    EXPECT_EQ(nullptr, inner.Looper());
    EXPECT_EQ(nullptr, inner.NextHandler());
}

TEST(Handler, NextHandlersFiltersSeeWhatIsPassedOn)
{
    Mailbox mail, aside;
    auto* looper = new ListeningLooper(mail);
    BHandler inner("inner"), middle("middle");
    ListeningHandler other(aside);
    for (BHandler* handler : {&inner, &middle, static_cast<BHandler*>(&other)})
        looper->AddHandler(handler);
    inner.SetNextHandler(&middle);
    middle.AddFilter(new BMessageFilter(
        'drop', [](BMessage*, BHandler**, BMessageFilter*) { return B_SKIP_MESSAGE; }));
    static BHandler* sAside;
    sAside = &other;
    looper->AddFilter(new BMessageFilter('turn', [](BMessage*, BHandler** target, BMessageFilter*) {
        *target = sAside;
        return B_DISPATCH_MESSAGE;
    }));
    looper->Run();
    looper->PostMessage('drop', &inner);
    looper->PostMessage('turn', &inner);
    EXPECT_EQ(uint32('turn'), aside.TakeWhat());
    looper->PostMessage('last', &inner);
    EXPECT_EQ(uint32('last'), mail.TakeWhat()) << "and nothing before";
    quit(looper);
}

TEST(Handler, DeletedHandlerLeavesItsLooper)
{
    Mailbox mail;
    auto* looper = new ListeningLooper(mail);
    looper->Run();
    auto* handler = new ListeningHandler(mail);
    looper->Lock();
    looper->AddHandler(handler);
    looper->SetPreferredHandler(handler);
    looper->PostMessage('lost', handler);
    delete handler;
    EXPECT_EQ(1, looper->CountHandlers());
    EXPECT_EQ(nullptr, looper->PreferredHandler());
    EXPECT_EQ(1, looper->CountLocks()) << "the lock is given back as often as taken";
    looper->Unlock();
    looper->PostMessage('here', nullptr);
    EXPECT_EQ(uint32('here'), mail.TakeWhat());
    quit(looper);
}

TEST(Handler, OwnsItsFilters)
{
    int count = 0;
    {
        BHandler handler;
        handler.AddFilter(nullptr);
        EXPECT_EQ(nullptr, handler.FilterList());
        auto* kept = new CountedFilter(count);
        handler.AddFilter(kept);
        handler.AddFilter(kept);
        handler.AddFilter(new CountedFilter(count));
        EXPECT_EQ(2, handler.FilterList()->CountItems());
        EXPECT_TRUE(handler.RemoveFilter(kept));
        EXPECT_FALSE(handler.RemoveFilter(kept));

        // A new list may carry a filter over from the former one.
        auto* list = new BList;
        list->AddItem(handler.FilterList()->ItemAt(0));
        handler.AddFilter(new CountedFilter(count));
        EXPECT_EQ(3, count);
        handler.SetFilterList(list);
        EXPECT_EQ(2, count);
        handler.SetFilterList(list);
        EXPECT_EQ(list, handler.FilterList());
        delete kept;
    }
    EXPECT_EQ(0, count);
}

TEST(Handler, LockLooperLocksTheOneItBelongsTo)
{
    BHandler handler;
    EXPECT_FALSE(handler.LockLooper());
    EXPECT_EQ(B_BAD_VALUE, handler.LockLooperWithTimeout(0));
    handler.UnlockLooper();
    Mailbox mail;
    auto* looper = new ListeningLooper(mail);
    looper->AddHandler(&handler);
    looper->Run();
    ASSERT_TRUE(handler.LockLooper());
    EXPECT_TRUE(looper->IsLocked());
    Task([&] { EXPECT_EQ(B_TIMED_OUT, handler.LockLooperWithTimeout(1000)); }).Join();
    handler.UnlockLooper();
    EXPECT_FALSE(looper->IsLocked());
    quit(looper);
    EXPECT_FALSE(handler.LockLooper());
}

// A handler moves to and fro while two threads lock what it belongs to.
TEST(HandlerStress, LockLooperFollowsTheHandler)
{
    Mailbox mail;
    BLooper* homes[] = {new ListeningLooper(mail), new ListeningLooper(mail)};
    for (BLooper* home : homes)
        home->Run();
    BHandler handler;
    std::atomic<bool> stop{false};
    std::atomic<int> locked{0};
    auto visit = [&] {
        while (!stop) {
            if (!handler.LockLooper())
                continue;
            BLooper* looper = handler.Looper();
            EXPECT_TRUE(looper != nullptr && looper->IsLocked());
            looper->Unlock();
            locked++;
        }
    };
    {
        Task one(visit), two(visit);
        for (int i = 0; i < 2000 || locked < 100; i++) {
            BLooper* home = homes[i % 2];
            home->Lock();
            home->AddHandler(&handler);
            home->Unlock();
            home->Lock();
            home->RemoveHandler(&handler);
            home->Unlock();
        }
        stop = true;
    }
    for (BLooper* home : homes)
        quit(home);
}

TEST(Observers, GetTheNoticesThatTheyAskedFor)
{
    Mailbox one_mail, all_mail;
    auto* looper = new ListeningLooper(one_mail);
    ListeningHandler all(all_mail);
    looper->AddHandler(&all);
    looper->Run();
    BHandler watched;
    EXPECT_FALSE(watched.IsWatched());
    EXPECT_EQ(B_OK, watched.StartWatching(BMessenger(looper), 'one1'));
    EXPECT_EQ(B_OK, watched.StartWatching(BMessenger(looper), 'one1'));
    EXPECT_EQ(B_OK, watched.StartWatchingAll(&all));
    EXPECT_EQ(B_BAD_HANDLER, watched.StartWatching(static_cast<BHandler*>(nullptr), 'one1'));
    EXPECT_TRUE(watched.IsWatched());

    BMessage notice('note');
    notice.AddInt32("number", 5);
    watched.SendNotices('one1', &notice);
    watched.SendNotices('two2');
    BMessage got = one_mail.Take();
    EXPECT_EQ(static_cast<uint32>(B_OBSERVER_NOTICE_CHANGE), got.what);
    EXPECT_EQ(int32('one1'), got.FindInt32(B_OBSERVE_WHAT_CHANGE));
    EXPECT_EQ(int32('note'), got.FindInt32(B_OBSERVE_ORIGINAL_WHAT));
    EXPECT_EQ(5, got.FindInt32("number"));
    EXPECT_EQ(int32('one1'), all_mail.Take().FindInt32(B_OBSERVE_WHAT_CHANGE));
    EXPECT_EQ(int32('two2'), all_mail.Take().FindInt32(B_OBSERVE_WHAT_CHANGE));
    EXPECT_TRUE(one_mail.IsEmpty()) << "watching twice is watching once";
    EXPECT_EQ(uint32('note'), notice.what);

    EXPECT_EQ(B_OK, watched.StopWatching(BMessenger(looper), 'one1'));
    EXPECT_EQ(B_BAD_HANDLER, watched.StopWatching(BMessenger(looper), 'one1'));
    quit(looper);
    watched.SendNotices('two2');
    EXPECT_TRUE(watched.IsWatched()) << "a handler without looper may get one again";
    EXPECT_EQ(B_OK, watched.StopWatchingAll(&all));
    EXPECT_FALSE(watched.IsWatched());
}

TEST(Observers, ObserverThatIsGoneIsForgotten)
{
    Mailbox mail;
    auto* looper = new ListeningLooper(mail);
    auto* observer = new ListeningHandler(mail);
    BHandler watched;
    looper->Run();
    watched.StartWatchingAll(BMessenger(looper));
    watched.StartWatchingAll(observer);
    delete observer;
    quit(looper);
    watched.SendNotices('note');
    EXPECT_FALSE(watched.IsWatched());
}

TEST(Scripting, LooperFindsHandlersAndAnswersForThem)
{
    auto* looper = new BLooper("scripted");
    BHandler handler("inner");
    looper->AddHandler(&handler);
    looper->Run();
    const BMessenger messenger(looper);

    BMessage count(B_COUNT_PROPERTIES), reply;
    count.AddSpecifier("Handler");
    ASSERT_EQ(B_OK, messenger.SendMessage(&count, &reply));
    EXPECT_EQ(2, reply.FindInt32("result"));

    BMessage name(B_GET_PROPERTY);
    name.AddSpecifier("InternalName");
    name.AddSpecifier("Handler", static_cast<int32>(1));
    ASSERT_EQ(B_OK, messenger.SendMessage(&name, &reply));
    EXPECT_EQ(static_cast<uint32>(B_REPLY), reply.what);
    EXPECT_STREQ("inner", reply.FindString("result"));

    BMessage by_name(B_GET_PROPERTY);
    by_name.AddSpecifier("Messenger");
    by_name.AddSpecifier("Handler", "inner");
    ASSERT_EQ(B_OK, messenger.SendMessage(&by_name, &reply));
    BMessenger found;
    EXPECT_EQ(B_OK, reply.FindMessenger("result", &found));
    EXPECT_EQ(BMessenger(&handler), found);

    BMessage suites(B_GET_SUPPORTED_SUITES);
    ASSERT_EQ(B_OK, messenger.SendMessage(&suites, &reply));
    EXPECT_STREQ("suite/vnd.Be-looper", reply.FindString("suites"));
    EXPECT_STREQ("suite/vnd.Be-handler", reply.FindString("suites", 1));
    BPropertyInfo info;
    EXPECT_EQ(B_OK, reply.FindFlat("messages", &info));
    EXPECT_EQ(3, info.CountProperties());

    for (const char* unknown : {"Nonsense", "Handler"}) {
        BMessage bad(B_GET_PROPERTY);
        bad.AddSpecifier("InternalName");
        bad.AddSpecifier(unknown, static_cast<int32>(7));
        ASSERT_EQ(B_OK, messenger.SendMessage(&bad, &reply));
        EXPECT_EQ(static_cast<uint32>(B_MESSAGE_NOT_UNDERSTOOD), reply.what) << unknown;
        EXPECT_NE(B_OK, reply.FindInt32("error"));
    }
    quit(looper);
}

TEST(PropertyInfo, FlatFormBringsTheTablesBack)
{
    property_info properties[] = {
        {"Size",
         {B_GET_PROPERTY, B_SET_PROPERTY},
         {B_DIRECT_SPECIFIER},
         "the size",
         7,
         {'LONG'},
         {{{{"width", 'FLOT'}, {"height", 'FLOT'}}}}},
        {"Any", {}, {}, nullptr, 0, {}, {}},
        {},
    };
    value_info values[] = {{"Go", 'go!!', B_COMMAND_KIND, "goes", 3}, {}};
    const BPropertyInfo info(properties, values);
    std::string bytes(info.FlattenedSize(), '\0');
    EXPECT_EQ(B_NO_MEMORY, info.Flatten(bytes.data(), bytes.size() - 1));
    ASSERT_EQ(B_OK, info.Flatten(bytes.data(), bytes.size()));
    BPropertyInfo read;
    ASSERT_EQ(B_OK, read.Unflatten(info.TypeCode(), bytes.data(), bytes.size()));
    ASSERT_EQ(2, read.CountProperties());
    ASSERT_EQ(1, read.CountValues());
    const property_info& row = read.Properties()[0];
    EXPECT_STREQ("Size", row.name);
    EXPECT_STREQ("the size", row.usage);
    EXPECT_STREQ("height", row.ctypes[0].pairs[1].name);
    EXPECT_EQ(uint32('go!!'), read.Values()[0].value);

    BMessage message(B_SET_PROPERTY), specifier;
    uint32 extra = 0;
    EXPECT_EQ(0, read.FindMatch(&message, 0, &specifier, B_DIRECT_SPECIFIER, "Size", &extra));
    EXPECT_EQ(7u, extra);
    EXPECT_EQ(-1, read.FindMatch(&message, 0, &specifier, B_INDEX_SPECIFIER, "Size"));
    EXPECT_EQ(-1, read.FindMatch(&message, 1, &specifier, B_DIRECT_SPECIFIER, "Size"));
    EXPECT_EQ(1, read.FindMatch(&message, 1, &specifier, B_NAME_SPECIFIER, "Any"));

    // Every shorter form is refused, and read within its bounds.
    for (size_t size = 0; size < bytes.size(); size++) {
        const std::string part(bytes, 0, size);
        EXPECT_EQ(B_BAD_VALUE, read.Unflatten(info.TypeCode(), part.data(), size)) << size;
        EXPECT_EQ(0, read.CountProperties());
    }
}
