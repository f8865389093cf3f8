#ifndef COOKIES_HARMLESSINI_P_H
#define COOKIES_HARMLESSINI_P_H

#include <QtCore/QByteArray>

namespace vlm
{
// False for the content of a file that may make QSettings build whatever values it describes with
// "@Variant(" and "@DateTime(": a few bytes can claim lists of any length or depth, and Qt believes
// them. False in case of doubt, but never for a group as QSettings itself writes it around a byte
// array. With a group's name only that group counts, which is all that reading one of its values
// looks at; without one the whole file counts, which is what writing looks at.
bool isHarmlessIni(const QByteArray &file, const QByteArray &group = QByteArray());

// The byte array under this key of this group, as QSettings would read it, and nothing else of the
// file is built. Null where there is none, and where group or key are spelled with escapes.
QByteArray byteArrayOfIni(const QByteArray &file, const QByteArray &group, const QByteArray &key);
} // namespace vlm

#endif
