#ifndef TESTS_DIFFERENTIAL_PLAINFONTLIST_H
#define TESTS_DIFFERENTIAL_PLAINFONTLIST_H

#include "tests/differential/PlainStore.h"

/// The rules of VLMC_FontListSetting.
class PlainFontList : public PlainStore
{
public:
    void loadFontList(const QString &directory);
    int getCount();
    QString getFont(int index);
    void addFont(const QString &name);
    void saveFontList(const QString &directory);
};

#endif
