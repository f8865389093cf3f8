#include "core/Identifier_p.h"

#include "core/NodeView_p.h"
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

QXmlStreamAttributes identifier(const QString &attributeName, int number)
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
        made.append(identifier(attributeName, int(made.size())));
    }
}

// The sets under the name that all stores use, made as far as they were asked for, some more at a
// time. Never destroyed: stores may be used while the process exits.
struct Made {
    QMutex mutex;
    QVector<QXmlStreamAttributes> sets;
};

Made &usual()
{
    static Made *const made = new Made;
    return *made;
}
} // namespace

// Never destroyed: stores may be used while the process exits.
const QString &vlm::usualIdentifier()
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

bool vlm::readIdentifier(const QXmlStreamAttributes &attributes, const QString &attributeName,
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

bool vlm::isUsualIdentifier(const QXmlStreamAttributes &attributes, int number)
{
    if (attributes.size() != 1 || number >= kMaxNumbered) {
        return false;
    }
    const QXmlStreamAttribute &only = attributes.first();
    return only.value().size() == kDigits && plainNumber(only.value().data(), kDigits) == number
           && only.qualifiedName() == usualIdentifier() && !only.isDefault();
}

QList<VLMC_XMLNode *> vlm::noNodes(int count)
{
    QList<VLMC_XMLNode *> nodes;
    nodes.reserve(qMax(count, 0));
    for (int i = 0; i < count; ++i) {
        nodes.append(nullptr);
    }
    return nodes;
}

QList<VLMC_XMLNode *> vlm::childrenById(const VLMC_XMLNode &parent, const QString &attributeName,
                                        int count)
{
    const QList<VLMC_XMLNode *> &children = NodeView::children(parent);
    if (count == children.size() && count <= kMaxNumbered
        && NodeView::isNumbered(parent, attributeName)) {
        return children;
    }
    QList<VLMC_XMLNode *> found = noNodes(count);
    for (VLMC_XMLNode *const child : children) {
        int number = 0;
        if (child && readIdentifier(NodeView::attributes(*child), attributeName, &number)
            && number >= 0 && number < count && !found.at(number)) {
            found[number] = child;
        }
    }
    return found;
}

QVector<QXmlStreamAttributes> vlm::identifiers(const QString &attributeName, int count)
{
    if (attributeName != usualIdentifier()) {
        QVector<QXmlStreamAttributes> fresh;
        extend(fresh, attributeName, count);
        return fresh;
    }
    const QMutexLocker locker(&usual().mutex);
    if (usual().sets.size() < count) {
        extend(usual().sets, attributeName, count + kAhead);
    }
    return usual().sets;
}
