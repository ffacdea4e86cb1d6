#include "server/qt/AccessibleWindow.h"

#include <QGuiApplication>

#include <algorithm>

#include "server/qt/AccessibleObject.h"
#include "server/qt/NativeWindow.h"
#include "server/qt/QtText.h"

namespace server {

namespace {

QAccessibleInterface* make_root(const QString&, QObject* object)
{
    auto* const native = dynamic_cast<NativeWindow*>(object);
    return native != nullptr ? new AccessibleRoot(native) : nullptr;
}

void tell(QAccessibleInterface* object, QAccessible::Event what)
{
    QAccessibleEvent event(object, what);
    QAccessible::updateAccessibility(&event);
}

bool is_row(const AccessibleItem& item)
{
    return item.role == AccessibleRole::Row || item.role == AccessibleRole::OutlineRow;
}

}  // namespace

// --- readers

namespace {

// Qt makes its connection to the bus of the readers when it is asked for them first, and shows it
// to nobody; but it is an object, and gets a part.
class ConnectionFinder : public QObject {
public:
    ConnectionFinder()
    {
        qApp->installEventFilter(this);
        QAccessible::isActive();
    }
    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (event->type() == QEvent::ChildAdded && object->inherits("DBusConnection"))
            fFound = object;
        return false;
    }
    QObject* Found() const { return fFound; }

private:
    QObject* fFound = nullptr;
};

// The user wants Qt to serve readers whatever the desktop says.
bool is_always_on()
{
    return qEnvironmentVariableIsSet("QT_LINUX_ACCESSIBILITY_ALWAYS_ON") ||
           qEnvironmentVariableIsSet("AT_SPI_BUS_ADDRESS");
}

}  // namespace

ReaderWatch::ReaderWatch() : fConnection(ConnectionFinder().Found())
{
    QAccessible::installFactory(make_root);
    QAccessible::installActivationObserver(this);
    accessibilityActiveChanged(QAccessible::isActive());
    if (!is_always_on())
        fSwitch = std::make_unique<ReaderSwitch>(
            [this](bool on, const std::string& address) { _Switched(on, address); });
}

// Once Qt serves readers it does so to the end, and is not told anything.
void ReaderWatch::_Switched(bool on, const std::string& address)
{
    if (QAccessible::isActive()) {
        accessibilityActiveChanged(on);
    } else if (on && !address.empty() && fConnection != nullptr) {
        // It asks again, and may have been on the bus before without anybody having heard of it.
        QMetaObject::invokeMethod(fConnection, "serviceRegistered");
        QMetaObject::invokeMethod(fConnection, "connectA11yBus",
                                  Q_ARG(QString, QString::fromStdString(address)));
    }
}

ReaderWatch::~ReaderWatch()
{
    fSwitch.reset();
    QAccessible::removeActivationObserver(this);
    QAccessible::removeFactory(make_root);
    accessibilityActiveChanged(false);
}

void ReaderWatch::accessibilityActiveChanged(bool active)
{
    StageLock lock;
    set_reader_listens(active);
}

// --- the tree

AccessibleWindow::AccessibleWindow(NativeWindow* window) : fWindow(window) {}

AccessibleWindow::~AccessibleWindow()
{
    tell(Root(), QAccessible::ObjectDestroyed);
    while (!fObjects.empty())
        _Forget(fObjects.begin()->first);
}

AccessibleId AccessibleWindow::ItemAt(AccessibleId inside, QPoint screenWhere) const
{
    const QPoint where = fWindow->mapFromGlobal(screenWhere);
    return fNow.At(inside, BPoint(float(where.x()), float(where.y())));
}

bool AccessibleWindow::IsFocused(AccessibleId id) const
{
    return fNow.Tree() != nullptr && Focus() == id && _HasKeyboard();
}

QRect AccessibleWindow::OnScreen(BRect frame) const
{
    const QRect rect(QPoint(int(frame.left), int(frame.top)),
                     QPoint(int(frame.right), int(frame.bottom)));
    return rect.translated(fWindow->mapToGlobal(QPoint(0, 0)));
}

void AccessibleWindow::Ask(const AccessibleRequest& request) { fWindow->Ask(request); }

// --- objects

QAccessibleInterface* AccessibleWindow::Root() const { return fWindow->accessibleRoot(); }

QAccessibleInterface* AccessibleWindow::Interface(AccessibleId id)
{
    if (id == 0)
        return Root();
    if (!fNow.Has(id))
        return nullptr;
    AccessibleObject*& object = fObjects[id];
    if (object == nullptr) {
        object = new AccessibleObject(this, id);
        QAccessible::registerAccessibleInterface(object);
    }
    return object;
}

void AccessibleWindow::_Forget(AccessibleId id)
{
    const auto found = fObjects.find(id);
    AccessibleObject* const object = found->second;
    fObjects.erase(found);
    QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(object));
}

// --- events

