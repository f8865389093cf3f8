#ifndef TOOLS_VELMORA_PROFILE_PROFILE_RECOVERY_H
#define TOOLS_VELMORA_PROFILE_PROFILE_RECOVERY_H

#include "tools/velmora-profile/profile/Document.h"

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
    // A tag of the elements that are looked for.
    struct Tag {
        enum Kind { Start, End, Both };
        Kind kind;
        int start;
        int behind;
    };

    QList<Tag> tags() const;
    bool isTag(int start, const QByteArray &opening) const;
    Tag tagAt(int start) const;
    bool take(const Tag &tag, const Tag &next);
    void lose(int start, const QString &what, const QString &reason);

    QByteArray m_content;
    QByteArray m_name;
    QByteArray m_declaration;
    QList<VLMC_XMLNode *> m_kept;
    QList<LostEntry> m_lost;
    int m_counted; // bytes whose lines are counted
    int m_line;    // the line that they end in
};

// Whether the document is written in bytes that an entry's tags can be looked for in.
bool canBeScanned(const QByteArray &content);
} // namespace profile

#endif
