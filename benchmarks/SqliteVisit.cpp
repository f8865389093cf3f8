#include "benchmarks/SqliteVisit.h"

#include "benchmarks/measure.h"

#include <sqlite3.h>

namespace
{
void bind(sqlite3_stmt *statement, int index, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    sqlite3_bind_text(statement, index, bytes.constData(), int(bytes.size()), SQLITE_TRANSIENT);
}

BENCHMARK(alone<SqliteVisit>)->Name("Sqlite_visit")->Apply(allSizes);
} // namespace

SqliteVisit::SqliteVisit(int entries)
    : m_database(nullptr), m_find(nullptr), m_insert(nullptr), m_visited(entries)
{
    sqlite3_open(m_profile.file("visits.db").toUtf8().constData(), &m_database);
    run("PRAGMA synchronous = OFF");
    run("CREATE TABLE visits (title TEXT, url TEXT, dateTime TEXT)");
    run("CREATE INDEX byUrl ON visits (url)");
    m_find = prepared("SELECT rowid FROM visits WHERE url = ? ORDER BY rowid DESC LIMIT 1");
    m_insert = prepared("INSERT INTO visits VALUES (?, ?, ?)");
    run("BEGIN");
    for (int entry = 0; entry < entries; ++entry) {
        insert(titleOf(entry), urlOf(entry), timeOf(entry));
    }
    run("COMMIT");
}

SqliteVisit::~SqliteVisit()
{
    sqlite3_finalize(m_find);
    sqlite3_finalize(m_insert);
    sqlite3_close(m_database);
}

void SqliteVisit::operator()()
{
    const QString url = urlOf(m_visited);
    if (find(url)) {
        qFatal("found what is not there");
    }
    insert(titleOf(m_visited), url, timeOf(-1));
    ++m_visited;
}

void SqliteVisit::run(const char *statement)
{
    if (sqlite3_exec(m_database, statement, nullptr, nullptr, nullptr) != SQLITE_OK) {
        qFatal("%s", sqlite3_errmsg(m_database));
    }
}

sqlite3_stmt *SqliteVisit::prepared(const char *statement)
{
    sqlite3_stmt *made = nullptr;
    if (sqlite3_prepare_v2(m_database, statement, -1, &made, nullptr) != SQLITE_OK) {
        qFatal("%s", sqlite3_errmsg(m_database));
    }
    return made;
}

bool SqliteVisit::find(const QString &url)
{
    bind(m_find, 1, url);
    const bool found = sqlite3_step(m_find) == SQLITE_ROW;
    sqlite3_reset(m_find);
    return found;
}

void SqliteVisit::insert(const QString &title, const QString &url, const QDateTime &time)
{
    bind(m_insert, 1, title);
    bind(m_insert, 2, url);
    bind(m_insert, 3, time.toString(QString::fromLatin1("yyyy/MM/dd hh:mm")));
    if (sqlite3_step(m_insert) != SQLITE_DONE) {
        qFatal("insert failed");
    }
    sqlite3_reset(m_insert);
}
