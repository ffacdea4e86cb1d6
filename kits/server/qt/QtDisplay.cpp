// The server's thread: Qt's start and end, its queue of work, and the screen.

#include "server/qt/QtDisplay.h"

#include <QCursor>
#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <clocale>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <semaphore>
#include <utility>

#include "server/screen/ScreenWindow.h"
#include "server/screen/Stage.h"
#include "server/qt/AccessibleWindow.h"
#include "server/qt/NativeWindow.h"
#include "server/qt/Platforms.h"
#include "server/qt/QtClipboard.h"
#include "server/qt/QtDrag.h"
#include "server/qt/QtWindow.h"
#include "server/qt/ReaderSwitch.h"
#include "server/qt/x11/X11Clipboard.h"
#include "server/qt/x11/X11Screen.h"

namespace server {

namespace {

std::binary_semaphore sStarted(0);

// Qt objects to an application object outside of the main thread, where all is made for it here,
// and to sessions without a run-time folder, which windows do not need.
void filter_message(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    if (type == QtDebugMsg || type == QtInfoMsg ||
        text.contains(QLatin1String("not created in the main() thread")) ||
        text.startsWith(QLatin1String("QStandardPaths:")))
        return;
    fprintf(stderr, "%s\n", text.toLocal8Bit().constData());
}

// A variable that is Qt's to read while it starts, and not our children's: it has its own value
// again after that.
class StartVariable {
public:
    StartVariable(const char* name, const QByteArray& value)
        : fName(name), fWasSet(qEnvironmentVariableIsSet(name)), fBefore(qgetenv(name))
    {
        if (!value.isEmpty())
            qputenv(fName, value);
    }
    ~StartVariable()
    {
        if (fWasSet)
            qputenv(fName, fBefore);
        else
            qunsetenv(fName);
    }
    StartVariable(const StartVariable&) = delete;

private:
    const char* const fName;
    const bool fWasSet;
    const QByteArray fBefore;
};

// Scales by their numbers, or "screen=number", with a semicolon between them: each a sensible one.
QByteArray sensible_scales(const QByteArray& scales)
{
    QByteArrayList result;
    for (const QByteArray& each : scales.split(';')) {
        const auto number = each.lastIndexOf('=') + 1;
        bool is_number;
        const double scale = each.mid(number).toDouble(&is_number);
        const bool is_sensible = is_number && scale >= 1 && scale <= double(kLargestScale);
        result += is_sensible
                      ? each
                      : each.left(number) + QByteArray::number(double(sensible_scale(scale)));
    }
    return result.join(';');
}

// Units are pixels unless the user says otherwise: not what a monitor tells of its size, but the
// resolution of fonts and Qt's own variables count.
class StartScales {
public:
    StartScales()
        : fFactor("QT_SCALE_FACTOR", _Sensible("QT_SCALE_FACTOR", font_resolution_scale())),
          fScaling("QT_ENABLE_HIGHDPI_SCALING", _Unless("QT_ENABLE_HIGHDPI_SCALING", "0")),
          fScreens("QT_SCREEN_SCALE_FACTORS", _Sensible("QT_SCREEN_SCALE_FACTORS", 1))
    {
    }

private:
    static QByteArray _Unless(const char* name, const char* value)
    {
        return qEnvironmentVariableIsSet(name) ? QByteArray() : QByteArray(value);
    }
    static QByteArray _Sensible(const char* name, double otherwise)
    {
        if (qEnvironmentVariableIsSet(name))
            return sensible_scales(qgetenv(name));
        return otherwise != 1 ? QByteArray::number(otherwise) : QByteArray();
    }

    // The first one looks whether the user has set any.
    const StartVariable fFactor, fScaling, fScreens;
};

// Qt asks the user's bus for screen readers, and waits for it without limit: one that keeps silent
// is none for Qt.
class StartBus {
public:
    StartBus() : fAddress("DBUS_SESSION_BUS_ADDRESS", bus_is_silent() ? "unix:path=/dev/null" : "")
    {
    }

private:
    const StartVariable fAddress;
};

}  // namespace

// Wakes the server's thread for the tasks that wait.
class QtDisplay::TaskQueue : public QObject {
public:
    explicit TaskQueue(QtDisplay* display) : fDisplay(display) {}

