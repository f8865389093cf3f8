#include "tests/differential/PlainStore.h"

#include <QtCore/QFileInfo>
#include <QtCore/QXmlStreamReader>
#include <QtCore/QXmlStreamWriter>

void attach(Element &parent, ElementPointer child, bool atFront)
{
    if (child->parent) {
        detach(*child->parent, child);
    }
    child->parent = &parent;
    if (atFront) {
        parent.children.prepend(child);
    } else {
        parent.children.append(child);
    }
}

void detach(Element &parent, ElementPointer child)
{
    child->parent = nullptr;
    parent.children.removeAll(child);
}

ElementPointer childOf(const ElementPointer &parent, const QString &name)
{
    if (!parent) {
        return ElementPointer();
    }
    for (int i = 0; i < parent->children.size(); ++i) {
        const ElementPointer child = parent->children.at(i);
        if (child && child->name == name) {
            return child;
        }
    }
    return ElementPointer();
}

ElementPointer childOf(const ElementPointer &parent, const char *name)
{
    return childOf(parent, textOf(name));
}

PlainAttributes oneAttribute(const char *name, const QString &value)
{
    PlainAttributes attributes;
    attributes.append(qMakePair(textOf(name), value));
    return attributes;
}

int utf8Bytes(const QString &text) { return int(text.toUtf8().size()); }

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
    if (path.isEmpty()) {
        print(2, "[VLMC_XMLSetting::load] Path is NULL or empty.");
        return;
    }
    print(3, "[VLMC_XMLSetting::loadBookmark] start");
    root = read(path);
    print(3, "[VLMC_XMLSetting::loadBookmark] end");
}

ElementPointer PlainStore::read(const QString &path)
{
    ElementPointer document;
    if (!files.contains(path)) {
        print(2, "VLMC_XMLReader::read file not exist!");
        return ElementPointer(new Element);
    }
    QXmlStreamReader reader(files.value(path));
    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        if (token == QXmlStreamReader::EndElement) {
            break;
        }
        if (token == QXmlStreamReader::StartElement && !document) {
            document = readElement(reader);
        }
    }
    return document ? document : ElementPointer(new Element);
}

ElementPointer PlainStore::readElement(QXmlStreamReader &reader)
{
    const ElementPointer element(new Element);
    element->name = reader.name().toString();
    const QXmlStreamAttributes attributes = reader.attributes();
    for (const QXmlStreamAttribute &attribute : attributes) {
        element->attributes.append(
            qMakePair(attribute.qualifiedName().toString(), attribute.value().toString()));
    }
    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        if (token == QXmlStreamReader::EndElement) {
            break;
        }
        if (token == QXmlStreamReader::Characters && !reader.isWhitespace()
            && element->text.isEmpty()) {
            element->textType = reader.isCDATA() ? 1 : 0;
            element->text = reader.text().toString();
        }
        if (token == QXmlStreamReader::StartElement) {
            attach(*element, readElement(reader), false);
        }
    }
    return element;
}

void PlainStore::save(const QString &path)
{
    if (path.isEmpty()) {
        print(2, "[VLMC_XMLSetting::save] Path is NULL or empty.");
        return;
    }
    print(3, "[VLMC_XMLSetting::save] start");
    if (root && !QFileInfo(QFileInfo(path).path()).isDir()) {
        print(2, "VLMC_XMLWriter::write file open error!");
    } else if (root) {
        QByteArray document;
        QXmlStreamWriter writer(&document);
        writer.setAutoFormatting(true);
        writer.writeStartDocument();
        writeElement(writer, root);
        writer.writeEndDocument();
        files[path] = document;
    }
    print(3, "[VLMC_XMLSetting::saveBookmark] end");
}

bool PlainStore::writeElement(QXmlStreamWriter &writer, const ElementPointer &element)
{
    if (!element) {
        print(1, "[VLMC_XMLReader::writeXMLNode] pc_Node NULL !!!.");
        return false;
    }
    writer.writeStartElement(element->name);
    for (int i = 0; i < element->attributes.size(); ++i) {
        writer.writeAttribute(element->attributes.at(i).first, element->attributes.at(i).second);
    }
    if (!element->text.isEmpty() && element->textType == 0) {
        writer.writeCharacters(element->text);
    }
    if (!element->text.isEmpty() && element->textType == 1) {
        writer.writeCDATA(element->text);
    }
    for (int i = 0; i < element->children.size(); ++i) {
        if (!writeElement(writer, element->children.at(i))) {
            return false;
        }
    }
    writer.writeEndElement();
    return true;
}

