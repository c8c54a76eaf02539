#pragma once

#include <QComboBox>

// A drop-down list that can be made read-only: it then looks like a read-only line edit and can
// have the focus, but the user cannot choose another entry.
class ComboBox final : public QComboBox
{
    Q_OBJECT

public:
    using QComboBox::QComboBox;

    bool isReadOnly() const { return m_isReadOnly; }
    void setReadOnly(bool readOnly);

    void showPopup() override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    bool m_isReadOnly = false;
};
