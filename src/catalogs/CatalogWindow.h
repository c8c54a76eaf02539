#pragma once

#include "data/DataSource.h"
#include "frame/ChildWindow.h"

class LineEdit;
class ListBox;
class QPushButton;

// Returns the field's text of every row, in the cursor's order. Reads; throws DatabaseError.
QStringList textsOf(RecordCursor &rows, QLatin1StringView field);

// The base of both catalogs: a list of all rows of a table, and the fields of the selected row or
// of a new one. A catalog keeps the activation until its Done.
class CatalogWindow : public ChildWindow
{
    Q_OBJECT

protected:
    // What differs between the catalogs. The pointers must be valid as long as the window lives.
    struct Catalog {
        DataSource *source = nullptr;
        QLatin1StringView keyField;
        QLatin1StringView nameField;
        ListBox *list = nullptr; // row n of the list is row n of the source
        LineEdit *name = nullptr;
        QPushButton *previous = nullptr;
        QPushButton *next = nullptr;
        QPushButton *newRow = nullptr;
        QPushButton *save = nullptr; // becomes the default button
        QString saveQuestion;
    };

    using ChildWindow::ChildWindow;
    void setCatalog(const Catalog &catalog); // to be called once, by the constructor

    DataSources &sources() { return m_sources; } // for the declaration of the catalog's source
    void openDataSources() final;
    void Form_Activate() final;
    void refresh() final; // unless there are unsaved changes
    bool keepsActivationFrom(const ChildWindow & /*next*/) const noexcept final { return true; }

    virtual void showNew(); // an override empties its own fields, then calls this one
    virtual void save() = 0; // stores what is valid; refuses anything else without a message
    // Sets the edited fields in the row that is being stored.
    virtual void setFields(RecordCursor &row, bool isNew) = 0;

    qint64 currentId() const { return m_currentId; } // key of the shown row; 0 for a new one
    void setChanged(bool changed);

    // Reads the table again and lists it without selecting a row. If it is empty, shows a new row.
    void fillList();
    void goToSelected(); // moves the cursor to the row that is selected in the list
    void goToShown(); // moves the cursor to the shown row; throws RowNotFound
    int shownRow() const; // number of the shown row in the list, from 0; -1 if it is gone
    void showKeyAndName(); // of the cursor's row
    void offerToSave();
    // Stores the fields, then lists the table again and selects the stored row. If the row is gone,
    // shows the table as it is now and throws RowNotFound.
    void store();

private:
    void cmdPrevious_Click();
    void cmdNext_Click();
    void cmdNew_Click();
    void cmdSave_Click();

    RecordCursor &rows() const;
    void step(int by);
    void write();

    DataSources m_sources;
    Catalog m_catalog;
    qint64 m_currentId = 0;
    bool m_changed = false;
};
