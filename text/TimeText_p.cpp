#include "text/TimeText_p.h"

namespace
{
const char *patternOf(vlm::TimeText form)
{
    return form == vlm::ToMinute ? "yyyy/MM/dd hh:mm" : "yyyy/MM/dd hh:mm:ss";
}

// One version of Qt parses a one-digit hour, so every character is checked here: a letter of the
// pattern, which in ASCII comes after its other characters, stands for a digit, anything else for
// itself.
bool matches(const QString &text, const char *pattern)
{
    if (text.size() != int(qstrlen(pattern))) {
        return false;
    }
    for (int i = 0; pattern[i]; ++i) {
        const ushort unit = text.at(i).unicode();
        if (pattern[i] >= 'A' ? unit < '0' || unit > '9' : unit != static_cast<uchar>(pattern[i])) {
            return false;
        }
    }
    return true;
}

int numberAt(const QString &text, int position, int digits)
{
    int number = 0;
    for (int i = position; i < position + digits; ++i) {
        number = number * 10 + text.at(i).unicode() - '0';
    }
    return number;
}

QDateTime localTime(const QDate &date, const QTime &time)
{
    const QDateTime local(date, time);
    if (local.isValid()) {
        return local;
    }
#if QT_VERSION >= 0x050200
    // In a gap, which only these versions refuse: the offset before the change still applies.
    const int secondsEast = QDateTime(date.addDays(-1), time).offsetFromUtc();
    return QDateTime(date, time, Qt::OffsetFromUTC, secondsEast);
#else
    return local;
#endif
}

// Days on which the clock is put forward are the only ones with a gap.
bool isStraight(const QDate &date)
{
    const QDateTime start(date, QTime(0, 0));
    const QDateTime end(date.addDays(1), QTime(0, 0));
    const qint64 secondsOfDay = qint64(24) * 60 * 60;
    return start.isValid() && end.isValid() && start.secsTo(end) == secondsOfDay;
}

// yyyyMMdd
int dayIn(const QString &text)
{
    return numberAt(text, 0, 4) * 10000 + numberAt(text, 5, 2) * 100 + numberAt(text, 8, 2);
}

// yyyyMMddhhmm
qint64 digitsIn(const QString &text)
{
    return dayIn(text) * 10000LL + numberAt(text, 11, 2) * 100LL + numberAt(text, 14, 2);
}

QDate dateIn(const QString &text)
{
    return QDate(numberAt(text, 0, 4), numberAt(text, 5, 2), numberAt(text, 8, 2));
}

QTime timeIn(const QString &text, vlm::TimeText form)
{
    return QTime(numberAt(text, 11, 2), numberAt(text, 14, 2),
                 form == vlm::ToSecond ? numberAt(text, 17, 2) : 0);
}
} // namespace

QString vlm::textOfTime(const QDateTime &time, TimeText form)
{
    return time.toString(QString::fromLatin1(patternOf(form)));
}

QDateTime vlm::timeOfText(const QString &text, TimeText form)
{
    if (!matches(text, patternOf(form))) {
        return QDateTime();
    }
    const QDate date = dateIn(text);
    const QTime time = timeIn(text, form);
    if (!date.isValid() || !time.isValid()) {
        return QDateTime();
    }
    return localTime(date, time);
}

// The digits of the local time, one after the other: clocks run forward, so these sort as the times
// do. A time in a gap counts as what the clock showed instead.
qint64 vlm::ClockOrder::of(const QString &text)
{
    if (!matches(text, patternOf(ToMinute)) || !timeIn(text, ToMinute).isValid()) {
        return NoTime;
    }
    const int day = dayIn(text);
    if (day != m_day) {
        m_day = day;
        lookAt(dateIn(text));
    }
    if (!m_isValid) {
        return NoTime;
    }
    return m_mayHaveGap
               ? digitsIn(textOfTime(timeOfText(text, ToMinute).toUTC().toLocalTime(), ToMinute))
               : digitsIn(text);
}

void vlm::ClockOrder::lookAt(const QDate &date)
{
    m_isValid = date.isValid();
    m_mayHaveGap = m_isValid && !isStraight(date);
}
