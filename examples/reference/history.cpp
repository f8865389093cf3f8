#include "bookmarks/VLMC_HistorySetting.h"
#include "examples/reference/Reference.h"

#include <QtCore/QFile>
#include <QtCore/QStringList>

namespace
{
const int kMaxVisits = 3;

void load(QString directory)
{
    //! [history: load]
    VLMC_HistorySetting *history = VLMC_HistorySetting::getInstance();
    history->loadHistory(&directory, kMaxVisits); // newest first
    //! [history: load]
}

void visit(QString url, const QString &title, const QDateTime &now)
{
    //! [history: visit]
    VLMC_HistorySetting *history = VLMC_HistorySetting::getInstance();
    VLMS_History entry;
    entry.title = title;
    entry.url = url;
    entry.dateTime = now; // local time, kept to the minute
    const int id = history->getHistoryIndex(url);
    if (id >= 0) {
        history->deleteHistory(id); // it comes back at the front
        history->setHistory(&entry);
    } else {
        history->updateHistory(&entry); // drops the oldest once the list is full
    }
    //! [history: visit]
}

void rename(QString url, QString title)
{
    //! [history: rename]
    // A title that comes after its page: the visit keeps its place.
    VLMC_HistorySetting *history = VLMC_HistorySetting::getInstance();
    const int id = history->getHistoryIndex(url);
    if (id >= 0) {
        history->changeHistoryTitle(id, title);
    }
    //! [history: rename]
}

QStringList titles()
{
    //! [history: list]
    VLMC_HistorySetting *history = VLMC_HistorySetting::getInstance();
    QStringList titles;
    const int count = history->getHistoryCnt();
    for (int id = 0; id < count; ++id) {
        VLMS_History entry;
        if (history->getHistory(id, &entry)) {
            titles.append(
                history->ClipString(entry.title, 24)); // bytes of UTF-8, for a narrow line
        }
    }
    //! [history: list]
    return titles;
}

void save(QString directory)
{
    //! [history: save]
    VLMC_HistorySetting::getInstance()->saveHistory(&directory, kMaxVisits);
    //! [history: save]
}
} // namespace

void exampleOfHistory(QString directory)
{
    load(directory);
    const QDateTime noon(QDate(2026, 3, 1), QTime(12, 0));
    visit(utf8("http://www.example.com/a"), utf8("A"), noon);
    visit(utf8("http://www.example.com/b"), utf8("B"), noon.addSecs(60));
    visit(utf8("http://www.example.com/a"), utf8("A"), noon.addSecs(120));
    EXPECT(titles() == QStringList() << utf8("A") << utf8("B"));
    visit(utf8("http://www.example.com/c"), utf8("C"), noon.addSecs(180));
    visit(utf8("http://www.example.com/d"), utf8("D"), noon.addSecs(240));
    EXPECT(titles() == QStringList() << utf8("D") << utf8("C") << utf8("A"));
    rename(utf8("http://www.example.com/c"), utf8("A title of more than 24 bytes"));
    EXPECT(titles().at(1) == utf8("A title of more than 24 "));
    save(directory);
    load(directory);
    EXPECT(titles().size() == kMaxVisits && titles().first() == utf8("D"));
}
