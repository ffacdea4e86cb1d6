// The owner's side of an X selection, as the Inter-Client Communication Conventions have it.

#include "server/qt/x11/X11Offer.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "support/ValidUTF8.h"

namespace server {

static const size_t kLargestPiece = 256 * 1024;
static const bigtime_t kStalled = 5000000;

const char* const kX11TextTargets[6] = {
    "UTF8_STRING", "text/plain;charset=utf-8", "text/plain;charset=UTF-8", "text/plain", "STRING",
    "TEXT",
};

xcb_atom_t X11Atoms::Find(const std::string& name)
{
    const auto [place, is_new] = fKnown.try_emplace(name, XCB_ATOM_NONE);
    if (is_new) {
        auto cookie = xcb_intern_atom(fConnection, 0, uint16_t(name.size()), name.data());
        auto* reply = xcb_intern_atom_reply(fConnection, cookie, nullptr);
        if (reply != nullptr)
            place->second = reply->atom;
        free(reply);
    }
    return place->second;
}

std::string latin1_to_utf8(const std::string& text)
{
    std::string result;
    for (char c : text)
        BPrivate::append_latin1(static_cast<uint8>(c), &result);
    return result;
}

// Characters that Latin-1 lacks become question marks. The text is valid UTF-8.
static std::string utf8_to_latin1(const std::string& text)
{
    std::string result;
    for (std::string_view rest = text; !rest.empty();) {
        uint32 code;
        rest.remove_prefix(BPrivate::next_character(rest, &code));
        result += code < 0x100 ? char(code) : '?';
    }
    return result;
}

X11Offer::X11Offer(xcb_connection_t* connection, X11Atoms& atoms)
    : fConnection(connection), fAtoms(atoms)
{
    // The head of a request takes some of its length, which is counted in units of four bytes.
    fPiece = std::min(kLargestPiece, size_t(xcb_get_maximum_request_length(connection)) * 4 - 64);
}

std::vector<xcb_atom_t> X11Offer::Targets()
{
    std::vector<xcb_atom_t> targets;
    for (const char* name : {"TARGETS", "TIMESTAMP", "MULTIPLE"})
        targets.push_back(fAtoms.Find(name));
    for (const ClipboardForm& form : *fForms) {
        if (form.type == kTextForm) {
            for (const char* name : kX11TextTargets)
                targets.push_back(fAtoms.Find(name));
        } else {
            targets.push_back(fAtoms.Find(form.type));
        }
    }
    return targets;
}

void X11Offer::Answer(const xcb_selection_request_event_t& request)
{
    xcb_selection_notify_event_t notice = {};
    notice.response_type = XCB_SELECTION_NOTIFY;
    notice.time = request.time;
    notice.requestor = request.requestor;
    notice.selection = request.selection;
    notice.target = request.target;
    // Old programs leave the choice of the property to us.
    const xcb_atom_t property =
        request.property != XCB_ATOM_NONE ? request.property : request.target;
    const bool is_multiple = request.target == fAtoms.Find("MULTIPLE");
    if (is_multiple ? _ConvertMultiple(request.requestor, request.property)
                    : _Convert(request.requestor, request.target, property))
        notice.property = property;
    xcb_send_event(fConnection, 0, request.requestor, 0, reinterpret_cast<const char*>(&notice));
}

// The property holds pairs of target and property; those that fail lose their property.
bool X11Offer::_ConvertMultiple(xcb_window_t window, xcb_atom_t property)
{
    const uint32_t kMostWords = 512;
    auto cookie = xcb_get_property(fConnection, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0,
                                   kMostWords);
    auto* reply = xcb_get_property_reply(fConnection, cookie, nullptr);
    if (reply == nullptr)
        return false;
    std::vector<xcb_atom_t> pairs;
    if (reply->format == 32) {
        auto* words = static_cast<xcb_atom_t*>(xcb_get_property_value(reply));
        pairs.assign(words, words + xcb_get_property_value_length(reply) / 4);
    }
    const xcb_atom_t type = reply->type;
    free(reply);
    for (size_t i = 0; i + 1 < pairs.size(); i += 2) {
        if (!_Convert(window, pairs[i], pairs[i + 1]))
            pairs[i + 1] = XCB_ATOM_NONE;
    }
    xcb_change_property(fConnection, XCB_PROP_MODE_REPLACE, window, property, type, 32,
                        uint32_t(pairs.size()), pairs.data());
    return !pairs.empty();
}

bool X11Offer::_Convert(xcb_window_t window, xcb_atom_t target, xcb_atom_t property)
{
    if (property == XCB_ATOM_NONE || fForms->empty())
        return false;
    if (target == fAtoms.Find("TARGETS")) {
        const std::vector<xcb_atom_t> targets = Targets();
        xcb_change_property(fConnection, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_ATOM, 32,
                            uint32_t(targets.size()), targets.data());
        return true;
    }
    if (target == fAtoms.Find("TIMESTAMP")) {
        xcb_change_property(fConnection, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_INTEGER,
                            32, 1, &fSince);
        return true;
    }
    xcb_atom_t type;
    Bytes bytes = _Render(target, &type);
    if (bytes == nullptr)
        return false;
    _Send(window, property, type, std::move(bytes));
    return true;
}

// Null for what is not offered.
X11Offer::Bytes X11Offer::_Render(xcb_atom_t target, xcb_atom_t* type)
{
    *type = target;
    for (const ClipboardForm& form : *fForms) {
        if (form.type != kTextForm) {
            if (target != fAtoms.Find(form.type))
                continue;
            return Bytes(fForms, &form.bytes);
        }
        if (std::none_of(std::begin(kX11TextTargets), std::end(kX11TextTargets),
                         [&](const char* name) { return target == fAtoms.Find(name); }))
            continue;
        if (target == fAtoms.Find("TEXT"))  // the owner's choice
            *type = fAtoms.Find("UTF8_STRING");
        if (target != XCB_ATOM_STRING)
            return Bytes(fForms, &form.bytes);
        if (fLatin1 == nullptr)
            fLatin1 = std::make_shared<const std::string>(utf8_to_latin1(form.bytes));
        return fLatin1;
    }
    return nullptr;
}

void X11Offer::_Send(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, Bytes bytes)
{
    if (bytes->size() <= fPiece) {
        xcb_change_property(fConnection, XCB_PROP_MODE_REPLACE, window, property, type, 8,
                            uint32_t(bytes->size()), bytes->data());
        return;
    }
    // Asked for once more into the same place: the first one will not be taken any longer.
    std::erase_if(fTransfers, [&](const Transfer& transfer) {
        return transfer.window == window && transfer.property == property;
    });
    const auto size = uint32_t(std::min<size_t>(bytes->size(), UINT32_MAX));
    fTransfers.push_back({window, property, type, std::move(bytes), 0, system_time()});
    _Listen(window);
    xcb_change_property(fConnection, XCB_PROP_MODE_REPLACE, window, property, fAtoms.Find("INCR"),
                        32, 1, &size);
}

// Hears of a window's properties while there is something to send to it.
void X11Offer::_Listen(xcb_window_t window)
{
    const bool is_sending =
        std::any_of(fTransfers.begin(), fTransfers.end(),
                    [&](const Transfer& transfer) { return transfer.window == window; });
    const uint32_t events =
        is_sending ? XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY : 0;
    xcb_change_window_attributes(fConnection, window, XCB_CW_EVENT_MASK, &events);
}

// A piece without bytes is the end.
void X11Offer::PieceTaken(xcb_window_t window, xcb_atom_t property)
{
    auto transfer = std::find_if(fTransfers.begin(), fTransfers.end(), [&](const Transfer& one) {
        return one.window == window && one.property == property;
    });
    if (transfer == fTransfers.end())
        return;
    const size_t length = std::min(fPiece, transfer->bytes->size() - transfer->sent);
    xcb_change_property(fConnection, XCB_PROP_MODE_REPLACE, window, property, transfer->type, 8,
                        uint32_t(length), transfer->bytes->data() + transfer->sent);
    transfer->sent += length;
    transfer->since = system_time();
    if (length == 0) {
        fTransfers.erase(transfer);
        _Listen(window);
    }
}

void X11Offer::WindowGone(xcb_window_t window)
{
    std::erase_if(fTransfers, [&](const Transfer& transfer) { return transfer.window == window; });
}

void X11Offer::DropStalled()
{
    const bigtime_t now = system_time();
    std::erase_if(fTransfers,
                  [&](const Transfer& transfer) { return now - transfer.since > kStalled; });
}

}  // namespace server
