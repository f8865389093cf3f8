#ifndef SQLITEVISIT_H
#define SQLITEVISIT_H

#include "benchmarks/profile.h"

#include <QtCore/QDateTime>
#include <QtCore/QString>

struct sqlite3;
struct sqlite3_stmt;

/// A visit to a page that is not in the list, kept in SQLite: one SELECT that misses and one
/// INSERT, each in a transaction of its own, nothing synchronised.
class SqliteVisit
{
public:
    static const int kCallsPerTurn = 256;

    explicit SqliteVisit(int entries);
    ~SqliteVisit();
    SqliteVisit(const SqliteVisit &) = delete;
    SqliteVisit &operator=(const SqliteVisit &) = delete;

    void operator()();

private:
    void run(const char *statement);
    sqlite3_stmt *prepared(const char *statement);
    bool find(const QString &url);
    void insert(const QString &title, const QString &url, const QDateTime &time);

    Profile m_profile;
    sqlite3 *m_database;
    sqlite3_stmt *m_find;
    sqlite3_stmt *m_insert;
    int m_visited;
};

#endif
