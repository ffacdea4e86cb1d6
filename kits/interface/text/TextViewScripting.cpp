// BTextView: archives and scripting.

#include <TextView.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

#include <app/looper/Scripting.h>
#include <support/EnumNumbers.h>

#include "interface/drawing/BitmapSurface.h"
#include "interface/text/TextData.h"
#include "interface/view/ViewPrivate.h"

using BPrivate::enum_up_to;
using BPrivate::TextData;

// ---- Archives

BTextView::BTextView(BMessage* archive)
    : BView(archive),
      fText(std::make_unique<TextData>(this, *be_plain_font, ui_color(B_DOCUMENT_TEXT_COLOR)))
{
    if (archive == nullptr)
        return;
    BRect rect;
    SetTextRect(archive->FindRect("_trect", &rect) == B_OK ? rect : Bounds());
    SetTabWidth(archive->GetFloat("_tab", TabWidth()));
    SetAlignment(
        enum_up_to(archive->GetInt32("_align", B_ALIGN_LEFT), B_ALIGN_CENTER, B_ALIGN_LEFT));
    const color_space space = BPrivate::space_of(archive->GetInt32("_col_sp", B_CMAP8));
    SetColorSpace(space != B_NO_COLOR_SPACE ? space : B_CMAP8);
    SetMaxBytes(archive->GetInt32("_max", INT32_MAX));
    SetStylable(archive->GetBool("_stylable", false));
    SetAutoindent(archive->GetBool("_auto_in", false));
    SetWordWrap(archive->GetBool("_wrap", true));
    MakeSelectable(!archive->GetBool("_nsel", false));
    MakeEditable(!archive->GetBool("_nedit", false));
    HideTyping(archive->GetBool("_hide", false));
    SetDoesUndo(archive->GetBool("_undo", true));
    const void* data;
    ssize_t size;
    text_run_array* runs = nullptr;
    if (archive->FindData("_runs", B_RAW_TYPE, &data, &size) == B_OK) {
        auto flatSize = int32(size);
        runs = UnflattenRunArray(data, &flatSize);
    }
    if (archive->FindData("_text", B_RAW_TYPE, &data, &size) == B_OK)
        SetText(static_cast<const char*>(data), int32(size), nullptr);
    if (runs != nullptr)
        SetRunArray(0, TextLength(), runs);
    fText->history.Clear();
    FreeRunArray(runs);
    for (int32 i = 0; archive->FindData("_dis_ch", B_RAW_TYPE, i, &data, &size) == B_OK; i++) {
        for (ssize_t at = 0; at + ssize_t(sizeof(uint32)) <= size; at += sizeof(uint32)) {
            uint32 code;
            memcpy(&code, static_cast<const char*>(data) + at, sizeof(code));
            DisallowChar(code);
        }
    }
    int32 start, end;
    if (archive->FindInt32("_sel", &start) == B_OK && archive->FindInt32("_sel", 1, &end) == B_OK)
        Select(start, end);
}

BArchivable* BTextView::Instantiate(BMessage* archive)
{
    return validate_instantiation(archive, "BTextView") ? new (std::nothrow) BTextView(archive)
                                                        : nullptr;
}

static status_t archive_text(const TextData& text, BMessage* archive)
{
    const std::vector<uint32> disallowed(text.disallowed.begin(), text.disallowed.end());
    status_t status = B_OK;
    if (!disallowed.empty())
        status = archive->AddData("_dis_ch", B_RAW_TYPE, disallowed.data(),
                                  ssize_t(disallowed.size() * sizeof(uint32)));
    if (status == B_OK && text.body.Length() > 0)
        status = archive->AddData("_text", B_RAW_TYPE, text.view->Text(), text.body.Length());
    text_run_array* runs = text.view->RunArray(0, text.body.Length());
    int32 size = 0;
    void* flat = BTextView::FlattenRunArray(runs, &size);
    if (status == B_OK && flat != nullptr)
        status = archive->AddData("_runs", B_RAW_TYPE, flat, size);
    free(flat);
    BTextView::FreeRunArray(runs);
    return status;
}

status_t BTextView::Archive(BMessage* archive, bool deep) const
{
    const TextData& text = *fText;
    status_t status = BView::Archive(archive, deep);
    const auto add = [&](status_t added) { status = status == B_OK ? added : status; };
    if (status != B_OK)
        return status;
    add(archive_text(text, archive));
    add(archive->AddRect("_trect", text.textRect));
    add(archive->AddFloat("_tab", TabWidth()));
    add(archive->AddInt32("_col_sp", text.colors));
    add(archive->AddInt32("_max", text.maxBytes));
    add(archive->AddInt32("_align", text.align));
    add(archive->AddInt32("_sel", text.selStart));
    add(archive->AddInt32("_sel", text.selEnd));
    add(archive->AddBool("_stylable", text.stylable));
    add(archive->AddBool("_auto_in", text.autoindent));
    add(archive->AddBool("_wrap", text.wraps));
    add(archive->AddBool("_nsel", !text.selectable));
    add(archive->AddBool("_nedit", !text.editable));
    add(archive->AddBool("_hide", text.hidesTyping));
    add(archive->AddBool("_undo", text.history.Enabled()));
    return status;
}

// ---- Scripting

