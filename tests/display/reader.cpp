// A screen reader of the tests: speaks to the accessibility bus as one does, and prints what it is
// told. Commands name things by what the bus says of them.
//
//   tree                        a line for each thing of the program "told": role|name|states|value
//   of NAME [WHAT...]           that line of one, with its "range", "text", "actions", "frame",
//                               "description", "rows" or "parent"
//   do NAME ACTION              press, toggle, increase, decrease, focus (by its component)
//   set NAME VALUE
//   insert NAME PLACE TEXT | delete NAME FROM TO | select NAME FROM TO | caret NAME PLACE
//   hold NAME                   finds it, prints "held", reads a line, says what it is then
//   watch                       prints events as they come: kind|detail|name
//
// Waits up to 20 seconds for the program, for the thing, and for an answer.

#include <gio/gio.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

static const int kPatience_ms = 20000;
static const char* const kRegistry = "org.a11y.atspi.Registry";
static const char* const kRootPath = "/org/a11y/atspi/accessible/root";

static GDBusConnection* sBus;

struct Thing {
    std::string bus, path;
    bool operator==(const Thing&) const = default;
};

[[noreturn]] static void fail(const std::string& why)
{
    fprintf(stderr, "reader: %s\n", why.c_str());
    exit(1);
}

// Null for an error.
static GVariant* call(GDBusConnection* bus, const Thing& thing, const char* interface,
                      const char* method, GVariant* arguments)
{
    GError* error = nullptr;
    GVariant* result = g_dbus_connection_call_sync(
        bus, thing.bus.c_str(), thing.path.c_str(), interface, method, arguments, nullptr,
        G_DBUS_CALL_FLAGS_NONE, kPatience_ms, nullptr, &error);
    if (error != nullptr) {
        if (getenv("READER_TRACE") != nullptr)
            fprintf(stderr, "%s.%s: %s\n", interface, method, error->message);
        g_error_free(error);
    }
    return result;
}

static GVariant* ask(const Thing& thing, const char* part, const char* method,
                     GVariant* arguments = nullptr)
{
    return call(sBus, thing, (std::string("org.a11y.atspi.") + part).c_str(), method, arguments);
}

// A property's value; null if there is none.
static GVariant* property(const Thing& thing, const char* part, const char* name)
{
    const std::string interface = std::string("org.a11y.atspi.") + part;
    GVariant* boxed = call(sBus, thing, "org.freedesktop.DBus.Properties", "Get",
                           g_variant_new("(ss)", interface.c_str(), name));
    if (boxed == nullptr)
        return nullptr;
    GVariant* value = nullptr;
    g_variant_get(boxed, "(v)", &value);
    return value;
}

static std::string text_in(GVariant* value, const char* format)
{
    const char* text = "";
    if (value != nullptr)
        g_variant_get(value, format, &text);
    return text;
}

static std::string name_of(const Thing& thing)
{
    return text_in(property(thing, "Accessible", "Name"), "&s");
}

static std::string role_of(const Thing& thing)
{
    const guint32 kPassword = 40;  // Qt gives it the name of any text
    guint32 role = 0;
    if (GVariant* number = ask(thing, "Accessible", "GetRole"))
        g_variant_get(number, "(u)", &role);
    return role == kPassword ? "password text"
                             : text_in(ask(thing, "Accessible", "GetRoleName"), "(&s)");
}

static std::vector<Thing> children_of(const Thing& thing)
{
    std::vector<Thing> children;
    GVariant* list = ask(thing, "Accessible", "GetChildren");
    if (list == nullptr)
        return children;
    GVariantIter* iterator;
    const char *bus, *path;
    g_variant_get(list, "(a(so))", &iterator);
    while (g_variant_iter_next(iterator, "(&s&o)", &bus, &path))
        children.push_back({bus, path});
    return children;
}