    bool event(QEvent* event) override
    {
        if (event->type() != QEvent::User)
            return QObject::event(event);
        fDisplay->_RunTasks();
        return true;
    }

private:
    QtDisplay* fDisplay;
};

QtDisplay::~QtDisplay() = default;

QtDisplay::QtDisplay()
{
    fThread = std::thread([this] { _Run(); });
    fThreadId = fThread.get_id();
    sStarted.acquire();
}

void QtDisplay::_Run()
{
    static char name[256];
    static char* arguments[] = {name, nullptr};
    int count = 1;
    strncpy(name, program_invocation_short_name, sizeof(name) - 1);

    auto scales = std::make_unique<const StartScales>();
    auto bus = std::make_unique<const StartBus>();
    QtMessageHandler before = qInstallMessageHandler(filter_message);
    QGuiApplication application(count, arguments);
    // Qt's plug-ins are destroyed with the process, and still count down what they know of the
    // thread that they were loaded on. An object of it that stays keeps that alive.
    [[maybe_unused]] static QObject* volatile sKept;
    sKept = new QObject;
    qInstallMessageHandler(before);
    scales.reset();
    // Qt takes the user's locale over for the process; numbers keep their decimal point.
    setlocale(LC_NUMERIC, "C");
    QGuiApplication::setQuitOnLastWindowClosed(false);

    {
        TaskQueue queue(this);
        const ReaderWatch readers;
        bus.reset();
        fX11 = X11Screen::Connect();
        if (fX11 != nullptr) {
            fClipboard = std::make_shared<X11Clipboard>("CLIPBOARD");
            fPrimary = std::make_shared<X11Clipboard>("PRIMARY");
        } else {
            fClipboard = std::make_shared<QtClipboard>(this, &queue, QClipboard::Clipboard);
            if (QGuiApplication::clipboard()->supportsSelection())
                fPrimary = std::make_shared<QtClipboard>(this, &queue, QClipboard::Selection);
        }
        {
            StageLock lock;
            fQueue = &queue;
            fReadsPixels = fX11 != nullptr && fX11->ReadsPixels();
            _ReadScreen();
        }
        const auto follow = [this, &queue](const QScreen* screen) {
            QObject::connect(screen, &QScreen::geometryChanged, &queue,
                             [this] { _ScreenChanged(); });
            QObject::connect(screen, &QScreen::physicalDotsPerInchChanged, &queue,
                             [this] { _ScreenChanged(); });
        };
        for (const QScreen* screen : QGuiApplication::screens())
            follow(screen);
        QObject::connect(&application, &QGuiApplication::screenAdded, &queue, follow);
        QObject::connect(&application, &QGuiApplication::primaryScreenChanged, &queue,
                         [this] { _ScreenChanged(); });
        sStarted.release();
        application.exec();

        _EndTasks();
        fDrag.reset();
        fX11.reset();
    }
}

void QtDisplay::_ScreenChanged()
{
    // Nothing is deleted but on this thread.
    std::vector<NativeWindow*> natives;
    {
        StageLock lock;
        const BRect before = fScreen;
        _ReadScreen();
        Event event;
        event.kind = EventKind::ScreenChanged;
        event.frame = fScreen;
        for (ScreenWindow* window : stage().Windows()) {
            if (fScreen != before)
                window->Deliver(event);
            if (NativeWindow* native = static_cast<QtWindow*>(window)->Native())
                natives.push_back(native);
        }
    }
    for (NativeWindow* native : natives)
        native->FollowScreen();
}

// The first screen of several. One that has just gone, the last, leaves its numbers.
void QtDisplay::_ReadScreen()
{
    QScreen* screen = QGuiApplication::primaryScreen();
    if (screen == nullptr)
        return;
    QRect geometry = screen->geometry();
    fScreen.Set(float(geometry.left()), float(geometry.top()), float(geometry.right()),
                float(geometry.bottom()));
    fMonitor = {screen->manufacturer().toStdString(), screen->model().toStdString(),
                screen->serialNumber().toStdString(), float(screen->physicalSize().width() / 10),
                float(screen->physicalSize().height() / 10)};
    if (fMonitor.name.empty())
        fMonitor.name = screen->name().toStdString();
    fScale = sensible_scale(screen->devicePixelRatio());
    qreal rate = screen->refreshRate();
    fFrameInterval = rate > 20 && rate < 500 ? bigtime_t(1000000 / rate) : 1000000 / 60;
}

ScreenWindow* QtDisplay::Create(const WindowSpec& spec, EventSink* sink)
{
    return fQueue != nullptr ? QtWindow::Make(this, spec, sink) : nullptr;
}

bool QtDisplay::Post(std::function<void()> task)
{
    if (fQueue == nullptr)
        return false;
    fTasks.push_back(std::move(task));
    if (fTasks.size() == 1)
        QCoreApplication::postEvent(fQueue, new QEvent(QEvent::User));
    return true;
}

void QtDisplay::_RunTasks()
{
    std::vector<std::function<void()>> tasks;
    {
        StageLock lock;
        tasks.swap(fTasks);
    }
    for (const auto& task : tasks)
        task();
    // Qt sends its requests off when it handles events of the X server, which may be long.
    if (fX11 != nullptr)
        fX11->Flush();
}

void QtDisplay::Discard(QtWindow* window)
{
    const bool posted = Post([=, this] {
        {
            StageLock lock;
            std::erase(fDiscarded, window);
        }
        delete window;
    });
    if (posted)
        fDiscarded.push_back(window);
    else
        delete window;
}

// The end of the queue: nothing is posted from here on. Other threads may delete their windows from
// then on, so the native ones are taken from them before.
void QtDisplay::_EndTasks()
{
    std::vector<std::unique_ptr<NativeWindow>> natives;
    std::vector<std::function<void()>> tasks;
    std::vector<QtWindow*> discarded;
    {
        StageLock lock;
        fQueue = nullptr;
        tasks.swap(fTasks);
        discarded.swap(fDiscarded);
        for (ScreenWindow* window : stage().Windows()) {
            window->Silence();
            natives.push_back(static_cast<QtWindow*>(window)->TakeNative());
        }
    }
    for (QtWindow* window : discarded)
        delete window;
}

// What was on its way the shortest tells how the two clocks differ.
bigtime_t QtDisplay::TimeOf(uint64 host_ms)
{
    const bigtime_t kTooLate_us = 60000000;  // the host's clock has started anew
    const bigtime_t now = system_time();
    if (host_ms == 0)
        return now;
    const bigtime_t stamp = bigtime_t(host_ms) * 1000;
    const bigtime_t delay = now - stamp;
    if (delay < fHostDelay || delay - fHostDelay > kTooLate_us)
        fHostDelay = delay;
    return stamp + fHostDelay;
}

void QtDisplay::SetPointer(BPoint where)
{
    Post([=] { QCursor::setPos(int(where.x), int(where.y)); });
    stage().MovePointer(where);
}

int32 QtDisplay::CountWorkspaces() { return stage().WorkspaceCount(); }

int32 QtDisplay::CurrentWorkspace() { return stage().Workspace(); }

void QtDisplay::ActivateWorkspace(int32 workspace)
{
    if (workspace < 0 || workspace >= stage().WorkspaceCount())
        return;
    Post([=, this] {
        if (fX11 != nullptr)
            fX11->ActivateWorkspace(workspace);
    });
}

void QtDisplay::SetWorkspaceCount(int32 count)
{
    if (count < 1 || count > 32)
        return;
    Post([=, this] {
        if (fX11 != nullptr)
            fX11->SetWorkspaceCount(count);
    });
}

void QtDisplay::UpdateCursors()
{
    for (ScreenWindow* window : stage().Windows())
        static_cast<QtWindow*>(window)->UpdateCursor();
}

void QtDisplay::InputHeld(bool)
{
    Post([this] { UpdateGrab(); });
}

void QtDisplay::UpdateGrab()
{
    // Nothing is deleted but on this thread.
    std::vector<NativeWindow*> menus;
    bool held;
    {
        StageLock lock;
        held = stage().IsInputHeld();
        for (ScreenWindow* window : stage().Windows()) {
            NativeWindow* native = static_cast<QtWindow*>(window)->Native();
            if (native != nullptr && native->IsMenu())
                menus.push_back(native);
        }
    }
    const bool grabbed =
        held && std::any_of(menus.begin(), menus.end(),
                            [](const NativeWindow* native) { return native->IsGrabbing(); });
    for (NativeWindow* native : menus) {
        if (!held)
            native->Grab(false);
        else if (!grabbed && native->isExposed() && native->Grab(true))
            return;
    }
}

void QtDisplay::DragBegan(std::shared_ptr<const DragPicture> picture, ClipboardForms forms)
{
    Post([=, this] {
        fDrag = std::make_unique<QtDrag>(fX11.get(), picture, forms);
        BPoint pointer;
        {
            StageLock lock;
            pointer = stage().Pointer();
        }
        DragTo(pointer);
    });
}

void QtDisplay::DragEnded(bool dropped)
{
    Post([=, this] { fDrag->End(dropped); });
}

void QtDisplay::DragTo(BPoint where)
{
    if (fDrag == nullptr)
        return;
    const bool covered = fDrag->MoveTo(where);
    StageLock lock;
    stage().SetCovered(covered);
}

void QtDisplay::Shutdown()
{
    // Qt ends the process on the server's own thread when the display breaks off.
    if (fThreadId == std::this_thread::get_id())
        return;
    std::call_once(fEnded, [this] {
        fClipboard->End();
        if (fPrimary != nullptr)
            fPrimary->End();
        {
            StageLock lock;
            Post([] { QGuiApplication::exit(); });  // quit() would ask the windows
        }
        fThread.join();
    });
}

Display* make_qt_display()
{
    if (!can_reach_display())
        return nullptr;
    return new QtDisplay;
}

}  // namespace server
