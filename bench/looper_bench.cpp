// Loopers: the window lock that every exported call takes, posting, and round trips; beside them a
// std::mutex pair and a handover between two threads.

#include <benchmark/benchmark.h>

#include <Looper.h>
#include <Message.h>
#include <MessageQueue.h>
#include <Messenger.h>
#include <OS.h>

#include <mutex>

namespace {

class Echo : public BLooper {
public:
    Echo() : BLooper("echo") {}
    void MessageReceived(BMessage* message) override { message->SendReply('echo'); }
};

void quit(BLooper* looper)
{
    if (looper->Lock())
        looper->Quit();
}

void LockPairOfAFreeLooper(benchmark::State& state)
{
    auto* looper = new Echo;
    looper->Run();
    for (auto _ : state) {
        benchmark::DoNotOptimize(looper->Lock());
        looper->Unlock();
    }
    quit(looper);
}
BENCHMARK(LockPairOfAFreeLooper);

void LockPairAmongAHundredLoopers(benchmark::State& state)
{
    BLooper* loopers[100];
    for (BLooper*& looper : loopers) {
        looper = new Echo;
        looper->Run();
    }
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(loopers[i]->Lock());
        loopers[i]->Unlock();
        i = (i + 1) % 100;
    }
    for (BLooper* looper : loopers)
        quit(looper);
}
BENCHMARK(LockPairAmongAHundredLoopers);

void LockPairHeldAlready(benchmark::State& state)
{
    auto* looper = new Echo;
    for (auto _ : state) {
        benchmark::DoNotOptimize(looper->Lock());
        looper->Unlock();
    }
    looper->Quit();
}
BENCHMARK(LockPairHeldAlready);

void RawMutexPair(benchmark::State& state)
{
    std::recursive_mutex mutex;
    for (auto _ : state) {
        mutex.lock();
        mutex.unlock();
    }
}
BENCHMARK(RawMutexPair);

// A hundred messages while the loop can not run: time of one.
void PostBeforeTheLoopWakes(benchmark::State& state)
{
    auto* looper = new Echo;
    looper->Run();
    for (auto _ : state) {
        state.PauseTiming();
        looper->Lock();
        while (BMessage* message = looper->MessageQueue()->NextMessage())
            delete message;
        state.ResumeTiming();
        for (int i = 0; i < 100; i++)
            looper->PostMessage('post');
        state.PauseTiming();
        while (BMessage* message = looper->MessageQueue()->NextMessage())
            delete message;
        looper->Unlock();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * 100);
    quit(looper);
}
BENCHMARK(PostBeforeTheLoopWakes);

void RoundTrip(benchmark::State& state)
{
    auto* looper = new Echo;
    looper->Run();
    const BMessenger messenger(looper);
    BMessage reply;
    for (auto _ : state)
        messenger.SendMessage('ping', &reply);
    quit(looper);
}
BENCHMARK(RoundTrip)->UseRealTime();

status_t answer(void* data)
{
    auto* sems = static_cast<sem_id*>(data);
    while (acquire_sem(sems[0]) == B_OK)
        release_sem(sems[1]);
    return B_OK;
}

void RawHandoverAndBack(benchmark::State& state)
{
    sem_id sems[] = {create_sem(0, "there"), create_sem(0, "back")};
    const thread_id thread = spawn_thread(answer, "answer", B_NORMAL_PRIORITY, sems);
    resume_thread(thread);
    for (auto _ : state) {
        release_sem(sems[0]);
        acquire_sem(sems[1]);
    }
    delete_sem(sems[0]);
    status_t result;
    wait_for_thread(thread, &result);
    delete_sem(sems[1]);
}
BENCHMARK(RawHandoverAndBack)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
