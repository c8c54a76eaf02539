#pragma once

#include <QLineEdit>

#include <limits>
#include <optional>

// An edit of one line. In what the user types, pastes or drops, line breaks and tabs become blanks,
// and those at either end are removed.
//
// It can limit the length of what the user enters, and cuts it between two characters. A longer
// stored text is shown completely, and may be edited as long as it does not grow.
class LineEdit final : public QLineEdit
{
    Q_OBJECT
    Q_PROPERTY(int maxInputLength READ maxInputLength WRITE setMaxInputLength)

public:
    explicit LineEdit(QWidget *parent = nullptr);

    int maxInputLength() const { return m_maxInputLength; } // in UTF-16 code units
    void setMaxInputLength(int length);

    void showStored(const QString &text); // with the cursor at the beginning

    QSize sizeHint() const override; // if the length is limited, wide enough for that
    bool event(QEvent *event) override;

private:
    class Validator;
    struct Input {
        qsizetype position;
        qsizetype replaced; // length of the text that it replaces
        QString text;
    };

    bool isAccepted(const QString &text, qsizetype cursor);
    Input lastInput(const QString &text, qsizetype cursor) const;
    void insertCorrected();

    static constexpr int unlimited = std::numeric_limits<int>::max();
    int m_maxInputLength = unlimited;
    qsizetype m_maxTextLength = unlimited; // at least the length of the stored text
    QString m_text; // before the input that is being checked
    std::optional<Input> m_corrected; // to be inserted instead of input that was refused
};
