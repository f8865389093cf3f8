#ifndef QTTEST_H
#define QTTEST_H

// Qt Test, and what that of Qt 4.8 does not have yet.

#include <QtTest/QtTest>

#if QT_VERSION < 0x050000

#include <QtCore/QCoreApplication>
#include <QtCore/QMetaType>

Q_DECLARE_METATYPE(QList<QByteArray>)
Q_DECLARE_METATYPE(QList<int>)

#define QTEST_GUILESS_MAIN(TestObject)                                                             \
    int main(int argc, char *argv[])                                                               \
    {                                                                                              \
        QCoreApplication application(argc, argv);                                                  \
        TestObject test;                                                                           \
        return QTest::qExec(&test, argc, argv);                                                    \
    }

#undef QSKIP
#define QSKIP(message)                                                                             \
    do {                                                                                           \
        QTest::qSkip(message, QTest::SkipSingle, __FILE__, __LINE__);                              \
        return;                                                                                    \
    } while (false)

#define qInfo qDebug

#endif

/// From here on Qt's own messages go nowhere.
inline void silenceQt()
{
#if QT_VERSION < 0x050000
    struct Silence {
        static void message(QtMsgType, const char *) {}
    };
    qInstallMsgHandler(Silence::message);
#else
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
#endif
}

#endif
