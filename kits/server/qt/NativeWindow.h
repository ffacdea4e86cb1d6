#ifndef SERVER_QT_NATIVE_WINDOW_H
#define SERVER_QT_NATIVE_WINDOW_H

#include <QBackingStore>
#include <QBasicTimer>
#include <QWindow>

#include <OS.h>

#include <optional>
#include <string>

#include "server/qt/AccessibleWindow.h"
#include "server/qt/WindowKind.h"
#include "server/qt/x11/X11Pixels.h"
#include "server/screen/ScreenWindow.h"
#include "server/screen/Stage.h"

class QDropEvent;
class QInputMethodEvent;

namespace server {

class QtWindow;

// Qt's window of a QtWindow: turns Qt's events into what the stage wants to hear, and copies the
// front buffer to the screen. Server's thread, which takes the stage's lock for a moment each.
class NativeWindow final : public QWindow {
public:
    explicit NativeWindow(QtWindow* owner);
    ~NativeWindow() override;

    // How the screen looks at the window's pixels itself; null: it does not.
    void SetPixels(std::unique_ptr<X11Pixels> pixels) { fPixels = std::move(pixels); }
    void SetKind(const WindowKind& kind);
    void SetPlace(BRect frame);
    void SetTitle(const std::string& title);
    void SetLimits(const WindowSpec& spec);
    void SetMinimized(bool minimized);
    void SetCursorImage(const Cursor& image, bool hidden);
    // Where composed text is.
    void SetInputPlace(BRect place);
    void SetInputHidden(bool hidden);
    void EndInput();
    // A menu's window, which may grab the pointer: presses on other programs' windows then come
    // here too.
    bool IsMenu() const { return fIsMenu; }
    void Appear();
    void Disappear();
    // The screen has changed, in its scale maybe.
    void FollowScreen();
    // Where places are hidden: the compositor gives it, a menu, the input of all other windows, and
    // closes it when another place is pressed.
    bool Grabs() const;
    bool IsGrabbing() const { return fGrabbing; }
    bool Grab(bool grab);
    // Brings what waits to the screen with its next frame.
    void ScheduleFlush();
    // What screen readers are told, and what they ask for.
    void SetAccessible(std::shared_ptr<const AccessibleTree> tree);
    void Ask(const AccessibleRequest& request);
    AccessibleWindow* Accessible() const { return fAccessible.get(); }
    QAccessibleInterface* accessibleRoot() const override;
    // From here on nobody is told of anything: the owner goes.
    void Orphan() { fOwner = nullptr; }

protected:
    bool event(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void exposeEvent(QExposeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

private:
    bool _HangsOn() const;
    void _HangOn();
    void _SetType(Qt::WindowType type);
    void _Dismissed();
    void _FitTitle();
    void _Restored();
    void _TellFrame();
    bool _KeepsUnits();
    void _Repaint();
    void _Flush();
    bool _Show();
    void _Store();
    QRegion _TakeDirty(float* scale);
    void _Paint(const QRegion& region, float scale, QImage& image);
    void _CopyPixels(const QRect& rect, float scale, QImage& image, QPoint to);
    BPoint _OnScreen(QPointF where) const REQUIRES(gStageLock);
    void _MoveTo(QPointF where, bigtime_t when) REQUIRES(gStageLock);
    void _DragTo(const QMouseEvent* event);
    void _Key(QKeyEvent* event, bool down);
    void _Compose(const QInputMethodEvent& event);
    QVariant _InputProperty(Qt::InputMethodQuery query) const;
    void _Drop(QDropEvent* event);
    bool _CarriesOwn(const QDropEvent* event, bool dropped);

    QtWindow* fOwner;                     // null: gone
    std::unique_ptr<X11Pixels> fPixels;   // null: the screen has all pixels from the store
    std::optional<QBackingStore> fStore;  // as long as it is of use
    QSize fStored;                        // the size of the window that was last shown from it
    double fScale = 1;  // the screen's pixels a unit of the window, as it was shown then
    bool fIsMenu = false;
    bool fAppears = false;
    bool fSettingState = false;  // the window's state changes as the program asked
    bool fIsIcon = false;        // as far as the window knows, where nobody else does
    QString fTitle;
    QPoint fPlace;           // on the screen, as it was asked for
    QSize fUnits;            // the last size that was not one of another scale
    double fUnitsScale = 1;  // pixels a unit then
    bool fWasShown = false;  // the next paint event is that of its coming into sight
    bool fGrabbing = false;
    QBasicTimer fTimer;  // runs while something waits for the next frame
    bigtime_t fLastFlush = 0;
    QRect fInputPlace;
    bool fInputHidden = false;
    std::unique_ptr<AccessibleWindow> fAccessible;  // null as long as no reader has listened
};

}  // namespace server

#endif  // SERVER_QT_NATIVE_WINDOW_H
