// Qt's events of one window, and the way of its pixels to the screen.

#include "server/qt/NativeWindow.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QInputMethod>
#include <QInputMethodEvent>
#include <QInputMethodQueryEvent>
#include <QMimeData>
#include <QPainter>
#include <QScreen>
#include <QUrl>

#include <InterfaceDefs.h>
#include <View.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "app/CursorImage.h"
#include "server/screen/KeyTable.h"
#include "server/qt/Cursors.h"
#include "server/qt/Platforms.h"
#include "server/qt/QtDrag.h"
#include "server/qt/QtText.h"
#include "server/qt/QtWindow.h"

namespace server {

namespace {

const int kRetry_ms = 100;
const int kBusy_ms = 4;
const uint32 kXLockMask = 0x02;     // Caps Lock in the state of an X key event
const uint32 kXNumLockMask = 0x10;  // Mod2, where Num Lock is on every usual keyboard

bool sWasPressed = false;  // server thread; a key or a button, by hand

int32 button_of(Qt::MouseButton button)
{
    switch (button) {
        case Qt::LeftButton:
            return B_PRIMARY_MOUSE_BUTTON;
        case Qt::RightButton:
            return B_SECONDARY_MOUSE_BUTTON;
        case Qt::MiddleButton:
            return B_TERTIARY_MOUSE_BUTTON;
        case Qt::BackButton:
            return 8;
        case Qt::ForwardButton:
            return 16;
        default:
            return 0;
    }
}

int32 buttons_of(Qt::MouseButtons buttons)
{
    int32 result = 0;
    for (Qt::MouseButton button :
         {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton, Qt::BackButton, Qt::ForwardButton}) {
        if (buttons & button)
            result |= button_of(button);
    }
    return result;
}

const uint32 kKnownModifiers = B_SHIFT_KEY | B_CONTROL_KEY | B_COMMAND_KEY;

uint32 modifiers_of(Qt::KeyboardModifiers modifiers)
{
    uint32 result = 0;
    if (modifiers & Qt::ShiftModifier)
        result |= B_SHIFT_KEY;
    if (modifiers & Qt::ControlModifier)
        result |= B_CONTROL_KEY;
    if (modifiers & Qt::AltModifier)
        result |= B_COMMAND_KEY;
    return result;
}

// What is taken of other programs' pictures: that which loses least.
const char* const kPictures[] = {"image/png", "image/tiff", "image/bmp", "image/jpeg", "image/gif"};

void add_form(const QMimeData& data, const char* type, ClipboardForms* forms)
{
    if (data.hasFormat(type))
        forms->push_back({type, data.data(type).toStdString()});
}

bool is_of_use(const QMimeData& data)
{
    return data.hasFormat(kDragForm) || data.hasUrls() || data.hasText() ||
           std::any_of(std::begin(kPictures), std::end(kPictures),
                       [&](const char* type) { return data.hasFormat(type); });
}

// A message of a program of our kind says all. Else it is files, or text and a picture.
bool read_drop(const QMimeData& data, Event* drop)
{
    drop->kind = EventKind::DataDropped;
    add_form(data, kDragForm, &drop->forms);
    if (!drop->forms.empty())
        return true;
    for (const QUrl& url : data.urls()) {
        if (url.isLocalFile())
            drop->paths.push_back(url.toLocalFile().toLocal8Bit().toStdString());
    }
    if (!drop->paths.empty()) {
        drop->kind = EventKind::FilesDropped;
        return true;
    }
    const QString text = data.text();
    if (!text.isEmpty())
        drop->forms.push_back({kTextForm, text.toStdString()});
    const size_t before = drop->forms.size();
    for (const char* type : kPictures) {
        if (drop->forms.size() == before)
            add_form(data, type, &drop->forms);
    }
    return !drop->forms.empty();
}

}  // namespace

NativeWindow::NativeWindow(QtWindow* owner) : fOwner(owner)
{
    setSurfaceType(QSurface::RasterSurface);
    // By a button of Qt's own decoration: no event tells of it.
    connect(this, &QWindow::windowStateChanged, this, [this](Qt::WindowState state) {
        if (state == Qt::WindowMinimized && !fSettingState && fOwner != nullptr) {
            fIsIcon = true;
            fOwner->NativeMinimized(true);
        }
    });
    // Its pixels may be others there, and nobody else asks for them. Qt is not done with it yet.
    connect(
        this, &QWindow::screenChanged, this,
        [this] {
            if (fOwner != nullptr && isExposed())
                _Repaint();
        },
        Qt::QueuedConnection);
}

NativeWindow::~NativeWindow() { fAccessible.reset(); }

void NativeWindow::SetAccessible(std::shared_ptr<const AccessibleTree> tree)
{
    if (fAccessible == nullptr)
        fAccessible = std::make_unique<AccessibleWindow>(this);
    fAccessible->Set(std::move(tree));
}

void NativeWindow::Ask(const AccessibleRequest& request)
{
    StageLock lock;
    if (fOwner != nullptr)
        fOwner->Ask(request);
}

QAccessibleInterface* NativeWindow::accessibleRoot() const
{
    return QAccessible::queryAccessibleInterface(const_cast<NativeWindow*>(this));
}

void NativeWindow::SetKind(const WindowKind& kind)
{
    fIsMenu = kind.IsUnmanaged();
    Qt::WindowFlags wanted = kind.QtFlags();
    if (fIsMenu && hides_places())
        wanted = (wanted & ~(Qt::WindowType_Mask | Qt::BypassWindowManagerHint)) | Qt::ToolTip;
    if (wanted != flags())
        setFlags(wanted);
}

void NativeWindow::SetPlace(BRect frame)
{
    const QRect place(int(frame.left), int(frame.top), int(frame.Width()) + 1,
                      int(frame.Height()) + 1);
    const bool changes = place != QRect(fPlace, size());
    fPlace = place.topLeft();
    fUnits = place.size();
    setGeometry(place);
    if (handle() == nullptr || hides_places())
        _TellFrame();  // the X server tells it itself, after the places before it
    if (changes && fAppears && _HangsOn() && !Grabs())
        _HangOn();
}

// Qt puts the program's name where there is no title.
void NativeWindow::SetTitle(const std::string& title)
{
    fTitle = title.empty() && hides_places() ? QStringLiteral(" ") : qt_text(title);
    _FitTitle();
}

// Where the compositor draws no titles Qt does, and cuts long ones off at both ends.
void NativeWindow::_FitTitle()
{
    const int kTitleSize = 14, kButtons = 77;
    QString shown = fTitle;
    if (hides_places() && frameMargins().top() > 0) {
        QFont font;
        font.setPixelSize(kTitleSize);
        shown = QFontMetrics(font).elidedText(fTitle, Qt::ElideRight,
                                              std::max(0, width() - 2 * kButtons));
    }
    if (shown != title())
        setTitle(shown);
}

void NativeWindow::Appear()
{
    fAppears = true;
    if (_HangsOn())
        _HangOn();
    else
        show();
}

void NativeWindow::Disappear()
{
    fAppears = false;
    hide();
}

// On Wayland Qt takes another scale of the same screen over with a new surface alone.
void NativeWindow::FollowScreen()
{
    if (!hides_places() || fIsMenu || !isVisible() ||
        devicePixelRatio() == screen()->devicePixelRatio())
        return;
    const bool wasActive = isActive();
    hide();
    show();
    if (wasActive)
        requestActivate();
}

bool NativeWindow::_HangsOn() const { return fIsMenu && hides_places(); }

// What a menu or a tip belongs to: the menu that was opened last, the window that the open menus
// are of, the one under the pointer, or the topmost one.
static NativeWindow* parent_of_menu(bool grabs) REQUIRES(gStageLock)
{
    const ScreenWindow* const owner = grabs ? stage().HoldersOwner() : stage().Hovered();
    NativeWindow* found = nullptr;
    int32 best = -1;
    for (ScreenWindow* each : stage().Windows()) {
        NativeWindow* native = static_cast<QtWindow*>(each)->Native();
        if (native == nullptr || !native->isVisible() || (native->IsMenu() && !native->Grabs()))
            continue;
        const int32 rank = native->IsMenu() ? 3 : each == owner ? 2 : each == stage().Active();
        if ((native->IsMenu() && !grabs) || rank < best)
            continue;
        found = native;
        best = rank;
    }
    return found;
}

// Where places are hidden, a menu or a tip shows beside the window that it belongs to, and stays
// there: it shows anew at another place, and not at all outside of the screen. Before anything was
// pressed at all Qt would make a plain window of a menu that takes the input.
void NativeWindow::_HangOn()
{
    hide();
    if (!screen()->virtualGeometry().intersects(QRect(fPlace, size())))
        return;
    {
        StageLock lock;
        const bool grabs = stage().IsInputHeld();
        if (NativeWindow* const parent = parent_of_menu(grabs)) {
            _SetType(grabs && sWasPressed ? Qt::Popup : Qt::ToolTip);
            setTransientParent(parent);
            setPosition(parent->position() + fPlace - parent->fPlace);
        }
    }
    show();
}

bool NativeWindow::Grabs() const { return (flags() & Qt::WindowType_Mask) == Qt::Popup; }

void NativeWindow::_SetType(Qt::WindowType type)
{
    setFlags((flags() & ~Qt::WindowFlags(Qt::WindowType_Mask)) | type);
}

// The compositor has closed a menu since another place was pressed, or will not give it the input
// when nothing was pressed or typed just before it opened: then it stays open without.
void NativeWindow::_Dismissed()
{
    if (Grabs() && !isExposed()) {
        const auto show_again = [this] {
            if (fOwner == nullptr || !isVisible())
                return;
            hide();
            _SetType(Qt::ToolTip);
            show();
        };
        QMetaObject::invokeMethod(this, show_again, Qt::QueuedConnection);
        return;
    }
    StageLock lock;
    stage().CancelHolders();
}

void NativeWindow::SetLimits(const WindowSpec& spec)
{
    const int kNone = 16777215;  // what Qt takes for no limit
    QSize least(int(spec.minWidth) + 1, int(spec.minHeight) + 1);
    QSize most(spec.maxWidth < 32767 ? int(spec.maxWidth) + 1 : kNone,
               spec.maxHeight < 32767 ? int(spec.maxHeight) + 1 : kNone);
    if ((spec.flags & (B_NOT_RESIZABLE | B_NOT_H_RESIZABLE)) != 0) {
        least.setWidth(int(spec.frame.Width()) + 1);
        most.setWidth(least.width());
    }
    if ((spec.flags & (B_NOT_RESIZABLE | B_NOT_V_RESIZABLE)) != 0) {
        least.setHeight(int(spec.frame.Height()) + 1);
        most.setHeight(least.height());
    }
    setMinimumSize(least);
    setMaximumSize(most.expandedTo(least));
}

void NativeWindow::SetMinimized(bool minimized)
{
    Qt::WindowStates states = windowStates();
    states.setFlag(Qt::WindowMinimized, minimized);
    fSettingState = true;
    setWindowStates(states);
    fSettingState = false;
    fIsIcon = minimized;
    if (hides_places())
        fOwner->NativeMinimized(minimized);
    if (!minimized)
        requestActivate();
}

void NativeWindow::SetCursorImage(const Cursor& image, bool hidden)
{
    setCursor(hidden ? QCursor(Qt::BlankCursor) : qt_cursor(image));
}

void NativeWindow::ScheduleFlush()
{
    if (!isExposed() || fTimer.isActive())
        return;
    bigtime_t wait = fLastFlush + fOwner->FrameInterval() - system_time();
    if (wait <= 0)
        _Flush();
    else
        fTimer.start(int(wait / 1000 + 1), Qt::PreciseTimer, this);
}

void NativeWindow::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != fTimer.timerId())
        return QWindow::timerEvent(event);
    fTimer.stop();
    _Flush();
}

