#ifndef CORE_QTCOMPAT_P_H
#define CORE_QTCOMPAT_P_H

// What Qt 4.8, 5.15 and 6 spell in different ways, with no spelling common to all three.

#include <QtCore/QString>

#if QT_VERSION >= 0x060000
#include <QtCore5Compat/QTextCodec>
#else
#include <QtCore/QTextCodec>
#endif

namespace vlm
{
// Qt's own conversion of a C string: Latin-1, unless an application on Qt 4 has set a codec for it.
inline QString fromCString(const char *text)
{
#if QT_VERSION < 0x050000
    // cppcheck-suppress fromAsciiCalled
    return QString::fromAscii(text);
#else
    return QString::fromLatin1(text);
#endif
}
} // namespace vlm

#endif
