#ifndef TEXT_TIMETEXT_P_H
#define TEXT_TIMETEXT_P_H

#include <QtCore/QDateTime>
#include <QtCore/QString>

// Points in local time as the files hold them.
namespace vlm
{
enum TimeText {
    ToMinute, // "yyyy/MM/dd hh:mm"
    ToSecond  // "yyyy/MM/dd hh:mm:ss"
};

// The text of a time; empty for an invalid one.
QString textOfTime(const QDateTime &time, TimeText form);

// The time of a text, or an invalid one for a text that does not match the form digit by digit. A
// local time that a change to daylight saving skips is valid, keeps its text, and lies where the
// clock before the change would have it.
QDateTime timeOfText(const QString &text, TimeText form);

// Numbers that order as the times of such texts do, later times higher, and are equal for equal
// times. For one sort each: it remembers the day it has looked at last.
class ClockOrder
{
public:
    // What a text stands for that timeOfText(text, ToMinute) refuses.
    static const qint64 NoTime = -1;

    qint64 of(const QString &text);

private:
    void lookAt(const QDate &date);

    int m_day = 0; // its digits, yyyyMMdd
    bool m_isValid = false;
    bool m_mayHaveGap = false;
};
} // namespace vlm

#endif
