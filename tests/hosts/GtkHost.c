/* A host with GTK: its timers and windows go on in the loop of the component's window, which runs GLib's main context. */
#include "tests/hosts/Shown.h"

#include <gtk/gtk.h>

static int ticks, drawn, result = 1;

static gboolean draw(GtkWidget* widget, cairo_t* cairo, gpointer unused)
{
    (void)widget, (void)unused;
    cairo_set_source_rgb(cairo, 0.9, 0.5, 0.2);
    cairo_rectangle(cairo, 20 + ticks % 10 * 20, 50, 15, 15);
    cairo_fill(cairo);
    ++drawn;
    return FALSE;
}

static gboolean tick(gpointer window)
{
    ++ticks;
    gtk_widget_queue_draw(GTK_WIDGET(window));
    return G_SOURCE_CONTINUE;
}

static gboolean use(gpointer unused)
{
    (void)unused;
    const int ticksBefore = ticks, drawnBefore = drawn;
    showMainWindow();
    result = told(ticks - ticksBefore, drawn - drawnBefore);
    gtk_main_quit();
    return G_SOURCE_REMOVE;
}

int main(int argc, char** argv)
{
    gtk_init(&argc, &argv);
    GtkWidget* window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_window_set_title(GTK_WINDOW(window), "Gestionale GTK");
    gtk_window_set_default_size(GTK_WINDOW(window), 240, 120);
    g_signal_connect(window, "draw", G_CALLBACK(draw), NULL);
    gtk_widget_set_app_paintable(window, TRUE);
    gtk_widget_show_all(window);
    g_timeout_add(50, tick, window);
    g_timeout_add(300, use, NULL);
    gtk_main();
    return result;
}
