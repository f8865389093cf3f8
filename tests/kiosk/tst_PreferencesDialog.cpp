#include "examples/kiosk/PreferencesDialog.h"
#include "preferences/VLMC_BrowserCommonSetting.h"
#include "preferences/VLMC_BrowserUserSetting.h"
#include "tests/support/Files.h"

#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>

namespace
{
QWidget *rowOf(PreferencesDialog &dialog, const char *label)
{
    const QFormLayout *const form = dialog.findChild<QFormLayout *>();
    for (int row = 0; row < form->rowCount(); ++row) {
        QLayoutItem *const field = form->itemAt(row, QFormLayout::FieldRole);
        const QLabel *const shown =
            field ? qobject_cast<QLabel *>(form->labelForField(field->widget())) : nullptr;
        if (shown && shown->text() == utf8(label)) {
            return field->widget();
        }
    }
    return nullptr;
}

QLineEdit *lineOf(PreferencesDialog &dialog, const char *label)
{
    return qobject_cast<QLineEdit *>(rowOf(dialog, label));
}

QComboBox *choiceOf(PreferencesDialog &dialog, const char *label)
{
    return qobject_cast<QComboBox *>(rowOf(dialog, label));
}

QCheckBox *switchOf(PreferencesDialog &dialog, const QString &label)
{
    const QList<QCheckBox *> boxes = dialog.findChildren<QCheckBox *>();
    for (QCheckBox *const box : boxes) {
        if (box->text() == label) {
            return box;
        }
    }
    return nullptr;
}

// What both stores would save.
QByteArray saved()
{
    TestDirectory directory;
    VLMC_BrowserCommonSetting::getInstance()->saveSetting(directory.pathPointer());
    VLMC_BrowserUserSetting::getInstance()->saveSetting(directory.pathPointer());
    return readFile(directory.file("repostry.xml"))
           + readFile(directory.file("repostry_private.xml"));
}
} // namespace

class tst_PreferencesDialog : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void accept_storesASwitch_data();
    void accept_storesASwitch();
    void accept_storesATextAsEntered_data();
    void accept_storesATextAsEntered();
    void accept_storesAChoice_data();
    void accept_storesAChoice();
    void accept_changesNothingThatWasNotTouched();
    void accept_tellsOfATextThatIsTooLong();
    void reject_changesNothing();
    void password_isNotShown();
};

void tst_PreferencesDialog::init()
{
    TestDirectory empty;
    VLMC_BrowserCommonSetting::getInstance()->loadSetting(empty.pathPointer());
    VLMC_BrowserUserSetting::getInstance()->loadSetting(empty.pathPointer());
}

void tst_PreferencesDialog::accept_storesASwitch_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    const struct {
        const char *label;
        const char *element;
        const char *before;
        const char *after;
    } rows[] = {
        {"Accept cookies", "acceptCookie", "accept", "refuse"},
        {"Use the cache", "enableCache", "true", "false"},
        {"Run scripts", "enableJavascript", "true", "false"},
        {"Play plug-ins", "enableFlashPlugin", "true", "false"},
        {"SSL 3.0", "enableSSL30", "false", "true"},
        {"TLS 1.0", "enableTLS10", "true", "false"},
        {"TLS 1.1", "enableTLS11", "true", "false"},
        {"TLS 1.2", "enableTLS12", "true", "false"},
        {"Use a proxy", "enableProxy", "false", "true"},
        {"The proxy requires an account", "enableProxyAuth", "false", "true"},
        {"Delete cookies when the user changes", "cookieDeleteTiming", "notDelete", "changeUser"},
        {"Delete credentials when the user changes", "authInfoDeleteTiming", "notDelete",
         "changeUser"},
        {"Delete the cache when the user changes", "cacheDeleteTiming", "notDelete", "changeUser"},
    };
    for (const auto &row : rows) {
        const QByteArray start = QByteArray("<") + row.element + '>';
        QTest::newRow(row.label) << utf8(row.label) << start + row.before << start + row.after;
    }
}

void tst_PreferencesDialog::accept_storesASwitch()
{
    QFETCH(QString, label);
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    const QByteArray old = saved();
    QVERIFY(old.contains(before));
    PreferencesDialog dialog(QStringList(), nullptr);
    QCheckBox *const box = switchOf(dialog, label);
    QVERIFY(box);
    box->toggle();
    dialog.accept();
    COMPARE_BYTES(saved(), QByteArray(old).replace(before, after));
}

