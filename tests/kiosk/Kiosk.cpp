#include "tests/kiosk/Kiosk.h"

#include <QtCore/QEventLoop>
#include <QtCore/QJsonDocument>
#include <QtCore/QTimer>

namespace
{
const int kPatienceMilliseconds = 60000;
}

Kiosk::Kiosk(const QString &profile)
    : m_profile(profile), m_environment(QProcessEnvironment::systemEnvironment())
{
    setEnvironment("XDG_RUNTIME_DIR", m_files.path());
    // Where the times of a server's cookies are those of their file.
    setEnvironment("TZ", utf8("UTC"));
}

void Kiosk::setOptions(const QStringList &options) { m_arguments = options; }

void Kiosk::setEnvironment(const char *name, const QString &value)
{
    m_environment.insert(utf8(name), value);
}

int Kiosk::play(const QStringList &commands)
{
    QEventLoop loop;
    QObject::connect(&m_process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished),
                     &loop, &QEventLoop::quit);
    QTimer::singleShot(kPatienceMilliseconds, &loop, &QEventLoop::quit);
    start(commands + QStringList(utf8("quit")));
    loop.exec();
    if (m_process.state() != QProcess::NotRunning) {
        kill();
        return -1;
    }
    m_output = m_process.readAllStandardOutput();
    m_errors = m_process.readAllStandardError();
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

void Kiosk::start(const QStringList &commands)
{
    const QString file = m_files.file("commands");
    writeFile(file, commands.join(QLatin1Char('\n')).toUtf8());
    m_process.setProcessEnvironment(m_environment);
    m_process.start(utf8(VELMORA_KIOSK),
                    m_arguments + QStringList{utf8("--commands"), file, m_profile});
}

void Kiosk::kill()
{
    m_process.kill(); // SIGKILL
    m_process.waitForFinished(kPatienceMilliseconds);
}

QJsonObject Kiosk::state(int number) const
{
    return QJsonDocument::fromJson(m_output.split('\n').value(number)).object();
}

QByteArray Kiosk::errors() const { return m_errors; }
