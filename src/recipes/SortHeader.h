#pragma once

#include <QHeaderView>

// A header for narrow columns: captions wrap into two lines, and the arrow of the column that sorts
// stands above them instead of taking their room.
class SortHeader final : public QHeaderView
{
    Q_OBJECT

public:
    explicit SortHeader(QWidget *parent = nullptr);

protected:
    void initStyleOptionForIndex(QStyleOptionHeader *option, int column) const override;
    void paintSection(QPainter *painter, const QRect &rect, int column) const override;
    QSize sectionSizeFromContents(int column) const override;

private:
    int arrowHeight() const;
};
