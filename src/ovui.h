#ifndef OVUI_OVUI_H_
#define OVUI_OVUI_H_

// Everything of ovui that needs no Qt: values, logging, helpers, threads,
// reference counting, events, models, view models and binding rules.

#include "base/file_utils.h"
#include "base/log.h"
#include "base/ref_obj.h"
#include "base/str_token.h"
#include "base/str_utils.h"
#include "base/thread.h"
#include "base/value.h"
#include "events/event.h"
#include "events/event_emitter.h"
#include "events/event_listener.h"
#include "mvvm/chart_data.h"
#include "mvvm/command_binding.h"
#include "mvvm/data_binding.h"
#include "mvvm/data_binding_parser.h"
#include "mvvm/eval.h"
#include "mvvm/icommand.h"
#include "mvvm/iconverter.h"
#include "mvvm/imodel.h"
#include "mvvm/ivalidator.h"
#include "mvvm/menu_data.h"
#include "mvvm/model.h"
#include "mvvm/navigator.h"
#include "mvvm/rule_parser.h"
#include "mvvm/view_model.h"
#include "mvvm/view_model_array.h"
#include "mvvm/view_model_array_ext.h"
#include "mvvm/view_model_htable.h"
#include "mvvm/view_model_item.h"
#include "mvvm/view_model_tree.h"
#include "mvvm/view_model_tree_ext.h"

#endif  // OVUI_OVUI_H_