void NativeWindow::_Flush()
{
    fLastFlush = system_time();
    if (!isExposed())
        return;
    const bool sameSize = fStored == size() && fScale == devicePixelRatio();
    if (sameSize && fPixels != nullptr && _Show())
        return;
    if (!sameSize) {
        if (fStore)
            fStore->resize(size());
        fStored = size();
        fScale = devicePixelRatio();
        fOwner->NativeScale(fScale);
        fOwner->Pixels().Touch();
    }
    _Store();
}

// Has the screen look at the pixels where they are; false if it can not.
bool NativeWindow::_Show()
{
    if (fPixels->IsBusy()) {
        fTimer.start(kBusy_ms, Qt::PreciseTimer, this);
        return true;
    }
    SharedPixels shared;
    if (!fOwner->Pixels().TakeShared(&shared))
        return false;
    if (shared.descriptor >= 0)
        fPixels->Attach(shared.descriptor, shared.width, shared.height);
    if (shared.scale != float(fScale)) {
        if (!shared.dirty.empty())
            fOwner->Pixels().Touch();
        return false;
    }
    fStore.reset();
    if (!shared.dirty.empty())
        fPixels->Show(shared.dirty);
    return true;
}

// Shows the pixels by a copy of Qt's. The first frame of each size is one, with which Qt tells the
// window manager that the window has grown.
void NativeWindow::_Store()
{
    float scale;
    const QRegion region = _TakeDirty(&scale);
    if (region.isEmpty())
        return;
    if (!fStore)
        fStore.emplace(this).resize(size());
    fStore->beginPaint(region);
    _Paint(region, scale, *static_cast<QImage*>(fStore->paintDevice()));
    fStore->endPaint();
    fStore->flush(region);
    // With the next frame it is of no use any more.
    if (fPixels != nullptr && !fTimer.isActive())
        fTimer.start(int(fOwner->FrameInterval() / 1000 + 1), this);
}

