// The engine's headers behind those of Qt, whose macros are everywhere by then.

#include <QApplication>
#include <QOpenGLWidget>
#include <QPainter>

#include <orvex/orvex.h>
