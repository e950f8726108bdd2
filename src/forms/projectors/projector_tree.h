// The library's tree as a view, for the main window and the selector: shows a ProjectorTreeModel, keeps open
// manufacturers and the current node through rebuilding and filtering, and opens every manufacturer while a
// filter text is set.
#pragma once

#include "forms/projectors/projector_tree_model.h"

#include <QSet>
#include <QTreeView>

#include <cstddef>
#include <optional>
#include <vector>

class QAction;
class QSettings;

namespace qdm {

class ProjectorTree : public QTreeView {
  Q_OBJECT

 public:
  explicit ProjectorTree(QWidget* parent = nullptr);

  // `library` must outlive the view.
  void SetLibrary(const ProjectorLibrary& library);
  // After every change of the library.
  void Rebuild();
  void SetFilter(const QString& text);

  // Makes the node of these names current, its manufacturer open and itself seen; clears the selection when
  // there is none.
  void SelectProjector(const ProjectorDefinition& projector);
  // The element of the one selected node; nothing while that is a manufacturer, or none or several are.
  std::optional<std::size_t> SelectedElement() const;
  // Of all selected nodes, in the tree's order; see ProjectorTreeModel::ElementsOf.
  std::vector<std::size_t> SelectedElements() const;
  // At least one model, and no manufacturer.
  bool OnlyModelsSelected() const;
  // What stands in the place of the tree; empty while something is shown.
  QString WhyEmpty() const;

  // What the mouse sees when it rests on a model, for who goes through the tree by keys.
  void ShowSummary() const;

  // Where it is kept whether manufacturers are sorted. `settings` must outlive the view.
  void RememberIn(QSettings& settings);

  ProjectorTreeModel& Model() const { return *model_; }

 Q_SIGNALS:
  // A model node was clicked or activated by key.
  void ElementChosen(std::size_t element);
  // Another node became current, or none.
  void SelectionChanged();

 protected:
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  template <class Change>
  void KeepingNodes(Change change);
  void Choose(const QModelIndex& index);
  // A view that gets the focus makes its first node current; the user has chosen nothing with that.
  QModelIndex SelectedIndex() const;
  // In the tree's order.
  QModelIndexList SelectedRows() const;
  void SortManufacturers(bool sort);

  ProjectorTreeModel* model_ = nullptr;
  QAction* sort_;
  QSettings* settings_ = nullptr;
  QSet<QString> openKeys_;  // manufacturers that the user left open
};

}  // namespace qdm
