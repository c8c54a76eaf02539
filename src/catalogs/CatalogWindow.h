#pragma once

#include "data/DataSource.h"
#include "frame/ChildWindow.h"
#include "widgets/ListBox.h"

#include <functional>
#include <optional>

class FindBar;
class LineEdit;
class ListBoxFinder;
class QLabel;
class QPushButton;
class WarningFrame;

// Returns the name and the key of every row, in the cursor's order. Reads; throws DatabaseError.
QList<ListBox::Row> namesOf(RecordCursor &rows, QLatin1StringView keyField,
                            QLatin1StringView nameField);

// The base of both catalogs: a list of all rows of a table, and the fields of the selected row or
// of a new one. A catalog keeps the activation until its Done. Until its table has been read, or if
// that has failed, it shows no row and its controls are disabled.
class CatalogWindow : public ChildWindow
{
    Q_OBJECT

protected:
    // What differs between the catalogs. The pointers must be valid as long as the window lives.
    struct Catalog {
        DataSource *source = nullptr;
        QLatin1StringView keyField;
        QLatin1StringView nameField;
        ListBox *list = nullptr;
        FindBar *findBar = nullptr; // narrows the list
        LineEdit *name = nullptr;
        QLabel *newMark = nullptr; // shown beside a new row
        QPushButton *previous = nullptr;
        QPushButton *next = nullptr;
        QPushButton *newRow = nullptr;
        QPushButton *save = nullptr; // becomes the default button
        QList<QWidget *> others{}; // the other controls that need a row
        QString unreadText; // in the place of the list if it could not be read
        QString saveQuestion;
    };

    // A column, what the window shows of it, and what it stores for that.
    struct Field {
        QLatin1StringView column;
        QVariant shown;
        QVariant stored;
    };
    using Fields = QList<Field>;

    using ChildWindow::ChildWindow;
    void setCatalog(const Catalog &catalog); // to be called once, by the constructor

    DataSources &sources() { return m_sources; } // for the declaration of the catalog's source
    void openDataSources() final;
    void Form_Activate() final;
    void refresh() final; // unless there are unsaved changes of rows that have been read
    bool keepsActivationFrom(const ChildWindow & /*next*/) const noexcept final { return true; }

    virtual void showNone(); // an override empties its own fields, then calls this one
    virtual void showNew() { showNone(); }
    virtual void save() = 0; // stores what is valid; refuses anything else without a message
    virtual Fields fieldsOnScreen() const = 0;
    // Whether the fields beside the name are valid; marks those that are not.
    virtual bool checkFields() { return true; }
    // Why no row may get the name that has been entered, for the catalog as it is now; empty if it
    // may. Moves the cursor to the row that has the name.
    virtual QString reasonNameIsTaken(RecordCursor &rows) = 0;

    qint64 currentId() const { return m_currentId; } // key of the shown row; 0 for a new one
    QVariant shownValue(QLatin1StringView column) const; // before the user edited it
    bool isEdited() const; // whether there is anything to store
    void setChanged(bool changed);

    // Reads the table again and lists it without selecting a row. If it is empty, shows a new row.
    void fillList();
    // Selects the nearest row that the find bar leaves in the list. If it leaves none, empties it
    // and selects this row.
    void selectNear(int row);
    void goTo(qint64 key); // moves the cursor; throws RowNotFound
    // Runs an action that reads and shows a row. If it throws, the window shows the table as it is
    // now, or says that it could not be read.
    void showRow(const std::function<void()> &action);
    void showKeyAndName(); // of the cursor's row; the other fields follow, then setShown()
    void setShown(); // what is on the screen now is not edited yet
    void offerToSave();
    // Stores the fields, then lists the table again and selects the stored row. Stores nothing and
    // marks the field if one is not valid.
    void store();
    // Runs the action. If the row that it needs is gone, shows the table as it is now and throws
    // RowNotFound.
    void withRow(const std::function<void()> &action);

private:
    void cmdPrevious_Click();
    void cmdNext_Click();
    void cmdNew_Click();
    void cmdSave_Click();
    void onNarrowed();
    void onRowSelected();
    void onFindEntered();
    void onFindMoved(int row);

    RecordCursor &rows() const;
    void showUnread();
    void enableControls();
    void setCurrentId(qint64 key);
    void listAgain();
    void step(int by);
    QString reasonNameIsInvalid() const;
    std::optional<qint64> storeRow();
    qint64 write();

    DataSources m_sources;
    Catalog m_catalog;
    ListBoxFinder *m_finder = nullptr;
    WarningFrame *m_nameWarning = nullptr;
    Fields m_shown;
    qint64 m_currentId = 0;
    bool m_isRowChosen = false; // whether a row was selected after the latest letter in the bar
    bool m_isRead = false;
    bool m_changed = false;
};
