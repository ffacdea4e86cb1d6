#include "interface/window/DragContent.h"

#include <Archivable.h>
#include <Bitmap.h>
#include <DataIO.h>
#include <Entry.h>
#include <Message.h>
#include <Path.h>
#include <TypeConstants.h>

#include <string.h>

#include <algorithm>
#include <string>
#include <utility>

#include <app/message/MessageForms.h>
#include <server/screen/Images.h>
#include <support/UriPaths.h>

namespace BPrivate {

static const char* const kUriForm = "text/uri-list";
static const char* const kPictureForm = "image/png";

using server::DragPicture;

static bool has_alpha(const BBitmap& image)
{
    return image.ColorSpace() == B_RGBA32 || image.ColorSpace() == B_RGBA15;
}

// The alpha that a pixel is shown with.
static uint32 alpha_in(drawing_mode mode, uint32 alpha)
{
    switch (mode) {
        case B_OP_ALPHA:
            return alpha;
        case B_OP_BLEND:
            return alpha != 0 ? 128 : 0;
        case B_OP_OVER:
        case B_OP_ERASE:
            return alpha != 0 ? 255 : 0;
        default:
            return 255;
    }
}

static std::shared_ptr<DragPicture> new_picture(int32 width, int32 height, BPoint offset)
{
    auto picture = std::make_shared<DragPicture>();
    picture->pixels.resize(size_t(width) * size_t(height));
    picture->width = width;
    picture->height = height;
    picture->offset = offset;
    return picture;
}

// The pixels of an image in B_RGBA32, whatever it is in itself; none where that fails.
static std::shared_ptr<DragPicture> pixels_of(const BBitmap& image, BPoint offset)
{
    BBitmap copy(image.Bounds(), B_RGBA32);
    if (copy.InitCheck() != B_OK || copy.ImportBits(&image) != B_OK)
        return new_picture(0, 0, offset);
    auto picture =
        new_picture(image.Bounds().IntegerWidth() + 1, image.Bounds().IntegerHeight() + 1, offset);
    const auto* bits = static_cast<const uint8*>(copy.Bits());
    const size_t row = size_t(picture->width) * 4;
    for (int32 y = 0; y < picture->height; y++)
        memcpy(&picture->pixels[size_t(y) * size_t(picture->width)],
               bits + ptrdiff_t(y) * copy.BytesPerRow(), row);
    return picture;
}

std::shared_ptr<const DragPicture> drag_picture(const BBitmap& image, drawing_mode mode,
                                                BPoint offset)
{
    const uint32 kMagic = 0x00777477;  // B_TRANSPARENT_MAGIC_RGBA32
    std::shared_ptr<DragPicture> picture = pixels_of(image, offset);
    for (uint32& pixel : picture->pixels) {
        const bool is_clear = (pixel & 0xffffff) == kMagic && !has_alpha(image);
        const uint32 alpha = is_clear ? 0 : has_alpha(image) ? pixel >> 24 : 255;
        pixel = alpha_in(mode, alpha) << 24 | (pixel & 0xffffff);
    }
    return picture;
}

std::shared_ptr<const DragPicture> drag_outline(BRect rect, BPoint offset)
{
    const uint32 kLine = 0x80000000;
    rect = rect.OffsetToSelf(B_ORIGIN) & server::ScreenFrame().OffsetToSelf(B_ORIGIN);
    if (!rect.IsValid())
        return new_picture(0, 0, offset);
    auto picture = new_picture(rect.IntegerWidth() + 1, rect.IntegerHeight() + 1, offset);
    const int32 width = picture->width, height = picture->height;
    for (int32 y = 0; y < height; y++) {
        auto row = picture->pixels.begin() + ptrdiff_t(y) * width;
        if (y == 0 || y == height - 1)
            std::fill(row, row + width, kLine);
        row[0] = row[width - 1] = kLine;
    }
    return picture;
}

static std::string uris_of(const BMessage& message, const char* field)
{
    std::string uris;
    entry_ref ref;
    for (int32 i = 0; message.FindRef(field, i, &ref) == B_OK; i++) {
        BPath path;
        if (BEntry(&ref).GetPath(&path) == B_OK)
            uris += BPrivate::uri_of_path(path.Path()) + "\r\n";
    }
    return uris;
}

// The PNG file of an archived bitmap; empty for an archive of something else.
static std::string png_of(const BMessage& archive)
{
    const char* name;
    if (archive.FindString("class", &name) != B_OK || strcmp(name, "BBitmap") != 0)
        return "";
    BMessage copy(archive);
    const BBitmap bitmap(&copy);
    if (bitmap.InitCheck() != B_OK)
        return "";
    const auto picture = drag_picture(bitmap, has_alpha(bitmap) ? B_OP_ALPHA : B_OP_OVER, B_ORIGIN);
    return picture->pixels.empty()
               ? ""
               : server::EncodePng(picture->pixels, picture->width, picture->height);
}

static bool has_form(const server::ClipboardForms& forms, const char* type)
{
    return server::find_form(forms, {type}) != nullptr;
}

// The first field of a type that makes a form, unless the message has one of that name already.
template <class Make>
static void add_form(const BMessage& message, type_code type, const char* name,
                     server::ClipboardForms* forms, Make make)
{
    char* field;
    type_code found;
    for (int32 i = 0; !has_form(*forms, name) && message.GetInfo(type, i, &field, &found) == B_OK;
         i++) {
        std::string bytes = make(field);
        if (!bytes.empty())
            forms->push_back({name, std::move(bytes)});
    }
}

// Pointers mean nothing in another program.
static BMessage without_pointers(BMessage message)
{
    char* field;
    type_code type;
    while (message.GetInfo(B_POINTER_TYPE, 0, &field, &type) == B_OK)
        message.RemoveName(std::string(field).c_str());
    return message;
}

server::ClipboardForms drag_forms(const BMessage& message)
{
    server::ClipboardForms forms;
    add_form(message, B_REF_TYPE, kUriForm, &forms,
             [&](const char* field) { return uris_of(message, field); });
    add_mime_forms(message, has_form(forms, kUriForm) ? kUriForm : server::kDragForm, &forms);
    add_form(message, B_MESSAGE_TYPE, kPictureForm, &forms, [&](const char* field) {
        BMessage archive;
        return message.FindMessage(field, &archive) == B_OK ? png_of(archive) : "";
    });
    add_message_form(without_pointers(message), server::kDragForm, &forms);
    return forms;
}

bool message_of_forms(const server::ClipboardForms& forms, BMessage* message)
{
    if (const server::ClipboardForm* whole = server::find_form(forms, {server::kDragForm})) {
        BMemoryIO stream(whole->bytes.data(), whole->bytes.size());
        return message->Unflatten(&stream) == B_OK;
    }
    message->what = B_MIME_DATA;
    for (const server::ClipboardForm& form : forms)
        message->AddData(form.type.c_str(), B_MIME_TYPE, form.bytes.data(),
                         static_cast<ssize_t>(form.bytes.size()), false);
    return !forms.empty();
}

}  // namespace BPrivate
