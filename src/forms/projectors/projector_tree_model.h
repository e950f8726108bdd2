// The library as two levels of tree: manufacturers in upper case in the order of the library, their models
// below them sorted by text. A node stands for all elements with its names without regard to case and leads
// to the first of them. Holds names and element numbers, not definitions: whoever changes the library calls
// Rebuild before the next look. A manufacturer's models are sorted when somebody first looks at them. A
// filter hides every model of which not all its words stand in one of the two names.
#pragma once

#include "base/fixed_text.h"

#include <QAbstractItemModel>
#include <QHash>
#include <QIcon>

#include <cstddef>
#include <optional>
#include <vector>

namespace qdm {

class ProjectorLibrary;
struct ProjectorDefinition;

// Line settings and commands of a definition, a line each.
QString SummaryText(const ProjectorDefinition& projector);

class ProjectorTreeModel : public QAbstractItemModel {
  Q_OBJECT

 public:
  // "MACME" of a manufacturer, "SACME#X 100" of a model, upper case.
  static constexpr int KeyRole = Qt::UserRole;

  explicit ProjectorTreeModel(const ProjectorLibrary& library, QObject* parent = nullptr);

  void Rebuild();
  void SetFilter(const QString& text);
  const QString& Filter() const { return filter_; }
  // Manufacturers by the alphabet instead of in the order of the library.
  void SortManufacturers(bool sort);

  static bool IsModel(const QModelIndex& index) { return index.isValid() && index.internalId() != 0; }
  // The library element of a model node; nothing for a manufacturer.
  std::optional<std::size_t> ElementOf(const QModelIndex& index) const;
  // Every element of a manufacturer node in the tree's order, those that the filter hides included; the one
  // of a model node.
  std::vector<std::size_t> ElementsOf(const QModelIndex& index) const;
  // Invalid when there is no such node or the filter hides it. A blank model finds the manufacturer.
  QModelIndex IndexOf(const FixedText<32>& manufacturer, const FixedText<32>& model) const;
  QModelIndex IndexOf(const ProjectorDefinition& projector) const;
  QModelIndex IndexOfKey(const QString& key) const;

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& child) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  bool hasChildren(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

 private:
  struct Names {
    FixedText<32> Manufacturer;
    FixedText<32> Model;
  };
  using Elements = std::vector<std::size_t>;
  struct Manufacturer {
    // Of one manufacturer: as the library has them, then its models as the tree shows them.
    Elements Models;
    bool Sorted = false;
  };
  struct Shown {
    std::size_t Manufacturer;
    Elements Models;  // that the filter lets through; unused while there is none
  };

  void ReadLibrary();
  void ApplyFilter();
  const Elements& ModelsOf(std::size_t manufacturer) const;
  const Elements& ShownModelsOf(const QModelIndex& index) const;
  const Names& NamesOf(const QModelIndex& index) const;
  const Names& NamesOf(std::size_t manufacturer) const;
  QString KeyOf(const QModelIndex& index) const;

  const ProjectorLibrary& library_;
  QString filter_;
  bool sorted_ = false;
  std::vector<Names> names_;  // of the library's elements
  mutable std::vector<Manufacturer> manufacturers_;
  std::vector<Shown> shown_;
  QIcon manufacturerIcon_;
  QIcon modelIcon_;
};

}  // namespace qdm