void AccessibleWindow::Set(std::shared_ptr<const AccessibleTree> tree)
{
    if (!QAccessible::isActive() || tree == nullptr || tree->items.empty())
        return;
    AccessibleIndex next(std::move(tree));
    _TellGone(next);
    const AccessibleIndex before = std::exchange(fNow, std::move(next));
    if (before.Tree() == nullptr) {
        tell(Root(), QAccessible::ObjectCreated);
        TellFocus();
        return;
    }
    for (const AccessibleItem& item : fNow.Tree()->items) {
        if (const AccessibleItem* known = before.Find(item.id))
            _TellChanges(*known, item);
        else if (!is_row(item))
            tell(Interface(item.id), QAccessible::ObjectCreated);
    }
    if (before.Tree()->focus != Focus())
        TellFocus();
}

// What goes tells it while it still knows what it was; then it answers nobody any more.
void AccessibleWindow::_TellGone(const AccessibleIndex& next)
{
    std::vector<AccessibleId> gone;
    for (const auto& [id, object] : fObjects) {
        if (!next.Has(id))
            gone.push_back(id);
    }
    for (AccessibleId id : gone) {
        tell(fObjects[id], QAccessible::ObjectDestroyed);
        _Forget(id);
    }
}

void AccessibleWindow::_TellChanges(const AccessibleItem& before, const AccessibleItem& now)
{
    // Of the many rows those count that somebody has asked for.
    if (is_row(now) && before.states == now.states && fObjects.count(now.id) == 0)
        return;
    if (before.name != now.name)
        tell(Interface(now.id), QAccessible::NameChanged);
    if (before.description != now.description || before.value != now.value)
        tell(Interface(now.id), QAccessible::DescriptionChanged);
    if (before.frame != now.frame && fObjects.count(now.id) != 0)
        tell(Interface(now.id), QAccessible::LocationChanged);
    if (const uint32 changed = before.states ^ now.states) {
        QAccessible::State state = AccessibleObject::States(changed, now.role);
        state.collapsed = false;
        QAccessibleStateChangeEvent event(Interface(now.id), state);
        QAccessible::updateAccessibility(&event);
        if ((changed & kIsSelected) != 0)
            tell(Interface(now.id), (now.states & kIsSelected) != 0 ? QAccessible::SelectionAdd
                                                                    : QAccessible::SelectionRemove);
    }
    const bool ranges = before.range != nullptr && now.range != nullptr;
    if ((ranges && *before.range != *now.range) || before.value != now.value) {
        QAccessibleValueChangeEvent event(Interface(now.id), now.range != nullptr
                                                                 ? QVariant(now.range->value)
                                                                 : qt_text(now.value));
        QAccessible::updateAccessibility(&event);
    }
    if (before.text != nullptr && now.text != nullptr)
        _TellText(*before.text, *now.text, Interface(now.id));
}

void AccessibleWindow::_TellText(const AccessibleText& before, const AccessibleText& now,
                                 QAccessibleInterface* object)
{
    if (before.content != now.content)
        _TellContent(*before.content, *now.content, object);
    if (before.caret != now.caret) {
        QAccessibleTextCursorEvent event(object, now.caret);
        QAccessible::updateAccessibility(&event);
    }
    if (before.selectionStart != now.selectionStart || before.selectionEnd != now.selectionEnd) {
        QAccessibleTextSelectionEvent event(object, now.selectionStart, now.selectionEnd);
        event.setCursorPosition(now.caret);
        QAccessible::updateAccessibility(&event);
    }
}

// What both begin and end with has not changed.
void AccessibleWindow::_TellContent(const AccessibleContent& former,
                                    const AccessibleContent& content, QAccessibleInterface* object)
{
    int32 from, behind;
    content.FindShared(former, &from, &behind);
    const QString before = QString::fromStdU16String(former.Part(from, former.Units() - behind));
    const QString now = QString::fromStdU16String(content.Part(from, content.Units() - behind));
    const auto least = std::min(before.size(), now.size());
    qsizetype start = 0, end = 0;
    while (start < least && before[start] == now[start])
        start++;
    while (end < least - start && before[before.size() - 1 - end] == now[now.size() - 1 - end])
        end++;
    const QString removed = before.mid(start, before.size() - start - end);
    const QString inserted = now.mid(start, now.size() - start - end);
    if (!removed.isEmpty()) {
        QAccessibleTextRemoveEvent event(object, from + int(start), removed);
        QAccessible::updateAccessibility(&event);
    }
    if (!inserted.isEmpty()) {
        QAccessibleTextInsertEvent event(object, from + int(start), inserted);
        QAccessible::updateAccessibility(&event);
    }
}

// While a menu is open its window has the keyboard, and no focus of the host's.
bool AccessibleWindow::_HasKeyboard() const
{
    if (fNow.Tree()->items.front().role == AccessibleRole::MenuWindow)
        return fWindow->isVisible() && Focus() != 0;
    return QGuiApplication::focusWindow() == fWindow;
}

void AccessibleWindow::TellFocus()
{
    if (fNow.Tree() == nullptr || !_HasKeyboard())
        return;
    if (QAccessibleInterface* object = Interface(Focus()))
        tell(object, QAccessible::Focus);
}

void AccessibleWindow::FocusGoesBack()
{
    auto* const native = dynamic_cast<NativeWindow*>(QGuiApplication::focusWindow());
    if (native != nullptr && native->Accessible() != nullptr)
        native->Accessible()->TellFocus();
}

}  // namespace server