static bool is_whole(double scale) { return scale == std::floor(scale); }

// In the window's units, as all of Qt's places are.
QRegion NativeWindow::_TakeDirty(float* scale)
{
    const std::vector<clipping_rect> rects = fOwner->Pixels().TakeDirty(scale);
    // Between whole scales a unit of the window shares pixels of the screen with its neighbours.
    const int around = is_whole(fScale) && is_whole(*scale) ? 0 : 1;
    const auto unit = [=](int32 pixel) { return int(std::floor(double(pixel) / *scale)); };
    QRegion region;
    for (const clipping_rect& rect : rects)
        region += QRect(QPoint(unit(rect.left) - around, unit(rect.top) - around),
                        QPoint(unit(rect.right) + around, unit(rect.bottom) + around));
    return region & QRect(QPoint(0, 0), size());
}

// Lays the window's pixels over `image`, which is the whole window as the screen stores it.
void NativeWindow::_Paint(const QRegion& region, float scale, QImage& image)
{
    const auto pixels_in = [scale](const QRect& rect) {
        const clipping_rect box =
            pixels_of({rect.left(), rect.top(), rect.right(), rect.bottom()}, scale);
        return QRect(QPoint(box.left, box.top), QPoint(box.right, box.bottom));
    };
    if (image.depth() == 32 && float(fScale) == scale) {
        for (const QRect& rect : region) {
            const QRect pixels = pixels_in(rect);
            _CopyPixels(pixels, scale, image, pixels.topLeft());
        }
        return;
    }
    // Another depth, or pixels of another size, until the window's thread knows of the screen's.
    QPainter painter(&image);
    const bool smooth = float(fScale) != scale && !is_whole(fScale / double(scale));
    painter.setRenderHint(QPainter::SmoothPixmapTransform, smooth);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    for (const QRect& rect : region) {
        const int around = smooth ? 2 : 0;
        const QRect source =
            pixels_in(rect.adjusted(-around, -around, around, around) & QRect({}, size()));
        QImage pixels(source.size(), QImage::Format_RGB32);
        if (pixels.isNull()) {  // no memory for it at this moment
            fOwner->Pixels().Touch();
            fTimer.start(kRetry_ms, this);
            return;
        }
        _CopyPixels(source, scale, pixels, QPoint(0, 0));
        painter.setClipRect(rect);
        painter.drawImage(QRectF(source.x() / double(scale), source.y() / double(scale),
                                 source.width() / double(scale), source.height() / double(scale)),
                          pixels);
    }
}

