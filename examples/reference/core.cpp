#include "core/QEXC_TextCodec.h"
#include "core/VLMC_OlpUrl.h"
#include "core/VLMC_XMLNode.h"
#include "core/VLMC_XMLReader.h"
#include "core/VLMC_XMLSetting.h"
#include "core/VLMC_XMLWriter.h"
#include "core/VLMG_Debug.h"
#include "examples/reference/Reference.h"

#include <QtCore/QUrl>

namespace
{
void logging()
{
    //! [core: log]
    g_uc_SystemLogLevel = 0;                // the device's system log, on from the start
    VLMG_DebugSetLogLevel(VLMG_LogWarning); // errors and warnings to the file
    VLMG_DebugPrint(VLMG_LogWarning, "[Browser::start] no profile for user %d", 7);
    VLMG_DebugSetLogLevel(0); // no file
    //! [core: log]
    EXPECT(ul_outputLevel == 0);
}

bool isLocal()
{
    //! [core: local content]
    char device[] = "printer.local";
    char other[] = "";
    const QUrl url(QString::fromUtf8("http://PRINTER.local/status"));
    const bool local = VLMC_OlpUrl::IsOlpContents(url, 1, device, other);
    //! [core: local content]
    return local;
}

QString text()
{
    //! [core: Shift JIS]
    const QString text = QEXC_TextCodec::fromSJIS("\x92\x6e\x90\x7d");
    //! [core: Shift JIS]
    return text;
}

bool write(const QString &directory)
{
    //! [core: tree]
    VLMC_XMLNode root(nullptr, 0);
    QString name = QString::fromUtf8("places");
    root.setName(name);
    VLMC_XMLNode *place =
        new VLMC_XMLNode(&root, 0); // the root's last child, and the root's to delete
    name = QString::fromUtf8("place");
    place->setName(name);
    QString content = QString::fromUtf8("Kyoto & Nara");
    place->setText(content);
    QString path = directory + QString::fromUtf8("places.xml");
    VLMC_XMLWriter writer;
    const bool written = writer.write(path, &root);
    //! [core: tree]
    return written;
}

QString read(const QString &directory)
{
    //! [core: read]
    QString path = directory + QString::fromUtf8("places.xml");
    VLMC_XMLReader reader;
    VLMC_XMLNode *root = reader.read(path); // never null, and the caller's
    QString name = QString::fromUtf8("place");
    VLMC_XMLNode *place = root->getXMLNodeChildByName(name);
    const QString content = place ? place->getText() : QString();
    delete root;
    //! [core: read]
    return content;
}

//! [core: a store]
// The smallest store: one text in one file.
class Greeting : public VLMC_XMLSetting
{
public:
    static Greeting *getInstance()
    {
        static Greeting instance;
        return &instance;
    }
    void loadGreeting(const QString &directory)
    {
        QString path = directory + QString::fromUtf8("greeting.xml");
        load(path);
        QString name = QString::fromUtf8("greeting");
        getXMLRootNode()->setName(name);
    }
    void setGreeting(const QString &text)
    {
        setElement(getXMLRootNode(), QString::fromUtf8("text"), text, QXmlStreamAttributes(), 0, 0);
    }
    QString getGreeting()
    {
        VLMC_XMLNode *const element =
            getXMLRootNode() ? getChildNode(QString::fromUtf8("text")) : nullptr;
        return element ? element->getText() : QString();
    }
    void saveGreeting(const QString &directory)
    {
        QString path = directory + QString::fromUtf8("greeting.xml");
        save(path);
    }
};
//! [core: a store]
} // namespace

void exampleOfCore(const QString &directory)
{
    logging();
    EXPECT(isLocal());
    EXPECT(text() == utf8("地図"));
    EXPECT(write(directory));
    EXPECT(read(directory) == utf8("Kyoto & Nara"));
    Greeting *greeting = Greeting::getInstance();
    EXPECT(greeting->getGreeting().isEmpty());
    greeting->loadGreeting(directory);
    greeting->setGreeting(utf8("Welcome"));
    greeting->saveGreeting(directory);
    greeting->loadGreeting(directory);
    EXPECT(greeting->getGreeting() == utf8("Welcome"));
}
