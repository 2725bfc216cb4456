#ifndef OVUI_EXAMPLES_FORM_DEMO_FORM_LOADER_H_
#define OVUI_EXAMPLES_FORM_DEMO_FORM_LOADER_H_

#include <QWidget>
#include <memory>

// Loads form_demo.ui from the resources, ready to bind; null when it cannot.
//
// Two things a plain QUiLoader does not do:
// - it makes the library's ChartViewEx, CMenuContainer and CCheckComboBox,
//   which the .ui names as custom widgets;
// - a widget that the .ui places inside a QTableView with "binding.header" =
//   "ext" and marks with the dynamic property "header.section" (a column
//   number) goes under that column's title in the table's QHeaderViewExt.
//   The binding walk then binds it like any other widget.
std::unique_ptr<QWidget> LoadForm();

#endif  // OVUI_EXAMPLES_FORM_DEMO_FORM_LOADER_H_
