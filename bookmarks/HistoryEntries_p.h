#ifndef BOOKMARKS_HISTORYENTRIES_P_H
#define BOOKMARKS_HISTORYENTRIES_P_H

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QVector>

class VLMC_XMLNode;
class VLMC_XMLSetting;

// What a visit is made of, and the order of visits.
namespace vlm
{
namespace history
{
// A stored visit and its place in time, ClockOrder::NoTime for a time that cannot be read.
struct Visit {
    VLMC_XMLNode *entry;
    qint64 clock;
};

// The parts of a stored visit.
struct Texts {
    QString title;
    QString url;
    QString time;
};

// The visits among the entries, some of which may be null; those of the same time as they were.
QVector<Visit> visitsNewestFirst(const QList<VLMC_XMLNode *> &entries);

// True for an entry that setHistory would build in the same way, apart from its id.
bool isPlain(const Visit &visit);

// A time that cannot be read is erased.
Texts textsOf(const Visit &visit);
QVector<Texts> textsOf(const QVector<Visit> &visits);

// The first of the entries, some of which may be null, with this url, or -1. An entry without a url
// is compared by the url of the one before it.
int indexOfUrl(const QList<VLMC_XMLNode *> &entries, const QString &url);

// A new entry at the front or at the end of the list; null if there is no memory for a node.
VLMC_XMLNode *addVisit(VLMC_XMLSetting &store, const Texts &visit, char place);
} // namespace history
} // namespace vlm

#endif
