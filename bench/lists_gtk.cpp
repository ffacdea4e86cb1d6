// The same rows in GTK's tree view, in a window that is never shown: of the lists that others
// measure, in the same run. GTK needs an X display for that, as under xvfb-run.

#include "lists_rows.h"

#include <gtk/gtk.h>

#include <stdlib.h>

namespace {

// False without a display.
bool start_gtk()
{
    static const bool started = [] {
        if (gDisplay.empty())
            return false;
        setenv("DISPLAY", gDisplay.c_str(), 1);
        setenv("NO_AT_BRIDGE", "1", 1);
        gdk_set_allowed_backends("x11");
        const bool has_display = gtk_init_check(nullptr, nullptr) != FALSE;
        unsetenv("DISPLAY");
        return has_display;
    }();
    return started;
}

// Shows forty rows of a model, which it owns.
class View {
public:
    explicit View(GtkTreeModel* owned) : model(owned)
    {
        view = GTK_TREE_VIEW(gtk_tree_view_new_with_model(model));
        GtkTreeViewColumn* column = gtk_tree_view_column_new_with_attributes(
            "rows", gtk_cell_renderer_text_new(), "text", 0, nullptr);
        gtk_tree_view_column_set_sizing(column, GTK_TREE_VIEW_COLUMN_FIXED);
        gtk_tree_view_append_column(view, column);
        gtk_tree_view_set_headers_visible(view, FALSE);
        gtk_tree_view_set_fixed_height_mode(view, TRUE);
        gtk_tree_selection_set_mode(gtk_tree_view_get_selection(view), GTK_SELECTION_MULTIPLE);
        fWindow = gtk_offscreen_window_new();
        gtk_window_set_default_size(GTK_WINDOW(fWindow), 390, 40 * 18);
        GtkWidget* scroller = gtk_scrolled_window_new(nullptr, nullptr);
        gtk_container_add(GTK_CONTAINER(fWindow), scroller);
        gtk_container_add(GTK_CONTAINER(scroller), GTK_WIDGET(view));
        gtk_widget_show_all(fWindow);
        Drawn();
    }
    ~View()
    {
        gtk_widget_destroy(fWindow);
        g_object_unref(model);
        Drawn();
    }
    void Drawn()
    {
        while (gtk_events_pending())
            gtk_main_iteration();
    }

    GtkTreeModel* const model;
    GtkTreeView* view;

private:
    GtkWidget* fWindow;
};

class Flat : public View {
public:
    Flat() : View(GTK_TREE_MODEL(gtk_list_store_new(1, G_TYPE_STRING))) {}
    GtkListStore* Store() const { return GTK_LIST_STORE(model); }
    void Fill()
    {
        for (const std::string& text : texts())
            gtk_list_store_insert_with_values(Store(), nullptr, -1, 0, text.c_str(), -1);
    }
};

class Outline : public View {
public:
    Outline() : View(GTK_TREE_MODEL(gtk_tree_store_new(1, G_TYPE_STRING))) {}
    // Top rows with a thousand each.
    void FillTops()
    {
        GtkTreeStore* store = GTK_TREE_STORE(model);
        std::vector<GtkTreeIter> tops(kTops);
        for (int i = 0; i < kTops; i++)
            gtk_tree_store_insert_with_values(store, &tops[i], nullptr, -1, 0, texts()[i].c_str(),
                                              -1);
        for (int i = 0; i < kRows; i++)
            gtk_tree_store_insert_with_values(store, nullptr, &tops[i / (kRows / kTops)], -1, 0,
                                              texts()[i].c_str(), -1);
    }
};

template <class List>
void fill(List& list)
{
    list.Fill();
}
template <class List>
void leave_empty(List&)
{
}

template <class List, class Fill, class Act>
void once_if_shown(benchmark::State& state, double count, Fill fill, Act act)
{
    if (start_gtk())
        once<List>(state, count, fill, act);
    else
        state.SkipWithError("no display");
}

void GtkAddRows(benchmark::State& state)
{
    once_if_shown<Flat>(state, kRows, leave_empty<Flat>, fill<Flat>);
}
ROW(GtkAddRows);

void GtkAddRowsBelow(benchmark::State& state)
{
    once_if_shown<Outline>(state, kRows, leave_empty<Outline>,
                           [](Outline& list) { list.FillTops(); });
}
ROW(GtkAddRowsBelow);

void GtkSort(benchmark::State& state)
{
    once_if_shown<Flat>(state, 1, fill<Flat>, [](Flat& list) {
        gtk_tree_sortable_set_sort_column_id(GTK_TREE_SORTABLE(list.model), 0, GTK_SORT_ASCENDING);
    });
}
ROW(GtkSort);

void GtkRemoveAtTheFront(benchmark::State& state)
{
    once_if_shown<Flat>(state, kRows, fill<Flat>, [](Flat& list) {
        GtkTreeIter row;
        while (gtk_tree_model_get_iter_first(list.model, &row))
            gtk_list_store_remove(list.Store(), &row);
    });
}
ROW(GtkRemoveAtTheFront);

void GtkGetAtRandom(benchmark::State& state)
{
    if (!start_gtk())
        return state.SkipWithError("no display");
    Flat list;
    list.Fill();
    uint32_t seed = 1;
    for (auto _ : state) {
        seed = seed * 1664525 + 1013904223;
        GtkTreeIter row;
        gchar* text = nullptr;
        if (gtk_tree_model_iter_nth_child(list.model, &row, nullptr, int((seed >> 8) % kRows)))
            gtk_tree_model_get(list.model, &row, 0, &text, -1);
        benchmark::DoNotOptimize(text);
        g_free(text);
    }
}
BENCHMARK(GtkGetAtRandom);

void GtkSelectEverything(benchmark::State& state)
{
    once_if_shown<Flat>(state, 1, fill<Flat>, [](Flat& list) {
        gtk_tree_selection_select_all(gtk_tree_view_get_selection(list.view));
    });
}
ROW(GtkSelectEverything);

void GtkExpandEverything(benchmark::State& state)
{
    once_if_shown<Outline>(
        state, 1, [](Outline& list) { list.FillTops(); },
        [](Outline& list) { gtk_tree_view_expand_all(list.view); });
}
ROW(GtkExpandEverything);

void GtkClear(benchmark::State& state)
{
    once_if_shown<Flat>(state, 1, fill<Flat>,
                        [](Flat& list) { gtk_list_store_clear(list.Store()); });
}
ROW(GtkClear);

}  // namespace
