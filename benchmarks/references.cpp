// What the stores are measured against, on the same files.

#include "benchmarks/references.h"

#include "benchmarks/measure.h"
#include "benchmarks/profile.h"

#include <QtCore/QBuffer>
#include <QtCore/QFile>
#include <QtCore/QXmlStreamReader>
#include <QtCore/QXmlStreamWriter>
#include <QtXml/QDomDocument>
#include <sqlite3.h>

namespace
{
void readerPasses(benchmark::State &state, const QString &path)
{
    for (auto _ : state) {
        const qint64 seen = readerPass(path);
        if (seen < 0) {
            state.SkipWithError("no file");
            return;
        }
        benchmark::DoNotOptimize(seen);
    }
}

void StreamReader_history(benchmark::State &state)
{
    const Profile profile;
    writeHistory(profile, entriesOf(state));
    readerPasses(state, profile.file("visit.xml"));
}
BENCHMARK(StreamReader_history)->Apply(allSizes);

void StreamReader_bookmarks(benchmark::State &state)
{
    const Profile profile;
    writeBookmarks(profile, entriesOf(state));
    readerPasses(state, profile.file("bookmark.xml"));
}
BENCHMARK(StreamReader_bookmarks)->Apply(allSizes);

void StreamWriter_history(benchmark::State &state)
{
    const Profile profile;
    QVector<QString> titles;
    QVector<QString> urls;
    QVector<QString> times;
    QVector<QString> ids;
    const int entries = entriesOf(state);
    for (int entry = 0; entry < entries; ++entry) {
        titles += titleOf(entry);
        urls += urlOf(entry);
        times += timeOf(entry).toString(QString::fromLatin1("yyyy/MM/dd hh:mm"));
        ids += QString::fromLatin1("%1").arg(entry, 3, 10, QLatin1Char('0'));
    }
    const QString pageInfo = QString::fromLatin1("pageInfo");
    const QString id = QString::fromLatin1("id");
    const QString title = QString::fromLatin1("title");
    const QString url = QString::fromLatin1("url");
    const QString dateTime = QString::fromLatin1("dateTime");
    for (auto _ : state) {
        QFile file(profile.file("visit.xml"));
        if (!file.open(QIODevice::WriteOnly)) {
            state.SkipWithError("no file");
            return;
        }
        QXmlStreamWriter xml(&file);
        xml.setAutoFormatting(true);
        xml.writeStartDocument();
        xml.writeStartElement(QString::fromLatin1("history"));
        xml.writeAttribute(QString::fromLatin1("docInfo"), QString::fromLatin1("1.0"));
        for (int entry = 0; entry < entries; ++entry) {
            xml.writeStartElement(pageInfo);
            xml.writeAttribute(id, ids.at(entry));
            xml.writeTextElement(title, titles.at(entry));
            xml.writeTextElement(url, urls.at(entry));
            xml.writeTextElement(dateTime, times.at(entry));
            xml.writeEndElement();
        }
        xml.writeEndDocument();
    }
}
BENCHMARK(StreamWriter_history)->Apply(allSizes);

QDomDocument domOf(const QString &path)
{
    QFile file(path);
    QDomDocument document;
    if (!file.open(QIODevice::ReadOnly) || !document.setContent(&file)) {
        qFatal("cannot read %s", qPrintable(path));
    }
    return document;
}

void DomDocument_load(benchmark::State &state)
{
    const Profile profile;
    writeHistory(profile, entriesOf(state));
    for (auto _ : state) {
        benchmark::DoNotOptimize(domOf(profile.file("visit.xml")));
    }
}
BENCHMARK(DomDocument_load)->Apply(allSizes);

void DomDocument_save(benchmark::State &state)
{
    const Profile profile;
    writeHistory(profile, entriesOf(state));
    const QDomDocument document = domOf(profile.file("visit.xml"));
    for (auto _ : state) {
        QFile file(profile.file("saved.xml"));
        if (!file.open(QIODevice::WriteOnly)) {
            state.SkipWithError("no file");
            return;
        }
        file.write(document.toByteArray(4));
    }
}
BENCHMARK(DomDocument_save)->Apply(allSizes);

class Database
{
public:
    explicit Database(const QString &path)
    {
        sqlite3_open(path.toUtf8().constData(), &m_database);
        run("PRAGMA synchronous = OFF");
        run("CREATE TABLE visits (title TEXT, url TEXT, dateTime TEXT)");
        run("CREATE INDEX byUrl ON visits (url)");
        m_find = prepared("SELECT rowid FROM visits WHERE url = ? ORDER BY rowid DESC LIMIT 1");
        m_insert = prepared("INSERT INTO visits VALUES (?, ?, ?)");
    }

    ~Database()
    {
        sqlite3_finalize(m_find);
        sqlite3_finalize(m_insert);
        sqlite3_close(m_database);
    }

    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;

    void run(const char *statement)
    {
        sqlite3_exec(m_database, statement, nullptr, nullptr, nullptr);
    }

    bool find(const QString &url)
    {
        bind(m_find, 1, url);
        const bool found = sqlite3_step(m_find) == SQLITE_ROW;
        sqlite3_reset(m_find);
        return found;
    }

    void insert(const QString &title, const QString &url, const QDateTime &time)
    {
        bind(m_insert, 1, title);
        bind(m_insert, 2, url);
        bind(m_insert, 3, time.toString(QString::fromLatin1("yyyy/MM/dd hh:mm")));
        if (sqlite3_step(m_insert) != SQLITE_DONE) {
            qFatal("insert failed");
        }
        sqlite3_reset(m_insert);
    }

private:
    sqlite3_stmt *prepared(const char *statement)
    {
        sqlite3_stmt *made = nullptr;
        if (sqlite3_prepare_v2(m_database, statement, -1, &made, nullptr) != SQLITE_OK) {
            qFatal("%s", sqlite3_errmsg(m_database));
        }
        return made;
    }

    static void bind(sqlite3_stmt *statement, int index, const QString &text)
    {
        const QByteArray bytes = text.toUtf8();
        sqlite3_bind_text(statement, index, bytes.constData(), int(bytes.size()), SQLITE_TRANSIENT);
    }

    sqlite3 *m_database = nullptr;
    sqlite3_stmt *m_find = nullptr;
    sqlite3_stmt *m_insert = nullptr;
};

// A visit to a page that is not in the list: one SELECT that misses, one INSERT, each in the
// transaction that it makes by itself, nothing synced.
void Sqlite_visit(benchmark::State &state)
{
    const Profile profile;
    Database database(profile.file("visits.db"));
    const int entries = entriesOf(state);
    database.run("BEGIN");
    for (int entry = 0; entry < entries; ++entry) {
        database.insert(titleOf(entry), urlOf(entry), timeOf(entry));
    }
    database.run("COMMIT");
    const QDateTime now = timeOf(-1);
    int visit = entries;
    for (auto _ : state) {
        const QString url = urlOf(visit);
        if (database.find(url)) {
            state.SkipWithError("found what is not there");
            return;
        }
        database.insert(titleOf(visit), url, now);
        ++visit;
    }
}
BENCHMARK(Sqlite_visit)->Apply(allSizes);
} // namespace

qint64 readerPass(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return -1;
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
    return seen;
}
