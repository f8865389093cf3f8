#include "tests/differential/PlainBookmarks.h"
#include "tests/differential/SideBySide.h"

#include "bookmarks/VLMC_BookmarksSetting.h"

namespace
{
QString bracketed(QString &path, QString &dir) { return dir + textOf("[") + path + textOf("]"); }

class Pair : public SideBySide
{
public:
    explicit Pair(const Sequence &sequence) : SideBySide(m_store, m_plain, sequence) {}

private:
    void operate() override
    {
        switch (random.below(18)) {
        case 0:
        case 1:
            loadBookmark();
            break;
        case 2:
        case 3:
            saveBookmark();
            break;
        case 4:
            did("getBookmarkCnt");
            agree(Answer() << m_store.getBookmarkCnt(), Answer() << m_plain.getBookmarkCnt());
            break;
        case 5:
        case 6:
            getBookmark();
            break;
        case 7:
        case 8:
            getField();
            break;
        case 9:
        case 10:
            setField();
            break;
        case 11: {
            const int id = anyId();
            did("deleteBookmark " + QByteArray::number(id));
            m_store.deleteBookmark(id);
            m_plain.deleteBookmark(id);
            break;
        }
        case 12:
            walkThumbnails();
            break;
        case 13:
            changePaths();
            break;
        case 14: {
            const QString text = random.word();
            const int maxBytes = random.below(110) - 2;
            did("ClipString");
            agree(Answer() << m_store.ClipString(text, maxBytes),
                  Answer() << m_plain.ClipString(text, maxBytes));
            break;
        }
        default:
            setBookmark();
        }
    }

    void loadBookmark()
    {
        QString directory = directoryToLoad("bookmark.xml");
        QString *const dir = random.oneIn(20) ? nullptr : &directory;
        const int max = anyMax();
        int lastNumber = -7;
        int plainLastNumber = -7;
        did("loadBookmark " + QByteArray::number(max));
        m_store.loadBookmark(dir, max, lastNumber);
        m_plain.loadBookmark(dir, max, plainLastNumber);
        agree(Answer() << lastNumber, Answer() << plainLastNumber);
    }

    void saveBookmark()
    {
        QString directory = anyDirectory();
        QString *const dir = random.oneIn(20) ? nullptr : &directory;
        const int max = anyMax();
        did("saveBookmark " + QByteArray::number(max));
        m_store.saveBookmark(dir, max);
        m_plain.saveBookmark(dir, max);
        agreeOnFile(directory + textOf("bookmark.xml"));
    }

    void getBookmark()
    {
        const int id = anyId();
        did("getBookmark " + QByteArray::number(id));
        const bool isNull = random.oneIn(20);
        VLMS_Bookmark out = {textOf("kept"), textOf("kept"), textOf("kept")};
        VLMS_Bookmark plainOut = out;
        const bool found = m_store.getBookmark(id, isNull ? nullptr : &out);
        const bool plainFound = m_plain.getBookmark(id, isNull ? nullptr : &plainOut);
        agree(Answer() << found << out.title << out.url << out.thumbnailPath,
              Answer() << plainFound << plainOut.title << plainOut.url << plainOut.thumbnailPath);
    }

    void getField()
    {
        const int id = anyId();
        const char which = char(random.below(5) - 1);
        did("read fields of " + QByteArray::number(id));
        QString text = textOf("kept");
        QString plainText = text;
        QString *const out = random.oneIn(20) ? nullptr : &text;
        QString *const plainOut = out ? &plainText : nullptr;
        Answer answer;
        Answer plainAnswer;
        if (which == 0) {
            answer << m_store.getBookmarkTitle(id, out);
            plainAnswer << m_plain.getBookmarkTitle(id, plainOut);
        } else if (which == 1) {
            answer << m_store.getBookmarkURL(id, out);
            plainAnswer << m_plain.getBookmarkURL(id, plainOut);
        } else {
            answer << m_store.getBookmarkThumbnailFilePath(id, out);
            plainAnswer << m_plain.getBookmarkThumbnailFilePath(id, plainOut);
        }
        agree(answer << text, plainAnswer << plainText);
        VLMC_XMLNode *const node = m_store.getBookmarkChildNode(id, which);
        const ElementPointer element = m_plain.getBookmarkChildNode(id, which);
        agree(Answer() << (node ? node->getText() : textOf("(none)")),
              Answer() << (element ? element->text : textOf("(none)")));
    }

