#include "core/Entries_p.h"

#include "core/Identifier_p.h"
#include "core/VLMC_XMLSetting.h"
#include "tests/support/Files.h"
#include "tests/support/Nodes.h"
#include "tests/support/WatchedStore.h"

#include <QtCore/QPointer>

#include <atomic>
#include <thread>
#include <vector>

using namespace vlm;

class tst_Entries : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { runDeferredDeletes(); }

    void everything_worksWithoutRoot();
    void operations_callOverrides();
    void childNamed_findsFirst();
    void entriesById_findsFirstOfEach();
    void releaseUnattached_leavesChildrenAlone();
    void nameRoot_leavesOneAttribute();
    void elementName_mayBeCalledFromAnyThread();
};

void tst_Entries::everything_worksWithoutRoot()
{
    VLMC_XMLSetting store;
    QVERIFY(!childNamed(nullptr, "a"));
    QVERIFY(!entryById(store, 0));
    QCOMPARE(int(entriesById(store, 0).size()), 0);
    QCOMPARE(int(entriesById(store, -3).size()), 0);
    QCOMPARE(entriesById(store, 2), noNodes(2));
    QCOMPARE(countEntries(store, "a"), 0);
    numberEntries(store);
    removeEntry(store, 0);
    nameRoot(store, "a");
    releaseUnattached(nullptr);
    QVERIFY(!store.getXMLRootNode());
}

void tst_Entries::operations_callOverrides()
{
    TestDirectory directory;
    const QByteArray path = directory.file("f.xml").toUtf8();
    WatchedStore<VLMC_XMLSetting> store;
    store.createXMLRootNode();
    addElement(store, store.getXMLRootNode(), "e", utf8("t"), CDataText, AtFront);
    COMPARE_BYTES(store.takeCalls(), "addXMLChild  e 't' 1 0 1\n");
    QCOMPARE(countEntries(store, "e"), 0);
    COMPARE_BYTES(store.takeCalls(), "getXMLRootNodeChildCntByName id e\n");
    numberEntries(store);
    COMPARE_BYTES(store.takeCalls(), "setIDforChildren id\n");
    QCOMPARE(countEntries(store, "e"), 1);
    store.takeCalls();
    removeEntry(store, 0);
    COMPARE_BYTES(store.takeCalls(), "deleteXMLNodeByID 0 id\nsetIDforChildren id\n");
    saveFile(store, directory.path(), "f.xml");
    COMPARE_BYTES(store.takeCalls(), "save " + path + '\n');
    loadFile(store, directory.path(), "f.xml");
    COMPARE_BYTES(store.takeCalls(), "load " + path + '\n');
    loadEntries(store, directory.path(), "f.xml");
    COMPARE_BYTES(store.takeCalls(), "deleteAllSetting\nload " + path + "\nsetIDforChildren id\n");
}

void tst_Entries::childNamed_findsFirst()
{
    const QScopedPointer<VLMC_XMLNode> parent(newNode(nullptr, "p"));
    newNode(parent.data(), "other");
    VLMC_XMLNode *const first = newNode(parent.data(), "a", "1");
    newNode(parent.data(), "a", "2");
    QCOMPARE(childNamed(parent.data(), "a"), first);
    QVERIFY(!childNamed(parent.data(), "A"));
    parent->getXMLNodeChildren().prepend(nullptr);
    QCOMPARE(childNamed(parent.data(), "a"), first);
    parent->getXMLNodeChildren().removeFirst();
}

void tst_Entries::entriesById_findsFirstOfEach()
{
    const char *const ids[] = {"3", "001", "x", "1", "-1", "99999999999", "", "2147483647", "0"};
    VLMC_XMLSetting store;
    VLMC_XMLNode *const root = store.createXMLRootNode();
    QVector<VLMC_XMLNode *> nodes;
    for (const char *const id : ids) {
        nodes.append(newNode(root, "e"));
        addAttribute(nodes.last(), "id", id);
    }
    const QList<VLMC_XMLNode *> found = entriesById(store, 5);
    QCOMPARE(int(found.size()), 5);
    QCOMPARE(found.at(0), nodes.at(8));
    QCOMPARE(found.at(1), nodes.at(1));
    QVERIFY(!found.at(2));
    QCOMPARE(found.at(3), nodes.at(0));
    QVERIFY(!found.at(4));
    for (int id = 0; id < 5; ++id) {
        QCOMPARE(entryById(store, id), found.at(id));
    }
}

void tst_Entries::releaseUnattached_leavesChildrenAlone()
{
    VLMC_XMLSetting store;
    const QPointer<VLMC_XMLNode> lost(addElement(store, nullptr, "e", QString(), PlainText, AtEnd));
    const QPointer<VLMC_XMLNode> kept(
        addElement(store, store.createXMLRootNode(), "e", QString(), PlainText, AtEnd));
    releaseUnattached(lost.data());
    releaseUnattached(kept.data());
    QVERIFY(!lost.isNull());
    runDeferredDeletes();
    QVERIFY(lost.isNull());
    QVERIFY(!kept.isNull());
}

void tst_Entries::nameRoot_leavesOneAttribute()
{
    VLMC_XMLSetting store;
    VLMC_XMLNode *const root = store.createXMLRootNode();
    addAttribute(root, "a", "b");
    addAttribute(root, "docInfo", "7");
    nameRoot(store, "list");
    QCOMPARE(described(root), QByteArray("list{docInfo=1.0}"));
}

// Names that none of the threads has asked for before, so that each call adds one.
void tst_Entries::elementName_mayBeCalledFromAnyThread()
{
    const int threadCount = 8;
    const int nameCount = 10000;
    std::atomic<int> ready(0);
    std::vector<int> wrong(threadCount, 0);
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.push_back(std::thread([&wrong, &ready, i] {
            // So that none is done before the last begins.
            ++ready;
            while (ready < threadCount) {
                std::this_thread::yield();
            }
            for (int k = 0; k < nameCount; ++k) {
                // Half of them are those of the next thread, too.
                const QByteArray name = "name" + QByteArray::number((i + k % 2) * nameCount + k);
                const QString text = elementName(name.constData());
                wrong[size_t(i)] += text == QString::fromLatin1(name.constData()) ? 0 : 1;
            }
        }));
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    QCOMPARE(wrong, std::vector<int>(threadCount, 0));
}

QTEST_GUILESS_MAIN(tst_Entries)
#include "tst_Entries.moc"
