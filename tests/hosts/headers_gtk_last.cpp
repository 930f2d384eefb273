// The engine's headers before those of GTK and X11.

#include <orvex/orvex.h>

#include <gtk/gtk.h>

#include <gdk/gdkx.h>
