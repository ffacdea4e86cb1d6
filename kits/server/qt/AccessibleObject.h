#ifndef SERVER_QT_ACCESSIBLE_OBJECT_H
#define SERVER_QT_ACCESSIBLE_OBJECT_H

// One thing of a window as Qt's bridge sees it. It keeps nothing but its name: all that it says is
// read from the window's newest tree. Server's thread.

#include <QAccessible>

#include "server/screen/Accessible.h"

class QWindow;

namespace server {

class AccessibleWindow;

class AccessibleObject : public QAccessibleInterface,
                         public QAccessibleActionInterface,
                         public QAccessibleValueInterface,
                         public QAccessibleTextInterface,
                         public QAccessibleEditableTextInterface {
public:
    AccessibleObject(AccessibleWindow* window, AccessibleId id) : fWindow(window), fId(id) {}

    bool isValid() const override;
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int index) const override;
    int childCount() const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* focusChild() const override;
    QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text kind, const QString& text) override;
    QRect rect() const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    void doAction(const QString& name) override;
    QStringList keyBindingsForAction(const QString& name) const override;

    QVariant currentValue() const override;
    void setCurrentValue(const QVariant& value) override;
    QVariant maximumValue() const override;
    QVariant minimumValue() const override;
    QVariant minimumStepSize() const override;

    void selection(int index, int* start, int* end) const override;
    int selectionCount() const override;
    void addSelection(int start, int end) override;
    void removeSelection(int index) override;
    void setSelection(int index, int start, int end) override;
    int cursorPosition() const override;
    void setCursorPosition(int position) override;
    QString text(int start, int end) const override;
    int characterCount() const override;
    QRect characterRect(int offset) const override;
    int offsetAtPoint(const QPoint& point) const override;
    void scrollToSubstring(int start, int end) override;
    QString attributes(int offset, int* start, int* end) const override;

    void deleteText(int start, int end) override;
    void insertText(int offset, const QString& text) override;
    void replaceText(int start, int end, const QString& text) override;

    // The states that a tree's item has, as Qt counts them.
    static QAccessible::State States(uint32 states, AccessibleRole role);

protected:
    // Null while there is none: all is empty then.
    virtual AccessibleWindow* Window() const { return fWindow; }

private:
    const AccessibleItem* _Item() const;
    const AccessibleText* _Text() const;
    const AccessibleRange* _Range() const;
    QAccessibleInterface* _Interface(AccessibleId id) const;
    bool _Has(uint32 states) const;
    void _Ask(AccessibleRequest::What what, int from = 0, int to = 0, const QString& text = {});
    void _Step(double steps);

    AccessibleWindow* const fWindow;
    const AccessibleId fId;
};

// The window itself, for which Qt makes one when it asks for it.
class AccessibleRoot final : public AccessibleObject {
public:
    explicit AccessibleRoot(QWindow* window) : AccessibleObject(nullptr, 0), fNative(window) {}

    bool isValid() const override { return true; }
    QObject* object() const override;
    QWindow* window() const override { return fNative; }
    QAccessibleInterface* parent() const override;
    QString text(QAccessible::Text kind) const override;
    QRect rect() const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;

protected:
    AccessibleWindow* Window() const override;

private:
    QWindow* const fNative;
};

}  // namespace server

#endif  // SERVER_QT_ACCESSIBLE_OBJECT_H
