// Qt makes one object of each of its image plug-ins, on the thread that reads or writes the first
// image, and deletes them when the process ends. It counts the data of a thread that is gone once
// too little then. Here the plug-ins belong to a thread that stays.

#include "server/qt/ImagePlugins.h"

#include <QImageReader>
#include <QLoggingCategory>

#include <tiffio.h>

#include <mutex>
#include <semaphore>
#include <thread>

namespace server {

// What is wrong with a file is told by a call's result, not on the program's standard error.
static void silence_plugins()
{
    QLoggingCategory::setFilterRules("qt.gui.imageio*=false");
    TIFFSetErrorHandler(nullptr);
    TIFFSetWarningHandler(nullptr);
}

void ready_image_plugins()
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
    });
}

}  // namespace server
