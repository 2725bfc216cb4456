#include "qt/push_button_ex.h"

#include <QStyle>
#include <QStyleOptionButton>
#include <QStylePainter>

QPushButtonEx::QPushButtonEx(QWidget* parent) : QPushButton(parent) {
  setCheckable(true);
}

QPushButtonEx::~QPushButtonEx() = default;

void QPushButtonEx::setArrow(bool arrow) {
  this->arrow = arrow;
  update();
}

void QPushButtonEx::setSwitch(bool is_switch) {
  this->is_switch = is_switch;
  update();
}

void QPushButtonEx::setSwitchOn(bool on) {
  this->switch_on = on;
  update();
}

void QPushButtonEx::setValueText(const QString& text) {
  this->value_text = text;
  update();
}

void QPushButtonEx::setValueIcon(const QIcon& icon) {
  this->value_icon = icon;
  update();
}

void QPushButtonEx::setSelectBackground(const QColor& color) {
  this->select_bk = color;
  update();
}

void QPushButtonEx::reset() {
  setText(QString());
  setIcon(QIcon());
  setToolTip(QString());
  this->arrow = false;
  this->is_switch = false;
  this->switch_on = false;
  this->value_text.clear();
  this->value_icon = QIcon();
  update();
}

void QPushButtonEx::paintEvent(QPaintEvent*) {
  QStylePainter p(this);
  QStyleOptionButton opt;
  initStyleOption(&opt);
  QStyle* st = style();
  p.drawControl(QStyle::CE_PushButtonBevel, opt);
  if (isChecked() && this->select_bk.isValid()) {
    const int fw = st->pixelMetric(QStyle::PM_DefaultFrameWidth, &opt, this) + 1;
    p.fillRect(rect().adjusted(fw, fw, -fw, -fw), this->select_bk);
  }

  const int spacing = qMax(4, st->pixelMetric(QStyle::PM_ButtonMargin, &opt, this));
  QRect area = st->subElementRect(QStyle::SE_PushButtonContents, &opt, this)
                   .adjusted(spacing, 0, -spacing, 0);
  const QIcon::Mode mode = isEnabled() ? QIcon::Normal : QIcon::Disabled;

  // Right edge first: the mark, then the value, so the text gets what is left.
  if (this->arrow || this->is_switch) {
    QStyleOptionButton mark;
    mark.initFrom(this);
    QStyle::PrimitiveElement element = QStyle::PE_IndicatorArrowRight;
    int w = st->pixelMetric(QStyle::PM_MenuButtonIndicator, &opt, this);
    int h = w;
    if (this->is_switch) {
      element = QStyle::PE_IndicatorCheckBox;
      mark.state |= this->switch_on ? QStyle::State_On : QStyle::State_Off;
      w = st->pixelMetric(QStyle::PM_IndicatorWidth, &mark, this);
      h = st->pixelMetric(QStyle::PM_IndicatorHeight, &mark, this);
    }
    mark.rect = QRect(area.right() - w + 1, area.center().y() - h / 2, w, h);
    p.drawPrimitive(element, mark);
    area.setRight(mark.rect.left() - spacing);
  }
  if (!this->value_text.isEmpty()) {
    // Fractional glyph widths: measured text may not fit its own advance.
    const int advance = fontMetrics().horizontalAdvance(this->value_text) + 2;
    const int w = qMin(advance, area.width() / 2);
    const QString shown = w < advance
                              ? fontMetrics().elidedText(this->value_text, Qt::ElideRight, w)
                              : this->value_text;
    const QRect r(area.right() - w + 1, area.top(), w, area.height());
    st->drawItemText(&p, r, Qt::AlignRight | Qt::AlignVCenter, opt.palette, isEnabled(), shown,
                     QPalette::ButtonText);
    area.setRight(r.left() - spacing);
  }
  if (!this->value_icon.isNull()) {
    const QSize s = iconSize();
    const QRect r(area.right() - s.width() + 1, area.center().y() - s.height() / 2, s.width(),
                  s.height());
    st->drawItemPixmap(&p, r, Qt::AlignCenter, this->value_icon.pixmap(s, mode));
    area.setRight(r.left() - spacing);
  }

  if (!icon().isNull()) {
    const QSize s = iconSize();
    const QRect r(area.left(), area.center().y() - s.height() / 2, s.width(), s.height());
    st->drawItemPixmap(&p, r, Qt::AlignCenter, icon().pixmap(s, mode));
    area.setLeft(r.right() + spacing);
  }
  const bool fits = fontMetrics().horizontalAdvance(text()) + 2 <= area.width();
  const QString shown =
      fits ? text() : fontMetrics().elidedText(text(), Qt::ElideRight, area.width());
  st->drawItemText(&p, area, Qt::AlignLeft | Qt::AlignVCenter, opt.palette, isEnabled(), shown,
                   QPalette::ButtonText);
}
