#ifndef VLMC_HISTORYSETTING_H
#define VLMC_HISTORYSETTING_H

#include "core/VLMC_XMLSetting.h"

#include <QtCore/QDateTime>

/// One visit of a page.
struct VLMS_History {
    QString title;
    QString url;
    QDateTime dateTime; ///< The file keeps it to the minute.

    /// The later visit comes first.
    bool operator<(const VLMS_History &other) const { return other.dateTime < dateTime; }
};

/**
 * The visits of the user, newest first, kept in "visit.xml" in a directory that the caller names.
 * Visits are addressed by id, their position in the list; every insertion and deletion renumbers
 * them. Only a load and sortHistory put the list in order. Changes stay in memory until
 * saveHistory. Directories end with "/": the file name is appended as it stands. Records are
 * copied, and titles and URLs may have any length. Used from one thread, which runs an event loop.
 */
class VLM_EXPORT VLMC_HistorySetting : public VLMC_XMLSetting
{
public:
    /// The one history of the process, created on the first call and destroyed at exit.
    static VLMC_HistorySetting *getInstance();

    VLMC_HistorySetting();

    /// Replaces the history by the one in the directory and sorts it; a missing file gives an empty
    /// history. max, at least 1, is the limit that updateHistory keeps to from now on; a file with
    /// more visits is read whole, but only its first 999 are sure to outlive the sort. A null or
    /// empty directory and a max below 1 are refused with a warning in the log and change nothing.
    void loadHistory(QString *dir, int max);
    /// Writes the history into the directory; before the first load no file is touched. A null or
    /// empty directory and a max below 1 are refused with a warning in the log; beyond that max
    /// limits nothing.
    void saveHistory(QString *dir, int max);

    /// The number of visits; 0 before the first load.
    int getHistoryCnt();
    /// Fills out with the visit of this id. False, and out untouched, when there is none or out is
    /// null. A field that the file did not have keeps the caller's value; a time that is not
    /// written as "yyyy/MM/dd hh:mm" is given as an invalid one.
    bool getHistory(int id, VLMS_History *out);
    /// The lowest id with exactly this URL, or -1.
    int getHistoryIndex(QString &url);

    /// Inserts a visit at the front, whatever its time and however many there are. A null entry is
    /// ignored. Before the first load there is no list and nothing is kept.
    void setHistory(VLMS_History *entry);
    /// Like setHistory, but when the list has reached the max of the last load, the visit with the
    /// id max - 1 is deleted first; that one only, however many there are, and also for a null
    /// entry.
    void updateHistory(VLMS_History *entry);
    /// Replaces title, URL and time of a visit, which keeps its place. An unknown id is ignored.
    void changeHistory(int id, VLMS_History &entry);
    /// Replaces the title of a visit. An unknown id is ignored.
    void changeHistoryTitle(int id, QString &title);
    /// Deletes a visit, if there is one with this id.
    void deleteHistory(int id);
    /// Puts the visits in order, newest first; those of the same minute keep their order, and those
    /// without a valid time come last. Each is rebuilt from title, URL and time; all else that the
    /// document's root holds is lost.
    void sortHistory();

    /// The text cut so that its UTF-8 form has at most maxBytes bytes; unchanged for a limit below
    /// 1. It ends at an embedded zero character.
    QString ClipString(const QString &text, int maxBytes);

private:
    int loadMax;
};

#endif
