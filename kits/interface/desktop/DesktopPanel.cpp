// The panels of desktops that can be told where to be: Plasma's by its scripting interface, Xfce's
// by its settings. Of several panels the first one counts.

#include "interface/desktop/DesktopPanel.h"

#include <stdio.h>
#include <string.h>

#include <atomic>
#include <iterator>

#include <OS.h>

#include "interface/desktop/DeskbarPatience.h"
#include "support/HostBus.h"

namespace BPrivate {

static const bigtime_t kRespite = 5'000'000;  // after a call that was not answered

static const HostBus::Object kPlasma = {"org.kde.plasmashell", "/PlasmaShell",
                                        "org.kde.PlasmaShell"};
static const HostBus::Object kXfce = {"org.xfce.Xfconf", "/org/xfce/Xfconf", "org.xfce.Xfconf"};
static const char* const kXfceChannel = "xfce4-panel";
static const char* const kXfcePanel = "/panels/panel-1";

// Numbers of Xfce.
enum { kXfceHorizontal = 0, kXfceDeskbar = 2 };
enum { kXfceStays = 0, kXfceHides = 2 };

// Where each panel has what the Deskbar calls its location, by deskbar_location.
struct PlaceRow {
    const char* plasma_edge;
    const char* plasma_alignment;  // of a panel at the side: "left" is above
    int xfce_snap;
    uint32 xfce_mode;
};

static const PlaceRow kPlaces[] = {
    {"top", "left", 9, kXfceHorizontal}, {"bottom", "left", 10, kXfceHorizontal},
    {"left", "left", 6, kXfceDeskbar},   {"right", "left", 2, kXfceDeskbar},
    {"left", "right", 8, kXfceDeskbar},  {"right", "right", 4, kXfceDeskbar},
};
static_assert(std::size(kPlaces) == B_DESKBAR_RIGHT_BOTTOM + 1, "one row per location");

static std::atomic<bigtime_t> sDeafUntil{0};

// Plasma. The script prints the first panel's edge, alignment and hiding.

static const char* const kPlasmaBegin = "var all = panels(); if (all.length > 0) { var p = all[0];";
static const char* const kPlasmaEnd = " print(p.location + ' ' + p.alignment + ' ' + p.hiding); }";

static std::optional<PanelState> plasma_state(const std::string& printed)
{
    char edge[16] = "", alignment[16] = "", hiding[24] = "";
    if (sscanf(printed.c_str(), "%15s %15s %23s", edge, alignment, hiding) != 3)
        return std::nullopt;
    const bool level = strcmp(edge, "top") == 0 || strcmp(edge, "bottom") == 0;
    const bool above = strcmp(alignment, "right") != 0;
    PanelState state{"plasma " + printed.substr(0, printed.find('\n')), std::nullopt,
                     strcmp(hiding, "autohide") == 0};
    for (size_t i = 0; i < std::size(kPlaces); i++) {
        const PlaceRow& place = kPlaces[i];
        if (strcmp(place.plasma_edge, edge) == 0 &&
            (level || (strcmp(place.plasma_alignment, "left") == 0) == above))
            state.location = static_cast<deskbar_location>(i);
    }
    return state;
}

static std::optional<PanelState> run_plasma(HostBus& bus, const PanelChange& change)
{
    std::string script = kPlasmaBegin;
    if (change.location) {
        const PlaceRow& place = kPlaces[*change.location];
        script += std::string(" p.location = '") + place.plasma_edge + "'; p.alignment = '" +
                  place.plasma_alignment + "';";
    }
    if (change.auto_hide)
        script += std::string(" p.hiding = '") + (*change.auto_hide ? "autohide" : "none") + "';";
    script += kPlasmaEnd;
    const Held<GVariant> reply =
        bus.Call(kPlasma, "evaluateScript", g_variant_new("(s)", script.c_str()), "(s)");
    if (reply == nullptr)
        return std::nullopt;
    const char* printed = "";
    g_variant_get(reply.get(), "(&s)", &printed);
    return plasma_state(printed);
}

// Xfce.

static void set_xfce(HostBus& bus, const char* property, GVariant* value)
{
    const std::string path = std::string(kXfcePanel) + property;
    if (bus.Status() == B_TIMED_OUT) {
        const Held<GVariant> unused(g_variant_ref_sink(value));
        return;
    }
    bus.Call(kXfce, "SetProperty", g_variant_new("(ssv)", kXfceChannel, path.c_str(), value), "()");
}

// A number of the answer, which older versions keep with a sign; 0 without one.
static uint32 xfce_number(GVariant* properties, const char* property)
{
    const std::string path = std::string(kXfcePanel) + property;
    const Held<GVariant> value(g_variant_lookup_value(properties, path.c_str(), nullptr));
    if (value == nullptr)
        return 0;
    if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_UINT32))
        return g_variant_get_uint32(value.get());
    if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_INT32))
        return g_variant_get_int32(value.get());
    return 0;
}

