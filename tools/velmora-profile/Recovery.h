#ifndef RECOVERY_H
#define RECOVERY_H

#include "tools/velmora-profile/Document.h"

namespace profile
{
struct LostEntry {
    int line;
    QString what; // as far as it can be read
    QString reason;
};

// What a damaged document still holds: every element of the name that is whole, before the damage
// and behind it.
class Recovery
{
public:
    Recovery(const QByteArray &content, const QString &elementName);
    ~Recovery();
    Recovery(const Recovery &) = delete;
    Recovery &operator=(const Recovery &) = delete;

    // In the order of the document. They are this object's until they get a parent.
    const QList<VLMC_XMLNode *> &kept() const;
    const QList<LostEntry> &lost() const;

private:
    void scan();
    int take(int start);
    int skip(int start) const;
    bool isTag(int start, const QByteArray &opening) const;
    int nextStart(int from) const;
    int endOf(int start) const;
    void lose(int start, const QString &what, const QString &reason);

    QByteArray m_content;
    QByteArray m_name;
    QByteArray m_declaration;
    QList<VLMC_XMLNode *> m_kept;
    QList<LostEntry> m_lost;
};

// Whether the document is written in bytes that an entry's tags can be looked for in.
bool canBeScanned(const QByteArray &content);
} // namespace profile

#endif
