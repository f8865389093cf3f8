#include "core/VLMC_XMLNode.h"
#include "core/VLMC_XMLReader.h"
#include "core/VLMC_XMLWriter.h"
#include "tests/support/Files.h"
#include "tests/support/LogRecorder.h"
#include "text/XmlText_p.h"

#include <QtCore/QBuffer>

#include <memory>
#include <random>

namespace
{
const int kTrees = 10000;
const int kMaxNodes = 12;

typedef std::unique_ptr<VLMC_XMLNode> Tree;

class Generator
{
public:
    explicit Generator(unsigned int seed) : m_random(seed) {}

    Tree tree()
    {
        Tree root(new VLMC_XMLNode(nullptr, 0));
        QList<VLMC_XMLNode *> nodes;
        nodes.append(root.get());
        fill(root.get());
        for (int left = below(kMaxNodes); left > 0; --left) {
            VLMC_XMLNode *const parent = nodes.at(below(int(nodes.size())));
            nodes.append(new VLMC_XMLNode(parent, char(below(2))));
            fill(nodes.last());
        }
        return root;
    }

private:
    int below(int bound) { return int(m_random() % unsigned(bound)); }

    void fill(VLMC_XMLNode *node)
    {
        QString name = QString(QLatin1Char(char('a' + below(26)))) + QString::number(below(100));
        QString content = text();
        QXmlStreamAttributes attributes;
        for (int i = below(4); i > 0; --i) {
            attributes.append(QString::fromLatin1("at%1").arg(i), text());
        }
        node->setName(name);
        node->setText(content);
        node->setTextType(char(below(4)));
        node->setAttribute(attributes);
    }

    QString text()
    {
        QString all;
        for (int i = below(12); i > 0; --i) {
            all += piece();
        }
        return all;
    }

    QString piece()
    {
        static const char *const markup[] = {"<", ">", "&",    "\"",       "'",   "]]>", "]]",
                                             "]", " ", "&lt;", "<!ENTITY", "-->", "\t",  "\n"};
        switch (below(5)) {
        case 0:
            return utf8(markup[below(int(sizeof markup / sizeof *markup))]);
        case 1:
            return QChar(ushort(below(0x10000)));
        case 2: {
            const uint code = 0x10000 + uint(below(0x100000));
            return QString(QChar(QChar::highSurrogate(code))) + QChar(QChar::lowSurrogate(code));
        }
        case 3:
            return QChar(ushort(below(0x30)));
        default:
            return QString(QLatin1Char(char('a' + below(26))));
        }
    }

    std::mt19937 m_random;
};

QByteArray written(VLMC_XMLNode *root)
{
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    VLMC_XMLWriter writer;
    return writer.write(device, root) && !writer.hasError() ? device.data() : QByteArray();
}

Tree readBack(const QByteArray &document)
{
    QBuffer device;
    device.setData(document);
    device.open(QIODevice::ReadOnly);
    VLMC_XMLReader reader;
    Tree root(reader.read(device));
    return reader.hasError() ? Tree() : std::move(root);
}

bool isBlank(const QString &text)
{
    for (const QChar character : text) {
        if (character != QLatin1Char(' ') && character != QLatin1Char('\t')
            && character != QLatin1Char('\n')) {
            return false;
        }
    }
    return true;
}

QString withPlainLineEnds(QString text)
{
    text.replace(utf8("\r\n"), utf8("\n"));
    return text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
}

// What XML keeps of a text: only two types, no plain text of blanks alone, LF for every line end,
// and of CDATA the first section, up to "]]>".
QString survivingText(VLMC_XMLNode *node)
{
    const QString text = withPlainLineEnds(vlm::xmlText(node->getText()));
    if (node->getTextType() == 0) {
        return isBlank(text) ? QString() : text;
    }
    if (node->getTextType() != 1) {
        return QString();
    }
    const int end = int(text.indexOf(utf8("]]>")));
    return end < 0 ? text : text.left(end + 2);
}

bool isSame(VLMC_XMLNode *node, VLMC_XMLNode *original)
{
    const QString text = survivingText(original);
    const QXmlStreamAttributes attributes = node->getAttribute();
    const QXmlStreamAttributes originals = original->getAttribute();
    bool same = node->getName() == original->getName() && node->getText() == text
                && (text.isEmpty() || node->getTextType() == original->getTextType())
                && attributes.size() == originals.size()
                && node->getXMLNodeChildren().size() == original->getXMLNodeChildren().size();
    for (int i = 0; same && i < attributes.size(); ++i) {
        same = attributes.at(i).name().toString() == originals.at(i).name().toString()
               && attributes.at(i).value().toString()
                      == vlm::xmlText(originals.at(i).value().toString());
    }
    for (int i = 0; same && i < node->getXMLNodeChildren().size(); ++i) {
        same = isSame(node->getXMLNodeChildren().at(i), original->getXMLNodeChildren().at(i));
    }
    return same;
}
} // namespace

class tst_RoundTrip : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { runDeferredDeletes(); }

    void read_givesBackWhatWasWritten();
    void write_isFixedPointAfterRead();
};

void tst_RoundTrip::read_givesBackWhatWasWritten()
{
    Generator generator(20110704);
    for (int i = 0; i < kTrees; ++i) {
        const Tree original = generator.tree();
        const QByteArray document = written(original.get());
        const Tree root = readBack(document);
        QVERIFY2(root.get(), document.constData());
        QVERIFY2(isSame(root.get(), original.get()), document.constData());
    }
}

void tst_RoundTrip::write_isFixedPointAfterRead()
{
    Generator generator(19990101);
    for (int i = 0; i < kTrees; ++i) {
        const Tree original = generator.tree();
        const Tree first = readBack(written(original.get()));
        QVERIFY(first.get());
        const QByteArray document = written(first.get());
        const Tree second = readBack(document);
        QVERIFY(second.get());
        COMPARE_BYTES(written(second.get()), document);
    }
}

QTEST_GUILESS_MAIN(tst_RoundTrip)
#include "tst_RoundTrip.moc"
