#ifndef OVUI_OVUI_QT_H_
#define OVUI_OVUI_QT_H_

// ovui with its Qt side: everything of ovui.h plus the widget binding layer.

#include "ovui.h"

#endif  // OVUI_OVUI_QT_H_
