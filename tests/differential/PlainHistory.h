#ifndef TESTS_DIFFERENTIAL_PLAINHISTORY_H
#define TESTS_DIFFERENTIAL_PLAINHISTORY_H

#include "tests/differential/PlainStore.h"

struct VLMS_History;

/// The rules of VLMC_HistorySetting.
class PlainHistory : public PlainStore
{
public:
    void loadHistory(const QString *dir, int max);
    void saveHistory(const QString *dir, int max);
    int getHistoryCnt();
    bool getHistory(int id, VLMS_History *out);
    int getHistoryIndex(const QString &url);
    void setHistory(const VLMS_History *entry);
    void updateHistory(const VLMS_History *entry);
    void changeHistory(int id, const VLMS_History &entry);
    void changeHistoryTitle(int id, const QString &title);
    void deleteHistory(int id);
    void sortHistory();
    QString ClipString(const QString &text, int maxBytes) { return clip(text, maxBytes); }

private:
    int m_loadMax = 0;
};

#endif
