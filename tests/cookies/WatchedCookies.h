#ifndef WATCHEDCOOKIES_H
#define WATCHEDCOOKIES_H

#include "cookies/VLMC_CookieSetting.h"
#include "tests/support/WatchedStore.h"

/// A cookie store that notes the calls of its virtual operations.
class WatchedCookies : public WatchedStore<VLMC_CookieSetting>
{
public:
    int max() const { return loadMax; }
};

#endif
