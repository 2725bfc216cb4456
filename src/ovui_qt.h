#ifndef OVUI_OVUI_QT_H_
#define OVUI_OVUI_QT_H_

// ovui with its Qt side: everything of ovui.h plus the widget layer.

#include "ovui.h"
#include "qt/binding_context.h"
#include "qt/chart_binding.h"
#include "qt/chart_view_ex.h"
#include "qt/check_combobox.h"
#include "qt/data_binding_item.h"
#include "qt/dialog_handlers.h"
#include "qt/header_view_ext.h"
#include "qt/htable_model.h"
#include "qt/item_columns.h"
#include "qt/list_model.h"
#include "qt/menu_container.h"
#include "qt/menu_container_dialog.h"
#include "qt/menu_container_frame.h"
#include "qt/message_box_ex.h"
#include "qt/pop_menu.h"
#include "qt/push_button_ex.h"
#include "qt/table_model.h"
#include "qt/timer.h"
#include "qt/translator.h"
#include "qt/tree_model.h"
#include "qt/widget_binder.h"

#endif  // OVUI_OVUI_QT_H_
