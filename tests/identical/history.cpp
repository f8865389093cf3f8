#include "tests/identical/Script.h"

#include "bookmarks/VLMC_HistorySetting.h"

namespace
{
const char kFile[] = "visit.xml";
const char kDocument[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                         "<history docInfo=\"1.0\">\n"
                         "    <pageInfo id=\"000\">\n"
                         "        <title>News \xE3\x81\x82</title>\n"
                         "        <url>http://www.example.com/news?a=1&amp;b=2</url>\n"
                         "        <dateTime>2026/02/28 18:30</dateTime>\n"
                         "    </pageInfo>\n"
                         "    <pageInfo id=\"001\">\n"
                         "        <title>Welcome</title>\n"
                         "        <url>http://www.example.com/</url>\n"
                         "        <dateTime>2026/03/01 09:05</dateTime>\n"
                         "    </pageInfo>\n"
                         "</history>\n";
const int kMax = 10;

// Beside those that can be read: what is not padded, too long, from another calendar, or skipped or
// repeated by the clock.
const char *const kTimes[] = {
    "",
    "abc",
    "2026/03/29 01:59",
    "2026/03/29 02:00",
    "2026/03/29 02:30",
    "2026/03/29 03:00",
    "2026/10/25 01:59",
    "2026/10/25 02:30",
    "2026/10/25 03:00",
    "2026/02/29 12:00",
    "2024/02/29 12:00",
    "2026/13/01 12:00",
    "2026/00/01 12:00",
    "2026/01/32 12:00",
    "2026/01/02 24:00",
    "2026/01/02 23:60",
    "2026/1/02 03:04",
    "2026/01/2 03:04",
    "2026/01/02 3:04",
    "2026/01/02 03:4",
    "2026/01/02  3:04",
    "2026/01/02 03:04:05",
    " 2026/01/02 03:04",
    "2026/01/02 03:04 ",
    "2026/01/02T03:04",
    "2026-01-02 03:04",
    "26/01/02 03:04",
    "+026/01/02 03:04",
    "2026/+1/02 03:04",
    "999/12/31 23:59",
    "0000/01/01 00:00",
    "0001/01/01 00:00",
    "0999/12/31 23:59",
    "1582/10/04 00:00",
    "1582/10/15 00:00",
    "1899/12/31 23:59",
    "1900/01/01 00:00",
    "1969/12/31 23:59",
    "1970/01/01 00:00",
    "2037/12/31 23:59",
    "2038/01/19 03:14",
    "2038/01/19 03:15",
    "2038/07/01 12:00",
    "2100/03/28 02:30",
    "9999/12/31 23:59",
    "10000/01/01 00:00",
    "\xEF\xBC\x92\xEF\xBC\x90\xEF\xBC\x92\xEF\xBC\x96/01/02 03:04",
};

VLMC_HistorySetting &store() { return *VLMC_HistorySetting::getInstance(); }

QByteArray shown(const QDateTime &time)
{
    return time.isValid() ? shown(time.toString(utf8("yyyy/MM/dd hh:mm:ss"))) : "invalid";
}

void showVisit(int id)
{
    VLMS_History visit = {utf8("kept"), utf8("kept"), QDateTime()};
    const bool found = store().getHistory(id, &visit);
    line("visit " + ::shown(id) + ": " + ::shown(found) + ' ' + ::shown(visit.title) + ' '
         + ::shown(visit.url) + ' ' + shown(visit.dateTime));
}

void showVisits()
{
    line("visits", store().getHistoryCnt());
    for (int id = -1; id <= store().getHistoryCnt(); ++id) {
        showVisit(id);
    }
}

void loadAndSave(QString &folder)
{
    store().loadHistory(&folder, kMax);
    showVisits();
    store().saveHistory(&folder, kMax);
}

void changeOne(Draw &draw)
{
    const int id = draw.id(store().getHistoryCnt());
    VLMS_History visit = {draw.text(), draw.text(), draw.time()};
    switch (draw.below(8)) {
    case 0:
        return store().setHistory(&visit);
    case 1:
        return store().changeHistory(id, visit);
    case 2:
        return store().changeHistoryTitle(id, visit.title);
    case 3:
        return store().deleteHistory(id);
    case 4:
        return store().sortHistory();
    default:
        return store().updateHistory(&visit);
    }
}

void takeStep(Draw &draw)
{
    changeOne(draw);
    QString url = draw.utf8Text();
    line("visits", store().getHistoryCnt());
    line("index", store().getHistoryIndex(url));
    showVisit(draw.id(store().getHistoryCnt()));
    line("clipped", store().ClipString(url, draw.below(300) - 1));
}

void playRefused()
{
    const Part part("history, what is refused");
    QString empty;
    QString url = utf8("http://www.example.com/");
    VLMC_HistorySetting unloaded;
    VLMS_History visit = {url, url, QDateTime()};
    line("visits", unloaded.getHistoryCnt());
    line("found", unloaded.getHistory(0, &visit));
    line("index", unloaded.getHistoryIndex(url));
    unloaded.setHistory(&visit);
    unloaded.updateHistory(&visit);
    unloaded.deleteHistory(0);
    unloaded.changeHistory(0, visit);
    QString folder = newFolder();
    unloaded.saveHistory(&folder, kMax);
    unloaded.loadHistory(nullptr, kMax);
    unloaded.loadHistory(&empty, kMax);
    unloaded.loadHistory(&folder, 0);
    unloaded.loadHistory(&folder, -1);
    unloaded.saveHistory(nullptr, kMax);
    unloaded.saveHistory(&empty, kMax);
    unloaded.saveHistory(&folder, 0);
    unloaded.loadHistory(&folder, 1);
    unloaded.setHistory(nullptr);
    unloaded.updateHistory(nullptr);
    line("found", unloaded.getHistory(0, nullptr));
    showFolder(folder);
    showLog();
}

void playTimes()
{
    for (const char *const time : kTimes) {
        const Part part("history, time '" + QByteArray(time) + '\'');
        QString folder = newFolder();
        QByteArray document = kDocument;
        writeFile(folder + utf8(kFile), document.replace("2026/02/28 18:30", time));
        loadAndSave(folder);
        showFolder(folder);
        showLog();
    }
}

// All of them in one list, against each other.
void playOrder()
{
    const Part part("history, order of times");
    QString folder = newFolder();
    QByteArray document = "<history>";
    for (const char *const time : kTimes) {
        document += "<pageInfo><title>" + QByteArray(time) + "</title><dateTime>" + time
                    + "</dateTime></pageInfo>";
    }
    writeFile(folder + utf8(kFile), document + "</history>");
    loadAndSave(folder);
    store().sortHistory();
    showVisits();
    showFolder(folder);
    showLog();
}
} // namespace

void playHistory()
{
    playRefused();
    playDocuments(kFile, kDocument, loadAndSave);
    playTimes();
    playOrder();
    Draw draw(2);
    QString folder = newFolder();
    store().loadHistory(&folder, kMax);
    playSteps(
        "history", 20, [&] { takeStep(draw); },
        [](QString &target) {
            store().saveHistory(&target, kMax);
            store().loadHistory(&target, kMax);
            showVisits();
        });
}
