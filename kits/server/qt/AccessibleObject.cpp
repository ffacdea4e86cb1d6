#include "server/qt/AccessibleObject.h"

#include <QGuiApplication>
#include <QWindow>

#include <algorithm>
#include <iterator>

#include "server/qt/AccessibleWindow.h"
#include "server/qt/NativeWindow.h"
#include "server/qt/QtText.h"

namespace server {

namespace {

// In the order of AccessibleRole.
const QAccessible::Role kRoles[] = {
    QAccessible::Window,       QAccessible::Dialog,      QAccessible::AlertMessage,
    QAccessible::PopupMenu,    QAccessible::ToolTip,     QAccessible::Grouping,
    QAccessible::Graphic,      QAccessible::StaticText,  QAccessible::Button,
    QAccessible::CheckBox,     QAccessible::RadioButton, QAccessible::Slider,
    QAccessible::ScrollBar,    QAccessible::ProgressBar, QAccessible::ColorChooser,
    QAccessible::EditableText, QAccessible::List,        QAccessible::ListItem,
    QAccessible::Tree,         QAccessible::TreeItem,    QAccessible::PageTabList,
    QAccessible::PageTab,      QAccessible::MenuBar,     QAccessible::MenuItem,
    QAccessible::Separator,    QAccessible::ComboBox,
};
static_assert(std::size(kRoles) == size_t(AccessibleRole::ChoiceField) + 1, "one for each role");

}  // namespace

// --- what it is

const AccessibleItem* AccessibleObject::_Item() const
{
    return Window() != nullptr ? Window()->Now().Find(fId) : nullptr;
}

bool AccessibleObject::_Has(uint32 states) const
{
    const AccessibleItem* const item = _Item();
    return item != nullptr && (item->states & states) != 0;
}

QAccessibleInterface* AccessibleObject::_Interface(AccessibleId id) const
{
    return Window() != nullptr ? Window()->Interface(id) : nullptr;
}

bool AccessibleObject::isValid() const { return Window() != nullptr && Window()->Now().Has(fId); }

QAccessible::Role AccessibleObject::role() const
{
    if (const AccessibleItem* item = _Item())
        return kRoles[size_t(item->role)];
    // A row that was not told.
    return isValid() ? QAccessible::ListItem : QAccessible::NoRole;
}

QAccessible::State AccessibleObject::States(uint32 states, AccessibleRole role)
{
    const auto has = [=](uint32 bit) { return (states & bit) != 0; };
    QAccessible::State result;
    result.disabled = has(kIsDisabled);
    result.focusable = has(kTakesFocus) || has(kIsSelectable);
    result.checkable = has(kIsCheckable);
    result.checked = has(kIsChecked);
    result.checkStateMixed = has(kIsMixed);
    result.pressed = has(kIsPressed);
    result.defaultButton = has(kIsDefault);
    result.selectable = has(kIsSelectable);
    result.selected = has(kIsSelected);
    result.multiSelectable = has(kSelectsMany);
    result.expandable = has(kIsExpandable);
    result.expanded = has(kIsExpanded);
    result.collapsed = has(kIsExpandable) && !has(kIsExpanded);
    result.offscreen = has(kIsOutOfSight);
    result.invisible = has(kIsHidden);
    result.readOnly = has(kIsReadOnly);
    result.multiLine = has(kHasLines);
    result.hasPopup = has(kHasMenu);
    result.modal = has(kIsModal);
    result.passwordEdit = has(kIsPassword);
    result.editable = role == AccessibleRole::Text && has(kCanBeSet);
    result.selectableText = role == AccessibleRole::Text;
    return result;
}

QAccessible::State AccessibleObject::state() const
{
    QAccessible::State result;
    if (const AccessibleItem* item = _Item())
        result = States(item->states, item->role);
    else
        result.offscreen = isValid();
    result.invalid = !isValid();
    result.focused = isValid() && Window()->IsFocused(fId);
    return result;
}

QString AccessibleObject::text(QAccessible::Text kind) const
{
    const AccessibleItem* const item = _Item();
    if (item == nullptr)
        return {};
    switch (kind) {
        case QAccessible::Name:
            return qt_text(item->name);
        case QAccessible::Description:
            return qt_text(item->description.empty() ? item->value : item->description);
        case QAccessible::Accelerator:
            return qt_text(item->shortcut);
        case QAccessible::Value:
            return item->text != nullptr ? text(0, characterCount()) : qt_text(item->value);
        default:
            return {};
    }
}

void AccessibleObject::setText(QAccessible::Text kind, const QString& text)
{
    if (kind == QAccessible::Value)
        replaceText(0, characterCount(), text);
}

QRect AccessibleObject::rect() const
{
    const AccessibleItem* const item = _Item();
    return item != nullptr ? Window()->OnScreen(item->frame) : QRect();
}

void* AccessibleObject::interface_cast(QAccessible::InterfaceType type)
{
    switch (type) {
        case QAccessible::ActionInterface:
            return static_cast<QAccessibleActionInterface*>(this);
        case QAccessible::ValueInterface:
            return _Range() != nullptr ? static_cast<QAccessibleValueInterface*>(this) : nullptr;
        case QAccessible::TextInterface:
            return _Text() != nullptr ? static_cast<QAccessibleTextInterface*>(this) : nullptr;
        case QAccessible::EditableTextInterface:
            return _Text() != nullptr && _Has(kCanBeSet)
                       ? static_cast<QAccessibleEditableTextInterface*>(this)
                       : nullptr;
        default:
            return nullptr;
    }
}

// --- what it is in, and what in it

QAccessibleInterface* AccessibleObject::parent() const
{
    return isValid() ? _Interface(Window()->Now().ParentOf(fId)) : nullptr;
}

int AccessibleObject::childCount() const
{
    return Window() != nullptr ? Window()->Now().CountChildren(fId) : 0;
}

QAccessibleInterface* AccessibleObject::child(int index) const
{
    if (index < 0 || index >= childCount())
        return nullptr;
    return _Interface(Window()->Now().ChildAt(fId, index));
}

int AccessibleObject::indexOfChild(const QAccessibleInterface* child) const
{
    const auto* object = dynamic_cast<const AccessibleObject*>(child);
    if (object == nullptr || object->Window() != Window() || !object->isValid() ||
        Window()->Now().ParentOf(object->fId) != fId || object->fId == fId)
        return -1;
    return Window()->Now().IndexOf(object->fId);
}

QAccessibleInterface* AccessibleObject::childAt(int x, int y) const
{
    if (!isValid())
        return nullptr;
    const AccessibleId found = Window()->ItemAt(fId, QPoint(x, y));
    return found != fId ? _Interface(found) : nullptr;
}

QAccessibleInterface* AccessibleObject::focusChild() const
{
    return Window() != nullptr && Window()->Focus() != 0 ? _Interface(Window()->Focus()) : nullptr;
}

// --- what can be done with it

void AccessibleObject::_Ask(AccessibleRequest::What what, int from, int to, const QString& text)
{
    if (!isValid())
        return;
    AccessibleRequest request;
    request.item = fId;
    request.what = what;
    request.from = from;
    request.to = to;
    request.text = text.toStdU16String();
    Window()->Ask(request);
}

QStringList AccessibleObject::actionNames() const
{
    QStringList names;
    if (_Has(kIsDisabled))
        return names;
    if (_Has(kCanBePressed))
        names << (_Has(kIsCheckable) ? toggleAction() : pressAction());
    if (_Range() != nullptr && _Has(kCanBeSet))
        names << increaseAction() << decreaseAction();
    if (_Has(kTakesFocus | kIsSelectable) || fId == 0)
        names << setFocusAction();
    return names;
}

void AccessibleObject::_Step(double steps)
{
    if (_Range() != nullptr)
        setCurrentValue(_Range()->value + steps * std::max(_Range()->step, 1.0));
}

void AccessibleObject::doAction(const QString& name)
{
    if (name == pressAction() || name == toggleAction())
        _Ask(AccessibleRequest::What::Press);
    else if (name == setFocusAction())
        _Ask(AccessibleRequest::What::TakeFocus);
    else if (name == increaseAction())
        _Step(1);
    else if (name == decreaseAction())
        _Step(-1);
}

QStringList AccessibleObject::keyBindingsForAction(const QString& name) const
{
    const AccessibleItem* const item = _Item();
    if (item == nullptr || item->shortcut.empty() || name == setFocusAction())
        return {};
    return {qt_text(item->shortcut)};
}

// --- its value

const AccessibleRange* AccessibleObject::_Range() const
{
    const AccessibleItem* const item = _Item();
    return item != nullptr ? item->range.get() : nullptr;
}

QVariant AccessibleObject::currentValue() const { return _Range() ? _Range()->value : 0.0; }
QVariant AccessibleObject::maximumValue() const { return _Range() ? _Range()->most : 0.0; }
QVariant AccessibleObject::minimumValue() const { return _Range() ? _Range()->least : 0.0; }
QVariant AccessibleObject::minimumStepSize() const { return _Range() ? _Range()->step : 0.0; }

void AccessibleObject::setCurrentValue(const QVariant& value)
{
    if (!_Has(kCanBeSet) || _Range() == nullptr)
        return;
    AccessibleRequest request;
    request.item = fId;
    request.what = AccessibleRequest::What::SetValue;
    request.value = value.toDouble();
    Window()->Ask(request);
}

// --- its text

const AccessibleText* AccessibleObject::_Text() const
{
    const AccessibleItem* const item = _Item();
    return item != nullptr ? item->text.get() : nullptr;
}

void AccessibleObject::selection(int index, int* start, int* end) const
{
    const bool has = index == 0 && selectionCount() > 0;
    *start = has ? _Text()->selectionStart : 0;
    *end = has ? _Text()->selectionEnd : 0;
}

int AccessibleObject::selectionCount() const
{
    const AccessibleText* const text = _Text();
    return text != nullptr && text->selectionStart < text->selectionEnd ? 1 : 0;
}

void AccessibleObject::addSelection(int start, int end) { setSelection(0, start, end); }

void AccessibleObject::removeSelection(int index)
{
    if (index == 0 && selectionCount() > 0)
        setCursorPosition(cursorPosition());
}

void AccessibleObject::setSelection(int index, int start, int end)
{
    if (index == 0 && _Text() != nullptr)
        _Ask(AccessibleRequest::What::Select, start, end);
}

int AccessibleObject::cursorPosition() const { return _Text() != nullptr ? _Text()->caret : 0; }

void AccessibleObject::setCursorPosition(int position)
{
    if (_Text() != nullptr)
        _Ask(AccessibleRequest::What::Select, position, position);
}

QString AccessibleObject::text(int start, int end) const
{
    if (_Text() == nullptr)
        return {};
    return QString::fromStdU16String(
        _Text()->content->Part(start, end < 0 ? characterCount() : end));
}

int AccessibleObject::characterCount() const
{
    return _Text() != nullptr ? int(_Text()->content->Units()) : 0;
}

// Of the caret alone, which magnifiers follow; other characters are somewhere in the text.
QRect AccessibleObject::characterRect(int offset) const
{
    if (_Text() == nullptr || offset != _Text()->caret)
        return rect();
    return Window()->OnScreen(_Text()->caretFrame);
}

int AccessibleObject::offsetAtPoint(const QPoint& point) const
{
    return _Text() != nullptr && characterRect(cursorPosition()).contains(point) ? cursorPosition()
                                                                                 : -1;
}

void AccessibleObject::scrollToSubstring(int, int) { _Ask(AccessibleRequest::What::Show); }

QString AccessibleObject::attributes(int, int* start, int* end) const
{
    *start = 0;
    *end = characterCount();
    return {};
}

void AccessibleObject::deleteText(int start, int end) { replaceText(start, end, {}); }

void AccessibleObject::insertText(int offset, const QString& text)
{
    if (!text.isEmpty())
        replaceText(offset, offset, text);
}

void AccessibleObject::replaceText(int start, int end, const QString& text)
{
    if (_Text() != nullptr && _Has(kCanBeSet))
        _Ask(AccessibleRequest::What::Replace, start, end < 0 ? characterCount() : end, text);
}

// --- the window itself

QObject* AccessibleRoot::object() const { return fNative; }

AccessibleWindow* AccessibleRoot::Window() const
{
    auto* const native = dynamic_cast<NativeWindow*>(fNative);
    return native != nullptr ? native->Accessible() : nullptr;
}

QAccessibleInterface* AccessibleRoot::parent() const
{
    return QAccessible::queryAccessibleInterface(qApp);
}

QString AccessibleRoot::text(QAccessible::Text kind) const
{
    return kind == QAccessible::Name ? fNative->title() : AccessibleObject::text(kind);
}

QRect AccessibleRoot::rect() const { return fNative->geometry(); }

QAccessible::Role AccessibleRoot::role() const
{
    return Window() != nullptr ? AccessibleObject::role() : QAccessible::Window;
}

QAccessible::State AccessibleRoot::state() const
{
    QAccessible::State result;
    if (Window() != nullptr)
        result = AccessibleObject::state();
    result.invalid = false;
    result.invisible = !fNative->isVisible();
    result.active = QGuiApplication::focusWindow() == fNative;
    return result;
}

}  // namespace server