static std::string states_of(const Thing& thing)
{
    static const struct {
        int bit;
        const char* name;
    } kStates[] = {{1, "active"},     {4, "checked"},     {7, "editable"},    {8, "enabled"},
                   {9, "expandable"}, {10, "expanded"},   {11, "focusable"},  {12, "focused"},
                   {16, "modal"},     {17, "multi-line"}, {22, "selectable"}, {23, "selected"},
                   {25, "showing"},   {30, "visible"},    {32, "mixed"},      {39, "default"},
                   {43, "read-only"}};
    GVariant* words = ask(thing, "Accessible", "GetState");
    std::string names;
    if (words == nullptr)
        return names;
    GVariantIter* iterator;
    guint32 word;
    guint64 bits = 0;
    int shift = 0;
    g_variant_get(words, "(au)", &iterator);
    while (g_variant_iter_next(iterator, "u", &word)) {
        bits |= guint64(word) << shift;
        shift += 32;
    }
    for (const auto& state : kStates) {
        if ((bits >> state.bit & 1) != 0)
            names += (names.empty() ? "" : ",") + std::string(state.name);
    }
    return names;
}

static std::string number(double value)
{
    char text[32];
    snprintf(text, sizeof(text), "%g", value);
    return text;
}

static std::string number_of(const Thing& thing, const char* name)
{
    GVariant* value = property(thing, "Value", name);
    return value != nullptr ? number(g_variant_get_double(value)) : "";
}

static std::string line_of(const Thing& thing)
{
    return role_of(thing) + "|" + name_of(thing) + "|" + states_of(thing) + "|" +
           number_of(thing, "CurrentValue");
}

static void print_tree(const Thing& thing, int depth)
{
    printf("%*s%s\n", 2 * depth, "", line_of(thing).c_str());
    std::vector<Thing> children = children_of(thing);
    if (children.size() > 20)
        children.resize(3);
    for (const Thing& child : children)
        print_tree(child, depth + 1);
}

// Until it is true, with the bus looked after.
static bool wait_for(const std::function<bool()>& claim)
{
    const gint64 end = g_get_monotonic_time() + gint64(kPatience_ms) * 1000;
    while (!claim()) {
        if (g_get_monotonic_time() > end)
            return false;
        g_usleep(20000);
        while (g_main_context_iteration(nullptr, FALSE)) {
        }
    }
    return true;
}

static bool find_program(Thing* program)
{
    for (const Thing& each : children_of({kRegistry, kRootPath})) {
        if (name_of(each).find("told") != std::string::npos) {
            *program = each;
            return true;
        }
    }
    return false;
}

static std::string range_of(const Thing& thing)
{
    return number_of(thing, "MinimumValue") + ".." + number_of(thing, "MaximumValue") + "/" +
           number_of(thing, "MinimumIncrement");
}

static bool is_meant(const Thing& thing, const std::string& name)
{
    if (name.compare(0, 5, "role:") == 0)
        return role_of(thing) == name.substr(5);
    if (name.compare(0, 8, "showing:") == 0)
        return name_of(thing) == name.substr(8) &&
               states_of(thing).find("showing") != std::string::npos;
    return name.compare(0, 6, "range:") == 0 ? range_of(thing) == name.substr(6)
                                             : name_of(thing) == name;
}

// By its name, also behind "showing:" if that is so, by "role:" and the name of its role, or by
// "range:" and that. Of long lists only the
// first are looked at.
static bool find(const Thing& inside, const std::string& name, Thing* found)
{
    std::vector<Thing> children = children_of(inside);
    if (children.size() > 50)
        children.resize(50);
    for (const Thing& child : children) {
        if (is_meant(child, name)) {
            *found = child;
            return true;
        }
        if (find(child, name, found))
            return true;
    }
    return false;
}

static Thing thing_called(const std::string& name)
{
    Thing program, thing;
    if (!wait_for([&] { return find_program(&program); }))
        fail("no program");
    if (!wait_for([&] { return find(program, name, &thing); }))
        fail("no \"" + name + "\"");
    return thing;
}

static int int_property(const Thing& thing, const char* part, const char* name)
{
    GVariant* value = property(thing, part, name);
    return value != nullptr ? g_variant_get_int32(value) : -1;
}

