#ifndef EXAMPLES_KIOSK_VISITS_H
#define EXAMPLES_KIOSK_VISITS_H

#include "bookmarks/VLMC_HistorySetting.h"

#include <QtCore/QList>
#include <QtCore/QUrl>

/// The visited pages, loaded once and saved with each visit.
class Visits
{
public:
    explicit Visits(const QString &directory);

    /// A page has been shown to the user.
    void add(const QUrl &url, const QString &title);
    /// The first visits of the list, at most this many.
    QList<VLMS_History> latest(int count) const;

private:
    QString m_directory;
};

#endif
