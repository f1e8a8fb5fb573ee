#include "pet/NaturalOrder.h"

#include <QCollator>

namespace morvo::NaturalOrder {
namespace {

QCollator naturalCollator() {
  const QLocale system = QLocale::system();
  // The locale "C" compares bytes and knows no numbers.
  QCollator collator(system.language() == QLocale::C ? QLocale(QLocale::Chinese) : system);
  collator.setNumericMode(true);
  return collator;
}

} // namespace

bool less(const QString &a, const QString &b) {
  thread_local const QCollator collator = naturalCollator();
  const int order = collator.compare(a, b);
  return order != 0 ? order < 0 : a < b;
}

} // namespace morvo::NaturalOrder
