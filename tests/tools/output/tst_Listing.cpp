// One description of columns makes a table and JSON.

#include "tests/support/Files.h"
#include "tests/support/Processes.h"
#include "tools/velmora-profile/output/Console.h"
#include "tools/velmora-profile/output/Listing.h"

#include <QtTest/QtTest>

using namespace profile;

class tst_Listing : public QObject
{
    Q_OBJECT

private slots:
    void say_printsATable();
    void say_printsJson();
    void say_printsHeadingsAlone();
};

namespace
{
// What the listing says, in a process of its own.
QByteArray saidBy(const Listing &listing, bool asJson)
{
    const TestDirectory directory;
    const QString path = directory.file("stdout");
    inChild([&] {
        QFile output(path);
        if (!output.open(QIODevice::WriteOnly) || dup2(output.handle(), STDOUT_FILENO) < 0) {
            _exit(1);
        }
        listing.say(asJson);
        fflush(stdout);
    });
    return readFile(path);
}

Listing columns()
{
    return Listing({{"name", "Name"},
                    {"size", "Size"},
                    {"isOpen", "Open"},
                    {"owners", "Owners"},
                    {nullptr, "Note"},
                    {"mode", nullptr}});
}

Listing filled()
{
    Listing listing = columns();
    listing.add({text("a"), 7, true, QJsonArray{text("x"), text("y")}, text("!"), 600});
    listing.add({text("b\n"), 12, false, QJsonArray(), QString(), 644});
    return listing;
}
} // namespace

void tst_Listing::say_printsATable()
{
    COMPARE_BYTES(saidBy(filled(), false), "Name  Size  Open  Owners  Note\n"
                                           "a     7     yes   x, y    !\n"
                                           "b␊    12    no\n");
}

void tst_Listing::say_printsJson()
{
    const QJsonArray json = {
        QJsonObject{{text("name"), text("a")},
                    {text("size"), 7},
                    {text("isOpen"), true},
                    {text("owners"), QJsonArray{text("x"), text("y")}},
                    {text("mode"), 600}},
        QJsonObject{{text("name"), text("b\n")},
                    {text("size"), 12},
                    {text("isOpen"), false},
                    {text("owners"), QJsonArray()},
                    {text("mode"), 644}},
    };
    COMPARE_BYTES(saidBy(filled(), true), QJsonDocument(json).toJson());
}

void tst_Listing::say_printsHeadingsAlone()
{
    QVERIFY(columns().isEmpty());
    QVERIFY(!filled().isEmpty());
    COMPARE_BYTES(saidBy(columns(), false), "Name  Size  Open  Owners  Note\n");
    COMPARE_BYTES(saidBy(columns(), true), "[\n]\n");
}

QTEST_GUILESS_MAIN(tst_Listing)
#include "tst_Listing.moc"
