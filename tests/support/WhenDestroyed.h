#ifndef WHENDESTROYED_H
#define WHENDESTROYED_H

#include <QtCore/QObject>

#include <functional>

/// Does the work when the object is destroyed. Qt 4 connects no signal to a function.
inline void whenDestroyed(QObject *object, const std::function<void()> &work)
{
    class Worker : public QObject
    {
    public:
        Worker(QObject *parent, const std::function<void()> &work) : QObject(parent), m_work(work)
        {
        }
        ~Worker() override { m_work(); }

    private:
        const std::function<void()> m_work;
    };
    new Worker(object, work);
}

#endif
