#include "tools/dialog/qt/SealTree.h"

#include <QHeaderView>
#include <QPainter>

#include "tools/dialog/qt/ToolTip.h"

namespace {

constexpr int kNumber = Qt::UserRole;

bool IsLast(const QModelIndex& node) { return !node.siblingAtRow(node.row() + 1).isValid(); }

// The lines of a node's own cell. Those of a node with a mark to expand it leave the mark alone.
void DrawOwnLines(QPainter& painter, const QRect& cell, const QModelIndex& node, bool hasMark) {
    const QPoint centre = cell.center();
    const int gap = hasMark ? cell.width() / 3 : 0;
    const bool first = !node.parent().isValid() && node.row() == 0;
    if (!first) painter.drawLine(centre.x(), cell.top(), centre.x(), centre.y() - gap);
    if (!IsLast(node)) painter.drawLine(centre.x(), centre.y() + gap, centre.x(), cell.bottom());
    painter.drawLine(centre.x() + gap, centre.y(), cell.right(), centre.y());
}

}  // namespace

SealTree::SealTree(QWidget* parent) : QTreeWidget(parent) {
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    // A label that is wider than the tree can be read to its end by scrolling.
    setTextElideMode(Qt::ElideNone);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    // The header isn't shown; unless it has a size it measures a bold face to find one.
    header()->setMinimumSectionSize(0);
    headerItem()->setData(0, Qt::SizeHintRole, QSize(0, 0));
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
}

void SealTree::Append(int parent, const QString& text) {
    QTreeWidgetItem* const above = Node(parent);
    if (parent != 0 && above == nullptr) return;
    auto* const node = above == nullptr ? new QTreeWidgetItem(this) : new QTreeWidgetItem(above);
    m_nodes.push_back(node);
    node->setText(0, text);
    node->setToolTip(0, WrappedToolTip(text));
    node->setData(0, kNumber, static_cast<int>(m_nodes.size()));
}

void SealTree::Expand(int node) {
    if (QTreeWidgetItem* const item = Node(node)) item->setExpanded(true);
}

int SealTree::Selected() const {
    const QList<QTreeWidgetItem*> selected = selectedItems();
    return selected.isEmpty() ? 0 : selected.first()->data(0, kNumber).toInt();
}

QTreeWidgetItem* SealTree::Node(int node) const {
    const bool exists = node > 0 && static_cast<std::size_t>(node) <= m_nodes.size();
    return exists ? m_nodes[static_cast<std::size_t>(node) - 1] : nullptr;
}

QSize SealTree::sizeHint() const {
    const int unit = fontMetrics().height();
    return {22 * unit, 20 * unit};
}

// The selection is as wide as the tree.
void SealTree::resizeEvent(QResizeEvent* event) {
    header()->setMinimumSectionSize(viewport()->width());
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    QTreeWidget::resizeEvent(event);
}

void SealTree::drawBranches(QPainter* painter, const QRect& rect, const QModelIndex& index) const {
    painter->save();
    painter->setPen(QPen(palette().color(QPalette::Disabled, QPalette::Text), 0, Qt::DotLine));
    QRect cell(rect.right() + 1 - indentation(), rect.top(), indentation(), rect.height());
    DrawOwnLines(*painter, cell, index, model()->hasChildren(index));
    for (QModelIndex node = index.parent(); node.isValid(); node = node.parent()) {
        cell.translate(-indentation(), 0);
        const int middle = cell.center().x();
        if (!IsLast(node)) painter->drawLine(middle, cell.top(), middle, cell.bottom());
    }
    painter->restore();
    QTreeWidget::drawBranches(painter, rect, index);
}

// A node that is selected stays so until another one is.
QItemSelectionModel::SelectionFlags SealTree::selectionCommand(const QModelIndex& index,
                                                               const QEvent* event) const {
    if (!index.isValid()) return QItemSelectionModel::NoUpdate;
    const auto command = QTreeWidget::selectionCommand(index, event);
    const bool deselects = command & (QItemSelectionModel::Toggle | QItemSelectionModel::Deselect);
    return deselects ? QItemSelectionModel::ClearAndSelect : command;
}
