#ifndef OVUI_BENCH_QT_COUNTERPARTS_H_
#define OVUI_BENCH_QT_COUNTERPARTS_H_

#include <QObject>
#include <QString>
#include <QVariant>
#include <string>
#include <vector>

namespace bench {

// Emits the Qt counterpart of a three-parameter change event.
class Sender : public QObject {
  Q_OBJECT
 signals:
  void changed(const QString& name, const QVariant& old_value, const QVariant& value);
};

// Does the receivers' shared trivial work: counts what it hears.
class Receiver : public QObject {
  Q_OBJECT
 public slots:
  void OnChanged(const QString&, const QVariant&, const QVariant&) { ++count; }

 public:
  long long count = 0;
};

// An int property with a NOTIFY signal, as a Qt programmer writes it.
class Counter : public QObject {
  Q_OBJECT
  Q_PROPERTY(int value READ value WRITE setValue NOTIFY valueChanged)

 public:
  int value() const { return this->v; }
  void setValue(int value) {
    if (value == this->v) return;
    this->v = value;
    emit valueChanged(value);
  }

 signals:
  void valueChanged(int value);

 private:
  int v = 0;
};

// Ten properties on one object, for the memory comparison.
class TenProperties : public QObject {
  Q_OBJECT
  Q_PROPERTY(int p0 MEMBER p0)
  Q_PROPERTY(int p1 MEMBER p1)
  Q_PROPERTY(int p2 MEMBER p2)
  Q_PROPERTY(int p3 MEMBER p3)
  Q_PROPERTY(int p4 MEMBER p4)
  Q_PROPERTY(double p5 MEMBER p5)
  Q_PROPERTY(double p6 MEMBER p6)
  Q_PROPERTY(QString p7 MEMBER p7)
  Q_PROPERTY(QString p8 MEMBER p8)
  Q_PROPERTY(bool p9 MEMBER p9)

 public:
  int p0 = 0, p1 = 0, p2 = 0, p3 = 0, p4 = 0;
  double p5 = 0, p6 = 0;
  QString p7, p8;
  bool p9 = false;
};

// The hand-written form's data: plain strings, and a signal that names the
// field that changed.
class FormData : public QObject {
  Q_OBJECT
 signals:
  void changed(int field);

 public:
  std::vector<std::string> fields;
};

}  // namespace bench

#endif  // OVUI_BENCH_QT_COUNTERPARTS_H_