// Where a panel of Xfce is: it snaps to edges, corners and the middles of edges.
static std::optional<deskbar_location> xfce_location(int snap, bool level)
{
    switch (snap) {
        case 9:
        case 11:
            return B_DESKBAR_TOP;
        case 10:
        case 12:
            return B_DESKBAR_BOTTOM;
        case 6:
            return level ? B_DESKBAR_TOP : B_DESKBAR_LEFT_TOP;
        case 2:
            return level ? B_DESKBAR_TOP : B_DESKBAR_RIGHT_TOP;
        case 8:
            return level ? B_DESKBAR_BOTTOM : B_DESKBAR_LEFT_BOTTOM;
        case 4:
            return level ? B_DESKBAR_BOTTOM : B_DESKBAR_RIGHT_BOTTOM;
        case 5:
        case 7:
            return B_DESKBAR_LEFT_TOP;
        case 1:
        case 3:
            return B_DESKBAR_RIGHT_TOP;
        default:
            return std::nullopt;
    }
}

static std::optional<PanelState> run_xfce(HostBus& bus, const PanelChange& change)
{
    if (change.location) {
        const PlaceRow& place = kPlaces[*change.location];
        const std::string position = "p=" + std::to_string(place.xfce_snap) + ";x=0;y=0";
        set_xfce(bus, "/mode", g_variant_new_uint32(place.xfce_mode));
        set_xfce(bus, "/position", g_variant_new_string(position.c_str()));
    }
    if (change.auto_hide)
        set_xfce(bus, "/autohide-behavior",
                 g_variant_new_uint32(*change.auto_hide ? kXfceHides : kXfceStays));
    if (bus.Status() == B_TIMED_OUT)
        return std::nullopt;
    const Held<GVariant> reply = bus.Call(
        kXfce, "GetAllProperties", g_variant_new("(ss)", kXfceChannel, kXfcePanel), "(a{sv})");
    if (reply == nullptr)
        return std::nullopt;
    const Held<GVariant> properties(g_variant_get_child_value(reply.get(), 0));
    const std::string path = std::string(kXfcePanel) + "/position";
    const char* position = "";
    int snap = 0;
    if (!g_variant_lookup(properties.get(), path.c_str(), "&s", &position) ||
        sscanf(position, "p=%d", &snap) != 1)
        return std::nullopt;
    const uint32 mode = xfce_number(properties.get(), "/mode");
    const uint32 hiding = xfce_number(properties.get(), "/autohide-behavior");
    return PanelState{
        "xfce " + std::to_string(snap) + " " + std::to_string(mode) + " " + std::to_string(hiding),
        xfce_location(snap, mode == kXfceHorizontal), hiding == kXfceHides};
}

namespace {

struct PanelRow {
    const HostBus::Object* object;
    std::optional<PanelState> (*run)(HostBus& bus, const PanelChange& change);
};

}  // namespace

static const PanelRow kPanels[] = {
    {&kPlasma, run_plasma},
    {&kXfce, run_xfce},
};

// The row of the panel that runs, null for none.
static const PanelRow* find_panel(HostBus& bus)
{
    for (const PanelRow& row : kPanels) {
        if (bus.Runs(row.object->service))
            return &row;
    }
    return nullptr;
}

bool is_panel_running()
{
    HostBus bus(HostBus::Kind::Session, deskbar_patience().panel);
    return find_panel(bus) != nullptr;
}

std::optional<PanelState> read_panel() { return change_panel({}); }

std::optional<PanelState> change_panel(const PanelChange& change)
{
    if (system_time() < sDeafUntil)
        return std::nullopt;
    HostBus bus(HostBus::Kind::Session, deskbar_patience().panel);
    const PanelRow* row = find_panel(bus);
    std::optional<PanelState> state;
    if (row != nullptr)
        state = row->run(bus, change);
    if (bus.Status() == B_TIMED_OUT)
        sDeafUntil = system_time() + kRespite;
    return state;
}

}  // namespace BPrivate