// The whole text, the caret, and the selection if there is one.
static std::string text_of(const Thing& thing)
{
    std::string line = text_in(ask(thing, "Text", "GetText", g_variant_new("(ii)", 0, -1)), "(&s)");
    line += " caret " + std::to_string(int_property(thing, "Text", "CaretOffset"));
    GVariant* count = ask(thing, "Text", "GetNSelections");
    gint32 selections = 0, start = 0, end = 0;
    if (count != nullptr)
        g_variant_get(count, "(i)", &selections);
    if (selections == 0)
        return line;
    g_variant_get(ask(thing, "Text", "GetSelection", g_variant_new("(i)", 0)), "(ii)", &start,
                  &end);
    return line + " selected " + std::to_string(start) + ".." + std::to_string(end);
}

static std::vector<std::string> actions_of(const Thing& thing)
{
    std::vector<std::string> names;
    GVariant* list = ask(thing, "Action", "GetActions");
    if (list == nullptr)
        return names;
    GVariantIter* iterator;
    const char *name, *description, *key;
    g_variant_get(list, "(a(sss))", &iterator);
    while (g_variant_iter_next(iterator, "(&s&s&s)", &name, &description, &key)) {
        std::string lower = name;
        std::transform(lower.begin(), lower.end(), lower.begin(), tolower);
        names.push_back(lower);
    }
    return names;
}

static std::string frame_of(const Thing& thing)
{
    GVariant* extents = ask(thing, "Component", "GetExtents", g_variant_new("(u)", 0));
    gint32 x = 0, y = 0, width = 0, height = 0;
    if (extents != nullptr)
        g_variant_get(extents, "((iiii))", &x, &y, &width, &height);
    return std::to_string(x) + "," + std::to_string(y) + " " + std::to_string(width) + "x" +
           std::to_string(height);
}

static std::string parent_of(const Thing& thing)
{
    const char *bus = "", *path = "";
    GVariant* parent = property(thing, "Accessible", "Parent");
    if (parent != nullptr)
        g_variant_get(parent, "(&s&o)", &bus, &path);
    const Thing found{bus, path};
    return role_of(found) + ":" + name_of(found);
}

static std::string said_of(const Thing& thing, const std::string& what)
{
    if (what == "range")
        return range_of(thing);
    if (what == "text")
        return text_of(thing);
    if (what == "frame")
        return frame_of(thing);
    if (what == "parent")
        return parent_of(thing);
    if (what == "rows")
        return std::to_string(int_property(thing, "Accessible", "ChildCount"));
    if (what == "description")
        return text_in(property(thing, "Accessible", "Description"), "&s");
    std::string all;
    for (const std::string& action : actions_of(thing))
        all += (all.empty() ? "" : ",") + action;
    return all;
}

static void act(const Thing& thing, const std::string& action)
{
    if (action == "focus") {
        if (ask(thing, "Component", "GrabFocus") == nullptr)
            fail("no focus");
        return;
    }
    const std::vector<std::string> names = actions_of(thing);
    const auto found = std::find(names.begin(), names.end(), action);
    if (found == names.end())
        fail("no action \"" + action + "\" but " + said_of(thing, "actions"));
    if (ask(thing, "Action", "DoAction", g_variant_new("(i)", int(found - names.begin()))) ==
        nullptr)
        fail("refused");
}

static void set_value(const Thing& thing, double value)
{
    if (call(sBus, thing, "org.freedesktop.DBus.Properties", "Set",
             g_variant_new("(ssv)", "org.a11y.atspi.Value", "CurrentValue",
                           g_variant_new_double(value))) == nullptr)
        fail("refused");
}

static void edit(const std::string& command, const Thing& thing, char** words)
{
    const int first = atoi(words[0]);
    GVariant* done;
    if (command == "insert")
        done = ask(thing, "EditableText", "InsertText",
                   g_variant_new("(isi)", first, words[1], int(strlen(words[1]))));
    else if (command == "delete")
        done =
            ask(thing, "EditableText", "DeleteText", g_variant_new("(ii)", first, atoi(words[1])));
    else if (command == "select")
        done = ask(thing, "Text", "AddSelection", g_variant_new("(ii)", first, atoi(words[1])));
    else
        done = ask(thing, "Text", "SetCaretOffset", g_variant_new("(i)", first));
    if (done == nullptr)
        fail("refused");
}

