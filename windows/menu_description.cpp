// Menus from their descriptions: one line of fixed columns for each menu, item and line. Main
// thread.

#include "windows/menus.h"

#include "plinth.h"

#include <MenuBar.h>
#include <Message.h>
#include <SeparatorItem.h>

#include <memory>
#include <stdlib.h>
#include <string.h>
#include <vector>

namespace {

// One line, as if it went on with blanks.
class Line {
public:
    explicit Line(const char* text) : fText(text), fLength(strlen(text)) {}

    char At(size_t column) const { return column < fLength ? fText[column] : ' '; }
    bool Has(size_t column) const { return At(column) == '1'; }
    const char* From(size_t column) const { return column < fLength ? fText + column : ""; }

    char Command() const { return At(0); }
    char Shortcut() const { return At(1) == '*' ? '\0' : At(1); }
    bool IsEnabled() const { return !Has(2); }
    bool IsMarked() const { return Has(3); }
    bool IsCheckable() const { return Has(4); }
    bool IsRadio() const { return Has(5); }
    uint32 Code() const
    {
        const char digits[] = {At(6), At(7), At(8), At(9), '\0'};
        return static_cast<uint32>(strtol(digits, nullptr, 10));
    }

private:
    const char* fText;
    size_t fLength;
};

const size_t kLabel = 10;     // column
const size_t kOpenLabel = 7;  // the same of an item of the open submenu: kept on purpose

class MenuBuilder {
public:
    MenuBuilder(BMenu* root, bool popup, MenuRecord* record)
        : fRoot(root), fCurrent(popup ? root : nullptr), fRecord(record)
    {
    }

    // False for a line that is none.
    bool Add(const Line& line);
    bool HasMenu() const { return fCurrent != nullptr; }

private:
    static BMenu* _NewMenu(const Line& line, BMenu* super);
    void _AddSubmenu(const Line& line);
    void _AddItem(const Line& line, BMenu* menu, const char* label, void* named);
    void _CloseSubmenu();

    BMenu* const fRoot;
    BMenu* fCurrent;
    BMenu* fOpen = nullptr;  // the submenu that "e" and "s" lines add to
    std::vector<BMenu*> fAbove;
    BMenuItem* fLast = nullptr;
    MenuRecord* const fRecord;
};

// In `super` already, as all that is made here: who deletes that deletes it all.
BMenu* MenuBuilder::_NewMenu(const Line& line, BMenu* super)
{
    auto* menu = new BMenu(line.From(kLabel), B_ITEMS_IN_COLUMN);
    menu->SetRadioMode(line.IsRadio());
    super->AddItem(menu);
    menu->SetEnabled(line.IsEnabled());
    return menu;
}

void MenuBuilder::_AddSubmenu(const Line& line)
{
    BMenu* const submenu = _NewMenu(line, fCurrent);
    if (fLast != nullptr) {
        fLast->Message()->AddPointer("mn", fCurrent);
        fLast->Message()->AddPointer("it", submenu);
    }
    fAbove.push_back(fCurrent);
    fCurrent = fOpen = submenu;
}

void MenuBuilder::_AddItem(const Line& line, BMenu* menu, const char* label, void* named)
{
    const uint32 code = line.Code();
    if (menu->Superitem() != nullptr)
        menu->Superitem()->SetMessage(new BMessage(code));
    auto* message = new BMessage(code);
    auto* item = new MyMenuItem(label, message, line.Shortcut(), line.IsCheckable());
    message->AddPointer("mn", named);
    message->AddPointer("it", static_cast<BMenuItem*>(item));
    menu->AddItem(item);
    item->SetEnabled(line.IsEnabled());
    if (line.IsCheckable())
        item->SetMarked(line.IsMarked());
    fLast = item;
}

void MenuBuilder::_CloseSubmenu()
{
    if (fAbove.empty())
        return;
    fCurrent = fOpen = fAbove.back();
    fAbove.pop_back();
}

bool MenuBuilder::Add(const Line& line)
{
    switch (line.Command()) {
        case 't':
            fCurrent = _NewMenu(line, fRoot);
            return true;
        case 'x':
            if (fCurrent != nullptr)
                _AddSubmenu(line);
            return true;
        case 'i':
            if (fCurrent != nullptr)
                _AddItem(line, fCurrent, line.From(kLabel), fCurrent);
            return true;
        case 'e':
        case 's':
            if (fOpen != nullptr)
                _AddItem(line, fOpen, line.From(kOpenLabel), fRecord);
            if (line.Command() == 's')
                _CloseSubmenu();
            return true;
        case '-':
            if (fCurrent != nullptr)
                fCurrent->AddItem(new BSeparatorItem);
            return true;
        default:
            return false;
    }
}

struct FreeRecord {
    void operator()(MenuRecord* record) const { MyFree(record); }
};

// True if the lines make a menu: up to a "q" behind one, or to the end of the array.
bool build(const char* const* desc, MenuBuilder* builder)
{
    for (; *desc != nullptr; desc++) {
        const Line line(*desc);
        if (line.Command() == 'q') {
            if (builder->HasMenu())
                return true;
        } else if (!builder->Add(line)) {
            return false;
        }
    }
    return builder->HasMenu();
}

}  // namespace

int32_t CreateMenuRtn(const char* const* desc, BMenu* root, bool popup, void* owner)
{
    std::unique_ptr<BMenu> menu(root);
    std::unique_ptr<MenuRecord, FreeRecord> record(
        static_cast<MenuRecord*>(MyAlloc(sizeof(MenuRecord))));
    if (record == nullptr)
        return 0;
    if (popup)
        root->SetRadioMode(false);
    MenuBuilder builder(root, popup, record.get());
    if (!build(desc, &builder))
        return 0;
    record->owner = owner;
    record->menu = root;
    record->ident = static_cast<int32_t>(GetUniqueID());
    RegistryLock registry;
    if (!enter_record(registry, record.get()))
        return 0;
    menu.release();
    return static_cast<int32_t>(record.release()->ident);
}
