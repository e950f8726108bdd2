#include "forms/projectors/projector_tree.h"

#include "projectors/projector_definition.h"

#include <QAction>
#include <QPainter>
#include <QSettings>
#include <QToolTip>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace qdm {

namespace {

const QString kSortKey = QStringLiteral("SortManufacturers");

}  // namespace

ProjectorTree::ProjectorTree(QWidget* parent)
    : QTreeView(parent), sort_(new QAction(tr("Sort manufacturers"), this)) {
  setHeaderHidden(true);
  setUniformRowHeights(true);
  setEditTriggers(NoEditTriggers);
  setSelectionMode(SingleSelection);
  setExpandsOnDoubleClick(true);
  setContextMenuPolicy(Qt::ActionsContextMenu);
  sort_->setObjectName(QStringLiteral("SORT"));
  sort_->setCheckable(true);
  addAction(sort_);
  connect(sort_, &QAction::toggled, this, &ProjectorTree::SortManufacturers);
  connect(this, &QTreeView::clicked, this, &ProjectorTree::Choose);
  connect(this, &QTreeView::activated, this, &ProjectorTree::Choose);
}

void ProjectorTree::SetLibrary(const ProjectorLibrary& library) {
  delete model_;
  model_ = new ProjectorTreeModel(library, this);
  setModel(model_);
  model_->SortManufacturers(sort_->isChecked());
}

void ProjectorTree::RememberIn(QSettings& settings) {
  settings_ = &settings;
  sort_->setChecked(settings.value(kSortKey, false).toBool());
}

void ProjectorTree::SortManufacturers(bool sort) {
  if (settings_ != nullptr) settings_->setValue(kSortKey, sort);
  if (model_ != nullptr) KeepingNodes([this, sort] { model_->SortManufacturers(sort); });
}

// The other tree may have been told otherwise.
void ProjectorTree::Rebuild() {
  if (settings_ != nullptr) RememberIn(*settings_);
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
  // The layout that the reset has left for later takes all of them at once.
  const bool all = !model_->Filter().isEmpty();
  for (int row = 0; (all || !openKeys_.isEmpty()) && row < model_->rowCount(); ++row) {
    const QModelIndex top = model_->index(row, 0);
    if (all || openKeys_.contains(top.data(ProjectorTreeModel::KeyRole).toString())) expand(top);
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
  const QModelIndexList selected = selectionModel()->selectedIndexes();
  return selected.size() == 1 ? model_->ElementOf(selected.constFirst()) : std::nullopt;
}

std::vector<std::size_t> ProjectorTree::SelectedElements() const {
  std::vector<std::size_t> elements;
  for (const QModelIndex& index : SelectedRows()) {
    if (selectionModel()->isSelected(index.parent())) continue;  // its manufacturer brings it along
    const std::vector<std::size_t> some = model_->ElementsOf(index);
    elements.insert(elements.end(), some.begin(), some.end());
  }
  return elements;
}

bool ProjectorTree::OnlyModelsSelected() const {
  const QModelIndexList selected = selectionModel()->selectedIndexes();
  return !selected.isEmpty() && std::all_of(selected.begin(), selected.end(), ProjectorTreeModel::IsModel);
}

void ProjectorTree::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  QTreeView::selectionChanged(selected, deselected);
  Q_EMIT SelectionChanged();
}

QModelIndex ProjectorTree::SelectedIndex() const {
  const QModelIndexList selected = selectionModel()->selectedIndexes();
  return selected.isEmpty() ? QModelIndex() : selected.constFirst();
}

QModelIndexList ProjectorTree::SelectedRows() const {
  QModelIndexList selected = selectionModel()->selectedIndexes();
  const auto place = [](const QModelIndex& index) {
    return index.parent().isValid() ? std::pair(index.parent().row(), index.row())
                                    : std::pair(index.row(), -1);
  };
  std::sort(selected.begin(), selected.end(),
            [&](const QModelIndex& a, const QModelIndex& b) { return place(a) < place(b); });
  return selected;
}

QString ProjectorTree::WhyEmpty() const {
  if (model_ == nullptr || model_->rowCount() > 0) return {};
  return model_->Filter().isEmpty() ? tr("The data base holds no projector.")
                                    : tr("No projector has “%1” in its names.").arg(model_->Filter());
}

void ProjectorTree::paintEvent(QPaintEvent* event) {
  QTreeView::paintEvent(event);
  const QString text = WhyEmpty();
  if (text.isEmpty()) return;
  QPainter painter(viewport());
  painter.setPen(palette().color(QPalette::Text));
  painter.drawText(viewport()->rect().adjusted(8, 8, -8, -8), Qt::AlignHCenter | Qt::TextWordWrap, text);
}

void ProjectorTree::ShowSummary() const {
  const QModelIndex index = currentIndex();
  const QPoint beside(viewport()->width(), visualRect(index).top());
  QToolTip::showText(viewport()->mapToGlobal(beside), index.data(Qt::ToolTipRole).toString(), viewport());
}

void ProjectorTree::Choose(const QModelIndex& index) {
  if (const std::optional<std::size_t> element = model_->ElementOf(index)) Q_EMIT ElementChosen(*element);
}

}  // namespace qdm