static const property_info kTextViewProperties[] = {
    {"Selection",
     {B_GET_PROPERTY, B_SET_PROPERTY},
     {B_DIRECT_SPECIFIER},
     "start and end of the selection",
     0,
     {B_INT32_TYPE},
     {}},
    {"Text",
     {B_COUNT_PROPERTIES},
     {B_DIRECT_SPECIFIER},
     "the length of the text in bytes",
     0,
     {B_INT32_TYPE},
     {}},
    {"Text",
     {B_GET_PROPERTY, B_SET_PROPERTY},
     {B_RANGE_SPECIFIER, B_REVERSE_RANGE_SPECIFIER},
     "the text in a range; to set it puts other text there",
     0,
     {B_STRING_TYPE},
     {}},
    {"text_run_array",
     {B_GET_PROPERTY, B_SET_PROPERTY},
     {B_RANGE_SPECIFIER, B_REVERSE_RANGE_SPECIFIER},
     "the styles in a range, flattened",
     0,
     {B_RAW_TYPE},
     {}},
    {}};

namespace {

// A question to a text, about its bytes `from` to `to` where there is a range.
struct Request {
    const BMessage& message;
    std::string property;
    int32 from = 0, to = 0;
};

}  // namespace

static status_t take_range(const BTextView& view, const BMessage& specifier, int32 form,
                           Request* request)
{
    if (form == B_DIRECT_SPECIFIER)
        return B_OK;
    int32 index, count;
    if (specifier.FindInt32("index", &index) != B_OK ||
        specifier.FindInt32("range", &count) != B_OK)
        return B_BAD_SCRIPT_SYNTAX;
    const int32 length = view.TextLength();
    if (index < 0 || index > length || count < 0)
        return B_BAD_INDEX;
    const int32 start = form == B_REVERSE_RANGE_SPECIFIER ? length - index : index;
    request->from = start;
    request->to = start + std::min(count, length - start);
    return B_OK;
}

static status_t get_property(BTextView& view, const Request& request, BMessage* reply)
{
    if (request.message.what == B_COUNT_PROPERTIES)
        return reply->AddInt32("result", view.TextLength());
    if (request.property == "Selection") {
        int32 start, end;
        view.GetSelection(&start, &end);
        const status_t status = reply->AddInt32("result", start);
        return status == B_OK ? reply->AddInt32("result", end) : status;
    }
    if (request.property == "Text") {
        std::string text(size_t(request.to - request.from) + 1, '\0');
        view.GetText(request.from, request.to - request.from, text.data());
        return reply->AddString("result", text.c_str());
    }
    text_run_array* runs = view.RunArray(request.from, request.to);
    int32 size = 0;
    void* flat = BTextView::FlattenRunArray(runs, &size);
    const status_t status =
        flat != nullptr ? reply->AddData("result", B_RAW_TYPE, flat, size) : B_NO_MEMORY;
    free(flat);
    BTextView::FreeRunArray(runs);
    return status;
}

static status_t set_property(BTextView& view, const Request& request)
{
    const BMessage& message = request.message;
    if (request.property == "Selection") {
        int32 start, end;
        if (message.FindInt32("data", &start) != B_OK || message.FindInt32("data", 1, &end) != B_OK)
            return B_BAD_VALUE;
        view.Select(start, end);
        return B_OK;
    }
    if (request.property == "Text") {
        const std::string text = message.GetString("data", "");
        view.Delete(request.from, request.to);
        view.Insert(request.from, text.data(), int32(text.size()), nullptr);
        return B_OK;
    }
    const void* flat;
    ssize_t bytes;
    if (message.FindData("data", B_RAW_TYPE, &flat, &bytes) != B_OK)
        return B_BAD_VALUE;
    auto size = int32(bytes);
    text_run_array* runs = BTextView::UnflattenRunArray(flat, &size);
    if (runs == nullptr)
        return B_BAD_VALUE;
    view.SetRunArray(request.from, request.to, runs);
    BTextView::FreeRunArray(runs);
    return B_OK;
}

// False for a message that is no question to a text.
bool BPrivate::TextData::Answer(BMessage* message)
{
    int32 index, form;
    BMessage specifier;
    const char* property = nullptr;
    if (!message->HasSpecifiers() ||
        message->GetCurrentSpecifier(&index, &specifier, &form, &property) != B_OK ||
        !knows_property(kTextViewProperties, message, index, &specifier, form, property))
        return false;
    Request request{*message, property};
    const ViewRef self(view);
    BMessage reply(B_REPLY);
    status_t status = take_range(*view, specifier, form, &request);
    if (status == B_OK)
        status = message->what == B_SET_PROPERTY ? set_property(*view, request)
                                                 : get_property(*view, request, &reply);
    reply.AddInt32("error", status);
    message->SendReply(&reply);
    return true;
}

BHandler* BTextView::ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                      int32 form, const char* property)
{
    return BPrivate::knows_property(kTextViewProperties, message, index, specifier, form, property)
               ? this
               : BView::ResolveSpecifier(message, index, specifier, form, property);
}

status_t BTextView::GetSupportedSuites(BMessage* data)
{
    const status_t status =
        BPrivate::add_suite(data, "suite/vnd.Be-text-view", kTextViewProperties);
    return status == B_OK ? BView::GetSupportedSuites(data) : status;
}
