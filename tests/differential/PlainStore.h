#ifndef PLAINSTORE_H
#define PLAINSTORE_H

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QPair>
#include <QtCore/QSharedPointer>
#include <QtCore/QString>

class VLMC_XMLNode;

/**
 * The rules of the stores' base, followed one sentence after the other, with a search wherever the
 * rule says search. Slow and obviously right: what the library does faster has to agree with it.
 */
struct Element {
    QString name;
    QString text;
    char textType = 0;
    QList<QPair<QString, QString>> attributes;
    QList<QSharedPointer<Element>> children;
};
typedef QSharedPointer<Element> ElementPointer;

/// The tree under a node of the library.
ElementPointer plainCopy(VLMC_XMLNode *node);

/// Everything of a tree as text, for comparison; "(none)" without one.
QByteArray described(const ElementPointer &element);

/// Log lines without the addresses in them.
QByteArray withoutAddresses(const QByteArray &log);

class PlainStore
{
public:
    ElementPointer root;

    /// What was logged since the last call, as loggedText() has it.
    QByteArray takeLog();

    void load(const QString &path);
    void setIds();
    void deleteById(int id);
    void deleteAllSetting();
    int count(const QString &name);
    int childCount() const;
    ElementPointer byId(int id);
    /// Null attaches to nothing, as without a root.
    ElementPointer add(const ElementPointer &parent, const char *name, const QString &text,
                       char textType, bool atFront);
    void nameRoot(const char *name);

protected:
    void print(int level, const QByteArray &text);

private:
    QByteArray m_log;
};

/// The first child of this name, or null.
ElementPointer childOf(const ElementPointer &parent, const char *name);

/// The value of the first attribute of this name as a number; false when it is none.
bool idOf(const Element &element, int *id);

QString textOf(const char *utf8);

#endif
