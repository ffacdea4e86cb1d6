#ifndef SERVER_QT_ACCESSIBLE_WINDOW_H
#define SERVER_QT_ACCESSIBLE_WINDOW_H

// What the desktop's accessibility bus knows of a window, by Qt's bridge: objects that read the
// newest tree, and events for what differs from the one before. Server's thread.

#include <QAccessible>
#include <QList>
#include <QPointer>
#include <QRect>
#include <QString>

#include <map>
#include <memory>

#include "server/qt/ReaderSwitch.h"
#include "server/screen/AccessibleIndex.h"

namespace server {

class AccessibleObject;
class NativeWindow;

class AccessibleWindow {
public:
    explicit AccessibleWindow(NativeWindow* window);
    ~AccessibleWindow();
    AccessibleWindow(const AccessibleWindow&) = delete;

    void Set(std::shared_ptr<const AccessibleTree> tree);
    // Says where the keyboard is, if the window has it.
    void TellFocus();
    // Menus have closed: the window below has the keyboard again.
    static void FocusGoesBack();

    const AccessibleIndex& Now() const { return fNow; }
    QAccessibleInterface* Interface(AccessibleId id);  // null for what is not there any more
    QAccessibleInterface* Root() const;
    AccessibleId ItemAt(AccessibleId inside, QPoint screenWhere) const;
    AccessibleId Focus() const { return fNow.Tree() != nullptr ? fNow.Tree()->focus : 0; }
    bool IsFocused(AccessibleId id) const;
    QRect OnScreen(BRect frame) const;
    void Ask(const AccessibleRequest& request);

private:
    bool _HasKeyboard() const;
    void _TellGone(const AccessibleIndex& next);
    void _TellChanges(const AccessibleItem& before, const AccessibleItem& now);
    void _TellText(const AccessibleText& before, const AccessibleText& now,
                   QAccessibleInterface* object);
    void _TellContent(const AccessibleContent& former, const AccessibleContent& content,
                      QAccessibleInterface* object);
    void _Forget(AccessibleId id);

    NativeWindow* const fWindow;
    AccessibleIndex fNow;
    std::map<AccessibleId, AccessibleObject*> fObjects;  // Qt's to delete
};

// Listens for readers, and makes the objects of windows, as long as it lives.
class ReaderWatch : public QAccessible::ActivationObserver {
public:
    ReaderWatch();
    ~ReaderWatch();
    void accessibilityActiveChanged(bool active) override;

private:
    void _Switched(bool on, const std::string& address);

    QPointer<QObject> fConnection;  // Qt's to the bus of the readers
    std::unique_ptr<ReaderSwitch> fSwitch;
};

}  // namespace server

#endif  // SERVER_QT_ACCESSIBLE_WINDOW_H
