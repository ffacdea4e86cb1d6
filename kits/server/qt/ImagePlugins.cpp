// Qt makes one object of each of its image plug-ins, on the thread that reads or writes the first
// image, and deletes them when the process ends. It counts the data of a thread that is gone once
// too little then. Here the plug-ins belong to a thread that stays. Qt's own globals go with the
// exit handlers: no thread may be at an image by then.

#include "server/qt/ImagePlugins.h"

#include <QImageReader>
#include <QLoggingCategory>

#include <stdlib.h>
#include <tiffio.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <semaphore>
#include <thread>

#include "kernel/threads/ProcessExit.h"

namespace server {

static const std::chrono::seconds kPatience(2);  // for images, when the process ends

namespace {

struct Works {
    std::mutex lock;
    std::condition_variable changed;
    int count = 0;
    bool ended = false;
    std::thread::id ender;  // whose own exit handlers may still save images,
    bool over = false;      // but not once Qt's have run
};

}  // namespace

static Works& works()
{
    static auto* works = new Works;  // never deleted: threads may ask at any time
    return *works;
}

static void end_image_works()
{
    std::unique_lock hold(works().lock);
    if (!works().ended)
        works().ender = std::this_thread::get_id();
    works().ended = true;
    works().changed.wait_for(hold, kPatience, [] { return works().count == 0; });
}

static void end_all_image_works()
{
    end_image_works();
    std::lock_guard hold(works().lock);
    works().over = true;
}

// In time for the first image too, whenever it comes.
[[gnu::constructor]] static void watch_exit()
{
    BPrivate::on_process_exit(end_image_works);
    atexit(end_image_works);  // the second best, for threads that the kits do not know
}

// What is wrong with a file is told by a call's result, not on the program's standard error.
static void silence_plugins()
{
    QLoggingCategory::setFilterRules("qt.gui.imageio*=false");
    TIFFSetErrorHandler(nullptr);
    TIFFSetWarningHandler(nullptr);
}

static void ready_plugins()
{
    static std::once_flag done;
    std::call_once(done, [] {
        struct Hold {
            std::binary_semaphore ready{0}, for_ever{0};
        };
        auto* hold = new Hold;  // never deleted: the thread waits in it
        std::thread([hold] {
            silence_plugins();
            QImageReader::supportedImageFormats();
            hold->ready.release();
            hold->for_ever.acquire();
        }).detach();
        hold->ready.acquire();
        atexit(end_all_image_works);  // before those that came with the plug-ins
    });
}

ImageWork::ImageWork()
{
    {
        std::lock_guard hold(works().lock);
        const bool ends = works().ender == std::this_thread::get_id() && !works().over;
        fAllowed = !works().ended || ends;
        if (!fAllowed)
            return;
        works().count++;
    }
    ready_plugins();
}

ImageWork::~ImageWork()
{
    if (!fAllowed)
        return;
    std::lock_guard hold(works().lock);
    works().count--;
    works().changed.notify_all();
}

}  // namespace server
