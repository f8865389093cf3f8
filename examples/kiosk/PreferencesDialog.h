#ifndef EXAMPLES_KIOSK_PREFERENCESDIALOG_H
#define EXAMPLES_KIOSK_PREFERENCESDIALOG_H

#include <QtWidgets/QDialog>

#include <functional>

class QFormLayout;
class QWidget;

/// All preferences in one form. Accepting it sets the stores in memory; saving is the caller's.
class PreferencesDialog : public QDialog
{
    Q_OBJECT

public:
    PreferencesDialog(const QStringList &fonts, QWidget *parent);

    void accept() override;

private:
    void addPages();
    void addLook(const QStringList &fonts);
    void addSwitches();
    void addDeletions();
    void addProxy();
    void addSwitch(const QString &label, bool isOn, const std::function<void(char)> &store);
    void addLine(const QString &label, const QString &value,
                 const std::function<int(const QString &)> &store, bool isSecret = false);
    void addChoice(const QString &label, const QStringList &words, int chosen,
                   const std::function<void(int)> &store);

    QFormLayout *m_form;
    QList<std::function<bool()>> m_stores; // one per row; false when the store refuses the value
};

#endif
