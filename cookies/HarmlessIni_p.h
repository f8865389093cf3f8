#ifndef HARMLESSINI_P_H
#define HARMLESSINI_P_H

#include <QtCore/QByteArray>

namespace vlm
{
// False for the content of a file that makes QSettings build whatever values it describes: a few
// bytes can claim lists without end or of any depth, and Qt trusts them. The texts do no harm
// inside a byte array.
bool isHarmlessIni(const QByteArray &file);
} // namespace vlm

#endif
