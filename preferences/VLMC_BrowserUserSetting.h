#ifndef VLMC_BROWSERUSERSETTING_H
#define VLMC_BROWSERUSERSETTING_H

#include "core/VLMC_XMLSetting.h"

/**
 * The preferences of one user, kept in "repostry_private.xml" in a directory that the caller names:
 * pages, zoom, font, and when cookies and credentials are deleted. Changes stay in memory until
 * saveSetting. Directories end with "/": the file name is appended as it stands. Used from one
 * thread, which runs an event loop.
 *
 * The administrator's values decide some defaults. The application sets them before it loads; they
 * are kept until the process ends and never stored.
 *
 * Before the first load getters give their defaults, text outputs stay as they are, and setters
 * change nothing and return 0. Text limits count bytes of UTF-8. Setters that return a result give
 * 1 when the value was stored and 0 when it was refused.
 */
class VLM_EXPORT VLMC_BrowserUserSetting : public VLMC_XMLSetting
{
public:
    /// The one store of the process, created on the first call and destroyed at exit.
    static VLMC_BrowserUserSetting *getInstance();

    VLMC_BrowserUserSetting();
    ~VLMC_BrowserUserSetting();

    /// Replaces the preferences by those in the directory; what the file lacks takes its default,
    /// so a missing file gives the defaults of all. A null or empty directory is refused with a
    /// warning in the log and changes nothing.
    void loadSetting(QString *dir);
    /// Writes the preferences into the directory; before the first load no file is touched. A null
    /// or empty directory is refused with a warning in the log.
    void saveSetting(QString *dir);

    /// The home page and the page shown last, at most 256 bytes; "about:blank" by default and when
    /// the stored one is empty or longer. A null output is refused with a warning in the log.
    void getHomePage(QString *url);
    int setHomePage(QString url);
    void getLastPage(QString *url);
    int setLastPage(QString url);
    /// What is shown at the start: 1 the last page, or 0 the home page, the default. Only 1 sets
    /// the last page.
    char getStartUp();
    void setStartUp(char code);
    /// The zoom, from 1 (half the size) in steps of a tenth up to 11 (one and a half); 6, the full
    /// size, by default and if the stored text is none of these. A code outside 1 to 11 is refused
    /// and changes no zoom, but leaves a group element "pageInfo" with its text emptied.
    short getZoomInfo();
    int setZoomInfo(short zoom);
    /// The font's family, at most 256 bytes; empty by default and when the stored one is longer. A
    /// null output is refused with a warning in the log.
    void getFontName(QString *name);
    int setFontName(QString name);

    /// When cookies and credentials are deleted: 0 never, or 3 at a change of the user. The codes 1
    /// to 3 mean a change of the user, all others never. An entry that is missing, and any before
    /// the first load, reads as 3 for user type 4 and as 0 otherwise.
    char getCookieDeleteTiming();
    void setCookieDeleteTiming(char code);
    char getCertificationDeleteTiming();
    void setCertificationDeleteTiming(char code);
    /// 1 if one of the two entries exists and holds a word other than "changeUser", even one that
    /// reads as 3; 0 otherwise and before the first load.
    char IsNotChgUserDeletetiming();
    /// Rewrites "changeUser" in the two entries as the older "logout", which reads the same.
    void CnvOldtypeDeletetiming();

    /// For types 1 and 3 the administrator's delete timings are loaded as defaults, for type 3 the
    /// administrator's home page and start-up choice as well; for type 4 see getCookieDeleteTiming.
    /// 0 at first.
    void setUserType(unsigned long type);
    /// 0 at first, with codes as for setCookieDeleteTiming.
    void setBrwAdminCookieDeleteTiming(char code);
    void setBrwAdminCertificateDeleteTiming(char code);
    /// 0 at first, with codes as for setStartUp.
    void setBrwAdminStartup(char code);
    /// "about:blank" at first. One of more than 256 bytes is not stored: a file without a home page
    /// stays without one.
    void setBrwAdminHomepage(QString url);
    /// Kept for the application; true at first. Nothing in the library reads it.
    void setBrwAdminSetting(bool setting);
    /// Whether missing delete timings load as "changeUser" for user types other than 1 and 3; false
    /// at first.
    void setBrwSettingflag(bool flag);

private:
    VLM_HIDDEN void completeDocument();
    VLM_HIDDEN char defaultTiming(char adminTiming) const;
    VLM_HIDDEN char missingTiming() const;

    unsigned long m_userType;
    char m_adminCookieDeleteTiming;
    char m_adminCertificateDeleteTiming;
    char m_adminStartup;
    QString m_adminHomepage;
    bool m_adminSetting;
    bool m_settingFlag;
};

#endif
