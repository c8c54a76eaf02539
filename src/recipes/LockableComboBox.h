#pragma once

#include <QComboBox>

// A drop-down list that can be locked: it keeps its look of a field and its place in the tab order,
// but the user cannot choose.
class LockableComboBox final : public QComboBox
{
    Q_OBJECT

public:
    using QComboBox::QComboBox;

    bool isReadOnly() const { return m_isReadOnly; }
    void setReadOnly(bool locked);

    void showPopup() override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    bool m_isReadOnly = false;
};