void PlainStore::createRoot() { root = ElementPointer(new Element); }

void PlainStore::deleteAllNodes()
{
    print(3, "[VLMC_XMLSetting::deleteAllXMLNode] 0x*");
    if (root) {
        createRoot();
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
            detach(*root, child);
        } else {
            print(1, "[VLMC_XMLSetting::deleteRootChildren] 0x* Why Pass??");
        }
    }
}

void PlainStore::setIds(const char *attributeName)
{
    for (int i = 0; i < childCount() && i < 999; ++i) {
        const ElementPointer child = root->children.at(i);
        if (!child) {
            print(1, "[VLMC_XMLSetting::setIDforChildren] 0x* Why Pass??");
            continue;
        }
        const QString number = QString::number(i).rightJustified(3, QLatin1Char('0'));
        child->attributes = oneAttribute(attributeName, number);
    }
}

void PlainStore::deleteById(int id, const char *attributeName)
{
    const ElementPointer found = byId(id, attributeName);
    if (found) {
        detach(*root, found);
    }
}

int PlainStore::count(const char *name, const char *attributeName)
{
    int counted = 0;
    for (int i = 0; i < childCount(); ++i) {
        const ElementPointer found = byId(i, attributeName);
        if (found && found->name == textOf(name)) {
            ++counted;
        }
    }
    return counted;
}

int PlainStore::childCount() const { return root ? int(root->children.size()) : 0; }

namespace
{
// The value of the first attribute of this name; empty without one.
QString valueOf(const Element &element, const QString &name)
{
    for (int i = 0; i < element.attributes.size(); ++i) {
        if (element.attributes.at(i).first == name) {
            return element.attributes.at(i).second;
        }
    }
    return QString();
}
} // namespace

ElementPointer PlainStore::byId(int id, const char *attributeName)
{
    const QString name = textOf(attributeName);
    for (int i = 0; i < childCount(); ++i) {
        const ElementPointer child = root->children.at(i);
        if (!child) {
            continue;
        }
        bool isNumber = false;
        const int number = valueOf(*child, name).toInt(&isNumber, 10);
        if (isNumber && number == id) {
            return child;
        }
    }
    return ElementPointer();
}

ElementPointer PlainStore::addChild(const ElementPointer &parent, const char *name,
                                    const QString &text, char textType,
                                    const PlainAttributes &attributes, bool atFront)
{
    const ElementPointer child(new Element);
    child->name = textOf(name);
    child->text = text;
    child->textType = textType;
    child->attributes = attributes;
    if (parent) {
        attach(*parent, child, atFront);
    }
    return child;
}

ElementPointer PlainStore::setElement(const ElementPointer &parent, const char *name,
                                      const QString &text, char textType,
                                      const PlainAttributes &attributes, bool atFront)
{
    if (!parent) {
        return ElementPointer();
    }
    const ElementPointer found = childOf(parent, name);
    if (!found) {
        return addChild(parent, name, text, textType, attributes, atFront);
    }
    found->textType = textType;
    found->text = text;
    return found;
}

ElementPointer PlainStore::add(const ElementPointer &parent, const char *name, const QString &text,
                               char textType, bool atFront)
{
    return addChild(parent, name, text, textType, PlainAttributes(), atFront);
}

void PlainStore::nameRoot(const char *name)
{
    if (root) {
        root->name = textOf(name);
        root->attributes = oneAttribute("docInfo", textOf("1.0"));
    }
}

QString PlainStore::clip(const QString &text, int maxBytes)
{
    if (maxBytes < 1) {
        return text;
    }
    const QByteArray bytes = text.toUtf8().left(maxBytes);
    QString clipped = QString::fromUtf8(bytes.constData());
    while (utf8Bytes(clipped) > maxBytes) {
        clipped.chop(1);
    }
    return clipped;
}

QDateTime PlainStore::timeOf(const QString &text, const char *form)
{
    const QString wanted = textOf(form);
    bool hasForm = text.size() == wanted.size();
    for (int i = 0; i < text.size() && hasForm; ++i) {
        const QChar character = text.at(i);
        hasForm = wanted.at(i).isLetter()
                      ? character >= QLatin1Char('0') && character <= QLatin1Char('9')
                      : character == wanted.at(i);
    }
    const QDate date(text.left(4).toInt(), text.mid(5, 2).toInt(), text.mid(8, 2).toInt());
    const QTime clock(text.mid(11, 2).toInt(), text.mid(14, 2).toInt(), text.mid(17, 2).toInt());
    return hasForm && date.isValid() && clock.isValid() ? QDateTime(date, clock) : QDateTime();
}
