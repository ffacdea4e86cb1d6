// What screen readers are told of texts: what is written, caret and selection; of a password that
// it is one.

#include <interface/accessible/Teller.h>

#include <TextControl.h>
#include <TextView.h>

#include <interface/accessible/ToldContent.h>
#include <interface/text/TextData.h>

namespace BPrivate {

using server::AccessibleRole;
using Item = Teller::Item;

// The control that a text is the field of; null if it is none's.
static BTextControl* control_of(const BTextView& view)
{
    auto* control = dynamic_cast<BTextControl*>(view.Parent());
    return control != nullptr && control->TextView() == &view ? control : nullptr;
}

bool is_password(const BTextView& view)
{
    BMessage message(kTellReader);
    bool password = view.IsTypingHidden();
    BTextControl* const control = control_of(view);
    if (!password && control != nullptr && control->Perform(kTellReader, &message) == B_OK)
        message.FindBool("password", &password);
    return password;
}

void Teller::AddText(Item* item, BTextView& view)
{
    const bool hidden = (item->states & server::kIsPassword) != 0;
    TextBody& body = TextData::Of(&view).body;
    const TextBuffer& buffer = body.Buffer();
    ToldText& told = (*fTexts)[server::view_of(item->id)];
    if (told.content == nullptr || told.revision != buffer.Revision() || told.hidden != hidden) {
        const TextChange change = body.TakeChange();
        const bool goes_on = change.since == told.revision && told.hidden == hidden;
        told.content = tell_content(buffer, hidden, goes_on ? told.content : nullptr, change);
        told.revision = buffer.Revision();
        told.hidden = hidden;
    }
    const auto unit_at = [&](int32 byte) {
        return told_unit_at(*told.content, buffer, hidden, byte);
    };
    auto text = std::make_shared<server::AccessibleText>();
    text->content = told.content;
    int32 start, end;
    view.GetSelection(&start, &end);
    text->selectionStart = unit_at(start);
    text->selectionEnd = start == end ? text->selectionStart : unit_at(end);
    const TextData& data = TextData::Of(&view);
    const bool at_start = start != end && data.lead == start;
    text->caret = at_start ? text->selectionStart : text->selectionEnd;
    text->caretFrame = ViewPrivate::FromView(&view, data.CaretRect(at_start ? start : end));
    item->text = std::move(text);
}

static int32 tell_text(Teller& teller, BView& view, int32 parent)
{
    auto& text = dynamic_cast<BTextView&>(view);
    BTextControl* const control = control_of(text);
    Item& item = teller.Add(view, parent, AccessibleRole::Text,
                            control != nullptr ? control->Label() : nullptr);
    if (control == nullptr) {
        item.states |= server::kHasLines;
    } else {
        const std::string tip = teller.ToolTip(*control);
        if (item.name.empty())
            item.name = tip;
        else if (tip != item.name)
            item.description = tip;
        if (!control->IsEnabled())
            item.states |= server::kIsDisabled;
    }
    item.states |= server::kTakesFocus;
    const bool enabled = (item.states & server::kIsDisabled) == 0;
    item.states |= text.IsEditable() && enabled ? server::kCanBeSet : server::kIsReadOnly;
    if (is_password(text))
        item.states |= server::kIsPassword;
    teller.AddText(&item, text);
    return Teller::kNothing;
}

// The field inside is what is told.
static int32 tell_field(Teller&, BView&, int32 parent) { return parent; }

TellView text_teller(const BView& view)
{
    if (dynamic_cast<const BTextView*>(&view) != nullptr)
        return tell_text;
    return dynamic_cast<const BTextControl*>(&view) != nullptr ? tell_field : nullptr;
}

}  // namespace BPrivate
