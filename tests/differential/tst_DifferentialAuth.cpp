#include "tests/differential/PlainAuth.h"
#include "tests/differential/SideBySide.h"

#include "cookies/VLMC_AuthSetting.h"

namespace
{
class Pair : public SideBySide
{
public:
    explicit Pair(const Sequence &sequence) : SideBySide(m_store, m_plain, sequence) {}

private:
    void operate() override
    {
        switch (random.below(12)) {
        case 0:
        case 1:
            loadAuthInfo();
            break;
        case 2:
            saveAuthInfo();
            break;
        case 3:
            did("getAuthInfoCnt");
            agree(Answer() << m_store.getAuthInfoCnt(), Answer() << m_plain.getAuthInfoCnt());
            break;
        case 4:
        case 5:
        case 6:
            getAuthInfo();
            break;
        case 7: {
            const int id = anyId();
            did("deleteAuthInfo " + QByteArray::number(id));
            m_store.deleteAuthInfo(id);
            m_plain.deleteAuthInfo(id);
            break;
        }
        default:
            addAuthInfo();
        }
    }

    void loadAuthInfo()
    {
        QString directory = directoryToLoad("authinfo.xml");
        QString *const dir = random.oneIn(20) ? nullptr : &directory;
        const int max = anyMax();
        did("loadAuthInfo " + QByteArray::number(max));
        m_store.loadAuthInfo(dir, max);
        m_plain.loadAuthInfo(dir, max);
    }

    void saveAuthInfo()
    {
        QString directory = anyDirectory();
        QString *const dir = random.oneIn(20) ? nullptr : &directory;
        const int max = anyMax();
        did("saveAuthInfo " + QByteArray::number(max));
        m_store.saveAuthInfo(dir, max);
        m_plain.saveAuthInfo(dir, max);
        agreeOnFile(directory + textOf("authinfo.xml"));
    }

    void getAuthInfo()
    {
        const int id = anyId();
        did("getAuthInfo " + QByteArray::number(id));
        const bool isNull = random.oneIn(20);
        VLMS_AuthInfo out = {textOf("kept"), textOf("kept"), 77, "kept", "kept"};
        VLMS_AuthInfo plainOut = out;
        const bool found = m_store.getAuthInfo(id, isNull ? nullptr : &out);
        const bool plainFound = m_plain.getAuthInfo(id, isNull ? nullptr : &plainOut);
        agree(answerOf(out) << found, answerOf(plainOut) << plainFound);
    }

    void addAuthInfo()
    {
        VLMS_AuthInfo info;
        info.hostName = random.word();
        info.portNum = random.oneIn(3) ? random.word() : QString::number(random.below(200000));
        info.authType = static_cast<unsigned char>(random.below(5));
        info.user = secret();
        info.passwd = secret();
        VLMS_AuthInfo *const added = random.oneIn(20) ? nullptr : &info;
        switch (random.below(3)) {
        case 0:
            did("setAuthInfo");
            agree(Answer() << m_store.setAuthInfo(added), Answer() << m_plain.setAuthInfo(added));
            break;
        case 1:
            did("updateAuthInfo");
            agree(Answer() << m_store.updateAuthInfo(added), Answer()
                                                                 << m_plain.updateAuthInfo(added));
            break;
        default:
            did("addAuthInfo");
            m_store.addAuthInfo(added);
            m_plain.addAuthInfo(added);
        }
    }

    static Answer answerOf(const VLMS_AuthInfo &info)
    {
        Answer answer;
        answer << info.hostName << info.portNum << int(info.authType) << info.user << info.passwd;
        return answer;
    }

    // Zero bytes included.
    QByteArray secret()
    {
        static const int sizes[] = {0, 1, 2, 3, 7, 271, 272, 273};
        QByteArray bytes(random.oneOf(sizes), '\0');
        for (int i = 0; i < bytes.size(); ++i) {
            bytes[i] = char(random.below(256));
        }
        return bytes;
    }

    QByteArray document() override
    {
        return documentOf("authentication", "authInfo",
                          QList<QByteArray>() << "hostName"
                                              << "portNum"
                                              << "authType"
                                              << "user"
                                              << "passwd");
    }

    QString fieldText(const QByteArray &fieldName) override
    {
        static const char *const schemes[] = {"basic", "digest", "NTLM", "ntlm", "", "x"};
        if (fieldName == "authType") {
            return textOf(random.oneOf(schemes));
        }
        if ((fieldName == "user" || fieldName == "passwd") && !random.oneIn(6)) {
            return QString::fromLatin1(secret().toBase64());
        }
        return random.word();
    }

    VLMC_AuthSetting m_store;
    PlainAuth m_plain;
};
} // namespace

class tst_DifferentialAuth : public QObject
{
    Q_OBJECT

private slots:
    void agreesWithThePlainRules_data() { addSequences(); }
    void agreesWithThePlainRules() { playSequences<Pair>(); }
    void cleanupTestCase() { reportSequences(); }
};

QTEST_GUILESS_MAIN(tst_DifferentialAuth)
#include "tst_DifferentialAuth.moc"
