#ifndef IDENTIFIER_P_H
#define IDENTIFIER_P_H

#include <QtCore/QString>
#include <QtCore/QXmlStreamAttributes>

namespace vlm
{
// At most this many children of a root get a number: "000" to "998".
const int kMaxNumbered = 999;

// The number in the first attribute of this qualified name, read as by QString::toInt in base 10.
// False, and number untouched, when there is none or when it is no number.
bool readIdentifier(const QXmlStreamAttributes &attributes, const QString &attributeName,
                    int *number);

// The attribute value of a number, as by "%03d".
QString identifierText(int number);
} // namespace vlm

#endif
