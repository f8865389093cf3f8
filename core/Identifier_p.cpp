#include "core/Identifier_p.h"

bool vlm::readIdentifier(const QXmlStreamAttributes &attributes, const QString &attributeName,
                         int *number)
{
    bool ok = false;
    const int value = attributes.value(attributeName).toString().toInt(&ok, 10);
    if (ok) {
        *number = value;
    }
    return ok;
}

QString vlm::identifierText(int number)
{
    return QString::fromLatin1("%1").arg(number, 3, 10, QLatin1Char('0'));
}
