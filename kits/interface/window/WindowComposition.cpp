// Input methods: what they say goes to the view with the focus, which answers where its text is. A
// view that knows nothing of them gets the text as keys when it is done.

#include <Input.h>
#include <Messenger.h>
#include <TextView.h>
#include <View.h>
#include <Window.h>

#include <cstring>

#include <interface/view/ViewPrivate.h>
#include <interface/window/WindowPrivate.h>
#include <support/UTF8Characters.h>

namespace BPrivate {

static input_method_op opcode_of(const server::Composition& composition)
{
    switch (composition.step) {
        case server::Composition::Step::Started:
            return B_INPUT_METHOD_STARTED;
        case server::Composition::Step::Stopped:
            return B_INPUT_METHOD_STOPPED;
        default:
            return B_INPUT_METHOD_CHANGED;
    }
}

ComposedMessage::ComposedMessage(const server::Composition& composition)
    : BMessage(B_INPUT_METHOD_EVENT), composition(composition)
{
    const input_method_op opcode = opcode_of(composition);
    AddInt32("be:opcode", opcode);
    if (opcode != B_INPUT_METHOD_CHANGED)
        return;
    AddString("be:string", composition.text.c_str());
    AddBool("be:confirmed", composition.confirmed);
    AddInt32("be:selection", composition.selectionStart);
    AddInt32("be:selection", composition.selectionEnd);
    for (size_t i = 0; i + 1 < composition.clauses.size(); i += 2) {
        AddInt32("be:clause_start", composition.clauses[i]);
        AddInt32("be:clause_end", composition.clauses[i + 1]);
    }
}

// As if each character had a key of its own.
static void type(WindowData* window, const std::string& text)
{
    for (size_t at = 0; at < text.size();) {
        server::Event event;
        event.kind = server::EventKind::KeyDown;
        event.when = system_time();
        event.modifiers = server::Modifiers();
        const size_t length = utf8_piece_length(std::string_view(text).substr(at));
        event.byteCount = int32(text.copy(event.bytes, length, at));
        at += length;
        event.rawChar = event.bytes[0] & 0x7f;
        window->PostInput(event, false);
        event.kind = server::EventKind::KeyUp;
        window->PostInput(event, false);
    }
}

static void tell_view(WindowData* data, ComposedMessage* message)
{
    BView* view = data->focus;
    if (view == nullptr || (view->Flags() & B_INPUT_METHOD_AWARE) == 0) {
        if (message->composition.confirmed)
            type(data, message->composition.text);
        return;
    }
    const ViewRef ref(view);
    message->AddMessenger("be:reply_to", BMessenger(data->window));
    view->MessageReceived(message);
    if (ref.View() == nullptr || message->composition.step == server::Composition::Step::Stopped)
        return;
    BMessage where(B_INPUT_METHOD_EVENT);
    where.AddInt32("be:opcode", B_INPUT_METHOD_LOCATION_REQUEST);
    where.AddMessenger("be:reply_to", BMessenger(data->window));
    view->MessageReceived(&where);
}

// A text that wants nothing of input methods hides what is typed, or lets few keys through.
void tell_typing(const WindowData& data)
{
    const bool hidden = dynamic_cast<const BTextView*>(data.focus) != nullptr &&
                        (data.focus->Flags() & B_INPUT_METHOD_AWARE) == 0;
    if (data.display != nullptr)
        data.display->SetTypingHidden(hidden);
}

void dispatch_composition(BWindow* window, BMessage* message)
{
    WindowData* data = WindowData::Of(window);
    if (auto* composed = dynamic_cast<ComposedMessage*>(message)) {
        tell_view(data, composed);
        return;
    }
    BPoint place;
    float height;
    if (data->display == nullptr)
        return;
    if (message->GetInt32("be:opcode", -1) == B_INPUT_METHOD_STOPPED) {
        data->display->EndComposition();
    } else if (message->FindPoint("be:location_reply", &place) == B_OK &&
               message->FindFloat("be:height_reply", &height) == B_OK) {
        place = window->ConvertFromScreen(place);
        data->display->SetCompositionPlace(BRect(place.x, place.y, place.x, place.y + height - 1));
    }
}

}  // namespace BPrivate
