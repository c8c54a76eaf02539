#pragma once

#include <QListView>

// A list of one-line texts from any model, however many. It can say in grey why it is empty, and
// shows a text that is cut off as a tooltip. Where rows are chosen one by one, a typed letter finds
// a row without choosing it.
class TextListView : public QListView
{
    Q_OBJECT
    Q_PROPERTY(QString placeholderText READ placeholderText WRITE setPlaceholderText)

public:
    explicit TextListView(QWidget *parent = nullptr);

    QString placeholderText() const { return m_placeholderText; }
    void setPlaceholderText(const QString &text) { m_placeholderText = text; }

    QSize sizeHint() const override; // some rows of a text of some length

protected:
    QItemSelectionModel::SelectionFlags
    selectionCommand(const QModelIndex &index, const QEvent *event = nullptr) const override;
    void paintEvent(QPaintEvent *event) override;
    bool viewportEvent(QEvent *event) override;

private:
    QString cutText(const QModelIndex &index) const;

    QString m_placeholderText;
};
