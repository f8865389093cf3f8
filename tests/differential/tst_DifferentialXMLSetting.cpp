#include "tests/differential/SideBySide.h"

#include "core/VLMC_XMLSetting.h"

namespace
{
class Pair : public SideBySide
{
public:
    explicit Pair(const Sequence &sequence) : SideBySide(m_store, m_plain, sequence) {}

private:
    void operate() override { operateBase(); }

    QByteArray document() override
    {
        return documentOf("root", "font",
                          QList<QByteArray>() << "title"
                                              << "url");
    }

    VLMC_XMLSetting m_store;
    PlainStore m_plain;
};
} // namespace

class tst_DifferentialXMLSetting : public QObject
{
    Q_OBJECT

private slots:
    void agreesWithThePlainRules_data() { addSequences(); }
    void agreesWithThePlainRules() { playSequences<Pair>(); }
    void cleanupTestCase() { reportSequences(); }
};

QTEST_GUILESS_MAIN(tst_DifferentialXMLSetting)
#include "tst_DifferentialXMLSetting.moc"