void NativeWindow::_CopyPixels(const QRect& rect, float scale, QImage& image, QPoint to)
{
    Surface target;
    target.bits = image.bits();
    target.bytesPerRow = int32(image.bytesPerLine());
    target.width = image.width();
    target.height = image.height();
    target.scale = scale;
    fOwner->Pixels().Draw({rect.left(), rect.top(), rect.right(), rect.bottom()}, target, to.x(),
                          to.y());
}

void NativeWindow::_TellFrame()
{
    QRect place = geometry();
    if (hides_places())
        place.moveTopLeft(fPlace);
    QMargins margins = frameMargins();
    fOwner->NativeMoved(
        BRect(float(place.left()), float(place.top()), float(place.right()), float(place.bottom())),
        {margins.left(), margins.top()});
}

bool NativeWindow::Grab(bool grab)
{
    if (grab == fGrabbing || hides_places())
        return fGrabbing;
    fGrabbing = setMouseGrabEnabled(grab) && grab;
    return fGrabbing;
}

// The grab of a window that is not to be seen has ended: another menu takes it.
void NativeWindow::hideEvent(QHideEvent*)
{
    if (IsMenu())
        AccessibleWindow::FocusGoesBack();
    if (Grab(false) || !IsMenu())
        return;
    fOwner->UpdateGrab();
}

