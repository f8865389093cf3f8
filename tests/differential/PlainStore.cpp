#include "tests/differential/PlainStore.h"

#include "core/VLMC_XMLNode.h"
#include "core/VLMC_XMLReader.h"

#include <QtCore/QFile>
#include <QtCore/QRegularExpression>

ElementPointer plainCopy(VLMC_XMLNode *node)
{
    if (!node) {
        return ElementPointer();
    }
    const ElementPointer copy(new Element);
    copy->name = node->getName();
    copy->text = node->getText();
    copy->textType = node->getTextType();
    const QXmlStreamAttributes attributes = node->getAttribute();
    for (const QXmlStreamAttribute &attribute : attributes) {
        copy->attributes.append(
            qMakePair(attribute.qualifiedName().toString(), attribute.value().toString()));
    }
    const QList<VLMC_XMLNode *> children = node->getXMLNodeChildren();
    for (VLMC_XMLNode *const child : children) {
        copy->children.append(plainCopy(child));
    }
    return copy;
}

QByteArray described(const ElementPointer &element)
{
    if (!element) {
        return "(none)\n";
    }
    QByteArray text = "<" + element->name.toUtf8();
    for (const QPair<QString, QString> &attribute : element->attributes) {
        text += ' ' + attribute.first.toUtf8() + "='" + attribute.second.toUtf8() + '\'';
    }
    text += "> " + QByteArray::number(element->textType) + " '" + element->text.toUtf8() + "'\n";
    for (const ElementPointer &child : element->children) {
        text += described(child);
    }
    return text + "</>\n";
}

QByteArray withoutAddresses(const QByteArray &log)
{
    return QString::fromUtf8(log)
        .replace(QRegularExpression(textOf("0x[0-9A-F]+")), textOf("0x*"))
        .toUtf8();
}

QByteArray PlainStore::takeLog()
{
    const QByteArray log = m_log;
    m_log.clear();
    return log;
}

void PlainStore::print(int level, const QByteArray &text)
{
    m_log += QByteArray::number(level) + ' ' + text + '\n';
}

void PlainStore::load(const QString &path)
{
    print(3, "[VLMC_XMLSetting::loadBookmark] start");
    QFile file(path);
    if (!file.exists()) {
        print(2, "VLMC_XMLReader::read file not exist!");
    }
    root = ElementPointer(new Element);
    if (file.open(QIODevice::ReadOnly)) {
        VLMC_XMLReader reader;
        VLMC_XMLNode *const node = reader.read(file);
        root = node ? plainCopy(node) : root;
        delete node;
    }
    print(3, "[VLMC_XMLSetting::loadBookmark] end");
}

void PlainStore::setIds()
{
    if (!root) {
        return;
    }
    for (int i = 0; i < childCount() && i < 999; ++i) {
        const ElementPointer child = root->children.at(i);
        if (!child) {
            print(1, "[VLMC_XMLSetting::setIDforChildren] 0x* Why Pass??");
            continue;
        }
        const QString id = QString::number(i).rightJustified(3, QLatin1Char('0'));
        child->attributes.clear();
        child->attributes.append(qMakePair(textOf("id"), id));
    }
}

void PlainStore::deleteById(int id)
{
    const ElementPointer found = byId(id);
    if (found) {
        root->children.removeAll(found);
    }
}

void PlainStore::deleteAllSetting()
{
    print(3, "[VLMC_XMLSetting::deleteRootChildren] 0x*");
    if (!root) {
        return;
    }
    const QList<ElementPointer> children = root->children;
    for (const ElementPointer &child : children) {
        if (child) {
            root->children.removeAll(child);
        } else {
            print(1, "[VLMC_XMLSetting::deleteRootChildren] 0x* Why Pass??");
        }
    }
}

int PlainStore::count(const QString &name)
{
    int counted = 0;
    for (int i = 0; i < childCount(); ++i) {
        const ElementPointer found = byId(i);
        if (found && found->name == name) {
            ++counted;
        }
    }
    return counted;
}

int PlainStore::childCount() const { return root ? int(root->children.size()) : 0; }

ElementPointer PlainStore::byId(int id)
{
    for (int i = 0; i < childCount(); ++i) {
        const ElementPointer child = root->children.at(i);
        int carried = 0;
        if (child && idOf(*child, &carried) && carried == id) {
            return child;
        }
    }
    return ElementPointer();
}

ElementPointer PlainStore::add(const ElementPointer &parent, const char *name, const QString &text,
                               char textType, bool atFront)
{
    const ElementPointer child(new Element);
    child->name = textOf(name);
    child->text = text;
    child->textType = textType;
    if (parent && atFront) {
        parent->children.prepend(child);
    } else if (parent) {
        parent->children.append(child);
    }
    return child;
}

void PlainStore::nameRoot(const char *name)
{
    if (!root) {
        return;
    }
    root->name = textOf(name);
    root->attributes.clear();
    root->attributes.append(qMakePair(textOf("docInfo"), textOf("1.0")));
}

ElementPointer childOf(const ElementPointer &parent, const char *name)
{
    if (!parent) {
        return ElementPointer();
    }
    for (const ElementPointer &child : parent->children) {
        if (child && child->name == textOf(name)) {
            return child;
        }
    }
    return ElementPointer();
}

bool idOf(const Element &element, int *id)
{
    for (const QPair<QString, QString> &attribute : element.attributes) {
        if (attribute.first == textOf("id")) {
            bool ok = false;
            *id = attribute.second.toInt(&ok);
            return ok;
        }
    }
    return false;
}

QString textOf(const char *utf8) { return QString::fromUtf8(utf8); }
