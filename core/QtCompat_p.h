#ifndef QTCOMPAT_P_H
#define QTCOMPAT_P_H

// What differs between Qt 4.8, 5.15 and 6 and has no spelling common to the three.

#include <QtCore/QtGlobal>

#if QT_VERSION >= 0x060000
#include <QtCore5Compat/QTextCodec>
#else
#include <QtCore/QTextCodec>
#endif

#endif
