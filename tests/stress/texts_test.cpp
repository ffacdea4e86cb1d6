// Texts that several threads set, read and kill, while their user types.

#include "support/program.h"

#include <Application.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace {

std::atomic<int32_t> sField, sEditor;
std::atomic<bool> sStop;

int32_t on_text(const char* text)
{
    TEditInsertText(sEditor, text);
    return 0;
}
int32_t on_change(int32_t length)
{
    SetInteger(sField, length);
    return 0;
}

void make(int32_t window)
{
    sField = CreateGadget(4, window, 10, 10, 200, 24, "Name", 0);
    sEditor = CreateGadget(27, window, 10, 50, 200, 80, nullptr, 0);
    SetHandlerForGadget(sField, PLINTH_GADGET_INPUT, reinterpret_cast<void*>(on_text));
    SetHandlerForGadget(sField, PLINTH_GADGET_ENTER, reinterpret_cast<void*>(on_text));
    SetHandlerForGadget(sEditor, PLINTH_GADGET_VALUE, reinterpret_cast<void*>(on_change));
    ActivateGadget(sEditor);
}

void use_texts(int seed)
{
    const std::string words = "words of thread " + std::to_string(seed) + "\n";
    for (int i = seed; !sStop; i++) {
        SetString(sField, words.c_str());
        EXPECT_NE(GetString(sField), nullptr);
        SelectCommand(i % 2 == 0 ? sField : sEditor, i % 6);
        TEditInsertText(sEditor, words.c_str());
        TEditSelect(sEditor, i % 100, i % 70);
        TEditFind(sEditor, "thread", i % 50, i % 8);
        if (i % 50 == 0)
            TEditSetText(sEditor, words.c_str());
        if (i % 3 == 0)
            TEditUndo(sEditor);
        MyFree(TEditGetAll(sEditor));
    }
}

}  // namespace

TEST(TextStress, ThreadsUserAndKillsTogether)
{
    TestWindow window(100, 100, 250, 150);
    sStop = false;
    make(window);
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; i++)
        threads.emplace_back(use_texts, i);
    for (int round = 0; round < 60; round++) {
        inject_text("typed 123\n");
        window.Click(50 + round, 80);
        if (round % 5 == 4) {
            KillGadget(0, sField);
            KillGadget(0, sEditor);
            make(window);
        }
        if (round % 2 == 0)
            ActivateGadget(round % 4 == 0 ? sField : sEditor);
    }
    sStop = true;
    for (std::thread& thread : threads)
        thread.join();
    TEditSetText(sEditor, "at last");
    EXPECT_EQ(TEditGetSize(sEditor), 7);
}
