#include "core/Numbering_p.h"

#include "core/QEXC_TextCodec.h"

#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>

namespace
{
// Digits that fit an int whatever they are.
const int kSafeDigits = 9;
// The library's own numbers have this many.
const int kDigits = 3;
const int kAhead = 64;

QXmlStreamAttributes numberSet(const QString &attributeName, int number)
{
    QXmlStreamAttributes attributes;
    attributes.append(attributeName,
                      QString::fromLatin1("%1").arg(number, kDigits, 10, QLatin1Char('0')));
    return attributes;
}

void extend(QVector<QXmlStreamAttributes> &made, const QString &attributeName, int count)
{
    made.reserve(count);
    while (made.size() < count) {
        made.append(numberSet(attributeName, int(made.size())));
    }
}

// The sets under idName(), made as far as they were asked for, some more at a time. Never
// destroyed: stores may be used while the process exits.
struct SharedSets {
    QMutex mutex;
    QVector<QXmlStreamAttributes> sets;
};

SharedSets &sharedSets()
{
    static SharedSets *const made = new SharedSets;
    return *made;
}
} // namespace

// Never destroyed: stores may be used while the process exits.
const QString &vlm::idName()
{
    static const QString *const name = new QString(QEXC_TextCodec::fromSJIS("id"));
    return *name;
}

int vlm::plainNumber(const QChar *text, int size)
{
    if (size < 1 || size > kSafeDigits) {
        return -1;
    }
    int number = 0;
    for (int i = 0; i < size; ++i) {
        const int digit = text[i].unicode() - '0';
        if (digit < 0 || digit > 9) {
            return -1;
        }
        number = number * 10 + digit;
    }
    return number;
}

bool vlm::readNumber(const QXmlStreamAttributes &attributes, const QString &attributeName,
                     int *number)
{
    const int size = int(attributes.size());
    for (int i = 0; i < size; ++i) {
        const QXmlStreamAttribute &attribute = attributes.at(i);
        if (attribute.qualifiedName() != attributeName) {
            continue;
        }
        *number = plainNumber(attribute.value().data(), int(attribute.value().size()));
        if (*number >= 0) {
            return true;
        }
        bool ok = false;
        *number = attribute.value().toString().toInt(&ok, 10);
        return ok;
    }
    return false;
}

bool vlm::isNumberSet(const QXmlStreamAttributes &attributes, int number)
{
    if (attributes.size() != 1 || number >= kMaxNumbered) {
        return false;
    }
    const QXmlStreamAttribute &only = attributes.first();
    return only.value().size() == kDigits && plainNumber(only.value().data(), kDigits) == number
           && only.qualifiedName() == idName() && !only.isDefault();
}

QVector<QXmlStreamAttributes> vlm::numberSets(const QString &attributeName, int count)
{
    if (attributeName != idName()) {
        QVector<QXmlStreamAttributes> fresh;
        extend(fresh, attributeName, count);
        return fresh;
    }
    const QMutexLocker locker(&sharedSets().mutex);
    if (sharedSets().sets.size() < count) {
        extend(sharedSets().sets, attributeName, count + kAhead);
    }
    return sharedSets().sets;
}
