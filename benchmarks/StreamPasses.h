#ifndef STREAMPASSES_H
#define STREAMPASSES_H

#include "benchmarks/profile.h"

#include <QtCore/QString>
#include <QtCore/QVector>

// What loading and saving are measured against, on the same files.

/// A pass of QXmlStreamReader over a file that looks at every start tag, attribute and text and
/// keeps nothing.
class ReaderPass
{
public:
    static const int kCallsPerTurn = 1;

    void operator()();

protected:
    ReaderPass(void (*write)(const Profile &profile, int entries), const char *fileName,
               int entries);

private:
    Profile m_profile;
    QString m_path;
};

class HistoryReaderPass : public ReaderPass
{
public:
    explicit HistoryReaderPass(int entries);
};

class BookmarksReaderPass : public ReaderPass
{
public:
    explicit BookmarksReaderPass(int entries);
};

/// A pass of QXmlStreamWriter that emits the history's document into a file.
class HistoryWriterPass
{
public:
    static const int kCallsPerTurn = 1;

    explicit HistoryWriterPass(int entries);
    void operator()();

private:
    struct Visit {
        QString id;
        QString title;
        QString url;
        QString dateTime;
    };

    Profile m_profile;
    QVector<Visit> m_visits;
};

#endif
