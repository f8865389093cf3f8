#include "benchmarks/StreamPasses.h"

#include "benchmarks/measure.h"

#include <QtCore/QFile>
#include <QtCore/QXmlStreamReader>
#include <QtCore/QXmlStreamWriter>

ReaderPass::ReaderPass(void (*write)(const Profile &profile, int entries), const char *fileName,
                       int entries)
    : m_path(m_profile.file(fileName))
{
    write(m_profile, entries);
}

void ReaderPass::operator()()
{
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("cannot read %s", qPrintable(m_path));
    }
    QXmlStreamReader xml(&file);
    qint64 seen = 0;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement()) {
            seen += xml.name().size() + xml.attributes().size();
        } else if (xml.isCharacters()) {
            seen += xml.text().size();
        }
    }
    benchmark::DoNotOptimize(seen);
}

HistoryReaderPass::HistoryReaderPass(int entries) : ReaderPass(writeHistory, "visit.xml", entries)
{
}

BookmarksReaderPass::BookmarksReaderPass(int entries)
    : ReaderPass(writeBookmarks, "bookmark.xml", entries)
{
}

HistoryWriterPass::HistoryWriterPass(int entries)
{
    for (int entry = 0; entry < entries; ++entry) {
        m_visits.append({QString::fromLatin1("%1").arg(entry, 3, 10, QLatin1Char('0')),
                         titleOf(entry), urlOf(entry),
                         timeOf(entry).toString(QString::fromLatin1("yyyy/MM/dd hh:mm"))});
    }
}

void HistoryWriterPass::operator()()
{
    const QString pageInfo = QString::fromLatin1("pageInfo");
    const QString id = QString::fromLatin1("id");
    const QString title = QString::fromLatin1("title");
    const QString url = QString::fromLatin1("url");
    const QString dateTime = QString::fromLatin1("dateTime");
    QFile file(m_profile.file("visit.xml"));
    if (!file.open(QIODevice::WriteOnly)) {
        qFatal("cannot write %s", qPrintable(file.fileName()));
    }
    QXmlStreamWriter xml(&file);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QString::fromLatin1("history"));
    xml.writeAttribute(QString::fromLatin1("docInfo"), QString::fromLatin1("1.0"));
    for (const Visit &visit : m_visits) {
        xml.writeStartElement(pageInfo);
        xml.writeAttribute(id, visit.id);
        xml.writeTextElement(title, visit.title);
        xml.writeTextElement(url, visit.url);
        xml.writeTextElement(dateTime, visit.dateTime);
        xml.writeEndElement();
    }
    xml.writeEndDocument();
}

BENCHMARK(alone<HistoryReaderPass>)->Name("StreamReader_history")->Apply(allSizes);
BENCHMARK(alone<BookmarksReaderPass>)->Name("StreamReader_bookmarks")->Apply(allSizes);
BENCHMARK(alone<HistoryWriterPass>)->Name("StreamWriter_history")->Apply(allSizes);
