#include "forms/projectors/projector_tree_model.h"

#include "forms/shared/qt_text.h"
#include "projectors/definition_summary.h"
#include "projectors/projector_library.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace qdm {
namespace {

QString TextOf(std::u16string_view text) {
  return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

// Upper case of the stored code page: a name keeps its length.
QString UpperTextOf(std::u16string_view text) { return TextOf(UpperCase(text)); }

QString KeyOfNames(const FixedText<32>& manufacturer) {
  return QLatin1Char('M') + UpperTextOf(manufacturer.Trimmed());
}
QString KeyOfNames(const FixedText<32>& manufacturer, const FixedText<32>& model) {
  return QLatin1Char('S') + UpperTextOf(manufacturer.Trimmed()) + QLatin1Char('#') +
         UpperTextOf(model.Trimmed());
}

char16_t Folded(char16_t character) {
  if (character < 0x80) return character >= u'A' && character <= u'Z' ? character | 0x20 : character;
  return QChar(character).toCaseFolded().unicode();
}

// A name without regard to case, for comparing and searching.
class FoldedName {
 public:
  explicit FoldedName(const FixedText<32>& name) {
    const std::u16string_view text = name.Trimmed();
    length_ = text.size();
    std::transform(text.begin(), text.end(), characters_.begin(),
                   [](char16_t character) { return Folded(character); });
  }
  std::u16string_view View() const { return {characters_.data(), length_}; }

 private:
  std::array<char16_t, FixedText<32>::kLength> characters_;
  std::size_t length_;
};

using Words = std::vector<std::u16string>;

Words WordsOf(const QString& filter) {
  Words words;
  for (const QString& word : filter.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
    words.push_back(word.toStdU16String());
    std::transform(words.back().begin(), words.back().end(), words.back().begin(),
                   [](char16_t character) { return Folded(character); });
  }
  return words;
}

Words MissingIn(const FixedText<32>& name, const Words& words) {
  Words missing;
  const FoldedName folded(name);
  for (const std::u16string& word : words) {
    if (folded.View().find(word) == std::u16string_view::npos) missing.push_back(word);
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
  names_.clear();
  names_.reserve(library_.Size());
  manufacturers_.clear();
  // By the names as they stand, then without regard to case: nearly all of a manufacturer's stand alike.
  std::unordered_map<std::u16string_view, std::size_t> places;
  std::unordered_map<std::u16string, std::size_t> foldedPlaces;
  for (std::size_t element = 0; element < library_.Size(); ++element) {
    names_.push_back({library_[element].Manufacturer, library_[element].Model});
    const FixedText<32>& name = names_.back().Manufacturer;
    const auto [place, first] = places.try_emplace(name.View());
    if (first) {
      const FoldedName folded(name);
      place->second =
          foldedPlaces.try_emplace(std::u16string(folded.View()), manufacturers_.size()).first->second;
      if (place->second == manufacturers_.size()) manufacturers_.emplace_back();
    }
    manufacturers_[place->second].Models.push_back(element);
  }
  if (!sorted_) return;
  std::vector<std::pair<QString, Manufacturer>> byName;
  for (Manufacturer& manufacturer : manufacturers_) {
    const FixedText<32>& name = names_[manufacturer.Models.front()].Manufacturer;
    byName.emplace_back(UpperTextOf(name.Trimmed()), std::move(manufacturer));
  }
  std::sort(byName.begin(), byName.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  for (std::size_t at = 0; at < byName.size(); ++at) manufacturers_[at] = std::move(byName[at].second);
}

// By text; of one name the first element is the one that counts.
const ProjectorTreeModel::Elements& ProjectorTreeModel::ModelsOf(std::size_t at) const {
  Manufacturer& manufacturer = manufacturers_[at];
  if (std::exchange(manufacturer.Sorted, true)) return manufacturer.Models;
  std::vector<std::pair<FoldedName, std::size_t>> models;
  models.reserve(manufacturer.Models.size());
  for (const std::size_t element : manufacturer.Models) {
    models.emplace_back(FoldedName(names_[element].Model), element);
  }
  const auto name = [](const auto& model) { return model.first.View(); };
  std::sort(models.begin(), models.end(), [&](const auto& a, const auto& b) {
    const int order = name(a).compare(name(b));
    return order != 0 ? order < 0 : a.second < b.second;
  });
  manufacturer.Models.clear();
  for (std::size_t i = 0; i < models.size(); ++i) {
    if (i == 0 || name(models[i]) != name(models[i - 1])) manufacturer.Models.push_back(models[i].second);
  }
  return manufacturer.Models;
}

void ProjectorTreeModel::ApplyFilter() {
  shown_.clear();
  shown_.reserve(manufacturers_.size());
  const Words words = WordsOf(filter_);
  for (std::size_t at = 0; at < manufacturers_.size(); ++at) {
    if (words.empty()) {
      shown_.push_back({at, {}});
      continue;
    }
    const Words missing = MissingIn(NamesOf(at).Manufacturer, words);
    Shown shown{at, {}};
    for (const std::size_t model : ModelsOf(at)) {
      if (missing.empty() || MissingIn(names_[model].Model, missing).empty()) shown.Models.push_back(model);
    }
    if (!shown.Models.empty()) shown_.push_back(std::move(shown));
  }
}

std::optional<std::size_t> ProjectorTreeModel::ElementOf(const QModelIndex& index) const {
  if (!IsModel(index)) return std::nullopt;
  return ShownModelsOf(index)[static_cast<std::size_t>(index.row())];
}

std::vector<std::size_t> ProjectorTreeModel::ElementsOf(const QModelIndex& index) const {
  if (!index.isValid()) return {};
  if (const std::optional<std::size_t> element = ElementOf(index)) return {*element};
  return ModelsOf(shown_[ShownRowOf(index)].Manufacturer);
}

QModelIndex ProjectorTreeModel::IndexOf(const FixedText<32>& manufacturer, const FixedText<32>& model) const {
  return IndexOfKey(model.Trimmed().empty() ? KeyOfNames(manufacturer) : KeyOfNames(manufacturer, model));
}

QModelIndex ProjectorTreeModel::IndexOf(const ProjectorDefinition& projector) const {
  return IndexOf(projector.Manufacturer, projector.Model);
}

QModelIndex ProjectorTreeModel::IndexOfKey(const QString& key) const {
  if (key.isEmpty()) return {};
  const bool model = key.startsWith(QLatin1Char('S'));
  const QStringView names = QStringView(key).mid(1);
  for (int row = 0; row < rowCount(); ++row) {
    const QModelIndex top = index(row, 0);
    const QString manufacturer = UpperTextOf(NamesOf(top).Manufacturer.Trimmed());
    if (!names.startsWith(manufacturer)) continue;
    if (!model && names == manufacturer) return top;
    for (int child = 0; model && child < rowCount(top); ++child) {
      const QModelIndex found = index(child, 0, top);
      if (KeyOf(found) == key) return found;
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
  return IsModel(parent) ? 0 : static_cast<int>(ShownModelsOf(parent).size());
}

// Asked of every manufacturer, seen or not.
bool ProjectorTreeModel::hasChildren(const QModelIndex& parent) const {
  return parent.isValid() ? !IsModel(parent) : !shown_.empty();
}

int ProjectorTreeModel::columnCount(const QModelIndex&) const { return 1; }

QVariant ProjectorTreeModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const bool model = IsModel(index);
  switch (role) {
    case Qt::DisplayRole:
      return model ? TextOf(NamesOf(index).Model.Trimmed())
                   : UpperTextOf(NamesOf(index).Manufacturer.Trimmed());
    case Qt::DecorationRole:
      return model ? modelIcon_ : manufacturerIcon_;
    case Qt::ToolTipRole:
      return model ? SummaryText(library_[*ElementOf(index)])
                         .toHtmlEscaped()
                         .replace(QLatin1Char('\n'), QLatin1String("<br>"))
                   : QVariant();
    case KeyRole:
      return KeyOf(index);
    default:
      return {};
  }
}

// Of a manufacturer node or of the one above a model node.
const ProjectorTreeModel::Elements& ProjectorTreeModel::ShownModelsOf(const QModelIndex& index) const {
  const Shown& shown = shown_[ShownRowOf(index)];
  return filter_.isEmpty() ? ModelsOf(shown.Manufacturer) : shown.Models;
}

const ProjectorTreeModel::Names& ProjectorTreeModel::NamesOf(const QModelIndex& index) const {
  if (const std::optional<std::size_t> element = ElementOf(index)) return names_[*element];
  return NamesOf(shown_[ShownRowOf(index)].Manufacturer);
}

const ProjectorTreeModel::Names& ProjectorTreeModel::NamesOf(std::size_t manufacturer) const {
  return names_[manufacturers_[manufacturer].Models.front()];
}

QString ProjectorTreeModel::KeyOf(const QModelIndex& index) const {
  const Names& names = NamesOf(index);
  return IsModel(index) ? KeyOfNames(names.Manufacturer, names.Model) : KeyOfNames(names.Manufacturer);
}

}  // namespace qdm
