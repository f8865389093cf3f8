#include "examples/kiosk/PreferencesDialog.h"

#include "preferences/VLMC_BrowserCommonSetting.h"
#include "preferences/VLMC_BrowserUserSetting.h"

#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QScrollArea>

namespace
{
typedef VLMC_BrowserCommonSetting Device;
typedef VLMC_BrowserUserSetting User;

Device &device() { return *Device::getInstance(); }
User &user() { return *User::getInstance(); }

const int kZooms = 11;
// The stores' code for a deletion at a change of the user.
const char kAtUserChange = 3;

// A switch of the device. What is off by default takes 1 for on and nothing else.
struct Switch {
    const char *label;
    char (Device::*get)();
    void (Device::*set)(char);
};

const Switch kSwitches[] = {
    {QT_TRANSLATE_NOOP("PreferencesDialog", "Accept cookies"), &Device::getRcvCookieInfo,
     &Device::setRcvCookieInfo},
    {QT_TRANSLATE_NOOP("PreferencesDialog", "Use the cache"), &Device::getUseCacheInfo,
     &Device::setUseCacheInfo},
    {QT_TRANSLATE_NOOP("PreferencesDialog", "Run scripts"), &Device::getUseJavaScriptInfo,
     &Device::setUseJavaScriptInfo},
    {QT_TRANSLATE_NOOP("PreferencesDialog", "Play plug-ins"), &Device::getPlayFlashInfo,
     &Device::setPlayFlashInfo},
    {QT_TRANSLATE_NOOP("PreferencesDialog", "SSL 3.0"), &Device::getUseSSL30, &Device::setUseSSL30},
    {QT_TRANSLATE_NOOP("PreferencesDialog", "TLS 1.0"), &Device::getUseTLS10, &Device::setUseTLS10},
    {QT_TRANSLATE_NOOP("PreferencesDialog", "TLS 1.1"), &Device::getUseTLS11, &Device::setUseTLS11},
    {QT_TRANSLATE_NOOP("PreferencesDialog", "TLS 1.2"), &Device::getUseTLS12, &Device::setUseTLS12},
    {QT_TRANSLATE_NOOP("PreferencesDialog", "Use a proxy"), &Device::getUseProxyInfo,
     &Device::setUseProxyInfo},
    {QT_TRANSLATE_NOOP("PreferencesDialog", "The proxy requires an account"),
     &Device::getUseProxyCertificationInfo, &Device::setUseProxyCertificationInfo},
};

struct Line {
    const char *label;
    void (Device::*get)(QString *);
    int (Device::*set)(QString);
};

const Line kProxyLines[] = {
    {QT_TRANSLATE_NOOP("PreferencesDialog", "Proxy host"), &Device::getProxyServerStr,
     &Device::setProxyServerStr},
    {QT_TRANSLATE_NOOP("PreferencesDialog", "Port for HTTP"), &Device::getProxyHttpPortStr,
     &Device::setProxyHttpPortStr},
    {QT_TRANSLATE_NOOP("PreferencesDialog", "Port for HTTPS"), &Device::getProxyHttpsPortStr,
     &Device::setProxyHttpsPortStr},
    {QT_TRANSLATE_NOOP("PreferencesDialog", "No proxy for"), &Device::getNoProxyDomainStr,
     &Device::setNoProxyDomainStr},
};
} // namespace

PreferencesDialog::PreferencesDialog(const QStringList &fonts, QWidget *parent)
    : QDialog(parent), m_form(nullptr)
{
    setWindowTitle(tr("Preferences"));
    QWidget *const rows = new QWidget(this);
    m_form = new QFormLayout(rows);
    addPages();
    addLook(fonts);
    addSwitches();
    addDeletions();
    addProxy();

    QScrollArea *const area = new QScrollArea(this);
    area->setWidgetResizable(true);
    area->setWidget(rows);
    QDialogButtonBox *const buttons =
        new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &PreferencesDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &PreferencesDialog::reject);
    QVBoxLayout *const layout = new QVBoxLayout(this);
    layout->addWidget(area);
    layout->addWidget(buttons);
}

