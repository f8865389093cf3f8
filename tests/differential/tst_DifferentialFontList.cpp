#include "tests/differential/PlainFontList.h"
#include "tests/differential/SideBySide.h"

#include "fonts/VLMC_FontListSetting.h"

namespace
{
class Pair : public SideBySide
{
public:
    explicit Pair(const Sequence &sequence) : SideBySide(m_store, m_plain, sequence) {}

private:
    void operate() override
    {
        switch (random.below(8)) {
        case 0: {
            const QString directory = directoryToLoad("fontlist.xml");
            did("loadFontList");
            m_store.loadFontList(directory);
            m_plain.loadFontList(directory);
            break;
        }
        case 1: {
            const QString directory = anyDirectory();
            did("saveFontList");
            m_store.saveFontList(directory);
            m_plain.saveFontList(directory);
            agreeOnFile(directory + textOf("fontlist.xml"));
            break;
        }
        case 2:
            did("getCount");
            agree(Answer() << m_store.getCount(), Answer() << m_plain.getCount());
            break;
        case 3:
        case 4: {
            const int id = anyId();
            did("getFont " + QByteArray::number(id));
            agree(Answer() << m_store.getFont(id), Answer() << m_plain.getFont(id));
            break;
        }
        default: {
            const QString name = random.word();
            did("addFont");
            m_store.addFont(name);
            m_plain.addFont(name);
        }
        }
    }

    QByteArray document() override { return documentOf("fontlist", "font", QList<QByteArray>()); }

    VLMC_FontListSetting m_store;
    PlainFontList m_plain;
};
} // namespace

class tst_DifferentialFontList : public QObject
{
    Q_OBJECT

private slots:
    void agreesWithThePlainRules_data() { addSequences(); }
    void agreesWithThePlainRules() { playSequences<Pair>(); }
    void cleanupTestCase() { reportSequences(); }
};

QTEST_GUILESS_MAIN(tst_DifferentialFontList)
#include "tst_DifferentialFontList.moc"
