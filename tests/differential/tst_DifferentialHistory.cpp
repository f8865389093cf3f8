#include "tests/differential/PlainHistory.h"
#include "tests/differential/SideBySide.h"

#include "bookmarks/VLMC_HistorySetting.h"

namespace
{
class Pair : public SideBySide
{
public:
    explicit Pair(const Sequence &sequence) : SideBySide(m_store, m_plain, sequence) {}

private:
    void operate() override
    {
        switch (random.below(16)) {
        case 0:
        case 1:
            loadHistory();
            break;
        case 2:
            saveHistory();
            break;
        case 3:
            did("getHistoryCnt");
            agree(Answer() << m_store.getHistoryCnt(), Answer() << m_plain.getHistoryCnt());
            break;
        case 4:
        case 5:
            getHistory();
            break;
        case 6:
        case 7: {
            QString url = random.word();
            did("getHistoryIndex");
            agree(Answer() << m_store.getHistoryIndex(url), Answer()
                                                                << m_plain.getHistoryIndex(url));
            break;
        }
        case 8:
            did("sortHistory");
            m_store.sortHistory();
            m_plain.sortHistory();
            break;
        case 9: {
            const QString text = random.word();
            const int maxBytes = random.below(110) - 2;
            did("ClipString");
            agree(Answer() << m_store.ClipString(text, maxBytes),
                  Answer() << m_plain.ClipString(text, maxBytes));
            break;
        }
        case 10:
            changeHistory();
            break;
        case 11: {
            const int id = anyId();
            did("deleteHistory " + QByteArray::number(id));
            m_store.deleteHistory(id);
            m_plain.deleteHistory(id);
            break;
        }
        default:
            addHistory();
        }
    }

    void loadHistory()
    {
        QString directory = directoryToLoad("visit.xml");
        QString *const dir = random.oneIn(20) ? nullptr : &directory;
        const int max = anyMax();
        did("loadHistory " + QByteArray::number(max));
        m_store.loadHistory(dir, max);
        m_plain.loadHistory(dir, max);
    }

    void saveHistory()
    {
        QString directory = anyDirectory();
        QString *const dir = random.oneIn(20) ? nullptr : &directory;
        const int max = anyMax();
        did("saveHistory " + QByteArray::number(max));
        m_store.saveHistory(dir, max);
        m_plain.saveHistory(dir, max);
        agreeOnFile(directory + textOf("visit.xml"));
    }

    void getHistory()
    {
        const int id = anyId();
        did("getHistory " + QByteArray::number(id));
        const bool isNull = random.oneIn(20);
        VLMS_History out = anyEntry();
        VLMS_History plainOut = out;
        const bool found = m_store.getHistory(id, isNull ? nullptr : &out);
        const bool plainFound = m_plain.getHistory(id, isNull ? nullptr : &plainOut);
        agree(Answer() << found << out.title << out.url << out.dateTime,
              Answer() << plainFound << plainOut.title << plainOut.url << plainOut.dateTime);
    }

    void addHistory()
    {
        VLMS_History entry = anyEntry();
        VLMS_History *const added = random.oneIn(20) ? nullptr : &entry;
        if (random.oneIn(2)) {
            did("setHistory");
            m_store.setHistory(added);
            m_plain.setHistory(added);
        } else {
            did("updateHistory");
            m_store.updateHistory(added);
            m_plain.updateHistory(added);
        }
    }

    void changeHistory()
    {
        const int id = anyId();
        VLMS_History entry = anyEntry();
        if (random.oneIn(2)) {
            did("changeHistory " + QByteArray::number(id));
            m_store.changeHistory(id, entry);
            m_plain.changeHistory(id, entry);
        } else {
            did("changeHistoryTitle " + QByteArray::number(id));
            m_store.changeHistoryTitle(id, entry.title);
            m_plain.changeHistoryTitle(id, entry.title);
        }
    }

    VLMS_History anyEntry()
    {
        VLMS_History entry;
        entry.title = random.word();
        entry.url = random.word();
        entry.dateTime = random.time();
        return entry;
    }

    QByteArray document() override
    {
        return documentOf("history", "pageInfo",
                          QList<QByteArray>() << "title"
                                              << "url"
                                              << "dateTime");
    }

    QString fieldText(const QByteArray &fieldName) override
    {
        return fieldName == "dateTime" ? random.timeText() : random.word();
    }

    VLMC_HistorySetting m_store;
    PlainHistory m_plain;
};
} // namespace

class tst_DifferentialHistory : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void agreesWithThePlainRules_data() { addSequences(); }
    void agreesWithThePlainRules() { playSequences<Pair>(); }
    void cleanupTestCase() { reportSequences(); }
};

// Without summer time: in the hours that it skips and repeats Qt's own order is not the rule.
void tst_DifferentialHistory::initTestCase() { qputenv("TZ", "UTC"); }

QTEST_GUILESS_MAIN(tst_DifferentialHistory)
#include "tst_DifferentialHistory.moc"
