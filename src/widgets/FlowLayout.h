#pragma once

#include <QLayout>
#include <QList>

#include <memory>
#include <vector>

namespace nimbrelle {

/// Widgets from left to right at the sizes they would like, in as many rows as the width asks for. A widget
/// wider than the whole is narrowed to it and stands alone in its row.
class FlowLayout : public QLayout {
public:
    FlowLayout(int horizontal, int vertical, QWidget *parent = nullptr);
    ~FlowLayout() override;

    void addItem(QLayoutItem *item) override;
    int count() const override { return static_cast<int>(m_items.size()); }
    QLayoutItem *itemAt(int index) const override;
    QLayoutItem *takeAt(int index) override;

    Qt::Orientations expandingDirections() const override { return {}; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSize() const override { return {0, 0}; }
    void setGeometry(const QRect &area) override;

private:
    /// Where each item stands in that width, from the origin.
    std::vector<QRect> placed(int width) const;
    static QSize extent(const std::vector<QRect> &placed);

    const int m_horizontal;
    const int m_vertical;
    std::vector<std::unique_ptr<QLayoutItem>> m_items;
};

} // namespace nimbrelle
