#ifndef TESTS_DIFFERENTIAL_PLAINAUTH_H
#define TESTS_DIFFERENTIAL_PLAINAUTH_H

#include "tests/differential/PlainStore.h"

struct VLMS_AuthInfo;

/// The rules of VLMC_AuthSetting.
class PlainAuth : public PlainStore
{
public:
    void loadAuthInfo(const QString *dir, int max);
    void saveAuthInfo(const QString *dir, int max);
    int getAuthInfoCnt();
    bool getAuthInfo(int id, VLMS_AuthInfo *out);
    bool setAuthInfo(const VLMS_AuthInfo *info);
    bool updateAuthInfo(const VLMS_AuthInfo *info);
    void addAuthInfo(const VLMS_AuthInfo *info);
    void deleteAuthInfo(int id);

private:
    int m_loadMax = 0;
};

#endif