static void hold(const Thing& thing)
{
    char line[64];
    puts("held");
    while (fgets(line, sizeof(line), stdin) != nullptr) {
        ask(thing, "Action", "DoAction", g_variant_new("(i)", 0));
        ask(thing, "Component", "GrabFocus");
        printf("is %s\n", line_of(thing).c_str());
    }
}

static void print_event(GDBusConnection*, const char* sender, const char* path,
                        const char* interface, const char* signal, GVariant* arguments, void*)
{
    const char* kind = "";
    GVariant* value = nullptr;
    gint32 first = 0, second = 0;
    if (g_variant_n_children(arguments) < 4)
        return;
    g_variant_get_child(arguments, 0, "&s", &kind);
    g_variant_get_child(arguments, 1, "i", &first);
    g_variant_get_child(arguments, 2, "i", &second);
    g_variant_get_child(arguments, 3, "v", &value);
    const char* const short_name = strrchr(interface, '.') + 1;
    char* const shown = g_variant_print(value, FALSE);
    const std::string detail = std::string(short_name) + ":" + signal + ":" + kind + "|" +
                               std::to_string(first) + "," + std::to_string(second) + "," + shown;
    // Its name, unless it is gone.
    printf("%s|%s\n", detail.c_str(), name_of({sender, path}).c_str());
    g_free(shown);
}

static void watch()
{
    g_dbus_connection_signal_subscribe(sBus, nullptr, "org.a11y.atspi.Event.Object", nullptr,
                                       nullptr, nullptr, G_DBUS_SIGNAL_FLAGS_NONE, print_event,
                                       nullptr, nullptr);
    g_dbus_connection_signal_subscribe(sBus, nullptr, "org.a11y.atspi.Event.Focus", nullptr,
                                       nullptr, nullptr, G_DBUS_SIGNAL_FLAGS_NONE, print_event,
                                       nullptr, nullptr);
    const Thing registry{kRegistry, "/org/a11y/atspi/registry"};
    for (const char* event : {"object:", "focus:", "window:"}) {
        GVariant* done =
            ask(registry, "Registry", "RegisterEvent", g_variant_new("(sass)", event, nullptr, ""));
        if (done == nullptr)
            done = ask(registry, "Registry", "RegisterEvent", g_variant_new("(s)", event));
        if (done == nullptr)
            fail("cannot register");
    }
    puts("watching");
    for (;;)
        g_main_context_iteration(nullptr, TRUE);
}

static GDBusConnection* connect_to(const char* address)
{
    return g_dbus_connection_new_for_address_sync(
        address,
        GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                             G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr);
}

int main(int count, char** words)
{
    setvbuf(stdout, nullptr, _IOLBF, 0);
    if (count < 2)
        return 2;
    GDBusConnection* const session = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    if (session == nullptr)
        fail("no session bus");
    const Thing starter{"org.a11y.Bus", "/org/a11y/bus"};
    const std::string command = words[1];
    GVariant* address = call(session, starter, "org.a11y.Bus", "GetAddress", nullptr);
    sBus = address != nullptr ? connect_to(text_in(address, "(&s)").c_str()) : nullptr;
    if (sBus == nullptr)
        fail("no accessibility bus");
    if (command == "watch")
        watch();
    Thing program;
    if (command == "tree") {
        if (!wait_for([&] { return find_program(&program); }))
            fail("no program");
        print_tree(program, 0);
        return 0;
    }
    if (count < 3)
        return 2;
    const Thing thing = thing_called(words[2]);
    if (command == "of") {
        std::string line = line_of(thing);
        for (int i = 3; i < count; i++)
            line += "|" + said_of(thing, words[i]);
        puts(line.c_str());
    } else if (command == "hold") {
        hold(thing);
    } else if (command == "do" && count == 4) {
        act(thing, words[3]);
    } else if (command == "set" && count == 4) {
        set_value(thing, atof(words[3]));
    } else if (count >= 4) {
        edit(command, thing, words + 3);
    }
    return 0;
}
