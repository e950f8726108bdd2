#include "forms/projectors/projector_tree.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace qdm {

ProjectorTree::ProjectorTree(QWidget* parent) : QTreeView(parent) {
  setHeaderHidden(true);
  setUniformRowHeights(true);
  setEditTriggers(NoEditTriggers);
  setSelectionMode(SingleSelection);
  setExpandsOnDoubleClick(true);
  connect(this, &QTreeView::clicked, this, &ProjectorTree::Choose);
  connect(this, &QTreeView::activated, this, &ProjectorTree::Choose);
}

void ProjectorTree::SetLibrary(const ProjectorLibrary& library) {
  delete model_;
  model_ = new ProjectorTreeModel(library, this);
  setModel(model_);
}

void ProjectorTree::Rebuild() {
  KeepingNodes([this] { model_->Rebuild(); });
}

void ProjectorTree::SetFilter(const QString& text) {
  KeepingNodes([this, &text] { model_->SetFilter(text); });
}

// A reset model forgets what was open and current: both are found again by their keys.
template <class Change>
void ProjectorTree::KeepingNodes(Change change) {
  const QString selected = SelectedIndex().data(ProjectorTreeModel::KeyRole).toString();
  if (model_->Filter().isEmpty()) {
    openKeys_.clear();
    for (int row = 0; row < model_->rowCount(); ++row) {
      const QModelIndex top = model_->index(row, 0);
      if (isExpanded(top)) openKeys_.insert(top.data(ProjectorTreeModel::KeyRole).toString());
    }
  }
  change();
  if (!model_->Filter().isEmpty()) {
    expandToDepth(0);  // expandAll remembers every model by itself, which takes 100 ms for 10,000
  } else {
    for (int row = 0; row < model_->rowCount(); ++row) {
      const QModelIndex top = model_->index(row, 0);
      if (openKeys_.contains(top.data(ProjectorTreeModel::KeyRole).toString())) expand(top);
    }
  }
  if (const QModelIndex index = model_->IndexOfKey(selected); index.isValid()) {
    setCurrentIndex(index);
    scrollTo(index);
  }
  Q_EMIT SelectionChanged();
}

void ProjectorTree::SelectProjector(const ProjectorDefinition& projector) {
  const QModelIndex index = HasBothNames(projector) ? model_->IndexOf(projector) : QModelIndex();
  setCurrentIndex(index);
  if (index.isValid()) scrollTo(index);
}

std::optional<std::size_t> ProjectorTree::SelectedElement() const {
  return model_->ElementOf(SelectedIndex());
}

std::vector<std::size_t> ProjectorTree::SelectedElements() const {
  return model_->ElementsOf(SelectedIndex());
}

void ProjectorTree::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  QTreeView::selectionChanged(selected, deselected);
  Q_EMIT SelectionChanged();
}

QModelIndex ProjectorTree::SelectedIndex() const {
  const QModelIndexList selected = selectionModel()->selectedIndexes();
  return selected.isEmpty() ? QModelIndex() : selected.constFirst();
}

void ProjectorTree::Choose(const QModelIndex& index) {
  if (const std::optional<std::size_t> element = model_->ElementOf(index)) Q_EMIT ElementChosen(*element);
}

}  // namespace qdm