void PreferencesDialog::accept()
{
    bool accepted = true;
    for (const std::function<bool()> &store : qAsConst(m_stores)) {
        accepted = store() && accepted;
    }
    if (!accepted) {
        QMessageBox::warning(this, windowTitle(), tr("A text is too long and was not stored."));
    }
    QDialog::accept();
}

void PreferencesDialog::addPages()
{
    QString home;
    user().getHomePage(&home);
    addLine(tr("Home page"), home, [](const QString &url) { return user().setHomePage(url); });
    addChoice(tr("Start with"), QStringList() << tr("the home page") << tr("the last page"),
              user().getStartUp(), [](int chosen) { user().setStartUp(char(chosen)); });
}

void PreferencesDialog::addLook(const QStringList &fonts)
{
    QStringList zooms;
    for (int code = 1; code <= kZooms; ++code) {
        zooms.append(tr("%1 %").arg(40 + 10 * code));
    }
    addChoice(tr("Zoom"), zooms, user().getZoomInfo() - 1,
              [](int chosen) { user().setZoomInfo(short(chosen + 1)); });
    QString family;
    user().getFontName(&family);
    // The first choice stands for no family of the user's.
    addChoice(tr("Font"), QStringList(tr("the engine's own")) + fonts,
              int(fonts.indexOf(family)) + 1,
              [fonts](int chosen) { user().setFontName(fonts.value(chosen - 1)); });
}

void PreferencesDialog::addSwitches()
{
    for (const Switch &row : kSwitches) {
        addSwitch(tr(row.label), (device().*row.get)(),
                  [&row](char code) { (device().*row.set)(code); });
    }
}

void PreferencesDialog::addDeletions()
{
    const QString label = tr("Delete %1 when the user changes");
    addSwitch(label.arg(tr("cookies")), user().getCookieDeleteTiming(),
              [](char on) { user().setCookieDeleteTiming(on ? kAtUserChange : 0); });
    addSwitch(label.arg(tr("credentials")), user().getCertificationDeleteTiming(),
              [](char on) { user().setCertificationDeleteTiming(on ? kAtUserChange : 0); });
    addSwitch(label.arg(tr("the cache")), device().getCacheDeleteTiming(),
              [](char on) { device().setCacheDeleteTiming(on ? kAtUserChange : 0); });
}

void PreferencesDialog::addProxy()
{
    for (const Line &row : kProxyLines) {
        QString value;
        (device().*row.get)(&value);
        addLine(tr(row.label), value,
                [&row](const QString &entered) { return (device().*row.set)(entered); });
    }
    QByteArray account;
    QByteArray password;
    device().getProxyAccountStr(&account);
    device().getProxyPasswordStr(&password);
    addLine(tr("Proxy account"), QString::fromUtf8(account),
            [](const QString &entered) { return device().setProxyAccountStr(entered.toUtf8()); });
    addLine(
        tr("Proxy password"), QString::fromUtf8(password),
        [](const QString &entered) { return device().setProxyPasswordStr(entered.toUtf8()); },
        true);
}

void PreferencesDialog::addSwitch(const QString &label, bool isOn,
                                  const std::function<void(char)> &store)
{
    QCheckBox *const box = new QCheckBox(label, this);
    box->setChecked(isOn);
    m_form->addRow(box);
    m_stores.append([box, store] {
        store(box->isChecked() ? 1 : 0);
        return true;
    });
}

void PreferencesDialog::addLine(const QString &label, const QString &value,
                                const std::function<int(const QString &)> &store, bool isSecret)
{
    QLineEdit *const line = new QLineEdit(value, this);
    line->setEchoMode(isSecret ? QLineEdit::Password : QLineEdit::Normal);
    m_form->addRow(label, line);
    m_stores.append([line, store] { return store(line->text()) == 1; });
}

void PreferencesDialog::addChoice(const QString &label, const QStringList &words, int chosen,
                                  const std::function<void(int)> &store)
{
    QComboBox *const box = new QComboBox(this);
    box->addItems(words);
    box->setCurrentIndex(chosen);
    m_form->addRow(label, box);
    m_stores.append([box, store] {
        store(box->currentIndex());
        return true;
    });
}