// The window comes into sight or goes out of it. What is uncovered later is told by paint events.
void NativeWindow::exposeEvent(QExposeEvent*)
{
    fWasShown = isExposed();
    if (fWasShown)
        _Repaint();
}

void NativeWindow::paintEvent(QPaintEvent* event)
{
    if (std::exchange(fWasShown, false))
        return;
    const QRect rect = event->rect();
    const bool uncovered = fStored == size();  // or else it grew
    _Repaint();
    if (uncovered)
        fOwner->NativeUncovered({rect.left(), rect.top(), rect.right(), rect.bottom()});
}

void NativeWindow::_Repaint()
{
    if (IsMenu())
        fOwner->UpdateGrab();
    _TellFrame();
    _FitTitle();
    fOwner->Pixels().Touch();
    fTimer.stop();
    _Flush();
}

void NativeWindow::moveEvent(QMoveEvent*) { _TellFrame(); }

// On a screen of other pixels X leaves a window as many of them as it had, which are more or fewer
// units: it gets the size that it had in units, unless it would go back to the other screen by
// that.
bool NativeWindow::_KeepsUnits()
{
    const double before = std::exchange(fUnitsScale, devicePixelRatio());
    if (hides_places() || before == fUnitsScale || !fUnits.isValid() || size() == fUnits ||
        (windowStates() & (Qt::WindowMaximized | Qt::WindowFullScreen)) != 0)
        return false;
    const QScreen* const next = QGuiApplication::screenAt(QRect(position(), fUnits).center());
    if (next != nullptr && next != screen())
        return false;
    setMinimumSize(minimumSize());  // which the window manager counts in pixels
    setMaximumSize(maximumSize());
    resize(fUnits);
    return true;
}

