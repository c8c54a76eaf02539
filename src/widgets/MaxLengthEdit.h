#pragma once

#include <QLineEdit>

// A line edit that limits the length of what the user types and pastes, but shows a longer stored
// text completely. The user can then only make that text shorter.
class MaxLengthEdit final : public QLineEdit
{
    Q_OBJECT
    Q_PROPERTY(int maxInputLength READ maxInputLength WRITE setMaxInputLength)

public:
    explicit MaxLengthEdit(QWidget *parent = nullptr);

    int maxInputLength() const { return m_maxInputLength; }
    void setMaxInputLength(int characters);

    void showStored(const QString &text); // with the cursor at the beginning

    QSize sizeHint() const override; // wide enough for maxInputLength characters

private:
    void onTextEdited(const QString &text);

    int m_maxInputLength = 0;
    qsizetype m_length = 0; // of the text before the latest edit
};
