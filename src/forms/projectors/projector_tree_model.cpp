#include "forms/projectors/projector_tree_model.h"

#include "forms/shared/qt_text.h"
#include "projectors/definition_summary.h"
#include "projectors/projector_library.h"

#include <QSet>
#include <QStringList>

#include <algorithm>
#include <string_view>
#include <utility>

namespace qdm {
namespace {

QString TextOf(std::u16string_view text) {
  return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

// Upper case of the stored code page: a name keeps its length.
QString UpperTextOf(std::u16string_view text) { return TextOf(UpperCase(text)); }

QString KeyOf(const QString& manufacturer) { return QLatin1Char('M') + manufacturer; }
QString KeyOf(const QString& manufacturer, const FixedText<32>& model) {
  return QLatin1Char('S') + manufacturer + QLatin1Char('#') + UpperTextOf(model.Trimmed());
}

QStringList MissingIn(const QString& text, const QStringList& words) {
  QStringList missing;
  for (const QString& word : words) {
    if (!text.contains(word, Qt::CaseInsensitive)) missing << word;
  }
  return missing;
}

// An index of the second level carries its manufacturer's row plus one.
std::size_t ShownRowOf(const QModelIndex& index) {
  if (ProjectorTreeModel::IsModel(index)) return static_cast<std::size_t>(index.internalId()) - 1;
  return static_cast<std::size_t>(index.row());
}

}  // namespace

QString SummaryText(const ProjectorDefinition& projector) {
  const DefinitionSummary summary = SummaryOf(projector);
  QStringList lines = {ProjectorTreeModel::tr("Line %1").arg(QString::fromStdString(summary.Line))};
  for (const DefinitionSummary::Row& row : summary.Strings) {
    lines << ProjectorTreeModel::tr("%1: %2", "a command and its bytes")
                 .arg(Said(row.Name), QString::fromStdString(row.Text));
  }
  return lines.join(QLatin1Char('\n'));
}

ProjectorTreeModel::ProjectorTreeModel(const ProjectorLibrary& library, QObject* parent)
    : QAbstractItemModel(parent),
      library_(library),
      manufacturerIcon_(QStringLiteral(":/icons/manufacturer.png")),
      modelIcon_(QStringLiteral(":/icons/model.png")) {
  Rebuild();
}

void ProjectorTreeModel::Rebuild() {
  beginResetModel();
  ReadLibrary();
  ApplyFilter();
  endResetModel();
}

void ProjectorTreeModel::SetFilter(const QString& text) {
  if (text.trimmed() == filter_) return;
  beginResetModel();
  filter_ = text.trimmed();
  ApplyFilter();
  endResetModel();
}

void ProjectorTreeModel::SortManufacturers(bool sort) {
  if (sort == sorted_) return;
  sorted_ = sort;
  Rebuild();
}

void ProjectorTreeModel::ReadLibrary() {
  manufacturers_.clear();
  QHash<QString, std::size_t> placeOf;
  QSet<QString> modelKeys;
  modelKeys.reserve(static_cast<qsizetype>(library_.Size()));
  for (std::size_t element = 0; element < library_.Size(); ++element) {
    const ProjectorDefinition& projector = library_[element];
    const QString name = UpperTextOf(projector.Manufacturer.Trimmed());
    const auto place = placeOf.constFind(name);
    const std::size_t at = place != placeOf.constEnd() ? *place : manufacturers_.size();
    if (at == manufacturers_.size()) {
      placeOf.insert(name, at);
      manufacturers_.push_back({name, KeyOf(name), {}});
    }
    const QString key = KeyOf(name, projector.Model);
    if (modelKeys.contains(key)) continue;  // the first element of a name is the one that counts
    modelKeys.insert(key);
    manufacturers_[at].Models.push_back({TextOf(projector.Model.Trimmed()), key, element});
  }
  if (sorted_) {
    std::sort(manufacturers_.begin(), manufacturers_.end(),
              [](const Manufacturer& a, const Manufacturer& b) { return a.Text < b.Text; });
  }
  for (Manufacturer& manufacturer : manufacturers_) {
    std::sort(manufacturer.Models.begin(), manufacturer.Models.end(),
              [](const Model& a, const Model& b) { return a.Text.compare(b.Text, Qt::CaseInsensitive) < 0; });
  }
}

void ProjectorTreeModel::ApplyFilter() {
  shown_.clear();
  const QStringList words = filter_.split(QLatin1Char(' '), Qt::SkipEmptyParts);
  for (std::size_t at = 0; at < manufacturers_.size(); ++at) {
    const Manufacturer& manufacturer = manufacturers_[at];
    const QStringList missing = MissingIn(manufacturer.Text, words);
    Shown shown{at, {}};
    for (std::size_t model = 0; model < manufacturer.Models.size(); ++model) {
      if (missing.isEmpty() || MissingIn(manufacturer.Models[model].Text, missing).isEmpty())
        shown.Models.push_back(model);
    }
    if (!shown.Models.empty()) shown_.push_back(std::move(shown));
  }
}

std::optional<std::size_t> ProjectorTreeModel::ElementOf(const QModelIndex& index) const {
  if (!IsModel(index)) return std::nullopt;
  return ModelOf(index).Element;
}

std::vector<std::size_t> ProjectorTreeModel::ElementsOf(const QModelIndex& index) const {
  if (!index.isValid()) return {};
  if (IsModel(index)) return {ModelOf(index).Element};
  std::vector<std::size_t> elements;
  for (const Model& model : ManufacturerOf(index).Models) elements.push_back(model.Element);
  return elements;
}

QModelIndex ProjectorTreeModel::IndexOf(const FixedText<32>& manufacturer, const FixedText<32>& model) const {
  const QString name = UpperTextOf(manufacturer.Trimmed());
  return IndexOfKey(model.Trimmed().empty() ? KeyOf(name) : KeyOf(name, model));
}

QModelIndex ProjectorTreeModel::IndexOf(const ProjectorDefinition& projector) const {
  return IndexOf(projector.Manufacturer, projector.Model);
}

QModelIndex ProjectorTreeModel::IndexOfKey(const QString& key) const {
  for (int row = 0; row < rowCount(); ++row) {
    const QModelIndex top = index(row, 0);
    const Manufacturer& manufacturer = ManufacturerOf(top);
    if (manufacturer.Key == key) return top;
    if (QStringView(key).mid(1).startsWith(manufacturer.Text)) {
      for (int child = 0; child < rowCount(top); ++child) {
        const QModelIndex found = index(child, 0, top);
        if (ModelOf(found).Key == key) return found;
      }
    }
  }
  return {};
}

QModelIndex ProjectorTreeModel::index(int row, int column, const QModelIndex& parent) const {
  if (!hasIndex(row, column, parent)) return {};
  return createIndex(row, column, parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : 0);
}

QModelIndex ProjectorTreeModel::parent(const QModelIndex& child) const {
  if (!IsModel(child)) return {};
  return createIndex(static_cast<int>(child.internalId() - 1), 0, quintptr{0});
}

int ProjectorTreeModel::rowCount(const QModelIndex& parent) const {
  if (!parent.isValid()) return static_cast<int>(shown_.size());
  return IsModel(parent) ? 0 : static_cast<int>(shown_[ShownRowOf(parent)].Models.size());
}

int ProjectorTreeModel::columnCount(const QModelIndex&) const { return 1; }

QVariant ProjectorTreeModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const bool model = IsModel(index);
  switch (role) {
    case Qt::DisplayRole:
      return model ? ModelOf(index).Text : ManufacturerOf(index).Text;
    case Qt::DecorationRole:
      return model ? modelIcon_ : manufacturerIcon_;
    case Qt::ToolTipRole:
      return model ? SummaryText(library_[ModelOf(index).Element])
                         .toHtmlEscaped()
                         .replace(QLatin1Char('\n'), QLatin1String("<br>"))
                   : QVariant();
    case KeyRole:
      return model ? ModelOf(index).Key : ManufacturerOf(index).Key;
    default:
      return {};
  }
}

const ProjectorTreeModel::Manufacturer& ProjectorTreeModel::ManufacturerOf(const QModelIndex& index) const {
  return manufacturers_[shown_[ShownRowOf(index)].Manufacturer];
}

const ProjectorTreeModel::Model& ProjectorTreeModel::ModelOf(const QModelIndex& index) const {
  const Shown& shown = shown_[ShownRowOf(index)];
  return manufacturers_[shown.Manufacturer].Models[shown.Models[static_cast<std::size_t>(index.row())]];
}

}  // namespace qdm