void NativeWindow::resizeEvent(QResizeEvent*)
{
    if (_KeepsUnits())
        return;
    fUnits = size();
    _TellFrame();
    _FitTitle();
}

void NativeWindow::focusInEvent(QFocusEvent*)
{
    if (fIsMenu)
        return;  // its keys are those of the window that it belongs to, which stays active
    _Restored();
    fOwner->NativeFocus(true);
    if (fAccessible != nullptr)
        fAccessible->TellFocus();
}

// On Wayland nobody says that an icon has become a window again, but that it is used.
void NativeWindow::_Restored()
{
    if (!hides_places() || !std::exchange(fIsIcon, false))
        return;
    fSettingState = true;
    setWindowStates(windowStates() & ~Qt::WindowStates(Qt::WindowMinimized));
    fSettingState = false;
    fOwner->NativeMinimized(false);
}

void NativeWindow::focusOutEvent(QFocusEvent* event)
{
    if (!fIsMenu && event->reason() != Qt::PopupFocusReason)
        fOwner->NativeFocus(false);
    else if (fIsMenu && QGuiApplication::focusWindow() == nullptr)
        QtWindow::NoFocus();
}

BPoint NativeWindow::_OnScreen(QPointF where) const
{
    return fOwner->Frame().LeftTop() + BPoint(float(where.x()), float(where.y()));
}

void NativeWindow::_MoveTo(QPointF where, bigtime_t when)
{
    BPoint place = _OnScreen(where);
    if (place != stage().Pointer())
        stage().MovePointer(place, fOwner, when);
}

void NativeWindow::_DragTo(const QMouseEvent* event)
{
    const QPointF where = event->globalPosition();
    fOwner->DragTo(BPoint(float(where.x()), float(where.y())));
}

void NativeWindow::mousePressEvent(QMouseEvent* event)
{
    _Restored();
    StageLock lock;
    const int32 button = button_of(event->button());
    const bigtime_t when = fOwner->TimeOf(event->timestamp());
    stage().SyncModifiers(modifiers_of(event->modifiers()), kKnownModifiers);
    stage().SyncButtons(buttons_of(event->buttons()) & ~button);
    _MoveTo(event->position(), when);
    stage().ChangeButton(button, true, fOwner, when);
}

void NativeWindow::mouseReleaseEvent(QMouseEvent* event)
{
    _DragTo(event);
    StageLock lock;
    const bigtime_t when = fOwner->TimeOf(event->timestamp());
    _MoveTo(event->position(), when);
    stage().ChangeButton(button_of(event->button()), false, fOwner, when);
}

void NativeWindow::mouseMoveEvent(QMouseEvent* event)
{
    _DragTo(event);
    StageLock lock;
    const bool hidden = stage().IsCursorHidden();
    // Where a menu opens under the pressed pointer Wayland's windows forget what is pressed.
    if (!stage().IsInputHeld() || !hides_places())
        stage().SyncButtons(buttons_of(event->buttons()));
    stage().MovePointer(_OnScreen(event->position()), fOwner, fOwner->TimeOf(event->timestamp()));
    if (!hidden || stage().IsCursorHidden())
        return;
    for (ScreenWindow* window : stage().Windows())
        static_cast<QtWindow*>(window)->UpdateCursor();
}

void NativeWindow::wheelEvent(QWheelEvent* event)
{
    // Qt counts eighths of a degree, 15 degrees a notch, and turning away from the user up.
    const float kNotch = 120.0f;
    StageLock lock;
    const bigtime_t when = fOwner->TimeOf(event->timestamp());
    _MoveTo(event->position(), when);
    stage().TurnWheel(-event->angleDelta().x() / kNotch, -event->angleDelta().y() / kNotch, fOwner,
                      when);
}

