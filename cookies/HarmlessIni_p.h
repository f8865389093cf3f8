#ifndef COOKIES_HARMLESSINI_P_H
#define COOKIES_HARMLESSINI_P_H

#include <QtCore/QByteArray>

namespace vlm
{
// False for the content of a file that may make QSettings build whatever values it describes, which
// it does with "@Variant(" and "@DateTime(": a few bytes can claim lists without end or of any
// depth, and Qt trusts them. In doubt false; never for a group as QSettings itself writes it around
// a byte array. With a group's name only that group counts, which is all that reading a value of it
// looks at; otherwise the whole file, which writing looks at.
bool isHarmlessIni(const QByteArray &file, const QByteArray &group = QByteArray());
} // namespace vlm

#endif
