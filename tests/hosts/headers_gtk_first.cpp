// The engine's headers behind those of GTK and X11, whose macros are everywhere by then.

#include <gtk/gtk.h>

#include <gdk/gdkx.h>

#include <orvex/orvex.h>
