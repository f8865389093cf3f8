#ifndef TOOLS_VELMORA_PROFILE_PROFILE_DOCUMENT_H
#define TOOLS_VELMORA_PROFILE_PROFILE_DOCUMENT_H

#include "core/VLMC_XMLNode.h"
#include "tools/velmora-profile/profile/DocumentType.h"

#include <QtCore/QList>
#include <QtCore/QScopedPointer>
#include <QtCore/QString>

// The documents of a profile as they stand in their files, without a store in between: stores hide
// what is over a limit, complete, sort and renumber.
namespace profile
{
struct Damage {
    qint64 line;
    qint64 column;
    QString reason;
    int entriesBefore; // whole ones
};

class Document
{
public:
    enum State { Missing, Unreadable, Empty, Damaged, Whole };

    // Reads the document in the directory, which ends with "/".
    Document(DocumentKind kind, const QString &directory);
    // Reads it from a file of another name.
    Document(const DocumentType &type, const QString &path);
    // Takes it from bytes that were read there: those of a pipe can be read only once.
    Document(const DocumentType &type, const QString &path, const QByteArray &content);
    Document(const Document &) = delete;
    Document &operator=(const Document &) = delete;

    const DocumentType &type() const;
    QString path() const;
    State state() const;
    const Damage &damage() const;
    QByteArray content() const;
    QString rootName() const;
    // The root's whole children: those before the damage in a damaged document. They are this
    // object's.
    const QList<VLMC_XMLNode *> &children() const;
    // Those of them that carry the name of an entry, or all preferences in their groups.
    QList<VLMC_XMLNode *> entries() const;

private:
    void read();
    void parse();

    DocumentType m_type;
    QString m_path;
    State m_state;
    Damage m_damage;
    QByteArray m_content;
    QScopedPointer<VLMC_XMLNode> m_root;
    QList<VLMC_XMLNode *> m_children;
};

QString stateName(Document::State state);

// "damaged at line 3, column 7: Expected ..., 2 entries before it".
QString damageText(const Damage &damage);
} // namespace profile

#endif