void NativeWindow::_Key(QKeyEvent* event, bool down)
{
    int32 key = KeyForHostCode(event->nativeScanCode() - 8);
    QByteArray text = event->text().toUtf8();
    int32 rawChar = 0;
    if (event->key() > ' ' && event->key() < 0x7f && !KeyIsFixed(key))
        rawChar = event->key() >= 'A' && event->key() <= 'Z' ? event->key() + 32 : event->key();

    StageLock lock;
    if (key == 0) {
        if (down && !text.isEmpty())
            stage().TypeCharacter(text.constData());
        return;
    }
    if (down || !KeyIsLock(key)) {
        uint32 locks = 0;
        if ((event->nativeModifiers() & kXLockMask) != 0)
            locks |= B_CAPS_LOCK;
        if ((event->nativeModifiers() & kXNumLockMask) != 0)
            locks |= B_NUM_LOCK;
        stage().SyncModifiers(locks, B_CAPS_LOCK | B_NUM_LOCK);
    }
    if (KeyModifiers(key) == 0)
        stage().SyncModifiers(modifiers_of(event->modifiers()), kKnownModifiers);
    stage().ChangeKey(key, down, text.constData(), rawChar);
}

void NativeWindow::keyPressEvent(QKeyEvent* event) { _Key(event, true); }

void NativeWindow::keyReleaseEvent(QKeyEvent* event)
{
    if (!event->isAutoRepeat())
        _Key(event, false);
}

static int32 bytes_before(const QString& text, int place)
{
    return int32(text.left(place).toUtf8().size());
}

// Keys that are composed without a trace, as accents are, come as committed text alone.
void NativeWindow::_Compose(const QInputMethodEvent& event)
{
    const QString& text = event.preeditString();
    Composition composing;
    composing.text = text.toStdString();
    composing.selectionStart = composing.selectionEnd = int32(composing.text.size());
    for (const QInputMethodEvent::Attribute& part : event.attributes()) {
        const int32 from = bytes_before(text, part.start);
        if (part.type == QInputMethodEvent::Cursor) {
            composing.selectionStart = composing.selectionEnd = from;
        } else if (part.type == QInputMethodEvent::TextFormat && part.length > 0) {
            composing.clauses.push_back(from);
            composing.clauses.push_back(bytes_before(text, part.start + part.length));
        }
    }
    StageLock lock;
    stage().Compose(std::move(composing), event.commitString().toStdString());
}

QVariant NativeWindow::_InputProperty(Qt::InputMethodQuery query) const
{
    switch (query) {
        case Qt::ImEnabled:
            return true;
        case Qt::ImCursorRectangle:
        case Qt::ImAnchorRectangle:
            return fInputPlace;
        case Qt::ImHints:
            return int(fInputHidden ? Qt::ImhHiddenText | Qt::ImhSensitiveData |
                                          Qt::ImhNoPredictiveText | Qt::ImhNoAutoUppercase
                                    : Qt::ImhNone);
        default:
            return QVariant();
    }
}

void NativeWindow::SetInputPlace(BRect place)
{
    fInputPlace =
        QRect(QPoint(int(place.left), int(place.top)), QPoint(int(place.right), int(place.bottom)));
    if (QGuiApplication::focusWindow() == this)
        QGuiApplication::inputMethod()->update(Qt::ImCursorRectangle | Qt::ImAnchorRectangle);
}

// Input methods that leave hidden texts alone decide so when the focus comes, and by that alone:
// another text is another object to them.
void NativeWindow::SetInputHidden(bool hidden)
{
    if (hidden == fInputHidden)
        return;
    fInputHidden = hidden;
    if (QGuiApplication::focusWindow() == this)
        Q_EMIT focusObjectChanged(this);
}

void NativeWindow::EndInput()
{
    if (QGuiApplication::focusWindow() == this)
        QGuiApplication::inputMethod()->reset();
}

