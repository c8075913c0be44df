// SealTree.h - the tree of certificates and seals.
#pragma once

#include <QTreeWidget>
#include <vector>

// Nodes are numbered from 1 in the order of their making; 0 is the top, or none. One node can be
// selected, and none is until the user selects one.
class SealTree : public QTreeWidget {
public:
    explicit SealTree(QWidget* parent);

    // A new last child. Nothing happens if there is no such parent.
    void Append(int parent, const QString& text);
    void Expand(int node);
    int Selected() const;
    // Null if there is none of that number.
    QTreeWidgetItem* Node(int node) const;

    QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void drawBranches(QPainter* painter, const QRect& rect,
                      const QModelIndex& index) const override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* event) const override;

private:
    std::vector<QTreeWidgetItem*> m_nodes;
};
