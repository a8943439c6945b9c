#pragma once

#include <QLocale>
#include <QString>

namespace tessaly {

/// A number as people read it: 65,527.
inline QString grouped(qint64 number) {
    return QLocale(QLocale::English, QLocale::UnitedStates).toString(number);
}

}  // namespace tessaly
