#ifndef VLMC_AUTHSETTING_H
#define VLMC_AUTHSETTING_H

#include "core/VLMC_XMLSetting.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

/// What a user entered for one host.
struct VLM_EXPORT VLMS_AuthInfo {
    /// At most 256 bytes of UTF-8.
    QString hostName;
    /// The port as text, at most 5 bytes of UTF-8.
    QString portNum;
    /// 0 basic, 1 digest, 2 NTLM.
    unsigned char authType;
    /// At most 272 bytes, zero bytes included.
    QByteArray user;
    /// At most 272 bytes, zero bytes included.
    QByteArray passwd;
};

/**
 * The user names and passwords for HTTP authentication, kept in "authinfo.xml" in a directory that
 * the caller names, the newest first. An entry is addressed by id, its position, which every
 * insertion and deletion assigns anew. Nothing looks for an entry by host, and nothing refuses a
 * duplicate.
 *
 * User names and passwords are in the file in Base64, not encrypted; a file that the store creates
 * can be read by its owner alone. None of them reaches the log. Changes stay in memory until
 * saveAuthInfo. Directories end with "/": the file name is appended as it stands. Used from one
 * thread, which runs an event loop.
 */
class VLM_EXPORT VLMC_AuthSetting : public VLMC_XMLSetting
{
public:
    /// The one store of the process, created on the first call and destroyed at exit.
    static VLMC_AuthSetting *getInstance();

    VLMC_AuthSetting();

    /// Replaces the entries by those in the directory, however many there are; a missing file gives
    /// none. max is what updateAuthInfo keeps the list to. A null or empty directory and a max
    /// below 1 are refused with a warning in the log and change nothing.
    void loadAuthInfo(QString *dir, int max);
    /// Writes all entries into the directory, whatever max says; before the first load no file is
    /// touched. Refuses what loadAuthInfo refuses.
    void saveAuthInfo(QString *dir, int max);

    /// The number of entries; 0 before the first load.
    int getAuthInfoCnt();
    /// Copies an entry into out. A field that the entry lacks, or has over its limit, keeps what
    /// out has; an authType that is missing or unknown becomes 0. False, with out untouched, for a
    /// null out and for an unknown id.
    bool getAuthInfo(int id, VLMS_AuthInfo *out);
    /// Adds a copy of info at the front. False, without adding anything, for null and for a field
    /// over its limit. Before the first load there is no list and nothing is kept.
    bool setAuthInfo(VLMS_AuthInfo *info);
    /// Deletes the last entry within the max of the last load, even if the list is not full, then
    /// does what setAuthInfo does. The entry stays deleted if info is refused.
    bool updateAuthInfo(VLMS_AuthInfo *info);
    /// Adds a copy of info at the front without any check. Null is ignored.
    void addAuthInfo(VLMS_AuthInfo *info);
    /// Deletes an entry. An unknown id is ignored.
    void deleteAuthInfo(int si_nodeNum);

private:
    int loadMax;
};

#endif