// True if it is a drag of this program's that the compositor carries, which the stage knows.
bool NativeWindow::_CarriesOwn(const QDropEvent* event, bool dropped)
{
    StageLock lock;
    if (!QtDrag::IsCarried() || stage().Dragged() == nullptr)
        return false;
    QtDrag::Entered();
    stage().CarryTo(_OnScreen(event->position()), fOwner);
    if (dropped)
        stage().SyncButtons(0);
    return true;
}

void NativeWindow::_Drop(QDropEvent* event)
{
    if (_CarriesOwn(event, true))
        return event->acceptProposedAction();
    Event drop;
    if (!read_drop(*event->mimeData(), &drop))
        return event->ignore();
    event->setDropAction(Qt::CopyAction);
    event->accept();
    StageLock lock;
    stage().Drop(_OnScreen(event->position()), drop, fOwner);
}

// While the compositor has the pointer Qt makes up some events of it. A press is a real one: the
// drag is over by then.
static bool is_made_up(QEvent::Type type)
{
    if (type == QEvent::MouseButtonPress)
        QtDrag::Over();
    return QtDrag::IsCarried() && (type == QEvent::Enter || type == QEvent::Leave ||
                                   type == QEvent::MouseMove || type == QEvent::MouseButtonRelease);
}

bool NativeWindow::event(QEvent* event)
{
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::KeyPress)
        sWasPressed = true;
    if (fOwner == nullptr)
        return QObject::event(event);
    if (is_made_up(event->type()))
        return true;
    switch (event->type()) {
        case QEvent::Close: {
            // The window's own thread decides.
            event->ignore();
            if (_HangsOn()) {
                _Dismissed();
                return true;
            }
            StageLock lock;
            fOwner->CloseByUser();
            return true;
        }
        case QEvent::WindowStateChange: {
            const Qt::WindowStates states = windowStates();
            const bool minimized = (states & Qt::WindowMinimized) != 0;
            bool result = QWindow::event(event);
            if (!hides_places())
                fOwner->NativeMinimized(minimized);
            if (!minimized)  // of an icon the window manager does not say it
                fOwner->NativeZoomed((states & (Qt::WindowMaximized | Qt::WindowFullScreen)) != 0);
            return result;
        }
        case QEvent::Enter: {
            // On X a move follows.
            const auto* enter = static_cast<QEnterEvent*>(event);
            StageLock lock;
            if (hides_places())
                _MoveTo(enter->position(), fOwner->TimeOf(enter->timestamp()));
            return true;
        }
        case QEvent::Leave: {
            StageLock lock;
            stage().LeavePointer(fOwner);
            return true;
        }
        case QEvent::DragEnter:
        case QEvent::DragMove: {
            auto* drag = static_cast<QDropEvent*>(event);
            drag->setDropAction(Qt::CopyAction);
            drag->setAccepted(_CarriesOwn(drag, false) || is_of_use(*drag->mimeData()));
            return true;
        }
        case QEvent::DragLeave: {
            StageLock lock;
            stage().SetCovered(true);
            if (stage().Dragged() != nullptr)
                stage().MovePointer(stage().Pointer());
            return true;
        }
        case QEvent::Drop:
            _Drop(static_cast<QDropEvent*>(event));
            return true;
        case QEvent::InputMethodQuery: {
            auto* query = static_cast<QInputMethodQueryEvent*>(event);
            for (Qt::InputMethodQuery one :
                 {Qt::ImEnabled, Qt::ImHints, Qt::ImCursorRectangle, Qt::ImAnchorRectangle}) {
                if ((query->queries() & one) != 0)
                    query->setValue(one, _InputProperty(one));
            }
            query->accept();
            return true;
        }
        case QEvent::InputMethod:
            _Compose(*static_cast<QInputMethodEvent*>(event));
            return true;
        default:
            return QWindow::event(event);
    }
}

}  // namespace server
