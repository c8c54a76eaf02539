#pragma once

#include <QObject>

class Activation;

// An access key that the window in front has in common with the menu bar is the window's: Qt by
// itself would give it to each in turn, and then only move the focus.
class AccessKeys final : public QObject
{
    Q_OBJECT

public:
    explicit AccessKeys(const Activation &activation); // watches the application while it lives

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    const Activation &m_activation;
};
