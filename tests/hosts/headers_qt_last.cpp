// The engine's headers before those of Qt.

#include <orvex/orvex.h>

#include <QApplication>
#include <QOpenGLWidget>
#include <QPainter>
