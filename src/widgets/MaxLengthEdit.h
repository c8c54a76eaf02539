#pragma once

#include <QLineEdit>

// An edit whose limit binds what is typed and pasted, not what is stored: a longer text is shown as
// a whole, and can then only be made shorter.
class MaxLengthEdit final : public QLineEdit
{
    Q_OBJECT
    Q_PROPERTY(int maxTypedLength READ maxTypedLength WRITE setMaxTypedLength)

public:
    explicit MaxLengthEdit(QWidget *parent = nullptr);

    int maxTypedLength() const { return m_maxTypedLength; }
    void setMaxTypedLength(int characters);

    void showStored(const QString &text);

    QSize sizeHint() const override; // as wide as the limit

private:
    void onTextEdited(const QString &text);

    int m_maxTypedLength = 0;
    qsizetype m_length = 0; // of the text before the edit
};
