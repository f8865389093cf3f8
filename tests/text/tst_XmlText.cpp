#include "text/XmlText_p.h"

#include "core/VLMC_XMLWriter.h"
#include "tests/support/Files.h"
#include "tests/support/Nodes.h"

#include <QtCore/QBuffer>

namespace
{
QString character(uint code)
{
    return code < 0x10000 ? QString(QChar(code))
                          : QString(QChar(QChar::highSurrogate(code))) + QChar::lowSurrogate(code);
}

QByteArray written(VLMC_XMLNode &node)
{
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    VLMC_XMLWriter writer;
    writer.write(device, &node);
    return device.data().mid(int(strlen("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n")));
}

// Every kind of character that does not survive, amid ones that do.
QString mixedText()
{
    return utf8("a") + QChar(0x01) + QChar(0x0) + QChar(0xD800) + utf8("b") + QChar(0xFFFE)
           + character(0x1FFFF) + QChar(0xDC00) + utf8("c") + QChar(0xD83D);
}
} // namespace

class tst_XmlText : public QObject
{
    Q_OBJECT

private slots:
    void xmlText_decidesEveryCharacter();
    void xmlText_treatsSurrogates_data();
    void xmlText_treatsSurrogates();
    void xmlText_sharesCleanText();
    void isXmlText_saysWhatXmlTextKeeps();
    void write_filtersEveryPart();
};

void tst_XmlText::xmlText_decidesEveryCharacter()
{
    for (uint code = 0; code <= 0x10FFFF; ++code) {
        if (code >= 0xD800 && code <= 0xDFFF) {
            continue;
        }
        const bool dropped = code < 0x20 && code != 9 && code != 10 && code != 13;
        const bool replaced = (code >= 0xFDD0 && code <= 0xFDEF) || (code & 0xFFFF) >= 0xFFFE;
        const QString kept = dropped ? QString() : replaced ? utf8("?") : character(code);
        const QString text = utf8("a") + character(code) + utf8("b");
        if (vlm::xmlText(text) != utf8("a") + kept + utf8("b")
            || vlm::isXmlText(text) != (!dropped && !replaced)) {
            QFAIL(QByteArray::number(code, 16).constData());
        }
    }
}

void tst_XmlText::xmlText_treatsSurrogates_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("kept");
    const QString high = QChar(0xD83D);
    const QString low = QChar(0xDE00);
    const QString pair = high + low;
    QTest::newRow("pair") << pair << pair;
    QTest::newRow("high at the end") << utf8("a") + high << utf8("a");
    QTest::newRow("high alone") << high << QString();
    QTest::newRow("high in the middle") << utf8("a") + high + utf8("b") << utf8("ab");
    QTest::newRow("low first") << low + utf8("a") << utf8("a");
    QTest::newRow("low after a pair") << pair + low << pair;
    QTest::newRow("high before a pair") << high + pair << pair;
    QTest::newRow("wrong order") << low + high << QString();
    QTest::newRow("lowest high") << QString(QChar(0xD800)) << QString();
    QTest::newRow("highest low") << QString(QChar(0xDFFF)) << QString();
}

void tst_XmlText::xmlText_treatsSurrogates()
{
    QFETCH(QString, text);
    QFETCH(QString, kept);
    QCOMPARE(vlm::xmlText(text), kept);
    QCOMPARE(vlm::isXmlText(text), text == kept);
}

void tst_XmlText::xmlText_sharesCleanText()
{
    const QString text = utf8("clean \xe3\x81\x82 \xf0\x9f\x98\x80\t\r\n\x7f");
    QVERIFY(vlm::xmlText(text).constData() == text.constData());
    QVERIFY(vlm::xmlText(QString()).isEmpty());
}

void tst_XmlText::isXmlText_saysWhatXmlTextKeeps()
{
    QVERIFY(!vlm::isXmlText(mixedText()));
    QVERIFY(vlm::isXmlText(vlm::xmlText(mixedText())));
    QCOMPARE(vlm::xmlText(mixedText()), utf8("ab??c"));
}

// What is filtered is what is written, not the tree.
void tst_XmlText::write_filtersEveryPart()
{
    const Tree root(newTree("r[a b]"));
    QString name = mixedText().replace(QChar(0xFFFE), QChar(0x1)).remove(character(0x1FFFF));
    QString text = mixedText();
    QXmlStreamAttributes attributes;
    attributes.append(utf8("p") + QChar(0x2), mixedText());
    attributes.append(utf8("q"), utf8("clean"));
    root->setName(name);
    root->setAttribute(attributes);
    childAt(root, 0)->setText(text);
    childAt(root, 1)->setText(text);
    childAt(root, 1)->setTextType(1);
    const QByteArray before = described(root.data());

    COMPARE_BYTES(written(*root), "<abc p=\"ab??c\" q=\"clean\">\n"
                                  "    <a>ab??c</a>\n"
                                  "    <b><![CDATA[ab??c]]></b>\n"
                                  "</abc>\n");
    QCOMPARE(described(root.data()), before);
}

QTEST_GUILESS_MAIN(tst_XmlText)
#include "tst_XmlText.moc"
