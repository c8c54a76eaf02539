#pragma once

#include <QListView>
#include <QStringListModel>

// A list of texts of which one or none is selected. It can say in grey why it is empty, and shows a
// text that is cut off as a tooltip.
class ListBox final : public QListView
{
    Q_OBJECT
    Q_PROPERTY(QString emptyText READ emptyText WRITE setEmptyText)

public:
    explicit ListBox(QWidget *parent = nullptr);

    QString emptyText() const { return m_emptyText; }
    void setEmptyText(const QString &text) { m_emptyText = text; }

    QStringList texts() const { return m_texts.stringList(); }
    void setTexts(const QStringList &texts); // none is selected then
    void append(const QString &text); // comes into view, the selection stays
    void remove(int row); // where it was selected, none is then

    int count() const { return m_texts.rowCount(); }
    int selectedRow() const; // from 0; -1 for none
    QString selectedText() const;
    void selectRow(int row); // comes into view; nothing where there is no such row

    QSize sizeHint() const override; // some rows of a text of some length

Q_SIGNALS:
    // By the user or by the program; again where the user clicks on the one that is selected.
    void rowSelected();

protected:
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex &index,
                                                         const QEvent *event) const override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    bool viewportEvent(QEvent *event) override;

private:
    void onSelectionChanged();
    QString cutText(const QModelIndex &index) const;

    QStringListModel m_texts;
    QString m_emptyText;
};
