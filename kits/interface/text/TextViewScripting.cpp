// BTextView: archives and scripting.

#include <TextView.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include <app/looper/Scripting.h>

#include "interface/text/TextData.h"

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
    SetAlignment(static_cast<alignment>(archive->GetInt32("_align", B_ALIGN_LEFT)));
    SetColorSpace(static_cast<color_space>(archive->GetInt32("_col_sp", B_CMAP8)));
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

BHandler* BTextView::ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                      int32 form, const char* property)
{
    return BView::ResolveSpecifier(message, index, specifier, form, property);
}

status_t BTextView::GetSupportedSuites(BMessage* data) { return BView::GetSupportedSuites(data); }