void tst_PreferencesDialog::accept_storesATextAsEntered_data()
{
    QTest::addColumn<QByteArray>("label");
    QTest::addColumn<QString>("entered");
    QTest::addColumn<QByteArray>("stored");
    QTest::newRow("home page") << QByteArray("Home page") << utf8("http://a.example/?x&y")
                               << QByteArray("<home>http://a.example/?x&amp;y</home>");
    QTest::newRow("host") << QByteArray("Proxy host") << utf8("proxy.example")
                          << QByteArray("<hostName>proxy.example</hostName>");
    QTest::newRow("port for HTTP")
        << QByteArray("Port for HTTP") << utf8("3128") << QByteArray("<portHTTP>3128</portHTTP>");
    QTest::newRow("port for HTTPS") << QByteArray("Port for HTTPS") << utf8("3129")
                                    << QByteArray("<portHTTPS>3129</portHTTPS>");
    QTest::newRow("bypass") << QByteArray("No proxy for") << utf8("a.example, b.example")
                            << QByteArray("<unusedDomain>a.example, b.example</unusedDomain>");
    QTest::newRow("account") << QByteArray("Proxy account") << utf8("taro")
                             << QByteArray("<proxyUserName><![CDATA[dGFybw==]]>");
    QTest::newRow("password") << QByteArray("Proxy password") << utf8("taro")
                              << QByteArray("<proxyUserPass><![CDATA[dGFybw==]]>");
}

void tst_PreferencesDialog::accept_storesATextAsEntered()
{
    QFETCH(QByteArray, label);
    QFETCH(QString, entered);
    QFETCH(QByteArray, stored);
    PreferencesDialog dialog(QStringList(), nullptr);
    QLineEdit *const line = lineOf(dialog, label.constData());
    QVERIFY(line);
    line->setText(entered);
    dialog.accept();
    QVERIFY(saved().contains(stored));
    PreferencesDialog next(QStringList(), nullptr);
    QCOMPARE(lineOf(next, label.constData())->text(), entered);
}

void tst_PreferencesDialog::accept_storesAChoice_data()
{
    QTest::addColumn<QByteArray>("label");
    QTest::addColumn<QString>("word");
    QTest::addColumn<QByteArray>("stored");
    QTest::newRow("start") << QByteArray("Start with") << utf8("the last page")
                           << QByteArray("<startup>lastpage</startup>");
    QTest::newRow("least zoom") << QByteArray("Zoom") << utf8("50 %")
                                << QByteArray("<Zoom>0.5</Zoom>");
    QTest::newRow("most zoom") << QByteArray("Zoom") << utf8("150 %")
                               << QByteArray("<Zoom>1.5</Zoom>");
    QTest::newRow("font") << QByteArray("Font") << utf8("Second")
                          << QByteArray("<fontName>Second</fontName>");
}

void tst_PreferencesDialog::accept_storesAChoice()
{
    QFETCH(QByteArray, label);
    QFETCH(QString, word);
    QFETCH(QByteArray, stored);
    const QStringList fonts{utf8("First"), utf8("Second")};
    PreferencesDialog dialog(fonts, nullptr);
    QComboBox *const choice = choiceOf(dialog, label.constData());
    QVERIFY(choice);
    choice->setCurrentText(word);
    dialog.accept();
    QVERIFY(saved().contains(stored));
    PreferencesDialog next(fonts, nullptr);
    QCOMPARE(choiceOf(next, label.constData())->currentText(), word);
}

void tst_PreferencesDialog::accept_changesNothingThatWasNotTouched()
{
    const QByteArray old = saved();
    PreferencesDialog dialog(QStringList(), nullptr);
    dialog.accept();
    COMPARE_BYTES(saved(), old);
}

void tst_PreferencesDialog::accept_tellsOfATextThatIsTooLong()
{
    const QByteArray old = saved();
    PreferencesDialog dialog(QStringList(), nullptr);
    lineOf(dialog, "Port for HTTP")->setText(utf8("123456"));
    QString told;
    QTimer::singleShot(0, &dialog, [&dialog, &told] {
        QMessageBox *const box = dialog.findChild<QMessageBox *>();
        told = box->text();
        box->accept();
    });
    dialog.accept();
    QCOMPARE(told, utf8("A text is too long and was not stored."));
    COMPARE_BYTES(saved(), old);
}

void tst_PreferencesDialog::reject_changesNothing()
{
    const QByteArray old = saved();
    PreferencesDialog dialog(QStringList(), nullptr);
    switchOf(dialog, utf8("Run scripts"))->toggle();
    dialog.reject();
    COMPARE_BYTES(saved(), old);
}

void tst_PreferencesDialog::password_isNotShown()
{
    PreferencesDialog dialog(QStringList(), nullptr);
    QCOMPARE(lineOf(dialog, "Proxy password")->echoMode(), QLineEdit::Password);
    QCOMPARE(lineOf(dialog, "Proxy account")->echoMode(), QLineEdit::Normal);
}

QTEST_MAIN(tst_PreferencesDialog)
#include "tst_PreferencesDialog.moc"
