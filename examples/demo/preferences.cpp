#include "examples/demo/demo.h"

#include "preferences/VLMC_BrowserCommonSetting.h"
#include "preferences/VLMC_BrowserUserSetting.h"

namespace
{
QString onOrOff(char code) { return text(code ? "on" : "off"); }

void showCommonPreferences(QString directory)
{
    const QString path = directory + text("repostry.xml");
    VLMC_BrowserCommonSetting *const device = VLMC_BrowserCommonSetting::getInstance();
    device->loadSetting(&directory); // a missing file: all defaults
    device->saveSetting(&directory);
    say(text("The device's preferences, scripts %1:").arg(onOrOff(device->getUseJavaScriptInfo())));
    printFile(path);

    const char changed = device->getUseJavaScriptInfo() ? 0 : 1;
    device->setUseJavaScriptInfo(changed); // in memory
    device->saveSetting(&directory);
    device->loadSetting(&directory);
    expect(device->getUseJavaScriptInfo() == changed, "the switch for scripts is kept");
    say(text("Changed, saved, loaded again: scripts are %1.").arg(onOrOff(changed)));
    printFile(path);
}

void showUserPreferences(QString directory)
{
    const QString path = directory + text("repostry_private.xml");
    VLMC_BrowserUserSetting *const user = VLMC_BrowserUserSetting::getInstance();
    user->loadSetting(&directory);
    user->saveSetting(&directory);
    QString homePage;
    user->getHomePage(&homePage);
    say(text("The user's preferences, home page %1:").arg(homePage));
    printFile(path);

    const QString changed = text("http://www.example.com/");
    expect(user->setHomePage(changed) == 1, "the home page is accepted");
    user->saveSetting(&directory);
    user->loadSetting(&directory);
    user->getHomePage(&homePage);
    expect(homePage == changed, "the home page is kept");
    say(text("Changed, saved, loaded again: the home page is %1.").arg(homePage));
    printFile(path);
}
} // namespace

void showPreferences(const QString &directory)
{
    heading("Preferences: repostry.xml for the device, repostry_private.xml for its user");
    showCommonPreferences(directory);
    showUserPreferences(directory);
}
