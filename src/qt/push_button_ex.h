#ifndef OVUI_QT_PUSH_BUTTON_EX_H_
#define OVUI_QT_PUSH_BUTTON_EX_H_

#include <QColor>
#include <QIcon>
#include <QPushButton>
#include <QString>

// A checkable push button laid out like a menu entry: its icon and text on
// the left; on the right a value (text and/or icon), then an on/off mark for
// switches or an arrow for entries that open something. While checked it is
// filled with the selection background when one is set.
//
// Everything is drawn with the style's own primitives (bevel, check
// indicator, arrow, item text), so the button looks native under every
// style and follows the style sheet of its window.
class QPushButtonEx : public QPushButton {
  Q_OBJECT

 public:
  explicit QPushButtonEx(QWidget* parent = nullptr);
  ~QPushButtonEx() override;

  bool hasArrow() const { return this->arrow; }
  void setArrow(bool arrow);

  // A switch shows the style's check indicator, on or off.
  bool isSwitch() const { return this->is_switch; }
  void setSwitch(bool is_switch);
  bool isSwitchOn() const { return this->switch_on; }
  void setSwitchOn(bool on);

  QString valueText() const { return this->value_text; }
  void setValueText(const QString& text);
  QIcon valueIcon() const { return this->value_icon; }
  void setValueIcon(const QIcon& icon);

  // An invalid colour leaves the checked look to the style.
  QColor selectBackground() const { return this->select_bk; }
  void setSelectBackground(const QColor& color);

  // Back to a plain button: no text, icon, value, mark or arrow.
  void reset();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  bool arrow = false;
  bool is_switch = false;
  bool switch_on = false;
  QString value_text;
  QIcon value_icon;
  QColor select_bk;
};

#endif  // OVUI_QT_PUSH_BUTTON_EX_H_
