#ifndef VLMC_HISTORYSETTING_H
#define VLMC_HISTORYSETTING_H

#include "core/VLMC_XMLSetting.h"

#include <QtCore/QDateTime>
#include <QtCore/QString>

/// One visit of a page.
struct VLM_EXPORT VLMS_History {
    /// The page's title.
    QString title;
    /// The page's address.
    QString url;
    /// Local time; the file keeps it to the minute.
    QDateTime dateTime;

    /// True when this visit is the later one, so that sorting puts the newest first.
    bool operator<(const VLMS_History &other) const;
};

/**
 * The visited pages, kept in "visit.xml" in a directory that the caller names. Every load puts them
 * in order, newest first; new visits go to the front. A visit is addressed by id, its position,
 * which every insertion, deletion and sort assigns anew. Visits of the same page are not merged.
 *
 * Changes stay in memory until saveHistory. Directories end with "/": the file name is appended as
 * it stands. No text has a limit. Used from one thread, which runs an event loop.
 */
class VLM_EXPORT VLMC_HistorySetting : public VLMC_XMLSetting
{
public:
    /// The one history of the process, created on the first call and destroyed at exit.
    static VLMC_HistorySetting *getInstance();

    VLMC_HistorySetting();

    /// Replaces the visits by those in the directory, however many there are, newest first; a
    /// missing file gives none. max is what updateHistory keeps the list to. A null or empty
    /// directory and a max below 1 are refused with a warning in the log and change nothing.
    void loadHistory(QString *dir, int max);
    /// Writes all visits into the directory, whatever max says; before the first load no file is
    /// touched. Refuses what loadHistory refuses.
    void saveHistory(QString *dir, int max);

    /// The number of visits; 0 before the first load.
    int getHistoryCnt();
    /// Copies a visit into out. A time that is not "yyyy/MM/dd hh:mm" becomes invalid; a field that
    /// the file lacks keeps what out has. False, with out untouched, for a null out and for an
    /// unknown id.
    bool getHistory(int id, VLMS_History *out);
    /// The id of the newest visit with exactly this URL, or -1.
    int getHistoryIndex(QString &url);
    /// Puts a copy of the visit at the front, whatever its time. Null is ignored. Before the first
    /// load there is no list and nothing is kept.
    void setHistory(VLMS_History *entry);
    /// Like setHistory, but first deletes the visit with id max - 1 if the list has reached the max
    /// of the last load: one visit, even if there are more than max.
    void updateHistory(VLMS_History *entry);
    /// Gives a visit new texts. It keeps its place; a field that the file lacks stays missing. An
    /// unknown id is ignored.
    void changeHistory(int id, VLMS_History &entry);
    /// Gives a visit a new title, if it has one. An unknown id is ignored.
    void changeHistoryTitle(int id, QString &title);
    /// Deletes a visit. An unknown id is ignored.
    void deleteHistory(int id);
    /// Sorts the visits by time, newest first; visits of the same minute keep their order. Times
    /// that cannot be read are erased, and their visits come last.
    void sortHistory();

    /// The text cut to at most maxBytes bytes of UTF-8; unchanged for a maxBytes below 1. It ends
    /// at an embedded zero character.
    QString ClipString(const QString &text, int maxBytes);

private:
    VLM_HIDDEN void sortLoadedEntries();
    VLM_HIDDEN void numberPushedOut();

    int loadMax;
};

#endif
