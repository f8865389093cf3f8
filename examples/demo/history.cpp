#include "examples/demo/demo.h"

#include "bookmarks/VLMC_HistorySetting.h"

namespace
{
const int kMaxVisits = 50;

// What a browser does when a page has been loaded.
void visit(QString directory, const char *url, const char *title)
{
    VLMC_HistorySetting *const history = VLMC_HistorySetting::getInstance();
    VLMS_History entry;
    entry.title = text(title);
    entry.url = text(url);
    entry.dateTime = QDateTime::currentDateTime();
    const int id = history->getHistoryIndex(entry.url);
    if (id >= 0) {
        history->changeHistory(id, entry); // keeps its place until the next load
    } else {
        history->updateHistory(&entry); // to the front; a full list loses its last one
    }
    history->saveHistory(&directory, kMaxVisits);
    say(text("%1 is %2 page.").arg(entry.url).arg(text(id >= 0 ? "a known" : "a new")));
    expect(history->getHistoryIndex(entry.url) >= 0, "the visit is found");
}
} // namespace

void showHistory(const QString &profile)
{
    heading("History: visits in visit.xml, the newest first");
    QString directory = profile;
    VLMC_HistorySetting *const history = VLMC_HistorySetting::getInstance();
    history->loadHistory(&directory, kMaxVisits);
    say(text("The history begins with %1 visits.").arg(history->getHistoryCnt()));

    visit(directory, "http://www.example.com/", "Welcome");
    visit(directory, "http://www.example.com/news", "News");
    visit(directory, "http://www.example.com/", "Welcome back");

    history->loadHistory(&directory, kMaxVisits);
    for (int id = 0; id < history->getHistoryCnt(); ++id) {
        VLMS_History entry;
        expect(history->getHistory(id, &entry), "the visit is read");
        say(text("%1: \"%2\", %3").arg(id).arg(entry.title).arg(entry.url));
    }
    QString page = text("http://www.example.com/");
    VLMS_History welcome;
    expect(history->getHistory(history->getHistoryIndex(page), &welcome), "the page is known");
    expect(welcome.title == text("Welcome back"), "the visit has its new title");
    printFile(directory + text("visit.xml"));
}
