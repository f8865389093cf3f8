#ifndef TEXT_TIMETEXT_P_H
#define TEXT_TIMETEXT_P_H

#include <QtCore/QDateTime>
#include <QtCore/QString>

// Local times as the files have them.
namespace vlm
{
enum TimeText {
    ToMinute, // "yyyy/MM/dd hh:mm"
    ToSecond  // "yyyy/MM/dd hh:mm:ss"
};

// The text of a time; empty for an invalid one.
QString textOfTime(const QDateTime &time, TimeText form);

// The time of a text, or an invalid one for a text that does not match the form digit by digit. A
// local time that a change to daylight saving time skips is valid, keeps its text, and is read by
// the clock before the change.
QDateTime timeOfText(const QString &text, TimeText form);

// Numbers that sort as the times of such texts do: later times are higher, equal times equal. One
// object per sort: it remembers the last day that it looked at.
class ClockOrder
{
public:
    // The number of a text that timeOfText(text, ToMinute) refuses.
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
