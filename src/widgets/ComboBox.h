#pragma once

#include <QComboBox>

class QLineEdit;

// A combo box that takes the wheel only while it has the focus, so that scrolling the window does
// not change it.
//
// It can be made read-only: it then is a read-only line edit with the text of the current entry,
// which the user can select and copy.
class ComboBox final : public QComboBox
{
    Q_OBJECT

public:
    explicit ComboBox(QWidget *parent = nullptr);

    bool isReadOnly() const { return focusProxy() != nullptr; }
    void setReadOnly(bool readOnly);

    void showPopup() override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void showText();

    QLineEdit *m_readOnlyEdit; // covers the combo box while it is read-only
};