    void setField()
    {
        const int id = anyId();
        const int which = random.below(3);
        QString text = random.word();
        QString *const set = random.oneIn(20) ? nullptr : &text;
        did("set a field of " + QByteArray::number(id));
        Answer answer;
        Answer plainAnswer;
        if (which == 0) {
            answer << m_store.setBookmarkTitle(id, set);
            plainAnswer << m_plain.setBookmarkTitle(id, set);
        } else if (which == 1) {
            answer << m_store.setBookmarkURL(id, set);
            plainAnswer << m_plain.setBookmarkURL(id, set);
        } else {
            answer << m_store.setBookmarkThumbnailFilePath(id, set);
            plainAnswer << m_plain.setBookmarkThumbnailFilePath(id, set);
        }
        agree(answer, plainAnswer);
    }

    void setBookmark()
    {
        VLMS_Bookmark bookmark;
        bookmark.title = random.word();
        bookmark.url = random.word();
        bookmark.thumbnailPath = fieldText("thumbnail");
        VLMS_Bookmark *const added = random.oneIn(20) ? nullptr : &bookmark;
        const char atFront = char(random.below(3));
        did("setBookmark");
        agree(Answer() << m_store.setBookmark(added, atFront),
              Answer() << m_plain.setBookmark(added, atFront));
    }

    // From a position on, one by one, to the end or to where the walk stops.
    void walkThumbnails()
    {
        did("walk the thumbnails");
        Answer answer;
        Answer plainAnswer;
        int index = random.below(4);
        int plainIndex = index;
        for (;;) {
            VLMC_XMLNode *const node = m_store.getThumbNode(index);
            const ElementPointer element = m_plain.getThumbNode(plainIndex);
            answer << bool(node) << index << m_store.getThumbFilePath(node);
            plainAnswer << bool(element) << plainIndex << m_plain.getThumbFilePath(element);
            agree(answer, plainAnswer);
            if (!node || !element) {
                break;
            }
            ++index;
            ++plainIndex;
        }
        agree(Answer() << m_store.getLastNumber(), Answer() << m_plain.getLastNumber());
    }

    void changePaths()
    {
        QString directory = anyDirectory();
        switch (random.below(4)) {
        case 0:
            did("removeThumbnailFilePath");
            m_store.removeThumbnailFilePath();
            m_plain.removeThumbnailFilePath();
            break;
        case 1: {
            QString *const dir = random.oneIn(4) ? nullptr : &directory;
            did("addThumbnailFilePath");
            m_store.addThumbnailFilePath(dir);
            m_plain.addThumbnailFilePath(dir);
            break;
        }
        case 2: {
            int index = random.below(4);
            int plainIndex = index;
            QString path = random.word();
            did("setThumbFilePath");
            agree(Answer() << m_store.setThumbFilePath(m_store.getThumbNode(index), path),
                  Answer() << m_plain.setThumbFilePath(m_plain.getThumbNode(plainIndex), path));
            break;
        }
        default: {
            const PlainBookmarks::Convert convert = random.oneIn(4) ? nullptr : bracketed;
            did("changeThumbFilePath");
            m_store.changeThumbFilePath(directory, convert);
            m_plain.changeThumbFilePath(directory, convert);
        }
        }
    }

    QByteArray document() override
    {
        return documentOf("bookmarks", "bookmark",
                          QList<QByteArray>() << "href"
                                              << "title"
                                              << "thumbnail");
    }

    QString fieldText(const QByteArray &fieldName) override
    {
        if (fieldName != "thumbnail" || random.oneIn(8)) {
            return random.word();
        }
        const int number = random.below(random.oneIn(10) ? 20000000 : 100);
        const QString name = QString::number(number).rightJustified(6, QLatin1Char('0'));
        return textOf(random.oneIn(3) ? "/d/thumbnail/" : "") + name + textOf(".PNG");
    }

    VLMC_BookmarksSetting m_store;
    PlainBookmarks m_plain;
};
} // namespace

class tst_DifferentialBookmarks : public QObject
{
    Q_OBJECT

private slots:
    void agreesWithThePlainRules_data() { addSequences(); }
    void agreesWithThePlainRules() { playSequences<Pair>(); }
    void cleanupTestCase() { reportSequences(); }
};

QTEST_GUILESS_MAIN(tst_DifferentialBookmarks)
#include "tst_DifferentialBookmarks.moc"
