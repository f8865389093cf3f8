#ifndef PLAINSTORE_H
#define PLAINSTORE_H

#include "tests/differential/Random.h"

#include <QtCore/QByteArray>
#include <QtCore/QDateTime>
#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QPair>
#include <QtCore/QSharedPointer>
#include <QtCore/QString>

class QXmlStreamReader;
class QXmlStreamWriter;

struct Element;
/// Null where a list of children holds null.
typedef QSharedPointer<Element> ElementPointer;
typedef QList<QPair<QString, QString>> PlainAttributes;

/// An element of a document, as plain data.
struct Element {
    QString name;
    QString text;
    char textType = 0;
    PlainAttributes attributes;
    Element *parent = nullptr;
    QList<ElementPointer> children;
};

/// Puts the child to the end or to the front of the parent's children, out of the parent that it
/// had.
void attach(Element &parent, ElementPointer child, bool atFront);
/// The child has no parent afterwards, whether or not it was in this one's list.
void detach(Element &parent, ElementPointer child);

/// The first child of this name, or null; null for a null parent.
ElementPointer childOf(const ElementPointer &parent, const QString &name);
ElementPointer childOf(const ElementPointer &parent, const char *name);

PlainAttributes oneAttribute(const char *name, const QString &value);

int utf8Bytes(const QString &text);

/**
 * What the stores' base does, said as plainly as it goes: each operation looks at every element
 * that it may concern. Slow and obviously right: what the library does faster has to agree with it.
 *
 * Files are plain bytes by path, so that a store and its plain counterpart can use the same paths.
 */
class PlainStore
{
public:
    ElementPointer root;
    QMap<QString, QByteArray> files;

    /// What was logged since the last call, one "<level> <text>" per line; addresses are "0x*".
    QByteArray takeLog();

    void load(const QString &path);
    void save(const QString &path);
    void createRoot();
    void deleteAllNodes();
    void deleteAllSetting();
    void setIds(const char *attributeName = "id");
    void deleteById(int id, const char *attributeName = "id");
    int count(const char *name, const char *attributeName = "id");
    int childCount() const;
    ElementPointer byId(int id, const char *attributeName = "id");
    /// The new child has no parent when there is none to have.
    ElementPointer addChild(const ElementPointer &parent, const char *name, const QString &text,
                            char textType, const PlainAttributes &attributes, bool atFront);
    ElementPointer setElement(const ElementPointer &parent, const char *name, const QString &text,
                              char textType, const PlainAttributes &attributes, bool atFront);

protected:
    void print(int level, const QByteArray &text);
    void nameRoot(const char *name);
    ElementPointer add(const ElementPointer &parent, const char *name, const QString &text,
                       char textType = 0, bool atFront = false);
    static QString clip(const QString &text, int maxBytes);
    /// The local time that a text gives in the form "yyyy/MM/dd hh:mm" or "yyyy/MM/dd hh:mm:ss",
    /// each letter of which stands for one digit; null when the text has another form.
    static QDateTime timeOf(const QString &text, const char *form);

private:
    ElementPointer read(const QString &path);
    ElementPointer readElement(QXmlStreamReader &reader);
    bool writeElement(QXmlStreamWriter &writer, const ElementPointer &element);

    QByteArray m_log;
};

#endif
