#pragma once

#include <QLineEdit>

// An edit whose limit binds what is typed and pasted, not what is stored: a longer text is shown as
// a whole, and can then only be made shorter.
class LimitedEdit final : public QLineEdit
{
    Q_OBJECT
    Q_PROPERTY(int entryLimit READ entryLimit WRITE setEntryLimit)

public:
    explicit LimitedEdit(QWidget *parent = nullptr);

    int entryLimit() const { return m_entryLimit; }
    void setEntryLimit(int characters);

    void showStored(const QString &text);

    QSize sizeHint() const override; // as wide as the limit

private:
    void onTextEdited(const QString &text);

    int m_entryLimit = 0;
    qsizetype m_length = 0; // of the text before the edit
};
