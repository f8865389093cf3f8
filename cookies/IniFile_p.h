#ifndef COOKIES_INIFILE_P_H
#define COOKIES_INIFILE_P_H

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace vlm
{
namespace cookies
{
// The one value of the engine's "cookie.ini". QSettings writes it, and reads it as far as it
// builds nothing else by that: its cache, which it shares with the engine, stays true.
//
// QSettings may leave a part of the file. So whoever saves first puts a copy of the old content
// beside it, on the disk, and locks it ("cookie.ini.rollback"; empty where there was nothing). When
// the new content is on the disk and has been read back, the copy goes; when anything fails, the
// copy is put back first. A copy that nobody has locked was left by a death: the next read or save
// drops it if "cookie.ini" is whole, and puts it back if not. Whole means that the count and the
// lengths of the value fill it exactly, which no beginning of a file can, and that no zero byte
// stands in the file. Where "cookie.ini" is gone, somebody has removed it: then the copy goes too.
class IniFile
{
public:
    explicit IniFile(const QString &path);

    // False if the file exists but cannot be read, or is larger than kMaxIniBytes. The value of a
    // file that is missing or does not have it is empty.
    bool read(QByteArray *value) const;
    // Replaces everything in the file. False if the value is not on the disk: the old content then
    // stands, or comes back with the next read or save. What cannot be read is not replaced.
    bool write(const QByteArray &value) const;

private:
    bool settle() const;
    bool settleNow() const;
    bool putBack(const QByteArray &old) const;
    bool replace(const QByteArray &old, const QByteArray &value) const;

    QString m_path;
    QByteArray m_name;
    QByteArray m_copyName;
};
} // namespace cookies
} // namespace vlm

#endif
